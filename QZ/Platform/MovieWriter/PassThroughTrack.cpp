// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/PassThroughTrack.h"

#include <algorithm>

#include "QZ/Platform/MovieWriter/TrackFormats.h"

namespace QZ::Platform::Movie {

namespace {
constexpr std::uint32_t kPCM = FourCharacterCode("lpcm");

Bytes EntryOf(const FormatDescription& format)
{
    if (format.mediaType == MediaType::Metadata)
        return WriteMetadataEntry(format.metadataKeys);
    if (format.subType == kPCM)
        return WritePCMEntry(PCMOf(format));
    return WriteAACEntry(format.sampleRate, format.channels, format.configuration, 0);
}
}   // namespace

void PassThroughTrack::Describe(const FormatDescription& format)
{
    Track& track = TheTrack();
    track.sampleEntry = EntryOf(format);
    if (format.mediaType == MediaType::Audio)
        track.timescale = static_cast<std::int32_t>(format.sampleRate);
}

bool PassThroughTrack::Write(const QueuedSample& sample)
{
    Track& track = TheTrack();
    const bool first = track.sampleEntry.empty();
    if (first)
        Describe(*sample.buffer->format);
    const Moment moment = MomentOf(sample.time);
    std::int64_t time = 0;
    if (track.media == Media::Audio) {
        time = moment.In(track.timescale);
        if (!first && time <= track.contentEnd + 1)
            time = track.contentEnd;
    } else {
        time = ExactTicks(track, moment, m_file.movie.sessionStart);
    }
    if (first)
        track.contentStart = time;
    if (track.media == Media::Audio) {
        WriteSound(*sample.buffer, first ? time - sample.buffer->leadingFrames : time);
    } else {
        WriteMetadata(*sample.buffer, time);
    }
    return true;
}

void PassThroughTrack::WriteSound(const SampleBuffer& buffer, std::int64_t time)
{
    Track& track = TheTrack();
    const FormatDescription& format = *buffer.format;
    Sample sample;
    if (format.subType == kPCM) {
        sample.size = static_cast<std::uint32_t>(buffer.bytes.size());
        sample.count = static_cast<std::uint32_t>(buffer.bytes.size() / format.BytesPerFrame());
        sample.decodeTime = sample.presentationTime = time;
        track.lastDuration = sample.count;
        track.contentEnd = time + track.lastDuration;
        m_file.Add(m_index, sample, buffer.bytes);
        return;
    }
    std::vector<std::uint32_t> sizes = buffer.sampleSizes;
    if (sizes.empty())
        sizes.push_back(static_cast<std::uint32_t>(buffer.bytes.size()));
    auto bytes = buffer.bytes.begin();
    track.lastDuration = format.framesPerPacket;
    for (const std::uint32_t size : sizes) {
        sample.size = size;
        sample.decodeTime = sample.presentationTime = time;
        m_file.Add(m_index, sample, Bytes(bytes, bytes + size));
        bytes += size;
        time += format.framesPerPacket;
    }
    track.contentEnd = time;
}

void PassThroughTrack::WriteMetadata(const SampleBuffer& buffer, std::int64_t time)
{
    Track& track = TheTrack();
    Sample sample;
    sample.size = static_cast<std::uint32_t>(buffer.bytes.size());
    sample.decodeTime = sample.presentationTime = time;
    track.lastDuration = 1;
    if (IsNumeric(buffer.duration))
        track.lastDuration = std::max<std::int64_t>(1, MomentOf(buffer.duration).In(track.timescale));
    track.contentEnd = time + track.lastDuration;
    m_file.Add(m_index, sample, buffer.bytes);
}

}   // namespace QZ::Platform::Movie
