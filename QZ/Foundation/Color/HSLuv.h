// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// HSLuv and HPLuv: hue, saturation and lightness that look as even as CIE LCh(uv) does.
///
/// In HSLuv ("HUSL" below) a saturation of 100 is the edge of the sRGB gamut at that hue and lightness; in
/// HPLuv ("HUSLp") it is the largest chroma that is in gamut at every hue. Source: A. Boronine, "HSLuv",
/// hsluv.org.
///
/// **Scales.** Double precision. RGB is gamma-encoded sRGB from 0 to 1, XYZ has Y = 1 for white, L runs from
/// 0 to 100, hues are degrees from 0 to 360, saturations run from 0 to 100. The white is D65.
///
/// **Names.** Plain names in the global namespace, `m` and `epsilon` among them. No other header of the
/// library includes this one: include it where its names are welcome.
///
/// Nothing is clamped and any value is accepted: NaN and infinity pass through the arithmetic. Only
/// roundTo6decimals() and rgbToHex() throw, and every function may be called from any thread.

#include <cstdint>
#include <string>

#include "QZ/Export.h"

/// A colour of any of the spaces.
struct Tuple {
    double a;
    double b;
    double c;
};

/// v = slope * u + intercept in the plane of Luv.
struct GamutLine {
    double slope;
    double intercept;
};

/// XYZ to linear sRGB, row by row.
QZ_API extern const double m[3][3];
/// u' and v' of the white.
QZ_API extern const double refU;
QZ_API extern const double refV;
/// 24389 / 27 and 216 / 24389, the constants of CIE lightness.
QZ_API extern const double kappa;
QZ_API extern const double epsilon;

/// \name The gamut of sRGB at one lightness
/// \{

/// The six sides of the gamut at lightness L; side 2 * channel + t is where R, G or B (0, 1, 2) is t.
/// \return  six lines in memory from `malloc`, to be released with `free`; null when there is none to be had.
[[nodiscard]] QZ_API GamutLine* getBounds(double L);
/// x where the two lines cross; infinite or NaN for parallel ones.
[[nodiscard]] QZ_API double intersectLineLine(double slope1, double intercept1, double slope2,
                                              double intercept2);
[[nodiscard]] QZ_API double distanceFromPole(double x, double y);
/// The length of the ray from the origin in the direction theta, in radians, up to the line; negative when
/// the line lies behind.
[[nodiscard]] QZ_API double lengthOfRayUntilIntersect(double theta, double slope, double intercept);
/// The chroma in gamut at every hue. The largest double when no side qualifies, as for NaN.
[[nodiscard]] QZ_API double maxSafeChromaForL(double L);
/// The largest chroma in gamut at hue H, in degrees. The largest double when no side qualifies, as for NaN.
[[nodiscard]] QZ_API double maxChromaForLH(double L, double H);
/// \}

/// \name Steps
/// Colours in the order of the space's name: (R, G, B), (X, Y, Z), (L, u, v), (L, C, H) and (H, S, L).
/// \{
[[nodiscard]] QZ_API double tupleDotProduct(Tuple a, Tuple b);
/// Linear light to encoded sRGB (IEC 61966-2-1:1999) and back.
[[nodiscard]] QZ_API double fromLinear(double c);
[[nodiscard]] QZ_API double toLinear(double c);
[[nodiscard]] QZ_API Tuple xyzToRgb(Tuple xyz);
[[nodiscard]] QZ_API Tuple rgbToXyz(Tuple rgb);
/// CIE lightness (CIE 15:2004, 8.2.1.1) and back.
[[nodiscard]] QZ_API double yToL(double Y);
[[nodiscard]] QZ_API double lToY(double L);
/// L = 0 gives (0, 0, 0), in both directions.
[[nodiscard]] QZ_API Tuple xyzToLuv(Tuple xyz);
[[nodiscard]] QZ_API Tuple luvToXyz(Tuple luv);
/// A chroma below 1e-8 has the hue 0.
[[nodiscard]] QZ_API Tuple luvToLch(Tuple luv);
[[nodiscard]] QZ_API Tuple lchToLuv(Tuple lch);
/// Within 1e-8 of black, within 1e-7 of white and beyond both, chroma and saturation are 0; L itself is
/// passed on as it is. A saturation or a chroma below 1e-8 has the hue 0.
[[nodiscard]] QZ_API Tuple huslToLch(Tuple husl);
[[nodiscard]] QZ_API Tuple lchToHusl(Tuple lch);
[[nodiscard]] QZ_API Tuple huslpToLch(Tuple huslp);
[[nodiscard]] QZ_API Tuple lchToHuslp(Tuple lch);
/// \}

/// \name Whole conversions
/// \code
///     double h, s, l;
///     rgbToHusl(1.0, 0.5, 0.0, &h, &s, &l);   // 29.9, 100, 67.0
/// \endcode
/// \{
QZ_API void huslToRgb(double h, double s, double l, double* r, double* g, double* b);
QZ_API void rgbToHusl(double r, double g, double b, double* h, double* s, double* l);
QZ_API void huslpToRgb(double h, double s, double l, double* r, double* g, double* b);
QZ_API void rgbToHuslp(double r, double g, double b, double* h, double* s, double* l);
/// \}

/// \name Range
/// \{

/// c clamped to 0 to 1; NaN gives 1.
[[nodiscard]] QZ_API double checkBorders(double c);
/// c rounded to six decimals, halves away from zero; NaN stays NaN.
/// \throws std::out_of_range  "Illegal rgb value: " and the rounded value, when that is outside 0 to 1.
[[nodiscard]] QZ_API double roundTo6decimals(double c);
/// \}

/// \name Hexadecimal text
///
/// A number is read as a scanner reads it: white space (the six characters of ASCII) is skipped, 0x or 0X may
/// follow, and the digits end at the first character that is none. A number past 32 bits reads as 0xFFFFFFFF;
/// without a digit there is none, after 0x either.
/// \{

/// "#RRGGBB", upper case: each channel through roundTo6decimals(), then to the nearest of 0 to 255, halves
/// upwards. NaN gives 00.
/// \throws std::out_of_range  as roundTo6decimals().
[[nodiscard]] QZ_API std::string rgbToHex(double r, double g, double b);
/// The colour of "#RRGGBB". The "#" may be absent, but the text has at least seven characters all the same;
/// what follows the sixth digit is ignored. Each pair is a number of its own: " F" is 15.
/// \return  false, with nothing written, when the text is shorter or a pair has no digit.
[[nodiscard]] QZ_API bool hexToRgb(const std::string& text, double* r, double* g, double* b);
/// \return  false, with nothing written, when there is no digit.
[[nodiscard]] QZ_API bool hexToInt(const std::string& text, std::uint32_t* value);
/// \}
