// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tools/qz/Image.h"

namespace QZ::Tool {

/// The alpha byte of each pixel.
[[nodiscard]] inline std::vector<unsigned char> AlphaOf(const Image& image)
{
    std::vector<unsigned char> alpha(image.Count());
    for (std::size_t i = 0; i < alpha.size(); ++i)
        alpha[i] = image.pixels[4 * i + 3];
    return alpha;
}

/// Gives the pixels of a picture of the same size that alpha.
inline void SetAlpha(const std::vector<unsigned char>& alpha, Image& image)
{
    for (std::size_t i = 0; i < alpha.size(); ++i)
        image.pixels[4 * i + 3] = alpha[i];
}

}   // namespace QZ::Tool
