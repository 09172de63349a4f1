// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/MovieWriter/Codec.h"

namespace QZ::Platform::Movie {

/// A sample as an encoder gives it, its times in ticks of the encoder's timescale.
struct EncodedSample {
    std::int64_t presentationTime = 0;
    std::int64_t decodeTime = 0;
    bool sync = true;
    std::vector<unsigned char> bytes;
};
using SampleSink = std::function<void(EncodedSample)>;

/// What a video encoder is asked for. Values that are absent or not positive leave the choice to the encoder:
/// constant quality instead of a bit rate, and a key frame every 60 frames. ProRes takes neither: it has a
/// bit rate of its own.
struct VideoEncoding {
    VideoCodec codec = VideoCodec::H264;
    int width = 0, height = 0;    ///< coded size, even
    std::int32_t timescale = 0;   ///< of the presentation times
    std::optional<std::int64_t> averageBitRate = {};
    std::optional<int> keyFrameInterval = {};
    bool realTime = false;   ///< hold back five pictures at most, at some cost in quality
};

/// Encodes pictures with libx264, libx265 or prores_ks.
class VideoEncoder {
public:
    /// False with a reason when the encoder is missing or refuses.
    bool Open(const VideoEncoding& encoding);

    /// The pixels that the encoder takes.
    [[nodiscard]] static AVPixelFormat PixelFormat(VideoCodec codec);

    /// Encodes one picture; times increase from call to call. `picture` null: gives out what is held back.
    bool Encode(AVFrame* picture, std::int64_t presentationTime, const SampleSink& sink);

    /// Type of the file's sample entry and of its configuration box, and that box's content (empty for
    /// ProRes).
    [[nodiscard]] const char* SampleEntryType() const;
    [[nodiscard]] const char* ConfigurationType() const;
    [[nodiscard]] std::vector<unsigned char> Configuration() const;

    [[nodiscard]] const std::string& Reason() const { return m_reason; }

private:
    bool Use(std::size_t quantiser);
    Owned<AVCodecContext> OpenContext(std::size_t quantiser);
    void ConfigureRate(AVCodecContext& context) const;
    void ConfigureX264(AVCodecContext& context) const;
    void ConfigureX265(AVCodecContext& context) const;
    void ConfigureProRes(AVCodecContext& context, std::size_t quantiser) const;
    void AdaptQuantiser(std::size_t pictureSize);
    bool Fail(const std::string& what);
    [[nodiscard]] bool IsProRes() const { return m_encoding.codec == VideoCodec::ProRes422; }

    VideoEncoding m_encoding;
    /// The encoder; of ProRes, where each picture stands alone, one for each quantiser that was used.
    std::vector<Owned<AVCodecContext>> m_contexts;
    std::size_t m_quantiser = 0;
    Owned<AVPacket> m_packet;
    std::string m_reason;
};

}   // namespace QZ::Platform::Movie
