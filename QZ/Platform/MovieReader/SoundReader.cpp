// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/SoundReader.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace QZ::Platform::Movie {

namespace {

struct PCMLayout {
    AVCodecID codec;
    int bits;
    bool isFloat, isBigEndian, isSigned;
};

constexpr PCMLayout kPCM[] = {
    {AV_CODEC_ID_PCM_U8, 8, false, false, false},    {AV_CODEC_ID_PCM_S8, 8, false, false, true},
    {AV_CODEC_ID_PCM_S16LE, 16, false, false, true}, {AV_CODEC_ID_PCM_S16BE, 16, false, true, true},
    {AV_CODEC_ID_PCM_S24LE, 24, false, false, true}, {AV_CODEC_ID_PCM_S24BE, 24, false, true, true},
    {AV_CODEC_ID_PCM_S32LE, 32, false, false, true}, {AV_CODEC_ID_PCM_S32BE, 32, false, true, true},
    {AV_CODEC_ID_PCM_F32LE, 32, true, false, true},  {AV_CODEC_ID_PCM_F32BE, 32, true, true, true},
    {AV_CODEC_ID_PCM_F64LE, 64, true, false, true},  {AV_CODEC_ID_PCM_F64BE, 64, true, true, true},
};

const PCMLayout* LayoutOf(AVCodecID codec)
{
    const auto* found = std::find_if(std::begin(kPCM), std::end(kPCM),
                                     [&](const PCMLayout& layout) { return layout.codec == codec; });
    return found == std::end(kPCM) ? nullptr : found;
}

// What a movie can hold and a hostile one would exceed.
constexpr int kMostChannels = 64;
constexpr int kHighestRate = 768000;

}   // namespace

bool PassesThrough(const AVCodecParameters& track)
{
    if (track.sample_rate < 1 || track.sample_rate > kHighestRate || track.ch_layout.nb_channels < 1 ||
        track.ch_layout.nb_channels > kMostChannels)
        return false;
    return LayoutOf(track.codec_id) || (track.codec_id == AV_CODEC_ID_AAC && track.extradata_size > 0);
}

bool SoundReader::Open(const std::string& path, std::int64_t mostPixels, MovieReadError& error)
{
    if (!m_demuxer.Open(path, AVMEDIA_TYPE_AUDIO, mostPixels, error))
        return false;
    m_packet.reset(av_packet_alloc());
    if (!m_packet || !m_demuxer.Track() || !PassesThrough(*m_demuxer.Track()->codecpar)) {
        error = {MovieReadError::Kind::Unsupported, "its sound cannot be read"};
        return false;
    }
    m_rate = m_demuxer.Track()->codecpar->sample_rate;
    return true;
}

/// Makes sure that there is a packet. False at the end, or with an error.
bool SoundReader::ReadPacket(MovieReadError& error)
{
    const auto isHidden = [&] { return !m_isFirst && (m_packet->flags & AV_PKT_FLAG_DISCARD) != 0; };
    while (!m_hasPacket) {
        if (m_demuxer.Next(*m_packet, error) != Demuxer::Step::Packet)
            return false;
        m_hasPacket = m_packet->size > 0 && !isHidden();
    }
    return true;
}

void SoundReader::Describe()
{
    const AVCodecParameters& track = *m_demuxer.Track()->codecpar;
    m_format = std::make_shared<FormatDescription>();
    m_format->sampleRate = static_cast<double>(m_rate);
    m_format->channels = track.ch_layout.nb_channels;
    if (const PCMLayout* layout = LayoutOf(track.codec_id)) {
        m_format->subType = FourCharacterCode("lpcm");
        m_format->bitsPerChannel = layout->bits;
        m_format->isFloat = layout->isFloat;
        m_format->isBigEndian = layout->isBigEndian;
        m_format->isSigned = layout->isSigned;
        return;
    }
    constexpr std::int64_t kFramesOfAAC = 1024;   // 2048 with spectral band replication
    m_format->subType = FourCharacterCode("aac ");
    const std::int64_t frames =
        av_rescale_q(m_packet->duration, m_demuxer.Track()->time_base, {1, static_cast<int>(m_rate)});
    m_format->framesPerPacket = static_cast<int>(frames == 2 * kFramesOfAAC ? frames : kFramesOfAAC);
    m_format->configuration.assign(track.extradata, track.extradata + track.extradata_size);
}

std::int64_t SoundReader::FramesOfPacket() const
{
    const std::size_t bytes = m_format->BytesPerFrame();
    return bytes > 0 ? m_packet->size / static_cast<std::int64_t>(bytes) : m_format->framesPerPacket;
}

/// Whether the packet follows the one before without a gap, as far as its timescale tells.
bool SoundReader::Continues() const
{
    if (m_packet->pts == AV_NOPTS_VALUE)
        return true;
    const AVRational unit = m_demuxer.Track()->time_base;
    const AVRational frame = {1, static_cast<int>(m_rate)};
    const std::int64_t time = av_rescale_q(m_demuxer.FromStart(m_packet->pts), unit, frame);
    return std::abs(time - m_next) <= av_rescale_q_rnd(1, unit, frame, AV_ROUND_UP);
}

void SoundReader::Append(SampleBuffer& buffer, std::int64_t& heard)
{
    const std::int64_t frames = FramesOfPacket();
    const std::size_t frameBytes = m_format->BytesPerFrame();
    const std::size_t size = frameBytes > 0 ? static_cast<std::size_t>(frames) * frameBytes
                                            : static_cast<std::size_t>(m_packet->size);
    buffer.bytes.insert(buffer.bytes.end(), m_packet->data, m_packet->data + size);
    if (frameBytes == 0)
        buffer.sampleSizes.push_back(static_cast<std::uint32_t>(size));
    heard += frames;
    m_next += frames;
    m_hasPacket = false;
}

std::shared_ptr<SampleBuffer> SoundReader::Next(MovieReadError& error)
{
    if (!ReadPacket(error))
        return nullptr;
    if (!m_format)
        Describe();
    auto buffer = std::make_shared<SampleBuffer>();
    buffer->format = m_format;
    const AVRational frame = {1, static_cast<int>(m_rate)};
    if (!Continues())
        m_next = av_rescale_q(m_demuxer.FromStart(m_packet->pts), m_demuxer.Track()->time_base, frame);
    // What lies before the movie's zero is the priming of the decoder: it goes with the first sound that is
    // heard.
    if (m_isFirst && m_format->framesPerPacket > 1)
        buffer->leadingFrames = std::max<std::int64_t>(0, -m_next);
    buffer->presentationTime = MakeTime(m_next + buffer->leadingFrames, static_cast<std::int32_t>(m_rate));
    std::int64_t heard = -buffer->leadingFrames;
    do {
        Append(*buffer, heard);
    } while ((heard <= 0 || heard < m_rate / 4) && ReadPacket(error) && Continues());
    m_isFirst = false;
    buffer->duration = MakeTime(heard, static_cast<std::int32_t>(m_rate));
    return buffer;
}

}   // namespace QZ::Platform::Movie
