// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tools/qz/operations/Tones.h"
#include "tools/qz/palette/Palette.h"

namespace QZ::Tool {

/// What `qz posterize` is asked for.
struct PosterizeOptions {
    int hues = 4;              ///< Groups of hue at most; what has little colour is one more.
    int greys = 3;             ///< Greys of each group at most.
    float saturation = 0.5f;   ///< Below it, in Luv, a pixel has little colour.
    double minAngle = 0.0;     ///< Degrees; groups of hue closer than this are one.
    double minGap = 0.0;       ///< Greys of a group that differ by at most this are merged.
    ToneCurve curve;
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;
};

struct Posterized {
    std::vector<PaletteColor> tones;   ///< The greys that occur, from dark to light.
    int groups = 0;                    ///< Groups that have pixels.
};

/// Makes a picture grey in a few tones for each of its hues, so that hues of equal lightness part. Alpha
/// stays.
Posterized Posterize(const PosterizeOptions& options, Image& image);

}   // namespace QZ::Tool
