// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/AudioEncoder.h"

#include <algorithm>
#include <cstddef>

#include "QZ/Platform/MovieWriter/PCMSamples.h"
#include "QZ/Platform/MovieWriter/Track.h"

namespace QZ::Platform::Movie {

bool AudioEncoder::Fail(const std::string& what)
{
    m_reason = "the AAC encoder " + what;
    return false;
}

bool AudioEncoder::Open(const AudioEncoding& encoding)
{
    m_encoding = encoding;
    m_context = NewEncoder("aac");
    m_packet.reset(av_packet_alloc());
    if (!m_context || !m_packet)
        return Fail("is missing from the codec library");
    m_context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    m_context->sample_rate = encoding.sampleRate;
    m_context->bit_rate = encoding.bitRate;
    m_context->time_base = {1, encoding.sampleRate};
    m_context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    av_channel_layout_default(&m_context->ch_layout, encoding.channels);
    const int opened = avcodec_open2(m_context.get(), nullptr, nullptr);
    if (opened < 0)
        return Fail("refuses " + std::to_string(encoding.sampleRate) + " Hz, " +
                    std::to_string(encoding.channels) + " channels: " + CodecError(opened));
    m_waiting.resize(static_cast<std::size_t>(encoding.channels));
    return true;
}

Bytes AudioEncoder::SampleEntry() const
{
    return WriteAACEntry(m_encoding.sampleRate, m_encoding.channels,
                         {m_context->extradata, static_cast<std::size_t>(m_context->extradata_size)},
                         static_cast<int>(m_encoding.bitRate));
}

std::int64_t AudioEncoder::Position() const
{
    return m_sourceRate > 0 ? m_base + Scale(m_sourceFrames, m_encoding.sampleRate, m_sourceRate) : m_base;
}

bool AudioEncoder::PrepareResampler(const PCMEntry& format)
{
    const int rate = static_cast<int>(format.sampleRate);
    if (m_resampler && rate == m_sourceRate && format.channels == m_sourceChannels)
        return true;
    if (!DrainResampler())
        return false;
    m_base = Position();
    m_sourceFrames = 0;
    m_sourceRate = rate;
    m_sourceChannels = format.channels;
    AVChannelLayout source;
    av_channel_layout_default(&source, format.channels);
    SwrContext* context = nullptr;
    const int made = swr_alloc_set_opts2(&context, &m_context->ch_layout, AV_SAMPLE_FMT_FLTP,
                                         m_encoding.sampleRate, &source, AV_SAMPLE_FMT_FLT, rate, 0, nullptr);
    m_resampler.reset(context);
    // Channels that are mixed into one must not get louder than full scale.
    if (made >= 0)
        av_opt_set_double(m_resampler.get(), "rematrix_maxval", 1.0, 0);
    return (made >= 0 && swr_init(m_resampler.get()) >= 0) || Fail("cannot convert this sound");
}

/// Converts `count` frames, or with none gives out what the resampler holds.
bool AudioEncoder::Resample(const float* frames, int count)
{
    const int room = swr_get_out_samples(m_resampler.get(), count);
    if (room <= 0)
        return room == 0 || Fail("cannot convert this sound");
    const std::size_t before = m_waiting[0].size();
    std::vector<unsigned char*> planes;
    for (std::vector<float>& channel : m_waiting) {
        channel.resize(before + static_cast<std::size_t>(room));
        planes.push_back(reinterpret_cast<unsigned char*>(channel.data() + before));
    }
    const unsigned char* source = reinterpret_cast<const unsigned char*>(frames);
    const int made = swr_convert(m_resampler.get(), planes.data(), room, frames ? &source : nullptr, count);
    for (std::vector<float>& channel : m_waiting)
        channel.resize(before + static_cast<std::size_t>(std::max(made, 0)));
    return made >= 0 || Fail("cannot convert this sound: " + CodecError(made));
}

/// Empties the resampler and makes what it gave exactly as long as what was given.
bool AudioEncoder::DrainResampler()
{
    if (!m_resampler)
        return true;
    if (!Resample(nullptr, 0))
        return false;
    const std::int64_t due = std::max<std::int64_t>(0, Position() - m_encoded);
    for (std::vector<float>& channel : m_waiting)
        channel.resize(static_cast<std::size_t>(due));
    return true;
}

bool AudioEncoder::Encode(const PCMEntry& format, std::span<const unsigned char> frames,
                          const SampleSink& sink)
{
    if (!IsReadable(format))
        return Fail("cannot read this sound's format");
    if (!PrepareResampler(format))
        return false;
    const std::vector<float> samples = ReadPCM(format, frames);
    const int count = static_cast<int>(samples.size()) / format.channels;
    m_sourceFrames += count;
    return (count == 0 || Resample(samples.data(), count)) &&
           EncodeWaiting(static_cast<std::size_t>(m_context->frame_size), sink);
}

bool AudioEncoder::EncodeSilence(std::int64_t frames, const SampleSink& sink)
{
    if (!DrainResampler())
        return false;
    m_base = Position() + frames;
    m_sourceFrames = 0;
    m_resampler.reset();
    const std::size_t size = static_cast<std::size_t>(m_context->frame_size);
    while (frames > 0) {
        const std::size_t part =
            static_cast<std::size_t>(std::min<std::int64_t>(frames, m_context->frame_size));
        for (std::vector<float>& channel : m_waiting)
            channel.resize(channel.size() + part);
        frames -= static_cast<std::int64_t>(part);
        if (!EncodeWaiting(size, sink))
            return false;
    }
    return true;
}

/// Encodes packets while at least `least` frames wait; a packet smaller than the others must be the last.
bool AudioEncoder::EncodeWaiting(std::size_t least, const SampleSink& sink)
{
    const std::size_t whole = static_cast<std::size_t>(m_context->frame_size);
    while (!m_waiting[0].empty() && m_waiting[0].size() >= least)
        if (!EncodePacket(std::min(whole, m_waiting[0].size()), sink))
            return false;
    return true;
}

bool AudioEncoder::EncodePacket(std::size_t frames, const SampleSink& sink)
{
    Owned<AVFrame> frame(av_frame_alloc());
    if (!frame)
        return Fail("is out of memory");
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->nb_samples = static_cast<int>(frames);
    frame->sample_rate = m_encoding.sampleRate;
    frame->pts = m_encoded;
    if (av_channel_layout_copy(&frame->ch_layout, &m_context->ch_layout) < 0 ||
        av_frame_get_buffer(frame.get(), 0) < 0)
        return Fail("is out of memory");
    for (std::size_t i = 0; i < m_waiting.size(); ++i) {
        const auto end = m_waiting[i].begin() + static_cast<std::ptrdiff_t>(frames);
        std::copy(m_waiting[i].begin(), end, reinterpret_cast<float*>(frame->extended_data[i]));
        m_waiting[i].erase(m_waiting[i].begin(), end);
    }
    m_encoded += static_cast<std::int64_t>(frames);
    const int sent = avcodec_send_frame(m_context.get(), frame.get());
    return sent >= 0 ? Receive(sink) : Fail("cannot encode: " + CodecError(sent));
}

bool AudioEncoder::Receive(const SampleSink& sink)
{
    int result = 0;
    while ((result = avcodec_receive_packet(m_context.get(), m_packet.get())) >= 0) {
        EncodedSample sample;
        sample.presentationTime = sample.decodeTime = m_packet->pts;
        sample.bytes.assign(m_packet->data, m_packet->data + m_packet->size);
        av_packet_unref(m_packet.get());
        sink(std::move(sample));
    }
    return result == AVERROR(EAGAIN) || result == AVERROR_EOF || Fail("cannot encode: " + CodecError(result));
}

bool AudioEncoder::Flush(const SampleSink& sink)
{
    if (!DrainResampler() || !EncodeWaiting(1, sink))
        return false;
    const int sent = avcodec_send_frame(m_context.get(), nullptr);
    return (sent >= 0 || sent == AVERROR_EOF) ? Receive(sink) : Fail("cannot encode: " + CodecError(sent));
}

}   // namespace QZ::Platform::Movie
