// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Foundation/Color/CColor.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

/// What `qz adjust` does, in this order; the defaults do nothing.
struct Adjustments {
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;
    float saturation = 1.0f;   ///< 0 is grey.
};

/// Adjusts the colours of a picture in place; alpha stays.
void Adjust(const Adjustments& adjustments, Image& image);

}   // namespace QZ::Tool
