// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/HSV.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::RGBToHSV(const Math::CVector3<float>& rgb, Math::CVector3<float>& hsv)
{
    hsv = formula::RGBToHSV(formula::Vec3(rgb));
}

void CColor::HSVToRGB(const Math::CVector3<float>& hsv, Math::CVector3<float>& rgb)
{
    rgb = formula::HSVToRGB(formula::Vec3(hsv));
}

}   // namespace QZ::Foundation
