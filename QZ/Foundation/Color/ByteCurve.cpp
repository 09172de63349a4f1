// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ByteCurve.h"

#include "QZ/Foundation/Color/Formulas/LXX.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

using Rounding = ByteCurve::Rounding;

namespace {

float EncodedSRGB(float c)
{
    return formula::LinearToNonlinear(false, c);
}

float Same(float c)
{
    return c;
}

}   // namespace

const ByteCurve& EncodedByte(bool useGamma22)
{
    static const ByteCurve sRGB(EncodedSRGB, Rounding::eNearest);
    static const ByteCurve gamma22([](float c) { return formula::LinearToNonlinear(true, c); },
                                   Rounding::eNearest);
    return useGamma22 ? gamma22 : sRGB;
}

const ByteCurve& TruncatedSRGBByte()
{
    static const ByteCurve curve(EncodedSRGB, Rounding::eDown);
    return curve;
}

const ByteCurve& LightnessByte()
{
    static const ByteCurve curve([](float Y) { return formula::LinearYToLXX(Y); }, Rounding::eNearest);
    return curve;
}

const ByteCurve& UnitByte()
{
    static const ByteCurve curve(Same, Rounding::eNearest);
    return curve;
}

const ByteCurve& TruncatedUnitByte()
{
    static const ByteCurve curve(Same, Rounding::eDown);
    return curve;
}

}   // namespace QZ::Foundation
