// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Adjust.h"

#include <algorithm>

namespace QZ::Tool {

using Foundation::CColor;
using Math::CMatrix3;
using Math::CVector3;

namespace {

unsigned char ToByte(float value)
{
    return static_cast<unsigned char>(std::min(255.0f, std::max(0.0f, value)) + 0.5f);
}

void Multiply(const CMatrix3<float>& matrix, Image& image)
{
    for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
        unsigned char* p = image.pixels.data() + i;
        const CVector3<float> rgb = matrix * CVector3<float>(p[0], p[1], p[2]);
        p[0] = ToByte(rgb.x);
        p[1] = ToByte(rgb.y);
        p[2] = ToByte(rgb.z);
    }
}

}   // namespace

void Adjust(const Adjustments& adjustments, Image& image)
{
    if (adjustments.saturation != 1.0f) {
        CMatrix3<float> matrix;
        CColor::HaeberliSaturationMatrix(true, false, adjustments.illuminant, adjustments.saturation, matrix);
        matrix.Transpose();   // it is laid out for row vectors
        Multiply(matrix, image);
    }
}

}   // namespace QZ::Tool
