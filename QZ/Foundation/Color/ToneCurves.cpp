// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Formulas/ToneCurves.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CColor::NonlinearToLinearToneCurve(bool useGamma22, bool extendedRange, const Math::CVector3<float>& in,
                                        Math::CVector3<float>& out)
{
    out = formula::NonlinearToLinear(useGamma22, extendedRange, formula::Vec3(in));
}

void CColor::NonlinearToLinearToneCurve(bool useGamma22, float in, float& out)
{
    out = formula::NonlinearToLinear(useGamma22, in);
}

void CColor::LinearToNonlinearToneCurve(bool useGamma22, bool extendedRange, const Math::CVector3<float>& in,
                                        Math::CVector3<float>& out)
{
    out = formula::LinearToNonlinear(useGamma22, extendedRange, formula::Vec3(in));
}

void CColor::LinearToNonlinearToneCurve(bool useGamma22, float in, float& out)
{
    out = formula::LinearToNonlinear(useGamma22, in);
}

void CColor::NonlinearToLinear709ToneCurve(const Math::CVector3<float>& in, Math::CVector3<float>& out)
{
    out = formula::Map(formula::Vec3(in), [](float c) { return formula::Rec709ToLinear(c); });
}

void CColor::LinearToNonlinear709ToneCurve(const Math::CVector3<float>& in, Math::CVector3<float>& out)
{
    out = formula::Map(formula::Vec3(in), [](float c) { return formula::LinearToRec709(c); });
}

void CColor::NonlinearToLinearApple709ToneCurve(const Math::CVector3<float>& in, Math::CVector3<float>& out)
{
    out = formula::Map(formula::Vec3(in), [](float c) { return formula::Pow<Exponent::k1_961>(c); });
}

void CColor::LinearToNonlinearApple709ToneCurve(const Math::CVector3<float>& in, Math::CVector3<float>& out)
{
    out = formula::Map(formula::Vec3(in), [](float c) { return formula::Pow<Exponent::k0_5099439>(c); });
}

void CColor::SRGBToRGB709(const Math::CVector3<float>& srgb, Math::CVector3<float>& out)
{
    out = formula::Map(formula::Vec3(srgb), [](float c) { return formula::SRGBToRec709(c); });
}

}   // namespace QZ::Foundation
