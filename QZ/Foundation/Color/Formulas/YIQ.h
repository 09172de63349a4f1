// SPDX-License-Identifier: MIT

/// \file
/// The opponent spaces of television, YIQ and YCbCr, and their rounded matrices.

#if defined(QZ_FORMULAS_YIQ) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FORMULAS_YIQ
#undef QZ_FORMULAS_YIQ
#else
#define QZ_FORMULAS_YIQ
#endif

#include "QZ/Foundation/Color/Constants.h"
#include "QZ/Foundation/Color/Lane.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

// NTSC, FCC 73.682.
inline constexpr Constants::Matrix rgbToYIQ{0.299f,    0.587f,     0.114f,       //
                                            0.595716f, -0.274453f, -0.321263f,   //
                                            0.211456f, -0.522591f, 0.311135f};
inline constexpr Constants::Matrix yiqToRGB{1.0f, 0.9563f,  0.621f,     //
                                            1.0f, -0.2721f, -0.6474f,   //
                                            1.0f, -1.107f,  1.7047f};

// ITU-R BT.601-7 in full range, to three decimals: not exact inverses, and callers rely on these values.
inline constexpr Constants::Matrix srgbToYCbCr{0.299f,  0.587f,  0.114f,   //
                                               -0.169f, -0.331f, 0.5f,     //
                                               0.5f,    -0.419f, -0.081f};
inline constexpr Constants::Matrix ycbcrToSRGB{1.0f, 0.0f,    1.402f,    //
                                               1.0f, -0.344f, -0.714f,   //
                                               1.0f, 1.772f,  0.0f};

template <class F>
HWY_INLINE Vec3<F> RGBToYIQ(const Vec3<F>& rgb)
{
    return rgbToYIQ * rgb;
}
template <class F>
HWY_INLINE Vec3<F> YIQToRGB(const Vec3<F>& yiq)
{
    return yiqToRGB * yiq;
}
template <class F>
HWY_INLINE Vec3<F> SRGBToYCbCr(const Vec3<F>& srgb)
{
    return srgbToYCbCr * srgb;
}
template <class F>
HWY_INLINE Vec3<F> YCbCrToSRGB(const Vec3<F>& ycbcr)
{
    return ycbcrToSRGB * ycbcr;
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
