// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/YIQ.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::RGBToYIQ(const Math::CVector3<float>& rgb, Math::CVector3<float>& yiq)
{
    yiq = formula::RGBToYIQ(rgb);
}

void CColor::YIQToRGB(const Math::CVector3<float>& yiq, Math::CVector3<float>& rgb)
{
    rgb = formula::YIQToRGB(yiq);
}

void CColor::SRGBToYCbCr(const Math::CVector3<float>& srgb, Math::CVector3<float>& ycbcr)
{
    ycbcr = formula::SRGBToYCbCr(srgb);
}

void CColor::YCbCrToSRGB(const Math::CVector3<float>& ycbcr, Math::CVector3<float>& srgb)
{
    srgb = formula::YCbCrToSRGB(ycbcr);
}

}   // namespace QZ::Foundation
