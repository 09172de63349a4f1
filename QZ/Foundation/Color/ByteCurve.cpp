// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ByteCurve.h"

#include "QZ/Foundation/Color/Formulas/LXX.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

namespace {

unsigned Rounded(float unit)
{
    return static_cast<unsigned>(formula::ClampToUnit(unit) * 255.0f + 0.5f);
}

unsigned Truncated(float unit)
{
    return static_cast<unsigned>(formula::ClampToUnit(unit) * 255.0f);
}

}   // namespace

const ByteCurve& EncodedByte(bool useGamma22)
{
    static const ByteCurve sRGB([](float c) { return Rounded(formula::LinearToNonlinear(false, c)); });
    static const ByteCurve gamma22([](float c) { return Rounded(formula::LinearToNonlinear(true, c)); });
    return useGamma22 ? gamma22 : sRGB;
}

const ByteCurve& TruncatedSRGBByte()
{
    static const ByteCurve curve([](float c) { return Truncated(formula::LinearToNonlinear(false, c)); });
    return curve;
}

const ByteCurve& LightnessByte()
{
    static const ByteCurve curve([](float Y) { return Rounded(formula::LinearYToLXX(Y)); });
    return curve;
}

const ByteCurve& UnitByte()
{
    static const ByteCurve curve(Rounded);
    return curve;
}

const ByteCurve& TruncatedUnitByte()
{
    static const ByteCurve curve(Truncated);
    return curve;
}

}   // namespace QZ::Foundation
