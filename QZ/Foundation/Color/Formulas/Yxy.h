// SPDX-License-Identifier: MIT

/// \file
/// Luminance and chromaticity.

#if defined(QZ_FORMULAS_YXY) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_YXY
#undef QZ_FORMULAS_YXY
#else
#define QZ_FORMULAS_YXY
#endif

#include "QZ/Foundation/Color/Formulas/XYZ.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// CIE 15:2004, clause 7. What has no light has the chromaticity (0, 0).
template <class F>
HWY_INLINE Vec3<F> XYZToYxy(const Vec3<F>& xyz)
{
    const F sum = xyz.x + xyz.y + xyz.z;
    const F scale = Select(sum > 0.0f, 1.0f / sum, F(0.0f));
    return {xyz.y, xyz.x * scale, xyz.y * scale};
}

/// With y = 0 the factor is 1, so that the result stays finite. A product of two floats is exact in double,
/// so that nothing is gained there.
template <class F>
HWY_INLINE Vec3<F> YxyToXYZ(const Vec3<F>& Yxy)
{
    const F scale = Select(Yxy.z == 0.0f, F(1.0f), Yxy.x / Yxy.z);
    return {Yxy.y * scale, Yxy.x, (1.0f - Yxy.y - Yxy.z) * scale};
}

template <class F>
HWY_INLINE Vec3<F> LinearRGBToYxy(CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    return XYZToYxy(LinearRGBToXYZ(illuminant, rgb));
}
template <class F>
HWY_INLINE Vec3<F> YxyToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& Yxy)
{
    return XYZToLinearRGB(extendedRange, illuminant, YxyToXYZ(Yxy));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
