// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/Luv.h"
#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::XYZtoLuv(EIlluminant illuminant, const Math::CVector3<float>& xyz, Math::CVector3<float>& luv)
{
    luv = formula::XYZToLuv(illuminant, formula::Vec3(xyz));
}

void CColor::LuvToXYZ(EIlluminant illuminant, const Math::CVector3<float>& luv, Math::CVector3<float>& xyz)
{
    xyz = formula::LuvToXYZ(illuminant, formula::Vec3(luv));
}

void CColor::LinearRGBToLuv(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& luv)
{
    luv = formula::LinearRGBToLuv(illuminant, formula::Vec3(rgb));
}

void CColor::LuvToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& luv,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::LuvToLinearRGB(extendedRange, illuminant, formula::Vec3(luv));
}

void CColor::SRGBToLuv(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& srgb, Math::CVector3<float>& luv)
{
    luv = formula::SRGBToLuv(useGamma22, extendedRange, illuminant, formula::Vec3(srgb));
}

void CColor::LuvToSRGB(bool useGamma22, bool extendedRange, EIlluminant illuminant,
                       const Math::CVector3<float>& luv, Math::CVector3<float>& srgb)
{
    srgb = formula::LuvToSRGB(useGamma22, extendedRange, illuminant, formula::Vec3(luv));
}

void CColor::LuvToLChuv(const Math::CVector3<float>& luv, Math::CVector3<float>& lch)
{
    lch = formula::ToPolar(formula::Vec3(luv));
}

float CColor::LChuvSaturation(const Math::CVector3<float>& lch)
{
    return formula::Saturation(lch.x, lch.y);
}

void CColor::LimitLuvChroma(Math::CVector3<float>& luv)
{
    const float maximum = CLUVMaximumChromaMap::MaxChromaForLH(luv);
    const float chroma = formula::Hypotenuse(luv.y, luv.z);
    if (chroma > maximum) {
        const float scale = maximum / chroma;
        luv.y *= scale;
        luv.z *= scale;
    }
}

}   // namespace QZ::Foundation
