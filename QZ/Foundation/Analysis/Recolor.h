// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Math/CVector2.h"

namespace QZ::Foundation {

/// Repaints a picture by the colours of its hue bins, as ColorQuantization.h describes it.
/// \param isEncoded  true for bytes of gamma 2.2, false for linear RGB.
void RecolorPicture(const std::vector<Math::CVector2<float>>& binColours, int width, int height,
                    CColor::EIlluminant illuminant, bool isEncoded, unsigned char* rgba);

}   // namespace QZ::Foundation
