// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/SoundTrack.h"

#include <algorithm>

#include "QZ/Platform/MovieWriter/TrackFormats.h"

namespace QZ::Platform::Movie {

namespace {
constexpr std::int64_t kAllowedPerSecond = 200;   // 5 ms

// A longer gap is one in the clock, not in the sound.
constexpr std::int64_t kLongestSilence = 3600;
}   // namespace

SoundTrack::SoundTrack(const AudioSettings& settings, MovieFile& file, std::size_t track)
    : TrackWriter(file, track), m_settings(settings)
{}

bool SoundTrack::Open()
{
    const int rate = static_cast<int>(m_settings.sampleRate);
    if (!m_encoder.Open({rate, m_settings.numberOfChannels, m_settings.bitRate}))
        return Fail(m_encoder.Reason());
    TheTrack().timescale = rate;
    TheTrack().lastDuration = 1024;
    TheTrack().sampleEntry = m_encoder.SampleEntry();
    return true;
}

bool SoundTrack::Write(const QueuedSample& sample)
{
    Track& track = TheTrack();
    const std::int64_t time = MomentOf(sample.time).In(track.timescale);
    if (m_first) {
        m_first = false;
        track.contentStart = time;
    }
    const std::int64_t gap = time - (track.contentStart + m_encoder.Position());
    const std::int64_t allowed = track.timescale / kAllowedPerSecond;
    std::size_t skipped = 0;
    if (gap > kLongestSilence * track.timescale)
        return Fail("a gap of more than an hour in the sound");
    if (gap > allowed) {
        if (!m_encoder.EncodeSilence(gap, m_sink))
            return Fail(m_encoder.Reason());
    } else if (gap < -allowed) {
        const double rate = sample.buffer->format->sampleRate;
        skipped = static_cast<std::size_t>(Scale(-gap, static_cast<std::int64_t>(rate), track.timescale));
    }
    return Encode(*sample.buffer, skipped);
}

bool SoundTrack::Encode(const SampleBuffer& buffer, std::size_t skippedFrames)
{
    const std::size_t frame = buffer.format->BytesPerFrame();
    const std::size_t first = std::min(skippedFrames, buffer.bytes.size() / frame) * frame;
    if (!m_encoder.Encode(PCMOf(*buffer.format), std::span(buffer.bytes).subspan(first), m_sink))
        return Fail(m_encoder.Reason());
    TheTrack().contentEnd = TheTrack().contentStart + m_encoder.Position();
    return true;
}

void SoundTrack::Add(EncodedSample encoded)
{
    Sample sample;
    sample.decodeTime = sample.presentationTime = TheTrack().contentStart + encoded.presentationTime;
    sample.size = static_cast<std::uint32_t>(encoded.bytes.size());
    m_file.Add(m_index, sample, std::move(encoded.bytes));
}

bool SoundTrack::Finish()
{
    return m_first || m_encoder.Flush(m_sink) || Fail(m_encoder.Reason());
}

}   // namespace QZ::Platform::Movie
