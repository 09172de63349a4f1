// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "QZ/Platform/MovieReader/FileSource.h"
#include "QZ/Platform/MovieWriter/Codec.h"

namespace QZ::Platform::Movie {

/// The packets of one track of a file. Every track that is read has a demuxer of its own, so that tracks are
/// read independently and no packet waits in memory.
class Demuxer {
public:
    enum class Step { Packet, End, Failed };

    /// Opens the file and chooses the best track of a kind.
    /// \return false with an error when it is no movie; a movie without such a track has a null Track().
    bool Open(const std::string& path, AVMediaType type, std::int64_t mostPixels, MovieReadError& error);

    [[nodiscard]] AVStream* Track() const { return m_track; }
    [[nodiscard]] AVFormatContext& Container() const { return *m_container; }
    /// The best track of another kind; null for none.
    [[nodiscard]] AVStream* Best(AVMediaType type) const;

    /// The next packet of the track. Fails with an error for one that the file ends in, and when the file
    /// ends before what its index promised.
    Step Next(AVPacket& packet, MovieReadError& error);

    /// A time of the track without the offset that broadcasts begin with.
    [[nodiscard]] std::int64_t FromStart(std::int64_t ticks) const { return ticks - m_origin; }

private:
    struct Close {
        void operator()(AVFormatContext* container) const { avformat_close_input(&container); }
    };
    bool OpenContainer(MovieReadError& error);
    bool FindTracks(std::int64_t mostPixels);
    void FindOrigin();
    Step FailAsCutShort(MovieReadError& error) const;

    FileSource m_source;
    std::unique_ptr<AVFormatContext, Close> m_container;
    AVStream* m_track = nullptr;
    bool m_isQuickTime = false;   ///< or one of its descendants, MP4 and others
    std::int64_t m_origin = 0;
    std::int64_t m_promised = 0;   ///< packets that the index at the file's beginning lists
    std::int64_t m_read = 0;
    std::int64_t m_lastTime = 0;
};

}   // namespace QZ::Platform::Movie
