// SPDX-License-Identifier: MIT

/// \file
/// Cone responses (LMS), IPT and its polar form ICH.

#if defined(QZ_FORMULAS_IPT) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_IPT
#undef QZ_FORMULAS_IPT
#else
#define QZ_FORMULAS_IPT
#endif

#include "QZ/Foundation/Color/Formulas/Polar.h"
#include "QZ/Foundation/Color/Formulas/XYZ.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// |c|^e with the sign of c; NaN stays NaN.
template <Exponent exponent, class F>
HWY_INLINE F SignedPow(F c)
{
    const F magnitude = Pow<exponent>(Abs(c));
    return Select(c >= 0.0f, magnitude, -magnitude);
}

/// F. Ebner and M. D. Fairchild, CIC 1998.
template <class F>
HWY_INLINE Vec3<F> LMSToIPT(const Vec3<F>& lms)
{
    return Constants::lmsToIPT * Each(lms, [](auto c) HWY_ATTR { return SignedPow<Exponent::k0_43>(c); });
}
template <class F>
HWY_INLINE Vec3<F> IPTToLMS(const Vec3<F>& ipt)
{
    return Each(Constants::iptToLMS * ipt, [](auto c) HWY_ATTR { return SignedPow<Exponent::k2_325581>(c); });
}

template <class F>
HWY_INLINE Vec3<F> LMSToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& lms)
{
    const Vec3<F> rgb = Constants::LMSToLinearRGB(illuminant) * lms;
    return extendedRange ? rgb : ClampToUnit(rgb);
}

template <class F>
HWY_INLINE Vec3<F> XYZToIPT(CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    return LMSToIPT(Constants::XYZToLMS(illuminant) * xyz);
}
template <class F>
HWY_INLINE Vec3<F> IPTToXYZ(CColor::EIlluminant illuminant, const Vec3<F>& ipt)
{
    return Constants::LMSToXYZ(illuminant) * IPTToLMS(ipt);
}
template <class F>
HWY_INLINE Vec3<F> LinearRGBToIPT(CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    return LMSToIPT(Constants::LinearRGBToLMS(illuminant) * rgb);
}
template <class F>
HWY_INLINE Vec3<F> IPTToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& ipt)
{
    return LMSToLinearRGB(extendedRange, illuminant, IPTToLMS(ipt));
}
template <class F>
HWY_INLINE Vec3<F> SRGBToIPT(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& srgb)
{
    return LinearRGBToIPT(illuminant, NonlinearToLinear(useGamma22, extendedRange, srgb));
}
template <class F>
HWY_INLINE Vec3<F> IPTToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& ipt)
{
    return LinearToNonlinear(useGamma22, extendedRange, IPTToLinearRGB(extendedRange, illuminant, ipt));
}

/// chroma / sqrt(I^2 + chroma^2); 0 for greys and for NaN.
template <class F>
HWY_INLINE F IPTSaturation(const Vec3<F>& ipt)
{
    const F c2 = ipt.y * ipt.y + ipt.z * ipt.z;
    return Select(c2 > 0.0f, Sqrt(c2) / Sqrt(ipt.x * ipt.x + c2), F(0.0f));
}

/// The hue is measured from the T axis towards P.
template <class F>
HWY_INLINE F IPTHue(const Vec3<F>& ipt)
{
    return Atan2(ipt.y, ipt.z);
}
template <class F>
HWY_INLINE Vec3<F> IPTToICH(const Vec3<F>& ipt)
{
    return {ipt.x, Hypotenuse(ipt.z, ipt.y), IPTHue(ipt)};
}
template <class F>
HWY_INLINE Vec3<F> ICHToIPT(const Vec3<F>& ich)
{
    const auto [sine, cosine] = SinCos(ich.z);
    return {ich.x, ich.y * sine, ich.y * cosine};
}
template <class F>
HWY_INLINE Vec3<F> LinearRGBToICH(CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    return IPTToICH(LinearRGBToIPT(illuminant, rgb));
}
template <class F>
HWY_INLINE Vec3<F> ICHToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& ich)
{
    return IPTToLinearRGB(extendedRange, illuminant, ICHToIPT(ich));
}

/// Linear cone responses.
template <class F>
HWY_INLINE Vec3<F> SRGBToLMS(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& srgb)
{
    return Constants::XYZToLMS(illuminant) * SRGBToXYZ(useGamma22, extendedRange, illuminant, srgb);
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
