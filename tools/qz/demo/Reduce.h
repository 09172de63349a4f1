// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qz/Image.h"

namespace QZ::Tool {

/// The picture with its longer side at most `side` pixels: each pixel is the mean light of the area it stands
/// for, weighted by alpha. A picture that is small enough comes back as it is.
[[nodiscard]] Image Reduced(const Image& image, int side);

}   // namespace QZ::Tool
