// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/Yxy.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::XYZToYxy(const Math::CVector3<float>& xyz, Math::CVector3<float>& Yxy)
{
    Yxy = formula::XYZToYxy(formula::Vec3(xyz));
}

void CColor::YxyToXYZ(const Math::CVector3<float>& Yxy, Math::CVector3<float>& xyz)
{
    xyz = formula::YxyToXYZ(formula::Vec3(Yxy));
}

void CColor::LinearRGBToYxy(EIlluminant illuminant, const Math::CVector3<float>& rgb,
                            Math::CVector3<float>& Yxy)
{
    Yxy = formula::LinearRGBToYxy(illuminant, formula::Vec3(rgb));
}

void CColor::YxyToLinearRGB(bool extendedRange, EIlluminant illuminant, const Math::CVector3<float>& Yxy,
                            Math::CVector3<float>& rgb)
{
    rgb = formula::YxyToLinearRGB(extendedRange, illuminant, formula::Vec3(Yxy));
}

}   // namespace QZ::Foundation
