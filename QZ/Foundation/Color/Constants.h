// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Foundation/Color/CColor.h"

/// \file
/// White points, luminance weights and matrices, as single-precision constants. A pair of a matrix and its
/// inverse is stored, never inverted at run time.

namespace QZ::Foundation::Constants {

using Matrix = Math::CMatrix3<float>;
using Vector = Math::CVector3<float>;

inline constexpr Vector xyzReferenceD50{0.96421206f, 1.0f, 0.8251883f};
inline constexpr Vector xyzReferenceD65{0.95047f, 1.0f, 1.08883f};
inline constexpr Vector invXYZReferenceD50{1.0371163f, 1.0f, 1.2118447f};
inline constexpr Vector invXYZReferenceD65{1.0521111f, 1.0f, 0.91841704f};

inline constexpr Vector sRGBLuminance{0.299f, 0.587f, 0.114f};
inline constexpr Vector linearRGBLuminanceD50{0.222488f, 0.716873f, 0.0606079f};
inline constexpr Vector linearRGBLuminanceD65{0.2126729f, 0.7151522f, 0.072175f};
inline constexpr Vector displayP3LuminanceD50{0.2412f, 0.69225f, 0.06657f};
inline constexpr Vector displayP3LuminanceD65{0.22900409f, 0.6917502f, 0.079260424f};

inline constexpr Matrix linearRGBToXYZD50{0.436066f, 0.385147f,  0.143066f,    //
                                          0.222488f, 0.716873f,  0.0606079f,   //
                                          0.013916f, 0.0970764f, 0.714096f};
inline constexpr Matrix linearRGBToXYZD65{0.4124564f, 0.3575761f, 0.1804375f,   //
                                          0.2126729f, 0.7151522f, 0.072175f,    //
                                          0.0193339f, 0.119192f,  0.9503041f};
inline constexpr Matrix xyzToLinearRGBD50{3.134107f,   -1.61739f,    -0.49063084f,   //
                                          -0.9787841f, 1.9162782f,   0.033453677f,   //
                                          0.07198278f, -0.22898574f, 1.4053854f};
inline constexpr Matrix xyzToLinearRGBD65{3.2404542f, -1.5371385f, -0.4985314f,   //
                                          -0.969266f, 1.8760108f,  0.041556f,     //
                                          0.0556434f, -0.2040259f, 1.0572252f};

// Hunt, Pointer and Estevez. The D65 matrix is normalised to the D65 white, the D50 one to the D50 white.
inline constexpr Matrix xyzToLMSD50{0.38978124f, 0.6891059f, -0.07869438f,   //
                                    -0.2297844f, 1.1832682f, 0.04640483f,    //
                                    0.0f,        0.0f,       1.2118447f};
inline constexpr Matrix xyzToLMSD65{0.4002f, 0.7075f, -0.0807f,   //
                                    -0.228f, 1.15f,   0.0612f,    //
                                    0.0f,    0.0f,    0.9184f};
inline constexpr Matrix lmsToXYZD50{1.9098477f, -1.1122478f, 0.16661209f,        //
                                    0.3708823f, 0.62912434f, -0.000006647009f,   //
                                    0.0f,       0.0f,        0.8251883f};
inline constexpr Matrix lmsToXYZD65{1.8502429f,  -1.1383016f, 0.23843496f,     //
                                    0.36683077f, 0.64388454f, -0.010673446f,   //
                                    0.0f,        0.0f,        1.0888501f};
inline constexpr Matrix lmsToIPT{0.4f,    0.4f,    0.2f,     //
                                 4.455f,  -4.851f, 0.396f,   //
                                 0.8056f, 0.3572f, -1.1628f};
inline constexpr Matrix iptToLMS{1.0f, 0.097568944f, 0.20522647f,   //
                                 1.0f, -0.11387651f, 0.13321717f,   //
                                 1.0f, 0.03261511f,  -0.6768873f};

inline constexpr Matrix linearDisplayP3ToXYZD50{0.51512f,  0.29198f, 0.1571f,    //
                                                0.2412f,   0.69225f, 0.06657f,   //
                                                -0.00105f, 0.04189f, 0.78407f};
inline constexpr Matrix linearDisplayP3ToXYZD65{0.48661506f,       0.26570842f, 0.19811705f,    //
                                                0.22900409f,       0.6917502f,  0.079260424f,   //
                                                -0.0000018305145f, 0.04512138f, 1.04334f};
inline constexpr Matrix xyzToLinearDisplayP3D50{2.4039984f,   -0.98990643f, -0.39763042f,   //
                                                -0.8422597f,  1.7988461f,   0.016031504f,   //
                                                0.048218217f, -0.09743143f, 1.2740071f};
inline constexpr Matrix xyzToLinearDisplayP365{2.4933612f,  -0.9314588f,   -0.40269667f,   //
                                               -0.8295389f, 1.7627028f,    0.023609964f,   //
                                               0.03587949f, -0.076233335f, 0.95743847f};

/// The one of the two that belongs to the illuminant: zero is D50, everything else D65.
template <class T>
constexpr const T& Of(CColor::EIlluminant illuminant, const T& d50, const T& d65)
{
    return illuminant == CColor::eD50 ? d50 : d65;
}

constexpr const Vector& XYZReference(CColor::EIlluminant i)
{
    return Of(i, xyzReferenceD50, xyzReferenceD65);
}
constexpr const Vector& InvXYZReference(CColor::EIlluminant i)
{
    return Of(i, invXYZReferenceD50, invXYZReferenceD65);
}
constexpr const Vector& LinearRGBLuminance(CColor::EIlluminant i)
{
    return Of(i, linearRGBLuminanceD50, linearRGBLuminanceD65);
}
constexpr const Vector& DisplayP3Luminance(CColor::EIlluminant i)
{
    return Of(i, displayP3LuminanceD50, displayP3LuminanceD65);
}
constexpr const Matrix& LinearRGBToXYZ(CColor::EIlluminant i)
{
    return Of(i, linearRGBToXYZD50, linearRGBToXYZD65);
}
constexpr const Matrix& XYZToLinearRGB(CColor::EIlluminant i)
{
    return Of(i, xyzToLinearRGBD50, xyzToLinearRGBD65);
}
constexpr const Matrix& XYZToLMS(CColor::EIlluminant i)
{
    return Of(i, xyzToLMSD50, xyzToLMSD65);
}
constexpr const Matrix& LMSToXYZ(CColor::EIlluminant i)
{
    return Of(i, lmsToXYZD50, lmsToXYZD65);
}
constexpr const Matrix& LinearDisplayP3ToXYZ(CColor::EIlluminant i)
{
    return Of(i, linearDisplayP3ToXYZD50, linearDisplayP3ToXYZD65);
}
constexpr const Matrix& XYZToLinearDisplayP3(CColor::EIlluminant i)
{
    return Of(i, xyzToLinearDisplayP3D50, xyzToLinearDisplayP365);
}

// The products that take linear RGB to cone responses and back at the cost of one matrix. Rounded as a
// product of two single-precision matrices is.
inline constexpr Matrix linearRGBToLMSD50 = xyzToLMSD50 * linearRGBToXYZD50;
inline constexpr Matrix linearRGBToLMSD65 = xyzToLMSD65 * linearRGBToXYZD65;
inline constexpr Matrix lmsToLinearRGBD50 = xyzToLinearRGBD50 * lmsToXYZD50;
inline constexpr Matrix lmsToLinearRGBD65 = xyzToLinearRGBD65 * lmsToXYZD65;

constexpr const Matrix& LinearRGBToLMS(CColor::EIlluminant i)
{
    return Of(i, linearRGBToLMSD50, linearRGBToLMSD65);
}
constexpr const Matrix& LMSToLinearRGB(CColor::EIlluminant i)
{
    return Of(i, lmsToLinearRGBD50, lmsToLinearRGBD65);
}

}   // namespace QZ::Foundation::Constants
