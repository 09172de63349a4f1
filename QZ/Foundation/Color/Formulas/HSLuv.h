// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// HSLuv and HPLuv (A. Boronine, "HSLuv", hsluv.org, revision 4), in double precision, and the gamut of sRGB
/// in the plane of Luv. The rest of the library takes them from here; the header HSLuv.h offers them to
/// hosts.
///
/// Every order of operations is kept as it stands: the precomputed chroma table has to come out the same bit
/// for bit.

#include <array>
#include <cmath>
#include <limits>

#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Math/CConstants.h"

namespace QZ::Foundation::HSLuv {

/// A colour; its space says what the three numbers are.
template <class F>
struct TripleOf {
    F a;
    F b;
    F c;
};
using Triple = TripleOf<double>;

/// v = slope * u + intercept: a face of the RGB cube cut by a plane of equal lightness.
template <class F>
struct LineOf {
    F slope;
    F intercept;
};
using Line = LineOf<double>;

// What the formulas take of double. Another number type brings its own.
using Double::Atan2;
using Double::Cos;
using Double::Cube;
using Double::Pow;
using Double::Sin;
inline double Sqrt(double x)
{
    return std::sqrt(x);
}

inline constexpr double xyzToLinearRGB[3][3] = {
    {3.2409699419045213, -1.5373831775700935, -0.4986107602930033},
    {-0.9692436362808798, 1.8759675015077206, 0.04155505740717561},
    {0.05563007969699361, -0.20397695888897657, 1.0569715142428786},
};
inline constexpr double linearRGBToXYZ[3][3] = {
    {0.4123907992659595, 0.35758433938387796, 0.1804807884018343},
    {0.21263900587151036, 0.7151686787677559, 0.07219231536073371},
    {0.01933081871559185, 0.11919477979462599, 0.9505321522496606},
};
inline constexpr double whiteU = 0.19783000664283681;
inline constexpr double whiteV = 0.468319994938791;
inline constexpr double cieKappa = 903.2962962962963;
inline constexpr double cieEpsilon = 0.008856451679035631;

/// Chromas and saturations below this are grey, and lightnesses this close to either end are black or white.
inline constexpr double tiny = 1e-8;
inline constexpr double almostWhite = 99.9999999;

template <class F>
F Dot(const TripleOf<F>& a, const TripleOf<F>& b)
{
    return ((0.0 + a.a * b.a) + a.b * b.b) + a.c * b.c;
}
template <class F>
TripleOf<F> Apply(const double (&matrix)[3][3], const TripleOf<F>& v)
{
    const auto row = [&](const double(&r)[3]) { return Dot(TripleOf<F>{F(r[0]), F(r[1]), F(r[2])}, v); };
    return {row(matrix[0]), row(matrix[1]), row(matrix[2])};
}

/// The sRGB curve (IEC 61966-2-1:1999); the exponent is the double nearest 1 / 2.4.
template <class F>
F FromLinear(F c)
{
    return c <= 0.0031308 ? 12.92 * c : 1.055 * Pow(c, 0.4166666666666667) - 0.055;
}
template <class F>
F ToLinear(F c)
{
    return c > 0.04045 ? Pow((c + 0.055) / 1.055, 2.4) : c / 12.92;
}

template <class F>
TripleOf<F> XYZToRGB(const TripleOf<F>& xyz)
{
    const TripleOf<F> linear = Apply(xyzToLinearRGB, xyz);
    return {FromLinear(linear.a), FromLinear(linear.b), FromLinear(linear.c)};
}
template <class F>
TripleOf<F> RGBToXYZ(const TripleOf<F>& rgb)
{
    return Apply(linearRGBToXYZ, TripleOf<F>{ToLinear(rgb.a), ToLinear(rgb.b), ToLinear(rgb.c)});
}

/// CIE lightness (CIE 15:2004, 8.2.1.1), 0 to 100.
template <class F>
F YToL(F Y)
{
    return Y <= cieEpsilon ? Y * cieKappa : 116.0 * Pow(Y, 0.3333333333333333) - 16.0;
}
template <class F>
F LToY(F L)
{
    return L <= 8.0 ? L / cieKappa : Cube((L + 16.0) / 116.0);
}

template <class F>
TripleOf<F> XYZToLuv(const TripleOf<F>& xyz)
{
    const auto [X, Y, Z] = xyz;
    const F L = YToL(Y);
    if (L == 0.0)
        return {F(0.0), F(0.0), F(0.0)};
    const F d = (15.0 * Y + X) + 3.0 * Z;
    const F u = 4.0 * X / d;
    const F v = 9.0 * Y / d;
    return {L, 13.0 * L * (u - whiteU), 13.0 * L * (v - whiteV)};
}
template <class F>
TripleOf<F> LuvToXYZ(const TripleOf<F>& luv)
{
    const auto [L, U, V] = luv;
    if (L == 0.0)
        return {F(0.0), F(0.0), F(0.0)};
    const F u = U / (13.0 * L) + whiteU;
    const F v = V / (13.0 * L) + whiteV;
    const F Y = LToY(L);
    const F X = 0.0 - (9.0 * Y * u) / ((u - 4.0) * v - u * v);
    const F Z = ((9.0 * Y - 15.0 * v * Y) - v * X) / (3.0 * v);
    return {X, Y, Z};
}

/// Hue in degrees, from 0 to 360; 0 for a grey.
template <class F>
TripleOf<F> LuvToLCh(const TripleOf<F>& luv)
{
    const auto [L, U, V] = luv;
    const F C = Sqrt(U * U + V * V);
    if (C < tiny)
        return {L, C, F(0.0)};
    const F H = Atan2(V, U) * 360.0 * 0.5 / Math::CConstants::PI;
    return {L, C, H < 0.0 ? H + 360.0 : H};
}
template <class F>
TripleOf<F> LChToLuv(const TripleOf<F>& lch)
{
    const F hue = ((lch.c / 360.0) * 2.0) * Math::CConstants::PI;
    return {lch.a, Cos(hue) * lch.b, Sin(hue) * lch.b};
}

/// The six sides of the gamut at lightness L: R = 0, R = 1, G = 0, G = 1, B = 0 and B = 1.
template <class F>
std::array<LineOf<F>, 6> Bounds(F L)
{
    const F cube = Cube(L + 16.0) / 1560896.0;   // 116^3
    const F Y = cube > cieEpsilon ? cube : L / cieKappa;
    std::array<LineOf<F>, 6> lines;
    auto* line = lines.data();
    for (const auto& row : xyzToLinearRGB) {
        const F m1 = row[0];
        const F m2 = row[1];
        const F m3 = row[2];
        for (const double t : {0.0, 1.0}) {
            const F top1 = (284517.0 * m1 - 94839.0 * m3) * Y;
            const F top2 = (838422.0 * m3 + 769860.0 * m2 + 731718.0 * m1) * L * Y - 769860.0 * t * L;
            const F bottom = (632260.0 * m3 - 126452.0 * m2) * Y + 126452.0 * t;
            *line++ = {top1 / bottom, top2 / bottom};
        }
    }
    return lines;
}

template <class F>
F DistanceFromPole(F x, F y)
{
    return Sqrt(x * x + y * y);
}

/// The smallest of f(line) that is not below 0; the largest double when there is none. NaN never counts.
template <class F, class Function>
F SmallestLength(F L, Function&& f)
{
    F smallest = std::numeric_limits<double>::max();
    for (const LineOf<F>& line : Bounds(L)) {
        const F length = f(line);
        if (length >= 0.0 && length < smallest)
            smallest = length;
    }
    return smallest;
}

/// The chroma that is in gamut at every hue: the distance of the nearest side.
template <class F>
F MaxSafeChromaForL(F L)
{
    return SmallestLength(L, [](const LineOf<F>& line) {
        const F x = line.intercept / (-1.0 / line.slope - line.slope);
        const F y = line.slope * x + line.intercept;
        return DistanceFromPole(x, y);
    });
}

template <class F>
F LengthOfRayUntilIntersect(F sine, F cosine, const LineOf<F>& line)
{
    return line.intercept / (sine - line.slope * cosine);
}

/// The chroma of the gamut's edge at hue H, in degrees.
template <class F>
F MaxChromaForLH(F L, F H)
{
    const F hue = ((H / 360.0) * Math::CConstants::PI) * 2.0;
    const F sine = Sin(hue);
    const F cosine = Cos(hue);
    return SmallestLength(
        L, [&](const LineOf<F>& line) { return LengthOfRayUntilIntersect(sine, cosine, line); });
}

/// False at black and white, where there is no chroma, and for NaN.
template <class F>
bool HasChroma(F L)
{
    return L >= tiny && L <= almostWhite;
}

/// The chroma that counts as 100 percent.
enum class Full {
    eGamut,    ///< HSLuv: the gamut's edge at the hue.
    ePastel,   ///< HPLuv: the same at every hue.
};
template <Full full, class F>
F FullChroma(F L, F H)
{
    return full == Full::eGamut ? MaxChromaForLH(L, H) : MaxSafeChromaForL(L);
}

/// (H, S, L) to (L, C, H). L is passed on as it is.
template <Full full, class F>
TripleOf<F> HSLToLCh(const TripleOf<F>& hsl)
{
    const auto [H, S, L] = hsl;
    const F C = HasChroma(L) ? FullChroma<full>(L, H) / 100.0 * S : F(0.0);
    return {L, C, S < tiny ? F(0.0) : H};
}
/// (L, C, H) to (H, S, L).
template <Full full, class F>
TripleOf<F> LChToHSL(const TripleOf<F>& lch)
{
    const auto [L, C, H] = lch;
    const F S = HasChroma(L) ? C / FullChroma<full>(L, H) * 100.0 : F(0.0);
    return {C < tiny ? F(0.0) : H, S, L};
}

template <Full full, class F>
TripleOf<F> HSLToRGB(const TripleOf<F>& hsl)
{
    return XYZToRGB(LuvToXYZ(LChToLuv(HSLToLCh<full>(hsl))));
}
template <Full full, class F>
TripleOf<F> RGBToHSL(const TripleOf<F>& rgb)
{
    return LChToHSL<full>(LuvToLCh(XYZToLuv(RGBToXYZ(rgb))));
}

}   // namespace QZ::Foundation::HSLuv
