// SPDX-License-Identifier: MIT

/// \file
/// RGB, XYZ and luminance.

#if defined(QZ_FORMULAS_XYZ) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_XYZ
#undef QZ_FORMULAS_XYZ
#else
#define QZ_FORMULAS_XYZ
#endif

#include "QZ/Foundation/Color/Constants.h"
#include "QZ/Foundation/Color/Formulas/ToneCurves.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <class F>
HWY_INLINE Vec3<F> ClampToUnit(const Vec3<F>& v)
{
    return Map(v, [](F c) HWY_ATTR { return ClampToUnit(c); });
}

template <class F>
HWY_INLINE Vec3<F> LinearRGBToXYZ(CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    return Constants::LinearRGBToXYZ(illuminant) * rgb;
}
template <class F>
HWY_INLINE Vec3<F> XYZToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    const Vec3<F> rgb = Constants::XYZToLinearRGB(illuminant) * xyz;
    return extendedRange ? rgb : ClampToUnit(rgb);
}
template <class F>
HWY_INLINE Vec3<F> SRGBToXYZ(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& srgb)
{
    return LinearRGBToXYZ(illuminant, NonlinearToLinear(useGamma22, extendedRange, srgb));
}
template <class F>
HWY_INLINE Vec3<F> XYZToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& xyz)
{
    return LinearToNonlinear(useGamma22, extendedRange, XYZToLinearRGB(extendedRange, illuminant, xyz));
}

/// The grey of luminance Y.
template <class F>
HWY_INLINE Vec3<F> YToXYZ(CColor::EIlluminant illuminant, F Y)
{
    const Constants::Vector& white = Constants::XYZReference(illuminant);
    return {white.x * Y, white.y * Y, white.z * Y};
}

/// Keeps the chromaticity and replaces the luminance; black has none to keep and takes the white's.
template <class F>
HWY_INLINE Vec3<F> XYZWithModifiedY(CColor::EIlluminant illuminant, const Vec3<F>& xyz, F Y)
{
    const F scale = Y / xyz.y;
    const Vec3<F> scaled{xyz.x * scale, Y, xyz.z * scale};
    const Vec3<F> black{F(0.0f), F(0.0f), F(0.0f)};
    return Select(Y == 0.0f, black, Select(xyz.y == 0.0f, YToXYZ(illuminant, Y), scaled));
}

/// v . weights.
template <class F>
HWY_INLINE F Dot(const Vec3<F>& v, const Constants::Vector& weights)
{
    return v.x * weights.x + v.y * weights.y + v.z * weights.z;
}

/// Extended-range colours are D50-referred whatever the illuminant, and not clamped.
template <class F>
HWY_INLINE F LinearRGBToLinearY(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    if (extendedRange)
        return Dot(rgb, Constants::linearRGBLuminanceD50);
    return ClampToUnit(Dot(rgb, Constants::LinearRGBLuminance(illuminant)));
}
template <class F>
HWY_INLINE F SRGBToLinearY(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                           const Vec3<F>& srgb)
{
    return LinearRGBToLinearY(extendedRange, illuminant, NonlinearToLinear(useGamma22, extendedRange, srgb));
}
template <class F>
HWY_INLINE F SRGBToNonlinearY(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                              const Vec3<F>& srgb)
{
    return LinearToNonlinear(useGamma22, SRGBToLinearY(useGamma22, extendedRange, illuminant, srgb));
}
template <class F>
HWY_INLINE F LinearRGBToNonlinearY(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                   const Vec3<F>& rgb)
{
    return LinearToNonlinear(useGamma22, LinearRGBToLinearY(extendedRange, illuminant, rgb));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
