// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/Demuxer.h"

#include <cstdio>
#include <string_view>
#include <vector>

namespace QZ::Platform::Movie {

namespace {

/// No file that a movie names is opened: a playlist or a reference would read whatever its author likes.
int RefuseToOpen(AVFormatContext*, AVIOContext** context, const char*, int, AVDictionary**)
{
    *context = nullptr;
    return AVERROR(EACCES);
}

/// Demuxers of single pictures, and the one that takes any text for a picture.
bool IsNoMovie(std::string_view name)
{
    return name.ends_with("_pipe") || name.starts_with("image2") || name == "tty";
}

/// Whether the samples lie in movie fragments (ISO/IEC 14496-12, 8.8), as in a recording that nobody
/// finished: whatever of it is there is a movie. An ordinary file has a "mdat" box before any "moof".
bool IsFragmented(AVIOContext& file)
{
    constexpr int kMostBoxes = 32;
    bool isFragmented = false;
    for (int i = 0; i < kMostBoxes; ++i) {
        std::int64_t size = avio_rb32(&file);
        const std::uint32_t type = avio_rb32(&file);
        isFragmented = type == FourCharacterCode("moof");
        std::int64_t header = 8;
        if (size == 1) {
            size = static_cast<std::int64_t>(avio_rb64(&file));
            header = 16;
        }
        if (isFragmented || type == FourCharacterCode("mdat") || size < header || avio_feof(&file) != 0)
            break;
        avio_skip(&file, size - header);
    }
    avio_seek(&file, 0, SEEK_SET);
    return isFragmented;
}

std::string Seconds(double seconds)
{
    char text[48];
    std::snprintf(text, sizeof text, "%.2f s", seconds);
    return text;
}

}   // namespace

bool Demuxer::Open(const std::string& path, AVMediaType type, std::int64_t mostPixels, MovieReadError& error)
{
    if (!m_source.Open(path, error))
        return false;
    const bool isFragmented = IsFragmented(*m_source.Context());
    if (!OpenContainer(error))
        return false;
    std::vector<std::int64_t> promised;
    for (unsigned i = 0; i < m_container->nb_streams; ++i)
        promised.push_back(avformat_index_get_entries_count(m_container->streams[i]));
    if (!FindTracks(mostPixels)) {
        error = {MovieReadError::Kind::NotAMovie, "not a movie, or one that is damaged at its beginning"};
        return false;
    }
    m_track = Best(type);
    for (unsigned i = 0; i < m_container->nb_streams; ++i)
        if (m_container->streams[i] != m_track)
            m_container->streams[i]->discard = AVDISCARD_ALL;
    // Other containers' indexes are hints for seeking.
    m_isQuickTime = std::string_view(m_container->iformat->name).starts_with("mov");
    if (m_track && m_isQuickTime && !isFragmented &&
        static_cast<std::size_t>(m_track->index) < promised.size())
        m_promised = promised[static_cast<std::size_t>(m_track->index)];
    FindOrigin();
    return true;
}

bool Demuxer::OpenContainer(MovieReadError& error)
{
    AVFormatContext* container = avformat_alloc_context();
    if (!container) {
        error = {MovieReadError::Kind::Unsupported, "not enough memory"};
        return false;
    }
    container->pb = m_source.Context();
    container->io_open = RefuseToOpen;
    container->flags |= AVFMT_FLAG_CUSTOM_IO;
    container->protocol_whitelist = av_strdup("none");
    if (avformat_open_input(&container, nullptr, nullptr, nullptr) < 0) {   // which has freed it
        error = {MovieReadError::Kind::NotAMovie, "not a movie, or one that is damaged at its beginning"};
        return false;
    }
    m_container.reset(container);
    if (IsNoMovie(container->iformat->name)) {
        error = {MovieReadError::Kind::NotAMovie, "not a movie"};
        return false;
    }
    return true;
}

bool Demuxer::FindTracks(std::int64_t mostPixels)
{
    // The library decodes some pictures to learn of them: it must not decode what is refused afterwards.
    const unsigned count = m_container->nb_streams;
    std::vector<AVDictionary*> options(count, nullptr);
    for (AVDictionary*& option : options)
        av_dict_set_int(&option, "max_pixels", mostPixels, 0);
    const int result = avformat_find_stream_info(m_container.get(), count > 0 ? options.data() : nullptr);
    for (AVDictionary*& option : options)
        av_dict_free(&option);
    return result >= 0;
}

AVStream* Demuxer::Best(AVMediaType type) const
{
    const int index = av_find_best_stream(m_container.get(), type, -1, -1, nullptr, 0);
    if (index < 0)
        return nullptr;
    AVStream* track = m_container->streams[index];
    return (track->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 ? nullptr : track;
}

void Demuxer::FindOrigin()
{
    if (!m_track || (m_container->iformat->flags & AVFMT_TS_DISCONT) == 0)
        return;
    const AVStream* earliest = nullptr;
    for (unsigned i = 0; i < m_container->nb_streams; ++i) {
        const AVStream* stream = m_container->streams[i];
        if (stream->start_time == AV_NOPTS_VALUE)
            continue;
        if (!earliest || av_compare_ts(stream->start_time, stream->time_base, earliest->start_time,
                                       earliest->time_base) < 0)
            earliest = stream;
    }
    if (earliest)
        m_origin = av_rescale_q(earliest->start_time, earliest->time_base, m_track->time_base);
}

Demuxer::Step Demuxer::FailAsCutShort(MovieReadError& error) const
{
    error = {MovieReadError::Kind::Damaged,
             "the movie breaks off after " +
                 Seconds(static_cast<double>(m_lastTime) * av_q2d(m_track->time_base)) +
                 ": the file is cut short or damaged"};
    return Step::Failed;
}

Demuxer::Step Demuxer::Next(AVPacket& packet, MovieReadError& error)
{
    for (;;) {
        av_packet_unref(&packet);
        const int result = av_read_frame(m_container.get(), &packet);
        // Broadcasts mark packets that a decoder can often use.
        const bool isCut = result >= 0 && m_isQuickTime && (packet.flags & AV_PKT_FLAG_CORRUPT) != 0;
        if (result < 0 || isCut) {
            // Where nothing was promised it is the last fragment that is cut.
            const bool isEnd = m_read >= m_promised && (result == AVERROR_EOF || m_isQuickTime);
            return isEnd ? Step::End : FailAsCutShort(error);
        }
        if (packet.stream_index != m_track->index)
            continue;
        ++m_read;
        if (packet.pts != AV_NOPTS_VALUE)
            m_lastTime = FromStart(packet.pts);
        return Step::Packet;
    }
}

}   // namespace QZ::Platform::Movie
