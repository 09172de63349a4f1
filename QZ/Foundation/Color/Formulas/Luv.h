// SPDX-License-Identifier: MIT

/// \file
/// CIE L*u*v* on the hundredth scale.

#if defined(QZ_FORMULAS_LUV) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_LUV
#undef QZ_FORMULAS_LUV
#else
#define QZ_FORMULAS_LUV
#endif

#include "QZ/Foundation/Color/Formulas/LXX.h"
#include "QZ/Foundation/Color/Formulas/Polar.h"
#include "QZ/Foundation/Color/Formulas/XYZ.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// u' and v' of a colour (CIE 15:2004, 8.2.2.1).
template <class F>
struct UV {
    F u;
    F v;
};

/// From X, Y and d = X + 15 Y + 3 Z, which must not be 0.
template <class F>
constexpr HWY_INLINE UV<F> UniformChromaticity(F X, F Y, F d)
{
    const F inverse = 1.0f / d;
    return {X * 4.0f * inverse, Y * 9.0f * inverse};
}

/// X + 15 Y + 3 Z.
template <class F>
constexpr HWY_INLINE F UniformDenominator(F X, F Y, F Z)
{
    return (X + 15.0f * Y) + 3.0f * Z;
}

constexpr UV<float> UniformWhite(const Constants::Vector& white)
{
    return UniformChromaticity(white.x, white.y, UniformDenominator(white.x, white.y, white.z));
}
inline constexpr UV<float> uniformWhiteD50 = UniformWhite(Constants::xyzReferenceD50);
inline constexpr UV<float> uniformWhiteD65 = UniformWhite(Constants::xyzReferenceD65);

/// Y, and how far u' and v' lie from the white's. Without a chromaticity all are 0.
template <class F>
HWY_INLINE Vec3<F> XYZToUniform(CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    const F d = UniformDenominator(xyz.x, xyz.y, xyz.z);
    const UV<F> colour = UniformChromaticity(xyz.x, xyz.y, d);
    const UV<float>& white = Constants::Of(illuminant, uniformWhiteD50, uniformWhiteD65);
    const Vec3<F> uniform{xyz.y, colour.u - white.u, colour.v - white.v};
    return Select(d == 0.0f, Vec3<F>{F(0.0f), F(0.0f), F(0.0f)}, uniform);
}

/// Of the root of Y in the place of Y. L alone is clamped. The white's Y is 1, so Y is not divided by it.
template <class F>
HWY_INLINE Vec3<F> UniformToLuv(const Vec3<F>& uniform)
{
    const F L = ClampToUnit(1.16f * uniform.x - 0.16f);
    const F scale = 13.0f * L;
    return {L, uniform.y * scale, uniform.z * scale};
}
template <class F>
HWY_INLINE Vec3<F> XYZToLuv(CColor::EIlluminant illuminant, const Vec3<F>& xyz)
{
    const Vec3<F> uniform = XYZToUniform(illuminant, xyz);
    return UniformToLuv(Vec3<F>{LightnessRoot(uniform.x), uniform.y, uniform.z});
}

/// Worked on the CIE scale. Nothing is clamped.
template <class F>
HWY_INLINE Vec3<F> LuvToXYZ(CColor::EIlluminant illuminant, const Vec3<F>& luv)
{
    const F L = luv.x * 100.0f;
    const F t = (L + 16.0f) / 116.0f;
    const F cube = Pow<Exponent::k3>(t);
    const F Y = Select(cube > 0.008856f, cube, (t - 0.13793103f) / 7.787f);

    const UV<float>& white = Constants::Of(illuminant, uniformWhiteD50, uniformWhiteD65);
    const F inverse = 1.0f / (L * 13.0f);
    const F u = luv.y * 100.0f * inverse + white.u;
    const F v = luv.z * 100.0f * inverse + white.v;
    const F X = -9.0f * Y * u / ((u - 4.0f) * v - u * v);
    const F Z = (9.0f * Y - 15.0f * v * Y - v * X) / (3.0f * v);
    return Select(luv.x == 0.0f, Vec3<F>{F(0.0f), F(0.0f), F(0.0f)}, Vec3<F>{X, Y, Z});
}

template <class F>
HWY_INLINE Vec3<F> LinearRGBToLuv(CColor::EIlluminant illuminant, const Vec3<F>& rgb)
{
    return XYZToLuv(illuminant, LinearRGBToXYZ(illuminant, rgb));
}
template <class F>
HWY_INLINE Vec3<F> LuvToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, const Vec3<F>& luv)
{
    return XYZToLinearRGB(extendedRange, illuminant, LuvToXYZ(illuminant, luv));
}
template <class F>
HWY_INLINE Vec3<F> SRGBToLuv(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& srgb)
{
    return XYZToLuv(illuminant, SRGBToXYZ(useGamma22, extendedRange, illuminant, srgb));
}
template <class F>
HWY_INLINE Vec3<F> LuvToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                             const Vec3<F>& luv)
{
    return XYZToSRGB(useGamma22, extendedRange, illuminant, LuvToXYZ(illuminant, luv));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
