// SPDX-License-Identifier: MIT

/// \file
/// Chroma, hue and saturation: what Lab, Luv and IPT have in common.

#if defined(QZ_FORMULAS_POLAR) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_POLAR
#undef QZ_FORMULAS_POLAR
#else
#define QZ_FORMULAS_POLAR
#endif

#include "QZ/Foundation/Color/Elementary.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <class F>
HWY_INLINE F Hypotenuse(F x, F y)
{
    return Sqrt(x * x + y * y);
}

/// (L, second, third) to (L, chroma, hue), the hue measured from the second axis towards the third.
template <class F>
HWY_INLINE Vec3<F> ToPolar(const Vec3<F>& v)
{
    return {v.x, Hypotenuse(v.y, v.z), Atan2(v.z, v.y)};
}

/// chroma / sqrt(lightness^2 + chroma^2); 0 when that root is not above 0, and for NaN.
template <class F>
HWY_INLINE F Saturation(F lightness, F chroma)
{
    const F sum = lightness * lightness + chroma * chroma;
    return Select(sum > 0.0f, chroma / Sqrt(sum), F(0.0f));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
