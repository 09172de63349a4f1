// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qz/Image.h"
#include "tools/qz/draw/Canvas.h"

namespace QZ::Tool {

/// The table of largest chromas of the library as a picture of 1800 x 1000 pixels: hue across, lightness up;
/// at the left its values by a scale, at the right the colours themselves at that chroma.
[[nodiscard]] Image ChromaMapSheet();

/// A scale from dark blue through green to yellow whose lightness rises evenly, so that it reads in grey and
/// with any colour vision (after N. Smith and S. van der Walt, "viridis", 2015).
/// \param t  0 to 1; what lies outside is the nearer end.
[[nodiscard]] Ink ScaleInk(float t);

}   // namespace QZ::Tool
