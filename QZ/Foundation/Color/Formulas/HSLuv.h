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
struct Triple {
    double a;
    double b;
    double c;
};

/// v = slope * u + intercept: a face of the RGB cube cut by a plane of equal lightness.
struct Line {
    double slope;
    double intercept;
};

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

inline double Dot(const Triple& a, const Triple& b)
{
    return ((0.0 + a.a * b.a) + a.b * b.b) + a.c * b.c;
}
inline Triple Apply(const double (&matrix)[3][3], const Triple& v)
{
    const auto row = [&](const double(&r)[3]) { return Dot({r[0], r[1], r[2]}, v); };
    return {row(matrix[0]), row(matrix[1]), row(matrix[2])};
}

/// The sRGB curve (IEC 61966-2-1:1999); the exponent is the double nearest 1 / 2.4.
inline double FromLinear(double c)
{
    return c <= 0.0031308 ? 12.92 * c : 1.055 * Double::Pow(c, 0.4166666666666667) - 0.055;
}
inline double ToLinear(double c)
{
    return c > 0.04045 ? Double::Pow((c + 0.055) / 1.055, 2.4) : c / 12.92;
}

inline Triple XYZToRGB(const Triple& xyz)
{
    const Triple linear = Apply(xyzToLinearRGB, xyz);
    return {FromLinear(linear.a), FromLinear(linear.b), FromLinear(linear.c)};
}
inline Triple RGBToXYZ(const Triple& rgb)
{
    return Apply(linearRGBToXYZ, {ToLinear(rgb.a), ToLinear(rgb.b), ToLinear(rgb.c)});
}

/// CIE lightness (CIE 15:2004, 8.2.1.1), 0 to 100.
inline double YToL(double Y)
{
    return Y <= cieEpsilon ? Y * cieKappa : 116.0 * Double::Pow(Y, 0.3333333333333333) - 16.0;
}
inline double LToY(double L)
{
    return L <= 8.0 ? L / cieKappa : Double::Cube((L + 16.0) / 116.0);
}

inline Triple XYZToLuv(const Triple& xyz)
{
    const auto [X, Y, Z] = xyz;
    const double L = YToL(Y);
    if (L == 0.0)
        return {0.0, 0.0, 0.0};
    const double d = (15.0 * Y + X) + 3.0 * Z;
    const double u = 4.0 * X / d;
    const double v = 9.0 * Y / d;
    return {L, 13.0 * L * (u - whiteU), 13.0 * L * (v - whiteV)};
}
inline Triple LuvToXYZ(const Triple& luv)
{
    const auto [L, U, V] = luv;
    if (L == 0.0)
        return {0.0, 0.0, 0.0};
    const double u = U / (13.0 * L) + whiteU;
    const double v = V / (13.0 * L) + whiteV;
    const double Y = LToY(L);
    const double X = 0.0 - (9.0 * Y * u) / ((u - 4.0) * v - u * v);
    const double Z = ((9.0 * Y - 15.0 * v * Y) - v * X) / (3.0 * v);
    return {X, Y, Z};
}

/// Hue in degrees, from 0 to 360; 0 for a grey.
inline Triple LuvToLCh(const Triple& luv)
{
    const auto [L, U, V] = luv;
    const double C = std::sqrt(U * U + V * V);
    if (C < tiny)
        return {L, C, 0.0};
    const double H = Double::Atan2(V, U) * 360.0 * 0.5 / Math::CConstants::PI;
    return {L, C, H < 0.0 ? H + 360.0 : H};
}
inline Triple LChToLuv(const Triple& lch)
{
    const double hue = ((lch.c / 360.0) * 2.0) * Math::CConstants::PI;
    return {lch.a, Double::Cos(hue) * lch.b, Double::Sin(hue) * lch.b};
}

/// The six sides of the gamut at lightness L: R = 0, R = 1, G = 0, G = 1, B = 0 and B = 1.
inline std::array<Line, 6> Bounds(double L)
{
    const double cube = Double::Cube(L + 16.0) / 1560896.0;   // 116^3
    const double Y = cube > cieEpsilon ? cube : L / cieKappa;
    std::array<Line, 6> lines;
    auto* line = lines.data();
    for (const auto& [m1, m2, m3] : xyzToLinearRGB) {
        for (const double t : {0.0, 1.0}) {
            const double top1 = (284517.0 * m1 - 94839.0 * m3) * Y;
            const double top2 = (838422.0 * m3 + 769860.0 * m2 + 731718.0 * m1) * L * Y - 769860.0 * t * L;
            const double bottom = (632260.0 * m3 - 126452.0 * m2) * Y + 126452.0 * t;
            *line++ = {top1 / bottom, top2 / bottom};
        }
    }
    return lines;
}

inline double DistanceFromPole(double x, double y)
{
    return std::sqrt(x * x + y * y);
}

/// The smallest of f(line) that is not below 0; the largest double when there is none. NaN never counts.
template <class Function>
double SmallestLength(double L, Function&& f)
{
    double smallest = std::numeric_limits<double>::max();
    for (const Line& line : Bounds(L)) {
        const double length = f(line);
        if (length >= 0.0 && length < smallest)
            smallest = length;
    }
    return smallest;
}

/// The chroma that is in gamut at every hue: the distance of the nearest side.
inline double MaxSafeChromaForL(double L)
{
    return SmallestLength(L, [](const Line& line) {
        const double x = line.intercept / (-1.0 / line.slope - line.slope);
        const double y = line.slope * x + line.intercept;
        return DistanceFromPole(x, y);
    });
}

inline double LengthOfRayUntilIntersect(double sine, double cosine, const Line& line)
{
    return line.intercept / (sine - line.slope * cosine);
}

/// The chroma of the gamut's edge at hue H, in degrees.
inline double MaxChromaForLH(double L, double H)
{
    const double hue = ((H / 360.0) * Math::CConstants::PI) * 2.0;
    const double sine = Double::Sin(hue);
    const double cosine = Double::Cos(hue);
    return SmallestLength(L, [&](const Line& line) { return LengthOfRayUntilIntersect(sine, cosine, line); });
}

/// False at black and white, where there is no chroma, and for NaN.
inline bool HasChroma(double L)
{
    return L >= tiny && L <= almostWhite;
}

/// The chroma that counts as 100 percent.
enum class Full {
    eGamut,    ///< HSLuv: the gamut's edge at the hue.
    ePastel,   ///< HPLuv: the same at every hue.
};
template <Full full>
double FullChroma(double L, double H)
{
    return full == Full::eGamut ? MaxChromaForLH(L, H) : MaxSafeChromaForL(L);
}

/// (H, S, L) to (L, C, H). L is passed on as it is.
template <Full full>
Triple HSLToLCh(const Triple& hsl)
{
    const auto [H, S, L] = hsl;
    const double C = HasChroma(L) ? FullChroma<full>(L, H) / 100.0 * S : 0.0;
    return {L, C, S < tiny ? 0.0 : H};
}
/// (L, C, H) to (H, S, L).
template <Full full>
Triple LChToHSL(const Triple& lch)
{
    const auto [L, C, H] = lch;
    const double S = HasChroma(L) ? C / FullChroma<full>(L, H) * 100.0 : 0.0;
    return {C < tiny ? 0.0 : H, S, L};
}

template <Full full>
Triple HSLToRGB(const Triple& hsl)
{
    return XYZToRGB(LuvToXYZ(LChToLuv(HSLToLCh<full>(hsl))));
}
template <Full full>
Triple RGBToHSL(const Triple& rgb)
{
    return LChToHSL<full>(LuvToLCh(XYZToLuv(RGBToXYZ(rgb))));
}

}   // namespace QZ::Foundation::HSLuv
