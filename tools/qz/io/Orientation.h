// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "tools/qz/Image.h"

namespace QZ::Tool {

/// Turns and mirrors a picture so that it stands upright.
/// \param orientation  EXIF orientation (CIPA DC-008-2019, 4.6.4), 1 to 8; any other value does nothing.
void TurnUpright(int orientation, Image& image);

/// The orientation in a block of EXIF data: a TIFF structure, with or without the leading "Exif\0\0".
/// \return  1 to 8; 1 when the block says none or is damaged.
[[nodiscard]] int ExifOrientation(std::span<const unsigned char> exif);

}   // namespace QZ::Tool
