// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

/// A 16-bit sample on the scale of 8 bits, to the nearest.
[[nodiscard]] constexpr unsigned char Narrow(std::uint16_t sample)
{
    return static_cast<unsigned char>((sample * 255u + 32767u) / 65535u);
}

/// A row of 16-bit samples as one of 8-bit samples.
void NarrowRow(const RasterHeader& header, const unsigned char* samples, std::vector<unsigned char>& out);

/// A row with premultiplied alpha as one without; a colour under an alpha of 0 becomes black.
void DivideAlphaOut(const RasterHeader& header, const unsigned char* samples,
                    std::vector<unsigned char>& out);

/// A row of 8-bit samples of any model as RGBA, without colour management: CMYK is taken for ideal inks.
void ExpandRow(const RasterHeader& header, const unsigned char* samples, unsigned char* out);

}   // namespace QZ::Tool
