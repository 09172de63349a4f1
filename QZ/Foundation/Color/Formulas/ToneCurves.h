// SPDX-License-Identifier: MIT

/// \file
/// Transfer curves between encoded values and linear light.

#if defined(QZ_FORMULAS_TONECURVES) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_TONECURVES
#undef QZ_FORMULAS_TONECURVES
#else
#define QZ_FORMULAS_TONECURVES
#endif

#include "QZ/Foundation/Color/Elementary.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// Encoded sRGB to linear light (IEC 61966-2-1:1999, 5.2), by reciprocals. NaN stays NaN.
template <class F>
HWY_INLINE F SRGBToLinear(F c)
{
    return Choose(
        c > 0.04045f, c, [](F x) HWY_ATTR { return Pow<Exponent::k2_4>((x + 0.055f) * 0.94786733f); },
        [](F x) HWY_ATTR { return x * 0.07739938f; });
}

/// Linear light to encoded sRGB.
template <class F>
HWY_INLINE F LinearToSRGB(F c)
{
    return Choose(
        c > 0.0031308f, c, [](F x) HWY_ATTR { return Pow<Exponent::k0_41666666>(x) * 1.055f - 0.055f; },
        [](F x) HWY_ATTR { return x * 12.92f; });
}

/// One component without extended range.
template <class F>
HWY_INLINE F NonlinearToLinear(bool useGamma22, F c)
{
    return useGamma22 ? Pow<Exponent::k2_2>(c) : SRGBToLinear(c);
}
template <class F>
HWY_INLINE F LinearToNonlinear(bool useGamma22, F c)
{
    return useGamma22 ? Pow<Exponent::k0_45454544>(c) : LinearToSRGB(c);
}

/// Applies a curve; the extended range mirrors it about 0, a zero of either sign giving +0.
template <class F, class Curve>
HWY_INLINE F Mirrored(bool extendedRange, F c, Curve&& curve)
{
    if (!extendedRange)
        return curve(c);
    return curve(Abs(c)) * Select(c >= 0.0f, F(1.0f), F(-1.0f));
}

/// Each component by itself.
template <class F>
HWY_INLINE F ComponentToLinear(bool useGamma22, bool extendedRange, const F& c)
{
    return Mirrored(extendedRange, c,
                    [&](const F& magnitude) HWY_ATTR { return NonlinearToLinear(useGamma22, magnitude); });
}
template <class F>
HWY_INLINE F ComponentToNonlinear(bool useGamma22, bool extendedRange, const F& c)
{
    return Mirrored(extendedRange, c,
                    [&](const F& magnitude) HWY_ATTR { return LinearToNonlinear(useGamma22, magnitude); });
}
template <class F>
HWY_INLINE Vec3<F> NonlinearToLinear(bool useGamma22, bool extendedRange, const Vec3<F>& v)
{
    return Each(v, [&](auto c) HWY_ATTR { return ComponentToLinear(useGamma22, extendedRange, c); });
}
template <class F>
HWY_INLINE Vec3<F> LinearToNonlinear(bool useGamma22, bool extendedRange, const Vec3<F>& v)
{
    return Each(v, [&](auto c) HWY_ATTR { return ComponentToNonlinear(useGamma22, extendedRange, c); });
}

/// Rec. 709 code to linear light (ITU-R BT.709-6, item 1.2), by reciprocals.
template <class F>
HWY_INLINE F Rec709ToLinear(F c)
{
    return Choose(
        c > 0.081f, c, [](F x) HWY_ATTR { return Pow<Exponent::k2_2222223>((x + 0.099f) * 0.9099181f); },
        [](F x) HWY_ATTR { return x * 0.22222222f; });
}
template <class F>
HWY_INLINE F LinearToRec709(F c)
{
    return Choose(
        c > 0.018f, c, [](F x) HWY_ATTR { return Pow<Exponent::k0_45>(x) * 1.099f - 0.099f; },
        [](F x) HWY_ATTR { return x * 4.5f; });
}
template <class F>
HWY_INLINE F SRGBToRec709(F c)
{
    return LinearToRec709(SRGBToLinear(c));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
