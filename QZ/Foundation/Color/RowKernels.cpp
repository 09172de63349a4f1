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

/// Colours as floats, three each. An empty row may have no address.
HWY_INLINE const float* Components(const Math::CVector3<float>* colors)
{
    return reinterpret_cast<const float*>(colors);
}
HWY_INLINE float* Components(Math::CVector3<float>* colors)
{
    return reinterpret_cast<float*>(colors);
}

template <auto formula>
HWY_FLATTEN void ColorRow(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                          Math::CVector3<float>* out)
{
    ForEachVector(Components(in), 3, count, Components(out), 3, [&](const float* from, float* to) HWY_ATTR {
        StoreColors(formula(settings, LoadColors(from)), to);
    });
}

/// The formula starts from linear light.
template <auto formula>
HWY_FLATTEN void FromPixels(const RowSettings& settings, const unsigned char* rgba, std::size_t count,
                            Math::CVector3<float>* out)
{
    const float* linear = (settings.useGamma22 ? LinearOfGamma22Byte() : LinearOfSRGBByte()).data();
    ForEachVector(rgba, 4, count, Components(out), 3, [&](const unsigned char* from, float* to) HWY_ATTR {
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
    return Map(v, [](F c) HWY_ATTR { return Select(c == -kInfinity, F(kInfinity), c); });
}

/// The formula ends with linear light. Its clamps are left to the curve, which has them all.
template <auto formula>
HWY_FLATTEN void ToPixels(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                          unsigned char* rgba)
{
    const ByteCurve& encode = EncodedByte(settings.useGamma22);
    ForEachVector(Components(in), 3, count, rgba, 4, [&](const float* from, unsigned char* to) HWY_ATTR {
        StorePixels(encode, formula(settings, LoadColors(from)), to);
    });
}

// A formula, as the parameter of a row. The lambdas carry the instruction set themselves: GCC does not pass
// the pragma on to them.
#define QZ_FORMULA(...) \
    []([[maybe_unused]] const RowSettings& s, const auto& v) HWY_ATTR { return __VA_ARGS__; }
#define QZ_EACH(...) QZ_FORMULA(Map(v, [](auto c) HWY_ATTR { return __VA_ARGS__; }))

const RowKernels kRows =
    {
        .colors =
            {
                .NonlinearToLinearToneCurve =
                    ColorRow<QZ_FORMULA(NonlinearToLinear(s.useGamma22, s.extendedRange, v))>,
                .LinearToNonlinearToneCurve =
                    ColorRow<QZ_FORMULA(LinearToNonlinear(s.useGamma22, s.extendedRange, v))>,
                .NonlinearToLinear709ToneCurve = ColorRow<QZ_EACH(Rec709ToLinear(c))>,
                .LinearToNonlinear709ToneCurve = ColorRow<QZ_EACH(LinearToRec709(c))>,
                .NonlinearToLinearApple709ToneCurve = ColorRow<QZ_EACH(Pow<Exponent::k1_961>(c))>,
                .LinearToNonlinearApple709ToneCurve = ColorRow<QZ_EACH(Pow<Exponent::k0_5099439>(c))>,
                .SRGBToRGB709 = ColorRow<QZ_EACH(SRGBToRec709(c))>,
                .LinearRGBToXYZ = ColorRow<QZ_FORMULA(LinearRGBToXYZ(s.illuminant, v))>,
                .XYZToLinearRGB = ColorRow<QZ_FORMULA(XYZToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .SRGBToXYZ = ColorRow<QZ_FORMULA(SRGBToXYZ(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .XYZToSRGB = ColorRow<QZ_FORMULA(XYZToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .SRGBToYCbCr = ColorRow<QZ_FORMULA(SRGBToYCbCr(v))>,
                .YCbCrToSRGB = ColorRow<QZ_FORMULA(YCbCrToSRGB(v))>,
                .RGBToYIQ = ColorRow<QZ_FORMULA(RGBToYIQ(v))>,
                .YIQToRGB = ColorRow<QZ_FORMULA(YIQToRGB(v))>,
                .XYZtoLab = ColorRow<QZ_FORMULA(XYZToLab(s.illuminant, v))>,
                .LabToXYZ = ColorRow<QZ_FORMULA(LabToXYZ(s.illuminant, v))>,
                .LinearRGBToLab = ColorRow<QZ_FORMULA(LinearRGBToLab(s.illuminant, v))>,
                .LabToLinearRGB = ColorRow<QZ_FORMULA(LabToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .SRGBToLab = ColorRow<QZ_FORMULA(SRGBToLab(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .LabToSRGB = ColorRow<QZ_FORMULA(LabToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .ExtendedRangeSRGBToLab =
                    ColorRow<QZ_FORMULA(ExtendedRangeSRGBToLab(s.useGamma22, s.illuminant, v))>,
                .LabToExtendedRangeSRGB =
                    ColorRow<QZ_FORMULA(LabToExtendedRangeSRGB(s.useGamma22, s.illuminant, v))>,
                .LabToLCh = ColorRow<QZ_FORMULA(ToPolar(v))>,
                .XYZtoLuv = ColorRow<QZ_FORMULA(XYZToLuv(s.illuminant, v))>,
                .LuvToXYZ = ColorRow<QZ_FORMULA(LuvToXYZ(s.illuminant, v))>,
                .LinearRGBToLuv = ColorRow<QZ_FORMULA(LinearRGBToLuv(s.illuminant, v))>,
                .LuvToLinearRGB = ColorRow<QZ_FORMULA(LuvToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .SRGBToLuv = ColorRow<QZ_FORMULA(SRGBToLuv(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .LuvToSRGB = ColorRow<QZ_FORMULA(LuvToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .LuvToLChuv = ColorRow<QZ_FORMULA(ToPolar(v))>,
                .XYZToYxy = ColorRow<QZ_FORMULA(XYZToYxy(v))>,
                .YxyToXYZ = ColorRow<QZ_FORMULA(YxyToXYZ(v))>,
                .LinearRGBToYxy = ColorRow<QZ_FORMULA(LinearRGBToYxy(s.illuminant, v))>,
                .YxyToLinearRGB = ColorRow<QZ_FORMULA(YxyToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .RGBToHSV = ColorRow<QZ_FORMULA(RGBToHSV(v))>,
                .HSVToRGB = ColorRow<QZ_FORMULA(HSVToRGB(v))>,
                .XYZToIPT = ColorRow<QZ_FORMULA(XYZToIPT(s.illuminant, v))>,
                .IPTToXYZ = ColorRow<QZ_FORMULA(IPTToXYZ(s.illuminant, v))>,
                .LinearRGBToIPT = ColorRow<QZ_FORMULA(LinearRGBToIPT(s.illuminant, v))>,
                .IPTToLinearRGB = ColorRow<QZ_FORMULA(IPTToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .SRGBToIPT = ColorRow<QZ_FORMULA(SRGBToIPT(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .IPTToSRGB = ColorRow<QZ_FORMULA(IPTToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .IPTToICH = ColorRow<QZ_FORMULA(IPTToICH(v))>,
                .ICHToIPT = ColorRow<QZ_FORMULA(ICHToIPT(v))>,
                .LinearRGBToICH = ColorRow<QZ_FORMULA(LinearRGBToICH(s.illuminant, v))>,
                .ICHToLinearRGB = ColorRow<QZ_FORMULA(ICHToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .SRGBToLMS = ColorRow<QZ_FORMULA(SRGBToLMS(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .LinearDisplayP3ToXYZ = ColorRow<QZ_FORMULA(LinearDisplayP3ToXYZ(s.illuminant, v))>,
                .XYZToLinearDisplayP3 = ColorRow<QZ_FORMULA(XYZToLinearDisplayP3(s.illuminant, v))>,
                .DisplayP3ToXYZ = ColorRow<QZ_FORMULA(DisplayP3ToXYZ(s.useGamma22, s.illuminant, v))>,
                .XYZToDisplayP3 = ColorRow<QZ_FORMULA(XYZToDisplayP3(s.useGamma22, s.illuminant, v))>,
                .LinearDisplayP3ToDisplayP3 =
                    ColorRow<QZ_FORMULA(LinearDisplayP3ToDisplayP3(s.useGamma22, v))>,
                .DisplayP3ToSRGB =
                    ColorRow<QZ_FORMULA(DisplayP3ToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .SRGBToDisplayP3 =
                    ColorRow<QZ_FORMULA(SRGBToDisplayP3(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .DisplayP3ToLab = ColorRow<QZ_FORMULA(DisplayP3ToLab(s.useGamma22, s.illuminant, v))>,
                .LabToDisplayP3 = ColorRow<QZ_FORMULA(LabToDisplayP3(s.useGamma22, s.illuminant, v))>,
                .DisplayP3ToIPT = ColorRow<QZ_FORMULA(DisplayP3ToIPT(s.useGamma22, s.illuminant, v))>,
                .IPTToDisplayP3 = ColorRow<QZ_FORMULA(IPTToDisplayP3(s.useGamma22, s.illuminant, v))>,
                .LinearDisplayP3ToIPT = ColorRow<QZ_FORMULA(LinearDisplayP3ToIPT(s.illuminant, v))>,
                .IPTToLinearDisplayP3 = ColorRow<QZ_FORMULA(IPTToLinearDisplayP3(s.illuminant, v))>,
            },
        .fromPixels =
            {
                .NonlinearToLinearToneCurve = FromPixels<QZ_FORMULA(v)>,
                .SRGBToRGB709 = FromPixels<QZ_EACH(LinearToRec709(c))>,
                .SRGBToXYZ = FromPixels<QZ_FORMULA(LinearRGBToXYZ(s.illuminant, v))>,
                .SRGBToLab = FromPixels<QZ_FORMULA(LinearRGBToLab(s.illuminant, v))>,
                .ExtendedRangeSRGBToLab =
                    FromPixels<QZ_FORMULA(XYZToLab(s.illuminant, LinearRGBToXYZ(CColor::eD50, v)))>,
                .SRGBToLuv = FromPixels<QZ_FORMULA(LinearRGBToLuv(s.illuminant, v))>,
                .SRGBToIPT = FromPixels<QZ_FORMULA(LinearRGBToIPT(s.illuminant, v))>,
                .SRGBToLMS = FromPixels<QZ_FORMULA(Constants::XYZToLMS(s.illuminant) *
                                                   LinearRGBToXYZ(s.illuminant, v))>,
                .DisplayP3ToXYZ = FromPixels<QZ_FORMULA(LinearDisplayP3ToXYZ(s.illuminant, v))>,
                .DisplayP3ToSRGB =
                    FromPixels<QZ_FORMULA(XYZToSRGB(s.useGamma22, s.extendedRange, s.illuminant,
                                                    LinearDisplayP3ToXYZ(s.illuminant, v)))>,
                .SRGBToDisplayP3 = FromPixels<QZ_FORMULA(XYZToDisplayP3(s.useGamma22, s.illuminant,
                                                                        LinearRGBToXYZ(s.illuminant, v)))>,
                .DisplayP3ToLab =
                    FromPixels<QZ_FORMULA(XYZToLab(s.illuminant, LinearDisplayP3ToXYZ(s.illuminant, v)))>,
                .DisplayP3ToIPT = FromPixels<QZ_FORMULA(LinearDisplayP3ToIPT(s.illuminant, v))>,
            },
        .toPixels =
            {
                .LinearToNonlinearToneCurve =
                    ToPixels<QZ_FORMULA(PowerBase(s.useGamma22 && !s.extendedRange, v))>,
                .XYZToSRGB = ToPixels<QZ_FORMULA(XYZToLinearRGB(true, s.illuminant, v))>,
                .LabToSRGB = ToPixels<QZ_FORMULA(LabToLinearRGB(true, s.illuminant, v))>,
                .LabToExtendedRangeSRGB =
                    ToPixels<QZ_FORMULA(XYZToLinearRGB(true, CColor::eD50, LabToXYZ(s.illuminant, v)))>,
                .LuvToSRGB = ToPixels<QZ_FORMULA(LuvToLinearRGB(true, s.illuminant, v))>,
                .IPTToSRGB = ToPixels<QZ_FORMULA(IPTToLinearRGB(true, s.illuminant, v))>,
                .XYZToDisplayP3 =
                    ToPixels<QZ_FORMULA(PowerBase(s.useGamma22, XYZToLinearDisplayP3(s.illuminant, v)))>,
                .LinearDisplayP3ToDisplayP3 = ToPixels<QZ_FORMULA(PowerBase(s.useGamma22, v))>,
                .DisplayP3ToSRGB =
                    ToPixels<QZ_FORMULA(
                        XYZToLinearRGB(true, s.illuminant, DisplayP3ToXYZ(s.useGamma22, s.illuminant, v)))>,
                .SRGBToDisplayP3 =
                    ToPixels<QZ_FORMULA(PowerBase(
                        s.useGamma22,
                        XYZToLinearDisplayP3(s.illuminant,
                                             SRGBToXYZ(s.useGamma22, s.extendedRange, s.illuminant, v))))>,
                .LabToDisplayP3 =
                    ToPixels<QZ_FORMULA(PowerBase(s.useGamma22,
                                                  XYZToLinearDisplayP3(s.illuminant,
                                                                       LabToXYZ(s.illuminant, v))))>,
                .IPTToDisplayP3 =
                    ToPixels<QZ_FORMULA(PowerBase(s.useGamma22, IPTToLinearDisplayP3(s.illuminant, v)))>,
            },
};

#undef QZ_EACH
#undef QZ_FORMULA

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
