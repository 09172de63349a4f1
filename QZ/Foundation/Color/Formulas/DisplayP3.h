// SPDX-License-Identifier: MIT

/// \file
/// Display P3, linear and encoded. Its encoded form is never extended-range.

#if defined(QZ_FORMULAS_DISPLAYP3) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_DISPLAYP3
#undef QZ_FORMULAS_DISPLAYP3
#else
#define QZ_FORMULAS_DISPLAYP3
#endif

#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Foundation/Color/Formulas/Lab.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <class F>
HWY_INLINE Vec3<F> LinearDisplayP3ToXYZ(CColor::EIlluminant illuminant, const Vec3<F>& p3lin)
{
    return Constants::LinearDisplayP3ToXYZ(illuminant) * p3lin;
}
template <class F>
HWY_INLINE Vec3<F> XYZToLinearDisplayP3(CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    return Constants::XYZToLinearDisplayP3(illuminant) * xyz;
}
template <class F>
HWY_INLINE Vec3<F> DisplayP3ToXYZ(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& p3)
{
    return LinearDisplayP3ToXYZ(illuminant, NonlinearToLinear(useGamma22, false, p3));
}
template <class F>
HWY_INLINE Vec3<F> LinearDisplayP3ToDisplayP3(bool useGamma22, const Vec3<F>& p3lin)
{
    return LinearToNonlinear(useGamma22, false, p3lin);
}

/// The clamp comes after the encoding, so that a NaN from the power of a negative value becomes 0.
template <class F>
HWY_INLINE Vec3<F> XYZToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    return ClampToUnit(LinearDisplayP3ToDisplayP3(useGamma22, XYZToLinearDisplayP3(illuminant, xyz)));
}

template <class F>
HWY_INLINE Vec3<F> DisplayP3ToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                   const Vec3<F>& p3)
{
    return XYZToSRGB(useGamma22, extendedRange, illuminant, DisplayP3ToXYZ(useGamma22, illuminant, p3));
}
template <class F>
HWY_INLINE Vec3<F> SRGBToDisplayP3(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                   const Vec3<F>& srgb)
{
    return XYZToDisplayP3(useGamma22, illuminant, SRGBToXYZ(useGamma22, extendedRange, illuminant, srgb));
}
template <class F>
HWY_INLINE Vec3<F> DisplayP3ToLab(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& p3)
{
    return XYZToLab(illuminant, DisplayP3ToXYZ(useGamma22, illuminant, p3));
}
template <class F>
HWY_INLINE Vec3<F> LabToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& lab)
{
    return XYZToDisplayP3(useGamma22, illuminant, LabToXYZ(illuminant, lab));
}
template <class F>
HWY_INLINE Vec3<F> DisplayP3ToIPT(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& p3)
{
    return XYZToIPT(illuminant, DisplayP3ToXYZ(useGamma22, illuminant, p3));
}
template <class F>
HWY_INLINE Vec3<F> IPTToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& ipt)
{
    return XYZToDisplayP3(useGamma22, illuminant, IPTToXYZ(illuminant, ipt));
}
template <class F>
HWY_INLINE Vec3<F> LinearDisplayP3ToIPT(CColor::EIlluminant illuminant, const Vec3<F>& p3lin)
{
    return XYZToIPT(illuminant, LinearDisplayP3ToXYZ(illuminant, p3lin));
}
template <class F>
HWY_INLINE Vec3<F> IPTToLinearDisplayP3(CColor::EIlluminant illuminant, const Vec3<F>& ipt)
{
    return XYZToLinearDisplayP3(illuminant, IPTToXYZ(illuminant, ipt));
}

template <class F>
HWY_INLINE F LinearDisplayP3ToLinearY(CColor::EIlluminant illuminant, const Vec3<F>& p3lin)
{
    return ClampToUnit(Dot(p3lin, Constants::DisplayP3Luminance(illuminant)));
}
template <class F>
HWY_INLINE F DisplayP3ToLinearY(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& p3)
{
    return LinearDisplayP3ToLinearY(illuminant, NonlinearToLinear(useGamma22, false, p3));
}
template <class F>
HWY_INLINE F DisplayP3ToDisplayP3Y(bool useGamma22, CColor::EIlluminant illuminant, const Vec3<F>& p3)
{
    return ClampToUnit(LinearToNonlinear(useGamma22, DisplayP3ToLinearY(useGamma22, illuminant, p3)));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
