// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/VideoEncoder.h"

#include <algorithm>
#include <thread>

#include "QZ/Platform/MovieWriter/CodecConfiguration.h"

namespace QZ::Platform::Movie {

namespace {
// Assumed where the settings tell no rate: two seconds at 30 frames a second.
constexpr int kDefaultKeyFrameInterval = 60;
constexpr int kDefaultFrameRate = 30;

// Constant rate factors at which an encoder left to itself is visually lossless for most material.
constexpr const char* kQualityH264 = "18";
constexpr const char* kQualityHEVC = "20";

// Pictures that an encoder may look ahead offline: with its threads, still well under a second of 30 frames.
constexpr const char* kLookahead = "rc-lookahead=12:bframes=2";

// More threads would hold back more pictures, which a dying process loses.
int ThreadCount()
{
    return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 8u));
}

const char* EncoderName(VideoCodec codec)
{
    switch (codec) {
        case VideoCodec::H264:
            return "libx264";
        case VideoCodec::HEVC:
            return "libx265";
        case VideoCodec::ProRes422:
            break;
    }
    return "prores_ks";
}

}   // namespace

AVPixelFormat VideoEncoder::PixelFormat(VideoCodec codec)
{
    return codec == VideoCodec::ProRes422 ? AV_PIX_FMT_YUV422P10LE : AV_PIX_FMT_YUV420P;
}

bool VideoEncoder::Fail(const std::string& what)
{
    m_reason = std::string(EncoderName(m_codec)) + " " + what;
    return false;
}

void VideoEncoder::ConfigureRate(const VideoEncoding& encoding)
{
    const int interval = encoding.keyFrameInterval.value_or(0);
    m_context->gop_size = interval > 0 ? interval : kDefaultKeyFrameInterval;
    // Recorders ask for a key frame a second. Where times vary, libx264 goes by them; libx265 only by this
    // rate.
    m_context->framerate = {interval > 0 ? interval : kDefaultFrameRate, 1};
    const std::int64_t bitRate = encoding.averageBitRate.value_or(0);
    if (bitRate > 0) {
        m_context->bit_rate = std::max<std::int64_t>(bitRate, 1000);   // encoders count in kbit/s
    } else {
        av_opt_set(m_context->priv_data, "crf", m_codec == VideoCodec::H264 ? kQualityH264 : kQualityHEVC, 0);
    }
}

void VideoEncoder::ConfigureX264(const VideoEncoding& encoding)
{
    ConfigureRate(encoding);
    av_opt_set(m_context->priv_data, "preset", encoding.realTime ? "superfast" : "fast", 0);
    // In real time each picture is split among the threads instead of several being under way.
    av_opt_set(m_context->priv_data, "x264-params",
               encoding.realTime ? "rc-lookahead=0:sync-lookahead=0:mbtree=0:bframes=0:sliced-threads=1"
                                 : kLookahead,
               0);
}

void VideoEncoder::ConfigureX265(const VideoEncoding& encoding)
{
    ConfigureRate(encoding);
    av_opt_set(m_context->priv_data, "preset", encoding.realTime ? "ultrafast" : "fast", 0);
    if (encoding.realTime)
        av_opt_set(m_context->priv_data, "tune", "zerolatency", 0);
    const std::string common = "log-level=none:open-gop=0:info=0:";
    av_opt_set(
        m_context->priv_data, "x265-params",
        (common + (encoding.realTime ? "frame-threads=1:rc-lookahead=0:bframes=0" : kLookahead)).c_str(), 0);
}

bool VideoEncoder::Open(const VideoEncoding& encoding)
{
    m_codec = encoding.codec;
    m_context = NewEncoder(EncoderName(m_codec));
    m_packet.reset(av_packet_alloc());
    if (!m_context || !m_packet)
        return Fail("is missing from the codec library");
    m_context->width = encoding.width;
    m_context->height = encoding.height;
    m_context->pix_fmt = PixelFormat(m_codec);
    m_context->time_base = {1, encoding.timescale};
    m_context->color_primaries = AVCOL_PRI_BT709;
    m_context->colorspace = AVCOL_SPC_BT709;
    m_context->color_trc = AVCOL_TRC_IEC61966_2_1;
    m_context->color_range = AVCOL_RANGE_MPEG;
    m_context->chroma_sample_location = AVCHROMA_LOC_LEFT;
    m_context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    m_context->thread_count = ThreadCount();
    switch (m_codec) {
        case VideoCodec::H264:
            ConfigureX264(encoding);
            break;
        case VideoCodec::HEVC:
            ConfigureX265(encoding);
            break;
        case VideoCodec::ProRes422:
            av_opt_set(m_context->priv_data, "profile", "standard", 0);
            // In real time each picture is split among the threads instead of several being under way.
            if (encoding.realTime)
                m_context->thread_type = FF_THREAD_SLICE;
            av_opt_set(m_context->priv_data, "vendor", "qz  ", 0);
            // Its frame header has no code for the sRGB transfer; the file's colour parameters have.
            m_context->color_trc = AVCOL_TRC_UNSPECIFIED;
            break;
    }
    const int opened = avcodec_open2(m_context.get(), nullptr, nullptr);
    if (opened < 0)
        return Fail("refuses " + std::to_string(encoding.width) + " x " + std::to_string(encoding.height) +
                    " pixels: " + CodecError(opened));
    if (m_codec != VideoCodec::ProRes422 && Configuration().empty())
        return Fail("gave no parameter sets");
    return true;
}

bool VideoEncoder::Encode(AVFrame* picture, std::int64_t presentationTime, const SampleSink& sink)
{
    if (picture) {
        picture->pts = presentationTime;
        picture->pict_type = AV_PICTURE_TYPE_NONE;
        // prores_ks takes these from the picture.
        picture->color_primaries = m_context->color_primaries;
        picture->color_trc = m_context->color_trc;
        picture->colorspace = m_context->colorspace;
        picture->color_range = m_context->color_range;
    }
    int result = avcodec_send_frame(m_context.get(), picture);
    if (result < 0)
        return Fail("cannot encode: " + CodecError(result));
    while ((result = avcodec_receive_packet(m_context.get(), m_packet.get())) >= 0) {
        EncodedSample sample;
        sample.presentationTime = m_packet->pts;
        sample.decodeTime = std::min(m_packet->dts, m_packet->pts);
        sample.sync = (m_packet->flags & AV_PKT_FLAG_KEY) != 0;
        const std::span<const unsigned char> data(m_packet->data, static_cast<std::size_t>(m_packet->size));
        sample.bytes =
            m_codec == VideoCodec::ProRes422 ? std::vector(data.begin(), data.end()) : SizedUnits(data);
        av_packet_unref(m_packet.get());
        sink(std::move(sample));
    }
    return result == AVERROR(EAGAIN) || result == AVERROR_EOF || Fail("cannot encode: " + CodecError(result));
}

const char* VideoEncoder::SampleEntryType() const
{
    switch (m_codec) {
        case VideoCodec::H264:
            return "avc1";
        case VideoCodec::HEVC:
            return "hvc1";
        case VideoCodec::ProRes422:
            break;
    }
    return "apcn";
}

const char* VideoEncoder::ConfigurationType() const
{
    switch (m_codec) {
        case VideoCodec::H264:
            return "avcC";
        case VideoCodec::HEVC:
            return "hvcC";
        case VideoCodec::ProRes422:
            break;
    }
    return "";
}

std::vector<unsigned char> VideoEncoder::Configuration() const
{
    const std::span<const unsigned char> sets(m_context->extradata,
                                              static_cast<std::size_t>(m_context->extradata_size));
    switch (m_codec) {
        case VideoCodec::H264:
            return AVCConfiguration(sets);
        case VideoCodec::HEVC:
            return HEVCConfiguration(sets);
        case VideoCodec::ProRes422:
            break;
    }
    return {};
}

}   // namespace QZ::Platform::Movie
