// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qz/Image.h"

namespace QZ::Tool {

/// Renders the sample picture, so that qz has something to show where no photograph is at hand: a bowl of
/// fruit by a window, with what a photograph has: smooth shading, soft shadows, saturated and muted hues,
/// fine texture, the noise of a sensor and the warm cast of evening light.
///
/// The picture is a function of its size alone. A megapixel takes one core about 13 seconds; all cores share
/// it.
/// \param width, height  at least 1.
[[nodiscard]] Image RenderSampleScene(int width, int height);

/// The size at which qz renders it.
inline constexpr int kSampleWidth = 900;
inline constexpr int kSampleHeight = 600;

}   // namespace QZ::Tool
