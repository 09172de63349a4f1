// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/VideoEncoder.h"

#include <algorithm>
#include <iterator>
#include <thread>

#include "QZ/Platform/MovieWriter/CodecConfiguration.h"
#include "QZ/Platform/MovieWriter/ProResRate.h"

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

constexpr int kMostPictureThreads = 4;

// More threads would hold back more pictures, which a dying process loses.
int ThreadCount()
{
    return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, 8u));
}

/// libx265 gives the threads among which it splits pictures a low priority (nice 10), so that they starve on
/// a small machine that has other work, showing what is recorded, say. There each picture has a thread of its
/// own.
std::string ThreadsOfX265(bool realTime)
{
    const int threads = ThreadCount();
    const bool small = threads <= kMostPictureThreads;
    const std::string pictures = small ? "pools=none:wpp=0:" : "";
    return realTime ? pictures + "frame-threads=" + std::to_string(small ? threads : 2) + ":" : pictures;
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
    m_reason = std::string(EncoderName(m_encoding.codec)) + " " + what;
    return false;
}

void VideoEncoder::ConfigureRate(AVCodecContext& context) const
{
    const int interval = m_encoding.keyFrameInterval.value_or(0);
    context.gop_size = interval > 0 ? interval : kDefaultKeyFrameInterval;
    // Recorders ask for a key frame a second. Where times vary, libx264 goes by them; libx265 only by this
    // rate.
    context.framerate = {interval > 0 ? interval : kDefaultFrameRate, 1};
    const std::int64_t bitRate = m_encoding.averageBitRate.value_or(0);
    if (bitRate > 0) {
        context.bit_rate = std::max<std::int64_t>(bitRate, 1000);   // encoders count in kbit/s
    } else {
        const bool isH264 = m_encoding.codec == VideoCodec::H264;
        av_opt_set(context.priv_data, "crf", isH264 ? kQualityH264 : kQualityHEVC, 0);
    }
}

void VideoEncoder::ConfigureX264(AVCodecContext& context) const
{
    ConfigureRate(context);
    av_opt_set(context.priv_data, "preset", m_encoding.realTime ? "superfast" : "fast", 0);
    // In real time each picture is split among the threads instead of several being under way.
    av_opt_set(context.priv_data, "x264-params",
               m_encoding.realTime ? "rc-lookahead=0:sync-lookahead=0:mbtree=0:bframes=0:sliced-threads=1"
                                   : kLookahead,
               0);
}

void VideoEncoder::ConfigureX265(AVCodecContext& context) const
{
    ConfigureRate(context);
    av_opt_set(context.priv_data, "preset", m_encoding.realTime ? "ultrafast" : "fast", 0);
    if (m_encoding.realTime)
        av_opt_set(context.priv_data, "tune", "zerolatency", 0);
    const std::string common = "log-level=none:open-gop=0:info=0:" + ThreadsOfX265(m_encoding.realTime);
    const std::string mode = m_encoding.realTime ? "rc-lookahead=0:bframes=0" : kLookahead;
    av_opt_set(context.priv_data, "x265-params", (common + mode).c_str(), 0);
}

void VideoEncoder::ConfigureProRes(AVCodecContext& context, std::size_t quantiser) const
{
    av_opt_set(context.priv_data, "profile", "standard", 0);
    av_opt_set(context.priv_data, "vendor", "qz  ", 0);
    context.flags |= AV_CODEC_FLAG_QSCALE;
    context.global_quality = FF_QP2LAMBDA * kProResQuantisers[quantiser];
    // Each picture is split among the threads, so that it comes out at once.
    context.thread_type = FF_THREAD_SLICE;
    // Its frame header has no code for the sRGB transfer; the file's colour parameters have.
    context.color_trc = AVCOL_TRC_UNSPECIFIED;
}

/// An open encoder, or null with a reason.
Owned<AVCodecContext> VideoEncoder::OpenContext(std::size_t quantiser)
{
    Owned<AVCodecContext> context = NewEncoder(EncoderName(m_encoding.codec));
    if (!context) {
        Fail("is missing from the codec library");
        return nullptr;
    }
    context->width = m_encoding.width;
    context->height = m_encoding.height;
    context->pix_fmt = PixelFormat(m_encoding.codec);
    context->time_base = {1, m_encoding.timescale};
    context->color_primaries = AVCOL_PRI_BT709;
    context->colorspace = AVCOL_SPC_BT709;
    context->color_trc = AVCOL_TRC_IEC61966_2_1;
    context->color_range = AVCOL_RANGE_MPEG;
    context->chroma_sample_location = AVCHROMA_LOC_LEFT;
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    context->thread_count = ThreadCount();
    switch (m_encoding.codec) {
        case VideoCodec::H264:
            ConfigureX264(*context);
            break;
        case VideoCodec::HEVC:
            ConfigureX265(*context);
            break;
        case VideoCodec::ProRes422:
            ConfigureProRes(*context, quantiser);
            break;
    }
    const int opened = avcodec_open2(context.get(), nullptr, nullptr);
    if (opened >= 0)
        return context;
    Fail("refuses " + std::to_string(m_encoding.width) + " x " + std::to_string(m_encoding.height) +
         " pixels: " + CodecError(opened));
    return nullptr;
}

bool VideoEncoder::Use(std::size_t quantiser)
{
    if (!m_contexts[quantiser])
        m_contexts[quantiser] = OpenContext(quantiser);
    if (!m_contexts[quantiser])
        return false;
    m_quantiser = quantiser;
    return true;
}

bool VideoEncoder::Open(const VideoEncoding& encoding)
{
    m_encoding = encoding;
    m_contexts.resize(IsProRes() ? std::size(kProResQuantisers) : 1);
    m_packet.reset(av_packet_alloc());
    if (!m_packet)
        return Fail("is out of memory");
    if (!Use(0))
        return false;
    return IsProRes() || !Configuration().empty() || Fail("gave no parameter sets");
}

/// Where the next quantiser's encoder cannot be had, pictures go on with this one.
void VideoEncoder::AdaptQuantiser(std::size_t pictureSize)
{
    const std::size_t target = ProResTargetSize(m_encoding.width, m_encoding.height);
    if (!Use(NextProResQuantiser(m_quantiser, pictureSize, target)))
        m_reason.clear();
}

bool VideoEncoder::Encode(AVFrame* picture, std::int64_t presentationTime, const SampleSink& sink)
{
    AVCodecContext* const context = m_contexts[m_quantiser].get();
    if (picture) {
        picture->pts = presentationTime;
        picture->pict_type = AV_PICTURE_TYPE_NONE;
        // prores_ks takes these from the picture.
        picture->color_primaries = context->color_primaries;
        picture->color_trc = context->color_trc;
        picture->colorspace = context->colorspace;
        picture->color_range = context->color_range;
    }
    int result = avcodec_send_frame(context, picture);
    if (result < 0)
        return Fail("cannot encode: " + CodecError(result));
    while ((result = avcodec_receive_packet(context, m_packet.get())) >= 0) {
        EncodedSample sample;
        sample.presentationTime = m_packet->pts;
        sample.decodeTime = std::min(m_packet->dts, m_packet->pts);
        sample.sync = (m_packet->flags & AV_PKT_FLAG_KEY) != 0;
        const std::span<const unsigned char> data(m_packet->data, static_cast<std::size_t>(m_packet->size));
        sample.bytes = IsProRes() ? std::vector(data.begin(), data.end()) : SizedUnits(data);
        av_packet_unref(m_packet.get());
        if (IsProRes())
            AdaptQuantiser(sample.bytes.size());
        sink(std::move(sample));
    }
    return result == AVERROR(EAGAIN) || result == AVERROR_EOF || Fail("cannot encode: " + CodecError(result));
}

const char* VideoEncoder::SampleEntryType() const
{
    switch (m_encoding.codec) {
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
    switch (m_encoding.codec) {
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
    const AVCodecContext& context = *m_contexts[m_quantiser];
    const std::span<const unsigned char> sets(context.extradata,
                                              static_cast<std::size_t>(context.extradata_size));
    switch (m_encoding.codec) {
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
