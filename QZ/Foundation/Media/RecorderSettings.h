// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "QZ/Platform/AssetWriter.h"

/// \file
/// What the two movie recorders have in common (internal).

namespace QZ::Foundation {

/// Where movies go by default, before the name is made unique: "<temporary directory><bundle name>Edit.mov".
[[nodiscard]] std::string DefaultMoviePath();

/// "hevc" and "prores" name their codecs; every other text is H.264.
[[nodiscard]] Platform::VideoCodec CodecOfFormat(std::string_view format);

/// The average bit rate is 0.61728395061728 bits for each pixel of a second at a multiplier of 1: 76.8 Mbit/s
/// for 1920 x 1080 at 60 Hz. The number of pixels wraps at 32 bits. A key frame comes at least once a second.
[[nodiscard]] Platform::VideoCompression CompressionFor(int width, int height, int frameRate,
                                                        double bitRateMultiplier);

/// The pictures that both recorders paint: BGRA, rows aligned to 4 bytes.
[[nodiscard]] Platform::PixelBufferAttributes SourceAttributes(int width, int height);

/// The nearest integer toward zero; the ends of the range for what lies beyond, and 0 for NaN.
[[nodiscard]] int Truncate(double value);

/// Why no writer can be made, or none was: the factory's words, or why there is no factory.
[[nodiscard]] std::string ReasonOf(const std::shared_ptr<Platform::AssetWriterFactory>& factory,
                                   const std::shared_ptr<Platform::AssetWriter>& writer);

}   // namespace QZ::Foundation
