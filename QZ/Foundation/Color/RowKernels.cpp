// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/RowKernels.h"

#include <cstddef>
#include <cstring>
#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "QZ/Foundation/Color/RowKernels.cpp"
#include <hwy/foreach_target.h>

#include "QZ/Foundation/Color/Formulas/DisplayP3.h"
#include "QZ/Foundation/Color/Formulas/HSV.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"
#include "QZ/Foundation/Color/Formulas/YIQ.h"
#include "QZ/Foundation/Color/Formulas/Yxy.h"
#include "QZ/Foundation/Color/Pixels.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// A row through a buffer of whole vectors where fewer colours are left than a vector holds.
template <class In, class Out, class Body>
HWY_INLINE void ForEachVector(const In* in, std::size_t inSize, std::size_t count, Out* out,
                              std::size_t outSize, const Body& body)
{
    const std::size_t n = Lane::Size();
    std::size_t i = 0;
    for (; i + n <= count; i += n)
        body(in + inSize * i, out + outSize * i);
    if (i == count)
        return;
    constexpr std::size_t kMostLanes = HWY_MAX_BYTES / sizeof(float);
    In inRest[4 * kMostLanes] = {};
    Out outRest[4 * kMostLanes];
    std::memcpy(inRest, in + inSize * i, (count - i) * inSize * sizeof(In));
    body(inRest, outRest);
    std::memcpy(out + outSize * i, outRest, (count - i) * outSize * sizeof(Out));
}

template <auto formula>
HWY_FLATTEN void ColorRow(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                          Math::CVector3<float>* out)
{
    ForEachVector(&in->x, 3, count, &out->x, 3, [&](const float* from, float* to) {
        StoreColors(formula(settings, LoadColors(from)), to);
    });
}

/// The formula starts from linear light.
template <auto formula>
HWY_FLATTEN void FromPixels(const RowSettings& settings, const unsigned char* rgba, std::size_t count,
                            Math::CVector3<float>* out)
{
    const float* linear = (settings.useGamma22 ? LinearOfGamma22Byte() : LinearOfSRGBByte()).data();
    ForEachVector(rgba, 4, count, &out->x, 3, [&](const unsigned char* from, float* to) {
        StoreColors(formula(settings, LoadPixels(linear, from)), to);
    });
}

/// Unclamped linear light for a curve of bytes: a pure power takes -infinity to +infinity, not to NaN.
template <class F>
HWY_INLINE Vec3<F> PowerBase(bool isPurePower, const Vec3<F>& v)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    if (!isPurePower)
        return v;
    return Map(v, [](F c) { return Select(c == -kInfinity, F(kInfinity), c); });
}

/// The formula ends with linear light. Its clamps are left to the curve, which has them all.
template <auto formula>
HWY_FLATTEN void ToPixels(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                          unsigned char* rgba)
{
    const ByteCurve& encode = EncodedByte(settings.useGamma22);
    ForEachVector(&in->x, 3, count, rgba, 4, [&](const float* from, unsigned char* to) {
        StorePixels(encode, formula(settings, LoadColors(from)), to);
    });
}

const RowKernels kRows =
    {
        .colors =
            {
                .NonlinearToLinearToneCurve = ColorRow<[](const RowSettings& s, const auto& v) {
                    return NonlinearToLinear(s.useGamma22, s.extendedRange, v);
                }>,
                .LinearToNonlinearToneCurve = ColorRow<[](const RowSettings& s, const auto& v) {
                    return LinearToNonlinear(s.useGamma22, s.extendedRange, v);
                }>,
                .NonlinearToLinear709ToneCurve = ColorRow<[](const RowSettings&, const auto& v) {
                    return Map(v, [](auto c) { return Rec709ToLinear(c); });
                }>,
                .LinearToNonlinear709ToneCurve = ColorRow<[](const RowSettings&, const auto& v) {
                    return Map(v, [](auto c) { return LinearToRec709(c); });
                }>,
                .NonlinearToLinearApple709ToneCurve = ColorRow<[](const RowSettings&, const auto& v) {
                    return Map(v, [](auto c) { return Pow<Exponent::k1_961>(c); });
                }>,
                .LinearToNonlinearApple709ToneCurve = ColorRow<[](const RowSettings&, const auto& v) {
                    return Map(v, [](auto c) { return Pow<Exponent::k0_5099439>(c); });
                }>,
                .SRGBToRGB709 = ColorRow<[](const RowSettings&, const auto& v) {
                    return Map(v, [](auto c) { return SRGBToRec709(c); });
                }>,
                .LinearRGBToXYZ = ColorRow<[](const RowSettings& s, const auto& v) {
                    return LinearRGBToXYZ(s.illuminant, v);
                }>,
                .XYZToLinearRGB = ColorRow<[](const RowSettings& s, const auto& v) {
                    return XYZToLinearRGB(s.extendedRange, s.illuminant, v);
                }>,
                .SRGBToXYZ = ColorRow<[](const RowSettings& s, const auto& v) {
                    return SRGBToXYZ(s.useGamma22, s.extendedRange, s.illuminant, v);
                }>,
                .XYZToSRGB = ColorRow<[](const RowSettings& s, const auto& v) {
                    return XYZToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v);
                }>,
                .SRGBToYCbCr = ColorRow<[](const RowSettings&, const auto& v) { return SRGBToYCbCr(v); }>,
                .YCbCrToSRGB = ColorRow<[](const RowSettings&, const auto& v) { return YCbCrToSRGB(v); }>,
                .RGBToYIQ = ColorRow<[](const RowSettings&, const auto& v) { return RGBToYIQ(v); }>,
                .YIQToRGB = ColorRow<[](const RowSettings&, const auto& v) { return YIQToRGB(v); }>,
                .XYZtoLab =
                    ColorRow<[](const RowSettings& s, const auto& v) { return XYZToLab(s.illuminant, v); }>,
                .LabToXYZ =
                    ColorRow<[](const RowSettings& s, const auto& v) { return LabToXYZ(s.illuminant, v); }>,
                .LinearRGBToLab = ColorRow<[](const RowSettings& s, const auto& v) {
                    return LinearRGBToLab(s.illuminant, v);
                }>,
                .LabToLinearRGB = ColorRow<[](const RowSettings& s, const auto& v) {
                    return LabToLinearRGB(s.extendedRange, s.illuminant, v);
                }>,
                .SRGBToLab = ColorRow<[](const RowSettings& s, const auto& v) {
                    return SRGBToLab(s.useGamma22, s.extendedRange, s.illuminant, v);
                }>,
                .LabToSRGB =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return LabToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .ExtendedRangeSRGBToLab =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return ExtendedRangeSRGBToLab(s.useGamma22, s.illuminant, v);
                        }>,
                .LabToExtendedRangeSRGB =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return LabToExtendedRangeSRGB(s.useGamma22, s.illuminant, v);
                        }>,
                .LabToLCh = ColorRow<[](const RowSettings&, const auto& v) { return ToPolar(v); }>,
                .XYZtoLuv = ColorRow<[](const RowSettings& s,
                                        const auto& v) { return XYZToLuv(s.illuminant, v); }>,
                .LuvToXYZ = ColorRow<[](const RowSettings& s,
                                        const auto& v) { return LuvToXYZ(s.illuminant, v); }>,
                .LinearRGBToLuv = ColorRow<[](const RowSettings& s,
                                              const auto& v) { return LinearRGBToLuv(s.illuminant, v); }>,
                .LuvToLinearRGB =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return LuvToLinearRGB(s.extendedRange, s.illuminant, v); }>,
                .SRGBToLuv =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return SRGBToLuv(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .LuvToSRGB =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return LuvToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .LuvToLChuv = ColorRow<[](const RowSettings&, const auto& v) { return ToPolar(v); }>,
                .XYZToYxy = ColorRow<[](const RowSettings&, const auto& v) { return XYZToYxy(v); }>,
                .YxyToXYZ = ColorRow<[](const RowSettings&, const auto& v) { return YxyToXYZ(v); }>,
                .LinearRGBToYxy = ColorRow<[](const RowSettings& s,
                                              const auto& v) { return LinearRGBToYxy(s.illuminant, v); }>,
                .YxyToLinearRGB =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return YxyToLinearRGB(s.extendedRange, s.illuminant, v); }>,
                .RGBToHSV = ColorRow<[](const RowSettings&, const auto& v) { return RGBToHSV(v); }>,
                .HSVToRGB = ColorRow<[](const RowSettings&, const auto& v) { return HSVToRGB(v); }>,
                .XYZToIPT = ColorRow<[](const RowSettings& s,
                                        const auto& v) { return XYZToIPT(s.illuminant, v); }>,
                .IPTToXYZ = ColorRow<[](const RowSettings& s,
                                        const auto& v) { return IPTToXYZ(s.illuminant, v); }>,
                .LinearRGBToIPT = ColorRow<[](const RowSettings& s,
                                              const auto& v) { return LinearRGBToIPT(s.illuminant, v); }>,
                .IPTToLinearRGB =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return IPTToLinearRGB(s.extendedRange, s.illuminant, v); }>,
                .SRGBToIPT =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return SRGBToIPT(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .IPTToSRGB =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return IPTToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .IPTToICH = ColorRow<[](const RowSettings&, const auto& v) { return IPTToICH(v); }>,
                .ICHToIPT = ColorRow<[](const RowSettings&, const auto& v) { return ICHToIPT(v); }>,
                .LinearRGBToICH = ColorRow<[](const RowSettings& s,
                                              const auto& v) { return LinearRGBToICH(s.illuminant, v); }>,
                .ICHToLinearRGB =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return ICHToLinearRGB(s.extendedRange, s.illuminant, v); }>,
                .SRGBToLMS =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return SRGBToLMS(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .LinearDisplayP3ToXYZ =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return LinearDisplayP3ToXYZ(s.illuminant, v); }>,
                .XYZToLinearDisplayP3 =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return XYZToLinearDisplayP3(s.illuminant, v); }>,
                .DisplayP3ToXYZ =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return DisplayP3ToXYZ(s.useGamma22, s.illuminant, v); }>,
                .XYZToDisplayP3 =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return XYZToDisplayP3(s.useGamma22, s.illuminant, v); }>,
                .LinearDisplayP3ToDisplayP3 =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return LinearDisplayP3ToDisplayP3(s.useGamma22, v); }>,
                .DisplayP3ToSRGB =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return DisplayP3ToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .SRGBToDisplayP3 =
                    ColorRow<
                        [](const RowSettings& s, const auto& v) {
                            return SRGBToDisplayP3(s.useGamma22, s.extendedRange, s.illuminant, v);
                        }>,
                .DisplayP3ToLab =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return DisplayP3ToLab(s.useGamma22, s.illuminant, v); }>,
                .LabToDisplayP3 =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return LabToDisplayP3(s.useGamma22, s.illuminant, v); }>,
                .DisplayP3ToIPT =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return DisplayP3ToIPT(s.useGamma22, s.illuminant, v); }>,
                .IPTToDisplayP3 =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return IPTToDisplayP3(s.useGamma22, s.illuminant, v); }>,
                .LinearDisplayP3ToIPT =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return LinearDisplayP3ToIPT(s.illuminant, v); }>,
                .IPTToLinearDisplayP3 =
                    ColorRow<[](const RowSettings& s,
                                const auto& v) { return IPTToLinearDisplayP3(s.illuminant, v); }>,
            },
        .fromPixels =
            {
                .NonlinearToLinearToneCurve = FromPixels<[](const RowSettings&, const auto& v) { return v; }>,
                .SRGBToRGB709 =
                    FromPixels<[](const RowSettings&, const auto& v) {
                        return Map(v, [](auto c) { return LinearToRec709(c); });
                    }>,
                .SRGBToXYZ = FromPixels<[](const RowSettings& s,
                                           const auto& v) { return LinearRGBToXYZ(s.illuminant, v); }>,
                .SRGBToLab = FromPixels<[](const RowSettings& s,
                                           const auto& v) { return LinearRGBToLab(s.illuminant, v); }>,
                .ExtendedRangeSRGBToLab =
                    FromPixels<[](const RowSettings& s, const auto& v) {
                        return XYZToLab(s.illuminant, LinearRGBToXYZ(CColor::eD50, v));
                    }>,
                .SRGBToLuv = FromPixels<[](const RowSettings& s,
                                           const auto& v) { return LinearRGBToLuv(s.illuminant, v); }>,
                .SRGBToIPT = FromPixels<[](const RowSettings& s,
                                           const auto& v) { return LinearRGBToIPT(s.illuminant, v); }>,
                .SRGBToLMS =
                    FromPixels<[](const RowSettings& s, const auto& v) {
                        return Constants::XYZToLMS(s.illuminant) * LinearRGBToXYZ(s.illuminant, v);
                    }>,
                .DisplayP3ToXYZ =
                    FromPixels<[](const RowSettings& s,
                                  const auto& v) { return LinearDisplayP3ToXYZ(s.illuminant, v); }>,
                .DisplayP3ToSRGB =
                    FromPixels<
                        [](const RowSettings& s, const auto& v) {
                            return XYZToSRGB(s.useGamma22, s.extendedRange, s.illuminant,
                                             LinearDisplayP3ToXYZ(s.illuminant, v));
                        }>,
                .SRGBToDisplayP3 =
                    FromPixels<
                        [](const RowSettings& s, const auto& v) {
                            return XYZToDisplayP3(s.useGamma22, s.illuminant,
                                                  LinearRGBToXYZ(s.illuminant, v));
                        }>,
                .DisplayP3ToLab =
                    FromPixels<
                        [](const RowSettings& s, const auto& v) {
                            return XYZToLab(s.illuminant, LinearDisplayP3ToXYZ(s.illuminant, v));
                        }>,
                .DisplayP3ToIPT =
                    FromPixels<[](
                                   const RowSettings& s,
                                   const auto& v) { return LinearDisplayP3ToIPT(s.illuminant, v); }>,
            },
        .toPixels =
            {
                .LinearToNonlinearToneCurve =
                    ToPixels<[](const RowSettings& s, const auto& v) {
                        return PowerBase(s.useGamma22 && !s.extendedRange, v);
                    }>,
                .XYZToSRGB = ToPixels<[](const RowSettings& s,
                                         const auto& v) { return XYZToLinearRGB(true, s.illuminant, v); }>,
                .LabToSRGB = ToPixels<[](const RowSettings& s,
                                         const auto& v) { return LabToLinearRGB(true, s.illuminant, v); }>,
                .LabToExtendedRangeSRGB =
                    ToPixels<[](const RowSettings& s, const auto& v) {
                        return XYZToLinearRGB(true, CColor::eD50, LabToXYZ(s.illuminant, v));
                    }>,
                .LuvToSRGB = ToPixels<[](const RowSettings& s,
                                         const auto& v) { return LuvToLinearRGB(true, s.illuminant, v); }>,
                .IPTToSRGB = ToPixels<[](const RowSettings& s,
                                         const auto& v) { return IPTToLinearRGB(true, s.illuminant, v); }>,
                .XYZToDisplayP3 =
                    ToPixels<[](const RowSettings& s, const auto& v) {
                        return PowerBase(s.useGamma22, XYZToLinearDisplayP3(s.illuminant, v));
                    }>,
                .LinearDisplayP3ToDisplayP3 =
                    ToPixels<[](const RowSettings& s, const auto& v) { return PowerBase(s.useGamma22, v); }>,
                .DisplayP3ToSRGB =
                    ToPixels<
                        [](const RowSettings& s, const auto& v) {
                            return XYZToLinearRGB(true, s.illuminant,
                                                  DisplayP3ToXYZ(s.useGamma22, s.illuminant, v));
                        }>,
                .SRGBToDisplayP3 =
                    ToPixels<
                        [](const RowSettings& s, const auto& v) {
                            return PowerBase(
                                s.useGamma22,
                                XYZToLinearDisplayP3(
                                    s.illuminant, SRGBToXYZ(s.useGamma22, s.extendedRange, s.illuminant, v)));
                        }>,
                .LabToDisplayP3 =
                    ToPixels<
                        [](const RowSettings& s, const auto& v) {
                            return PowerBase(s.useGamma22,
                                             XYZToLinearDisplayP3(s.illuminant, LabToXYZ(s.illuminant, v)));
                        }>,
                .IPTToDisplayP3 =
                    ToPixels<
                        [](const RowSettings& s, const auto& v) {
                            return PowerBase(s.useGamma22, IPTToLinearDisplayP3(s.illuminant, v));
                        }>,
            },
};

const RowKernels* RowsOfTarget()
{
    return &kRows;
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QZ::Foundation {

HWY_EXPORT(RowsOfTarget);

const RowKernels& Rows()
{
    return *HWY_DYNAMIC_DISPATCH(RowsOfTarget)();
}

}   // namespace QZ::Foundation
#endif
