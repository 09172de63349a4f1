// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "tools/qz/Image.h"

namespace QZ::Tool {

/// How two pictures differ.
struct Comparison {
    std::uint64_t different = 0;   ///< pixels
    std::uint64_t pixels = 0;      ///< that one of the pictures has, or both
    int largest = 0;               ///< difference of a channel, among the pixels that both have
};

/// Compares two pictures pixel by pixel, from their upper left corners: RGBA as shown, in sRGB. A pixel that
/// only one of them has is different.
/// \param tolerance  levels by which each channel of equal pixels may differ.
/// \param drawing    if not null, becomes a picture of the differences: a faint grey one of `a`, in which the
///                   pixels that differ are red, the more the brighter, and those of one picture alone blue.
[[nodiscard]] Comparison Compare(const Image& a, const Image& b, int tolerance, Image* drawing);

}   // namespace QZ::Tool
