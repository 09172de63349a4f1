// SPDX-License-Identifier: MIT

/// \file
/// Hue, saturation and value; the hue is a fraction of a turn.

#if defined(QZ_FORMULAS_HSV) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_HSV
#undef QZ_FORMULAS_HSV
#else
#define QZ_FORMULAS_HSV
#endif

#include "QZ/Foundation/Color/Lane.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// A. R. Smith, "Color Gamut Transform Pairs", SIGGRAPH 1978. Red is tested before green, green before blue.
template <class F>
HWY_INLINE Vec3<F> RGBToHSV(const Vec3<F>& rgb)
{
    const F high = Select(rgb.x < rgb.y, rgb.y, rgb.x);
    const F low = Select(rgb.y < rgb.x, rgb.y, rgb.x);
    const F max = Select(high < rgb.z, rgb.z, high);
    const F min = Select(rgb.z < low, rgb.z, low);
    const F d = max - min;
    const F sixth = 6.0f * d;

    const F fromRed = (rgb.y - rgb.z) / sixth;
    const F fromGreen = (rgb.z - rgb.x) / sixth + 0.33333334f;
    const F fromBlue = (rgb.x - rgb.y) / sixth + 0.6666667f;
    const F turn = Select(rgb.x == max, fromRed, Select(rgb.y == max, fromGreen, fromBlue));
    const F hue = Select(turn < 0.0f, turn + 1.0f, Select(turn > 1.0f, turn - 1.0f, turn));

    const auto isGrey = Or(max == 0.0f, d == 0.0f);
    return {Select(isGrey, F(0.0f), hue), Select(isGrey, F(0.0f), d / max), max};
}

template <class F>
HWY_INLINE Vec3<F> HSVToRGB(const Vec3<F>& hsv)
{
    const F S = hsv.y;
    const F V = hsv.z;
    const F turned = hsv.x * 6.0f;
    const F h = Select(turned == 6.0f, F(0.0f), turned);
    const F sector = Floor(h);
    const F f = h - sector;
    const F p = (1.0f - S) * V;
    const F q = (1.0f - S * f) * V;
    const F t = (1.0f - S * (1.0f - f)) * V;

    Vec3<F> rgb{V, p, q};   // sector 5, and whatever is no sector
    rgb = Select(sector == 4.0f, Vec3<F>{t, p, V}, rgb);
    rgb = Select(sector == 3.0f, Vec3<F>{p, q, V}, rgb);
    rgb = Select(sector == 2.0f, Vec3<F>{p, V, t}, rgb);
    rgb = Select(sector == 1.0f, Vec3<F>{q, V, p}, rgb);
    rgb = Select(sector == 0.0f, Vec3<F>{V, t, p}, rgb);
    return Select(S == 0.0f, Vec3<F>{V, V, V}, rgb);
}

/// The opposite hue.
template <class F>
HWY_INLINE Vec3<F> ComplementaryColor(const Vec3<F>& rgb)
{
    const Vec3<F> hsv = RGBToHSV(rgb);
    const F turned = hsv.x + 0.5f;
    return HSVToRGB(Vec3<F>{Select(turned > 1.0f, turned - 1.0f, turned), hsv.y, hsv.z});
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
