// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/RowKernels.h"

#include <cstddef>
#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "QZ/Foundation/Color/RowKernels.cpp"
#include <hwy/foreach_target.h>

#include "QZ/Foundation/Color/Formulas/DisplayP3.h"
#include "QZ/Foundation/Color/Formulas/HSV.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"
#include "QZ/Foundation/Color/Formulas/YIQ.h"
#include "QZ/Foundation/Color/Formulas/Yxy.h"
#include "QZ/Foundation/Color/Rows.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <auto formula>
HWY_FLATTEN void ColorRow(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                          Math::CVector3<float>* out)
{
    ForEachVector(Components(in), 3, count, Components(out), 3, 0,
                  [&](const float* from, float* to, bool)
                      HWY_ATTR { StoreColors(formula(settings, LoadColors(from)), to); });
}

/// The formula treats each component by itself.
template <auto formula>
HWY_FLATTEN void ComponentRow(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                              Math::CVector3<float>* out)
{
    ForEachVector(Components(in), 1, 3 * count, Components(out), 1, 0,
                  [&](const float* from, float* to, bool) HWY_ATTR {
                      const Lane c = hn::LoadU(Lane::Tag(), from);
                      hn::StoreU(formula(settings, c).vector, Lane::Tag(), to);
                  });
}

/// The formula starts from linear light.
template <auto formula>
HWY_FLATTEN void FromPixels(const RowSettings& settings, const unsigned char* rgba, std::size_t count,
                            Math::CVector3<float>* out)
{
    const ByteTable& linear = settings.useGamma22 ? LinearOfGamma22Byte() : LinearOfSRGBByte();
    ColorsOfEach(rgba, 4, count, out, [&](const unsigned char* from) HWY_ATTR {
        return formula(settings, LoadPixels(linear, from));
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
    ForEachVector(Components(in), 3, count, rgba, 4, 0,
                  [&](const float* from, unsigned char* to, bool)
                      HWY_ATTR { StorePixels(encode, formula(settings, LoadColors(from)), to); });
}

// A formula, as the parameter of a row. The lambdas carry the instruction set themselves: GCC does not pass
// the pragma on to them.
#define QZ_FORMULA(...) \
    []([[maybe_unused]] const RowSettings& s, const auto& v) HWY_ATTR { return __VA_ARGS__; }
#define QZ_EACH(...) QZ_FORMULA(Each(v, [](auto c) HWY_ATTR { return __VA_ARGS__; }))
#define QZ_COMPONENT(...) []([[maybe_unused]] const RowSettings& s, Lane c) HWY_ATTR { return __VA_ARGS__; }

const RowKernels kRows =
    {
        .colors =
            {
                .NonlinearToLinearToneCurve =
                    ComponentRow<QZ_COMPONENT(ComponentToLinear(s.useGamma22, s.extendedRange, c))>,
                .LinearToNonlinearToneCurve =
                    ComponentRow<QZ_COMPONENT(ComponentToNonlinear(s.useGamma22, s.extendedRange, c))>,
                .NonlinearToLinear709ToneCurve = ComponentRow<QZ_COMPONENT(Rec709ToLinear(c))>,
                .LinearToNonlinear709ToneCurve = ComponentRow<QZ_COMPONENT(LinearToRec709(c))>,
                .NonlinearToLinearApple709ToneCurve = ComponentRow<QZ_COMPONENT(Pow<Exponent::k1_961>(c))>,
                .LinearToNonlinearApple709ToneCurve =
                    ComponentRow<QZ_COMPONENT(Pow<Exponent::k0_5099439>(c))>,
                .SRGBToRGB709 = ComponentRow<QZ_COMPONENT(SRGBToRec709(c))>,
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

#undef QZ_COMPONENT
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
