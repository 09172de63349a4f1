// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "QZ/Foundation/Color/CColor.h"
#include "tools/qz/Context.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

/// A colour of a palette.
struct PaletteColor {
    std::array<unsigned char, 3> rgb{};
    double share = 0.0;   ///< Of the picture's pixels, 0 to 1.
};

/// What `qz palette` is asked for.
struct PaletteOptions {
    int count = 12;            ///< Colours at most.
    int hues = 6;              ///< Groups of hue, at least 1.
    int tones = 3;             ///< Tones that each group is divided into, at least 1.
    double minAngle = 20.0;    ///< Degrees; groups of hue closer than this are one.
    float saturation = 0.3f;   ///< Below it a pixel belongs to the greys.
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;
};

/// The colours of a picture: its pixels grouped by hue (CHueWeightedHistogramHierarchicalClusterQuantization,
/// in Luv), with one group for the greys, each group divided by lightness
/// (CGrayscaleHistogramHierarchicalClusterQuantization); a colour is the mean light of its pixels.
/// \return  the largest first; none for a picture without pixels. Alpha does not count.
[[nodiscard]] std::vector<PaletteColor> PaletteOf(const Image& image, const PaletteOptions& options);

/// A line a colour: swatch where the terminal shows it, hex value, share.
[[nodiscard]] std::string PaletteText(const std::vector<PaletteColor>& palette, const Context& context);
/// {"colors": [{"hex", "rgb", "share"}, ...]}.
[[nodiscard]] nlohmann::ordered_json PaletteAsJson(const std::vector<PaletteColor>& palette);
/// Swatches with hex values and shares, above them a strip with each colour as wide as its share; 1600 pixels
/// wide.
[[nodiscard]] Image PaletteSheet(const std::vector<PaletteColor>& palette, const std::string& title);

}   // namespace QZ::Tool
