// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/LXX.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::LinearRGBToLXX(const Math::CVector3<float>& rgb, float& L)
{
    L = formula::LinearRGBToLXX(formula::Vec3(rgb));
}

void CColor::LinearYToLXX(float Y, float& L)
{
    L = formula::LinearYToLXX(Y);
}

void CColor::LXXToLinearY(float L, float& Y)
{
    Y = formula::LXXToLinearY(L);
}

void CColor::SRGBToLXX(bool useGamma22, bool extendedRange, const Math::CVector3<float>& srgb, float& L)
{
    L = formula::SRGBToLXX(useGamma22, extendedRange, formula::Vec3(srgb));
}

void CColor::SRGBYToLXX(bool useGamma22, float y, float& L)
{
    L = formula::LinearYToLXX(formula::NonlinearToLinear(useGamma22, y));
}

void CColor::LXXToSRGBY(bool useGamma22, float L, float& y)
{
    y = formula::LinearToNonlinear(useGamma22, formula::LXXToLinearY(L));
}

}   // namespace QZ::Foundation
