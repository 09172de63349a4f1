// SPDX-License-Identifier: MIT

/// \file
/// CIE L*a*b* on the hundredth scale, its polar form and its colour difference.

#if defined(QZ_FORMULAS_LAB) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_LAB
#undef QZ_FORMULAS_LAB
#else
#define QZ_FORMULAS_LAB
#endif

#include "QZ/Foundation/Color/Formulas/LXX.h"
#include "QZ/Foundation/Color/Formulas/Polar.h"
#include "QZ/Foundation/Color/Formulas/XYZ.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// XYZ over that of the white.
template <class F>
HWY_INLINE Vec3<F> XYZToRatio(CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    const Constants::Vector& inverseWhite = Constants::InvXYZReference(illuminant);
    return {xyz.x * inverseWhite.x, xyz.y * inverseWhite.y, xyz.z * inverseWhite.z};
}
template <class F>
HWY_INLINE Vec3<F> RatioToXYZ(CColor::EIlluminant illuminant, const Vec3<F>& ratio)
{
    const Constants::Vector& white = Constants::XYZReference(illuminant);
    return {ratio.x * white.x, ratio.y * white.y, ratio.z * white.z};
}
template <class F>
HWY_INLINE Vec3<F> LinearRGBToRatio(CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    return XYZToRatio(illuminant, LinearRGBToXYZ(illuminant, rgb));
}
template <class F>
HWY_INLINE Vec3<F> RatioToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& ratio)
{
    return XYZToLinearRGB(extendedRange, illuminant, RatioToXYZ(illuminant, ratio));
}

/// Lab of the roots of the three ratios (CIE 15:2004, 8.2.1.1). L alone is clamped.
template <class F>
HWY_INLINE Vec3<F> RootsToLab(const Vec3<F>& f)
{
    return {ClampToUnit(1.16f * f.y - 0.16f), (f.x - f.y) * 5.0f, (f.y - f.z) * 2.0f};
}
template <class F>
HWY_INLINE Vec3<F> LabToRoots(const Vec3<F>& lab)
{
    const F fy = (lab.x + 0.16f) * 0.862069f;
    return {lab.y * 0.2f + fy, fy, lab.z * -0.5f + fy};
}

template <class F>
HWY_INLINE Vec3<F> XYZToLab(CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    return RootsToLab(Each(XYZToRatio(illuminant, xyz), [](auto t) HWY_ATTR { return LightnessRoot(t); }));
}
template <class F>
HWY_INLINE Vec3<F> LabToXYZ(CColor::EIlluminant illuminant, const Vec3<F>& lab)
{
    return RatioToXYZ(illuminant,
                      Each(LabToRoots(lab), [](auto f) HWY_ATTR { return InverseLightnessRoot(f); }));
}

template <class F>
HWY_INLINE Vec3<F> LinearRGBToLab(CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    return XYZToLab(illuminant, LinearRGBToXYZ(illuminant, rgb));
}
template <class F>
HWY_INLINE Vec3<F> LabToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& lab)
{
    return XYZToLinearRGB(extendedRange, illuminant, LabToXYZ(illuminant, lab));
}
template <class F>
HWY_INLINE Vec3<F> SRGBToLab(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& srgb)
{
    return LinearRGBToLab(illuminant, NonlinearToLinear(useGamma22, extendedRange, srgb));
}

/// Clamped to 0 to 1 before the encoding, in extended range too.
template <class F>
HWY_INLINE Vec3<F> LabToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& lab)
{
    const Vec3<F> rgb = ClampToUnit(LabToLinearRGB(extendedRange, illuminant, lab));
    return LinearToNonlinear(useGamma22, extendedRange, rgb);
}

/// Extended-range RGB is D50-referred: its matrix is the D50 one, whatever white Lab refers to.
template <class F>
HWY_INLINE Vec3<F> ExtendedRangeSRGBToLab(bool useGamma22, CColor::EIlluminant illuminant,
                                          const Vec3<F>& srgb)
{
    return XYZToLab(illuminant, SRGBToXYZ(useGamma22, true, CColor::eD50, srgb));
}
template <class F>
HWY_INLINE Vec3<F> LabToExtendedRangeSRGB(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& lab)
{
    return XYZToSRGB(useGamma22, true, CColor::eD50, LabToXYZ(illuminant, lab));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
