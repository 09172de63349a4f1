// SPDX-License-Identifier: MIT
#pragma once

#include <map>

#include "QZ/Platform/MovieWriter/PictureConverter.h"
#include "QZ/Platform/MovieWriter/TrackWriter.h"
#include "QZ/Platform/MovieWriter/VideoEncoder.h"

namespace QZ::Platform::Movie {

/// Pictures, converted and encoded. The encoder counts microseconds from the session's start; the file keeps
/// the exact times.
class VideoTrack final : public TrackWriter {
public:
    VideoTrack(const ChannelSettings& settings, MovieFile& file, std::size_t track);
    bool Open() override;
    bool Write(const QueuedSample& sample) override;
    bool Finish() override;

private:
    void Describe(std::span<const unsigned char> profile);
    bool Encode(PixelBuffer& picture, std::int64_t encoderTime);
    void Add(EncodedSample encoded);

    ChannelSettings m_settings;
    VideoSettings m_video;
    PictureConverter m_converter;
    VideoEncoder m_encoder;
    bool m_first = true;
    std::int64_t m_lastEncoderTime = 0;
    std::map<std::int64_t, Moment> m_moments;   ///< of the pictures in the encoder, by the time that it knows
};

}   // namespace QZ::Platform::Movie
