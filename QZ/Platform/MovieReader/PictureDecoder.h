// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "QZ/Platform/MovieReader/Demuxer.h"
#include "QZ/Platform/MovieReader/PictureColours.h"
#include "QZ/Platform/MovieReader/PrimariesConversion.h"

namespace QZ::Platform::Movie {

/// The pictures of a movie, decoded one by one into BGRA.
class PictureDecoder {
public:
    bool Open(const std::string& path, std::int64_t mostPixels, MovieReadError& error);
    [[nodiscard]] const Demuxer& Source() const { return m_demuxer; }
    [[nodiscard]] const MovieDescription& Description() const { return m_description; }
    [[nodiscard]] std::optional<MoviePicture> Next(MovieReadError& error);

private:
    bool OpenDecoder(std::int64_t mostPixels, MovieReadError& error);
    void Describe();
    bool Decode(MovieReadError& error);
    bool Feed(MovieReadError& error);
    bool IsPassedOver(int result);
    bool FailAsDamaged(MovieReadError& error) const;
    [[nodiscard]] Time TimeOfFrame();
    bool Prepare(MovieReadError& error);
    [[nodiscard]] std::shared_ptr<PixelBuffer> Convert();

    Demuxer m_demuxer;
    MovieDescription m_description;
    Owned<AVCodecContext> m_decoder;
    Owned<AVPacket> m_packet;
    Owned<AVFrame> m_frame;
    bool m_atEnd = false;
    int m_damaged = 0;   ///< packets that could not be decoded before the first picture
    bool m_hasPicture = false;
    Time m_lastTime = {};
    std::int64_t m_lastTicks = 0;

    std::optional<ColourTags> m_tags;   ///< of the pictures that the conversion below is made for
    int m_sourceWidth = 0;
    int m_sourceHeight = 0;
    Owned<SwsContext> m_converter;
    std::optional<PrimariesConversion> m_primaries;
    Owned<AVFrame> m_bgra;
    std::shared_ptr<PixelBufferPool> m_pool;
};

}   // namespace QZ::Platform::Movie
