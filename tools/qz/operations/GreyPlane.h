// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

using GreyFrom = Foundation::CGrayscaleWeightedHistogram::EGrayscaleFrom;

/// What counts as the grey of a pixel, and which pixels count.
struct GreyChoice {
    GreyFrom from = GreyFrom::eLXX;
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;
    bool maskFromAlpha = false;   ///< A pixel weighs as much as it is opaque.

    /// The mask of the picture for the library: its alpha bytes, four apart, or null.
    [[nodiscard]] const unsigned char* Mask(const Image& image) const
    {
        return maskFromAlpha ? image.pixels.data() : nullptr;
    }
};

/// Where the mask lies in a picture's bytes.
inline constexpr int kMaskStride = 4;
inline constexpr int kMaskOffset = 3;

/// The grey level of each pixel, the one that CGrayscaleWeightedHistogram counts.
[[nodiscard]] std::vector<unsigned char> GreyPlane(const Image& image, const GreyChoice& choice);

/// The histogram of a grey plane, weighted by the picture's mask.
/// Throws Failure (Status::Malformed) when the mask leaves no pixel.
[[nodiscard]] Foundation::CGrayscaleWeightedHistogram GreyHistogram(const std::vector<unsigned char>& plane,
                                                                    const Image& image,
                                                                    const GreyChoice& choice);

/// Levels of a histogram that occur.
[[nodiscard]] int OccupiedLevels(const Foundation::CGrayscaleWeightedHistogram& histogram);

/// Paints the picture grey, each pixel by its level through a table of 256. Alpha stays; it becomes opaque
/// when the grey was alpha itself.
void PaintGrey(const std::vector<unsigned char>& plane, const std::vector<unsigned char>& table,
               const GreyChoice& choice, Image& image);

}   // namespace QZ::Tool
