// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/HSLuv.h"

#include <algorithm>
#include <cstdlib>

#include "QZ/Foundation/Color/Formulas/HSLuv.h"

namespace formula = QZ::Foundation::HSLuv;
using formula::Full;

namespace {

formula::Triple In(const Tuple& t)
{
    return {t.a, t.b, t.c};
}
Tuple Out(const formula::Triple& t)
{
    return {t.a, t.b, t.c};
}
void Store(const formula::Triple& t, double* a, double* b, double* c)
{
    *a = t.a;
    *b = t.b;
    *c = t.c;
}

}   // namespace

const double m[3][3] = {
    {formula::xyzToLinearRGB[0][0], formula::xyzToLinearRGB[0][1], formula::xyzToLinearRGB[0][2]},
    {formula::xyzToLinearRGB[1][0], formula::xyzToLinearRGB[1][1], formula::xyzToLinearRGB[1][2]},
    {formula::xyzToLinearRGB[2][0], formula::xyzToLinearRGB[2][1], formula::xyzToLinearRGB[2][2]},
};
const double refU = formula::whiteU;
const double refV = formula::whiteV;
const double kappa = formula::cieKappa;
const double epsilon = formula::cieEpsilon;

GamutLine* getBounds(double L)
{
    const auto bounds = formula::Bounds(L);
    auto* lines = static_cast<GamutLine*>(std::malloc(bounds.size() * sizeof(GamutLine)));
    if (lines != nullptr)
        std::transform(bounds.begin(), bounds.end(), lines, [](const formula::Line& line) {
            return GamutLine{line.slope, line.intercept};
        });
    return lines;
}

double intersectLineLine(double slope1, double intercept1, double slope2, double intercept2)
{
    return (intercept1 - intercept2) / (slope2 - slope1);
}

double distanceFromPole(double x, double y)
{
    return formula::DistanceFromPole(x, y);
}

double lengthOfRayUntilIntersect(double theta, double slope, double intercept)
{
    namespace Double = QZ::Foundation::Double;
    return formula::LengthOfRayUntilIntersect(Double::Sin(theta), Double::Cos(theta),
                                              formula::Line{slope, intercept});
}

double maxSafeChromaForL(double L)
{
    return formula::MaxSafeChromaForL(L);
}

double maxChromaForLH(double L, double H)
{
    return formula::MaxChromaForLH(L, H);
}

double tupleDotProduct(Tuple a, Tuple b)
{
    return formula::Dot(In(a), In(b));
}

double fromLinear(double c)
{
    return formula::FromLinear(c);
}

double toLinear(double c)
{
    return formula::ToLinear(c);
}

Tuple xyzToRgb(Tuple xyz)
{
    return Out(formula::XYZToRGB(In(xyz)));
}

Tuple rgbToXyz(Tuple rgb)
{
    return Out(formula::RGBToXYZ(In(rgb)));
}

double yToL(double Y)
{
    return formula::YToL(Y);
}

double lToY(double L)
{
    return formula::LToY(L);
}

Tuple xyzToLuv(Tuple xyz)
{
    return Out(formula::XYZToLuv(In(xyz)));
}

Tuple luvToXyz(Tuple luv)
{
    return Out(formula::LuvToXYZ(In(luv)));
}

Tuple luvToLch(Tuple luv)
{
    return Out(formula::LuvToLCh(In(luv)));
}

Tuple lchToLuv(Tuple lch)
{
    return Out(formula::LChToLuv(In(lch)));
}

Tuple huslToLch(Tuple husl)
{
    return Out(formula::HSLToLCh<Full::eGamut>(In(husl)));
}

Tuple lchToHusl(Tuple lch)
{
    return Out(formula::LChToHSL<Full::eGamut>(In(lch)));
}

Tuple huslpToLch(Tuple huslp)
{
    return Out(formula::HSLToLCh<Full::ePastel>(In(huslp)));
}

Tuple lchToHuslp(Tuple lch)
{
    return Out(formula::LChToHSL<Full::ePastel>(In(lch)));
}

void huslToRgb(double h, double s, double l, double* r, double* g, double* b)
{
    Store(formula::HSLToRGB<Full::eGamut>(formula::Triple{h, s, l}), r, g, b);
}

void rgbToHusl(double r, double g, double b, double* h, double* s, double* l)
{
    Store(formula::RGBToHSL<Full::eGamut>(formula::Triple{r, g, b}), h, s, l);
}

void huslpToRgb(double h, double s, double l, double* r, double* g, double* b)
{
    Store(formula::HSLToRGB<Full::ePastel>(formula::Triple{h, s, l}), r, g, b);
}

void rgbToHuslp(double r, double g, double b, double* h, double* s, double* l)
{
    Store(formula::RGBToHSL<Full::ePastel>(formula::Triple{r, g, b}), h, s, l);
}
