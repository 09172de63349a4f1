// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "tools/qz/color/Spaces.h"

namespace QZ::Tool {

/// Reads a colour: `#rrggbb` (the # may be left out) or `space(a, b, c)` on the library's scales, the numbers
/// parted by commas or blanks.
/// \param white  the illuminant that a value of a space like Lab refers to.
/// \return  linear sRGB, outside 0 to 1 for a colour outside the gamut.
/// Throws Failure (Status::Usage).
[[nodiscard]] Triple ParseColor(std::string_view text, CColor::EIlluminant white);

/// A colour as 8-bit sRGB, clipped to the gamut.
[[nodiscard]] std::array<unsigned char, 3> SRGBBytes(const Triple& linear);

/// Whether 8-bit sRGB holds the colour: no channel is off by more than half a level.
[[nodiscard]] bool InSRGB(const Triple& linear);

/// "#c86432".
[[nodiscard]] std::string HexOf(const unsigned char* rgb);

/// The colour in every space, in lines for a reader.
[[nodiscard]] std::string DescribeColor(const Triple& linear);
/// The same as JSON: {"hex", "inSRGB", "spaces": {name: [...]}, "D50": {...}, "D65": {...}}. Numbers are the
/// shortest that name their float; NaN and infinity are null.
[[nodiscard]] nlohmann::ordered_json ColorAsJson(const Triple& linear);

}   // namespace QZ::Tool
