// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "QZ/Platform/MovieWriter/SampleEntries.h"

namespace QZ::Platform::Movie {

/// Whether ReadPCM knows the format: 8, 16, 24 or 32 bits an integer, 32 or 64 bits a floating-point number,
/// in either order of bytes, the channels of a frame interleaved without gaps.
[[nodiscard]] bool IsReadable(const PCMEntry& format);

/// The samples of whole frames as floating-point numbers, full scale 1; a rest that is no frame is left out.
[[nodiscard]] std::vector<float> ReadPCM(const PCMEntry& format, std::span<const unsigned char> frames);

}   // namespace QZ::Platform::Movie
