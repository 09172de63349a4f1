// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/YIQ.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::RGBToYIQ(const Math::CVector3<float>& rgb, Math::CVector3<float>& yiq)
{
    yiq = formula::RGBToYIQ(formula::Vec3(rgb));
}

void CColor::YIQToRGB(const Math::CVector3<float>& yiq, Math::CVector3<float>& rgb)
{
    rgb = formula::YIQToRGB(formula::Vec3(yiq));
}

void CColor::SRGBToYCbCr(const Math::CVector3<float>& srgb, Math::CVector3<float>& ycbcr)
{
    ycbcr = formula::SRGBToYCbCr(formula::Vec3(srgb));
}

void CColor::YCbCrToSRGB(const Math::CVector3<float>& ycbcr, Math::CVector3<float>& srgb)
{
    srgb = formula::YCbCrToSRGB(formula::Vec3(ycbcr));
}

}   // namespace QZ::Foundation
