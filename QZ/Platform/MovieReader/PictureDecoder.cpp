// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/PictureDecoder.h"

extern "C" {
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <thread>

namespace QZ::Platform::Movie {

namespace {

// More threads would hold more pictures.
constexpr unsigned kMostThreads = 8;

// A stream that was joined in its middle begins with pictures that lack what they refer to.
constexpr int kMostDamagedAtStart = 250;

AffineTransform TransformOf(const AVStream& track)
{
    const auto* matrix = reinterpret_cast<const std::int32_t*>(
        av_stream_get_side_data(&track, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
    if (!matrix)
        return {1, 0, 0, 1, 0, 0};
    const auto fixed = [&](int i) { return matrix[i] / 65536.0; };
    return {fixed(0), fixed(1), fixed(3), fixed(4), fixed(6), fixed(7)};
}

/// Where the chroma samples lie, in 1/256 of a luma sample from the top left one's.
struct ChromaPosition {
    int x, y;
};

ChromaPosition PositionOf(AVChromaLocation location)
{
    switch (location) {
        case AVCHROMA_LOC_CENTER:
            return {128, 128};
        case AVCHROMA_LOC_TOPLEFT:
            return {0, 0};
        case AVCHROMA_LOC_TOP:
            return {128, 0};
        case AVCHROMA_LOC_BOTTOMLEFT:
            return {0, 256};
        case AVCHROMA_LOC_BOTTOM:
            return {128, 256};
        default:   // left, which is also where an untagged H.264 and HEVC has them
            return {0, 128};
    }
}

Owned<SwsContext> NewConverter(const AVFrame& frame, const PictureColours& colours, int width, int height)
{
    Owned<SwsContext> context(sws_alloc_context());
    if (!context)
        return nullptr;
    const auto set = [&](const char* name, std::int64_t value) {
        av_opt_set_int(context.get(), name, value, 0);
    };
    set("srcw", frame.width);
    set("srch", frame.height);
    set("dstw", width);
    set("dsth", height);
    set("src_format", colours.format);
    set("dst_format", AV_PIX_FMT_BGRA);
    set("sws_flags", SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_BITEXACT);
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(colours.format);
    const ChromaPosition chroma = PositionOf(frame.chroma_location);
    if (format && format->log2_chroma_w > 0)
        set("src_h_chr_pos", chroma.x);
    if (format && format->log2_chroma_h > 0)
        set("src_v_chr_pos", chroma.y);
    const int* matrix = sws_getCoefficients(colours.matrix);
    sws_setColorspaceDetails(context.get(), matrix, colours.isFullRange ? 1 : 0, matrix, 1, 0, 1 << 16,
                             1 << 16);
    return sws_init_context(context.get(), nullptr, nullptr) < 0 ? nullptr : std::move(context);
}

Owned<AVFrame> NewBGRA(int width, int height)
{
    Owned<AVFrame> frame(av_frame_alloc());
    if (!frame)
        return nullptr;
    frame->format = AV_PIX_FMT_BGRA;
    frame->width = width;
    frame->height = height;
    return av_frame_get_buffer(frame.get(), 0) < 0 ? nullptr : std::move(frame);
}

}   // namespace

bool PictureDecoder::Open(const std::string& path, std::int64_t mostPixels, MovieReadError& error)
{
    if (!m_demuxer.Open(path, AVMEDIA_TYPE_VIDEO, mostPixels, error))
        return false;
    if (!m_demuxer.Track()) {
        error = {MovieReadError::Kind::NotAMovie, "there is no track of pictures in it"};
        return false;
    }
    const AVCodecParameters& track = *m_demuxer.Track()->codecpar;
    std::string reason;
    const std::optional<PictureColours> colours = ColoursOf(ColourTags(track), reason);
    if (!colours) {
        error = {MovieReadError::Kind::Unsupported, reason};
        return false;
    }
    m_description.colours = colours->description;
    return OpenDecoder(mostPixels, error);
}

bool PictureDecoder::OpenDecoder(std::int64_t mostPixels, MovieReadError& error)
{
    const auto fail = [&](const std::string& reason) {
        error = {MovieReadError::Kind::Unsupported, reason};
        return false;
    };
    const AVStream& track = *m_demuxer.Track();
    const std::int64_t pixels = std::int64_t{track.codecpar->width} * track.codecpar->height;
    if (pixels > mostPixels)
        return fail("pictures of " + std::to_string(track.codecpar->width) + " x " +
                    std::to_string(track.codecpar->height) + " pixels are over the limit of " +
                    std::to_string(mostPixels));
    const AVCodec* codec = avcodec_find_decoder(track.codecpar->codec_id);
    if (!codec)
        return fail(std::string("there is no decoder for ") + avcodec_get_name(track.codecpar->codec_id));
    m_decoder.reset(avcodec_alloc_context3(codec));
    m_packet.reset(av_packet_alloc());
    m_frame.reset(av_frame_alloc());
    if (!m_decoder || !m_packet || !m_frame ||
        avcodec_parameters_to_context(m_decoder.get(), track.codecpar) < 0)
        return fail("not enough memory");
    m_decoder->log_level_offset = AV_LOG_TRACE;   // its threads are not this one
    m_decoder->max_pixels = mostPixels;
    m_decoder->pkt_timebase = track.time_base;
    m_decoder->thread_count =
        static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads));
    if (avcodec_open2(m_decoder.get(), codec, nullptr) < 0 || track.codecpar->width < 1 ||
        track.codecpar->height < 1) {
        error = {MovieReadError::Kind::Damaged, "its pictures cannot be decoded: damaged at its beginning"};
        return false;
    }
    Describe();
    m_bgra = NewBGRA(m_description.width, m_description.height);
    m_pool = PixelBufferPool::Create({.width = m_description.width, .height = m_description.height});
    return (m_bgra && m_pool) || fail("not enough memory");
}

void PictureDecoder::Describe()
{
    const AVStream& track = *m_demuxer.Track();
    m_description.codec = avcodec_get_name(track.codecpar->codec_id);
    m_description.width = track.codecpar->width;
    m_description.height = track.codecpar->height;
    m_description.transform = TransformOf(track);
    const AVRational aspect =
        av_guess_sample_aspect_ratio(&m_demuxer.Container(), m_demuxer.Track(), nullptr);
    if (aspect.num > 0 && aspect.den > 0)
        m_description.pixelAspectRatio = av_q2d(aspect);
    AVRational rate = track.avg_frame_rate;
    if (rate.num <= 0 || rate.den <= 0)
        rate = track.r_frame_rate;
    if (rate.num > 0 && rate.den > 0)
        m_description.frameRate = av_q2d(rate);
    const AVRational unit = track.time_base;
    if (track.duration > 0 && track.duration < INT64_MAX / std::max(unit.num, 1))
        m_description.duration = MakeTime(track.duration * unit.num, unit.den);
    else if (m_demuxer.Container().duration > 0)
        m_description.duration = MakeTime(m_demuxer.Container().duration, AV_TIME_BASE);
}

bool PictureDecoder::FailAsDamaged(MovieReadError& error) const
{
    char text[80];
    std::snprintf(text, sizeof text, "the picture after %.2f s cannot be decoded: the movie is damaged",
                  m_hasPicture ? TimeInSeconds(m_lastTime) : 0.0);
    error = {MovieReadError::Kind::Damaged, text};
    return false;
}

bool PictureDecoder::IsPassedOver(int result)
{
    return result != AVERROR(ENOMEM) && !m_hasPicture && ++m_damaged <= kMostDamagedAtStart;
}

/// Gives the decoder one packet, or the end. False with an error.
bool PictureDecoder::Feed(MovieReadError& error)
{
    const Demuxer::Step step = m_demuxer.Next(*m_packet, error);
    if (step == Demuxer::Step::Failed)
        return false;
    m_atEnd = step == Demuxer::Step::End;
    const int result = avcodec_send_packet(m_decoder.get(), m_atEnd ? nullptr : m_packet.get());
    return result >= 0 || IsPassedOver(result) || FailAsDamaged(error);
}

/// The next decoded picture in m_frame. False at the end, or with an error.
bool PictureDecoder::Decode(MovieReadError& error)
{
    for (;;) {
        const int result = avcodec_receive_frame(m_decoder.get(), m_frame.get());
        if (result >= 0)
            return m_frame->decode_error_flags == 0 || FailAsDamaged(error);
        if (result == AVERROR_EOF) {
            if (!m_hasPicture)
                FailAsDamaged(error);
            return false;
        }
        if (result != AVERROR(EAGAIN) && !IsPassedOver(result))
            return FailAsDamaged(error);
        if (!m_atEnd && !Feed(error))
            return false;
    }
}

Time PictureDecoder::TimeOfFrame()
{
    const AVRational unit = m_demuxer.Track()->time_base;
    if (m_frame->best_effort_timestamp != AV_NOPTS_VALUE) {
        m_lastTicks = m_demuxer.FromStart(m_frame->best_effort_timestamp);
    } else if (m_hasPicture) {
        const double rate = m_description.frameRate > 0 ? m_description.frameRate : 25.0;
        m_lastTicks += std::max<std::int64_t>(1, static_cast<std::int64_t>(1 / (rate * av_q2d(unit)) + 0.5));
    }
    // A unit of 1001/30000 s counts in 30000.
    constexpr std::int64_t kLargest = std::int64_t{1} << 40;
    return MakeTime(std::clamp(m_lastTicks, -kLargest, kLargest) * unit.num, unit.den);
}

bool PictureDecoder::Prepare(MovieReadError& error)
{
    const ColourTags tags(*m_frame);
    if (m_converter && m_tags == tags && m_sourceWidth == m_frame->width && m_sourceHeight == m_frame->height)
        return true;
    std::string reason;
    const std::optional<PictureColours> colours = ColoursOf(tags, reason);
    if (colours) {
        m_converter = NewConverter(*m_frame, *colours, m_description.width, m_description.height);
        reason = "pictures of the format " + std::string(av_get_pix_fmt_name(tags.format)) + " are not read";
    }
    if (!colours || !m_converter) {
        error = {MovieReadError::Kind::Unsupported, reason};
        return false;
    }
    m_primaries.reset();
    if (PrimariesConversion::IsNeeded(colours->primaries))
        m_primaries.emplace(colours->primaries);
    m_tags = tags;
    m_sourceWidth = m_frame->width;
    m_sourceHeight = m_frame->height;
    return true;
}

std::shared_ptr<PixelBuffer> PictureDecoder::Convert()
{
    std::shared_ptr<PixelBuffer> buffer = m_pool->MakePixelBuffer();
    if (!buffer || sws_scale(m_converter.get(), m_frame->data, m_frame->linesize, 0, m_frame->height,
                             m_bgra->data, m_bgra->linesize) < 0)
        return nullptr;
    // The library writes rows in steps that may end behind the last pixel: not into a buffer that ends there.
    const std::size_t bytes = static_cast<std::size_t>(m_description.width) * 4;
    for (int y = 0; y < m_description.height; ++y) {
        unsigned char* row = buffer->BaseAddress() + static_cast<std::uint64_t>(y) * buffer->BytesPerRow();
        std::memcpy(row, m_bgra->data[0] + std::ptrdiff_t{y} * m_bgra->linesize[0], bytes);
        if (m_primaries)
            m_primaries->Convert(row, m_description.width);
    }
    return buffer;
}

std::optional<MoviePicture> PictureDecoder::Next(MovieReadError& error)
{
    while (Decode(error)) {
        const Time time = TimeOfFrame();
        if (m_hasPicture && CompareTime(time, m_lastTime) <= 0)
            continue;
        m_hasPicture = true;
        m_lastTime = time;
        if (!Prepare(error))
            return std::nullopt;
        MoviePicture picture = {Convert(), time};
        av_frame_unref(m_frame.get());
        if (picture.pixels)
            return picture;
        error = {MovieReadError::Kind::Unsupported, "not enough memory for its pictures"};
        break;
    }
    return std::nullopt;
}

}   // namespace QZ::Platform::Movie
