// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "QZ/Foundation/Analysis/HueBins.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Math/CVector2.h"

namespace QZ::Foundation {

/// Repaints a picture by the colours of its hue bins, as ColorQuantization.h describes it.
/// \param linear  the linear value of each byte.
/// \param toRGB   IPT to the RGB to be written, 0 to 1.
template <class ToRGB>
void Recolor(const std::vector<Math::CVector2<float>>& binColours, int width, int height,
             CColor::EIlluminant illuminant, const ByteTable& linear, unsigned char* rgba, ToRGB&& toRGB)
{
    namespace formula = QZ_TARGET;
    const auto byteOf = [](float unit) {
        return static_cast<unsigned char>(TruncateToRange(unit * 255.0f + 0.5f, 0, 255));
    };
    const int size = WrappingMultiply(WrappingMultiply(width, height), 4);
    if (binColours.empty())
        return;
    const HueBins binOf(static_cast<int>(binColours.size()));
    for (std::ptrdiff_t k = 0; k < size; k += 4) {
        unsigned char* pixel = rgba + k;
        const formula::Vec3 ipt =
            formula::LinearRGBToIPT(illuminant, formula::Vec3(ColorOfPixel(linear, pixel)));
        const auto& colour = binColours[static_cast<std::size_t>(binOf(formula::IPTHue(ipt)))];
        const float magnitude = formula::Hypotenuse(ipt.y, ipt.z);
        const formula::Vec3 rgb = toRGB(formula::Vec3(ipt.x, colour.x * magnitude, colour.y * magnitude));
        pixel[0] = byteOf(rgb.x);
        pixel[1] = byteOf(rgb.y);
        pixel[2] = byteOf(rgb.z);
        const float luma = 0.114f * static_cast<float>(pixel[2]) + 0.587f * static_cast<float>(pixel[1]) +
                           0.299f * static_cast<float>(pixel[0]);
        pixel[3] = static_cast<unsigned char>(luma + 0.5f);
    }
}

}   // namespace QZ::Foundation
