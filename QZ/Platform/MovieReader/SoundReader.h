// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "QZ/Platform/MovieReader/Demuxer.h"

namespace QZ::Platform::Movie {

/// Whether sound of that kind passes through: AAC with its configuration, and uncompressed sound.
[[nodiscard]] bool PassesThrough(const AVCodecParameters& track);

/// The sound of a movie, packet by packet as it is stored.
class SoundReader {
public:
    /// For a movie whose sound passes through.
    bool Open(const std::string& path, std::int64_t mostPixels, MovieReadError& error);
    /// The next buffer; null at the end, or with an error.
    [[nodiscard]] std::shared_ptr<SampleBuffer> Next(MovieReadError& error);

private:
    bool ReadPacket(MovieReadError& error);
    void Describe();
    void Append(SampleBuffer& buffer, std::int64_t& heard);
    [[nodiscard]] std::int64_t FramesOfPacket() const;
    [[nodiscard]] bool Continues() const;

    Demuxer m_demuxer;
    Owned<AVPacket> m_packet;   ///< the next one, where m_hasPacket says so
    bool m_hasPacket = false;
    std::shared_ptr<FormatDescription> m_format;
    std::int64_t m_rate = 0;
    std::int64_t m_next = 0;   ///< time behind the last packet, in frames
    bool m_isFirst = true;
};

}   // namespace QZ::Platform::Movie
