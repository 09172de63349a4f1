// SPDX-License-Identifier: MIT

/// \file
/// The CIE lightness function, its inverse, and lightness from luminance alone.

#if defined(QZ_FORMULAS_LXX) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_LXX
#undef QZ_FORMULAS_LXX
#else
#define QZ_FORMULAS_LXX
#endif

#include "QZ/Foundation/Color/Formulas/XYZ.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// The cube root with a line near black (CIE 15:2004, 8.2.1.1).
template <class F>
HWY_INLINE F LightnessRoot(F t)
{
    return Choose(
        t > 0.008856f, t, [](F x) HWY_ATTR { return Pow<Exponent::k0_33333334>(x); },
        [](F x) HWY_ATTR { return x * 7.787f + 0.13793103f; });
}

/// The inverse. The cube, not the argument, is compared with the threshold.
template <class F>
HWY_INLINE F InverseLightnessRoot(F s)
{
    const F cube = Pow<Exponent::k3>(s);
    return Select(cube > 0.008856f, cube, (s - 0.13793103f) * 0.12841916f);
}

/// L* / 100 of a luminance; not below 0, not clamped above.
template <class F>
HWY_INLINE F LinearYToLXX(F Y)
{
    return NotBelowZero(1.16f * LightnessRoot(Y) - 0.16f);
}
template <class F>
HWY_INLINE F LXXToLinearY(F L)
{
    return InverseLightnessRoot((L + 0.16f) / 1.16f);
}

/// The luminance weights are those of D65, fixed.
template <class F>
HWY_INLINE F LinearRGBToLXX(const Vec3<F>& rgb)
{
    return LinearYToLXX(Dot(rgb, Constants::linearRGBLuminanceD65));
}
template <class F>
HWY_INLINE F SRGBToLXX(bool useGamma22, bool extendedRange, const Vec3<F>& srgb)
{
    return LinearRGBToLXX(NonlinearToLinear(useGamma22, extendedRange, srgb));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
