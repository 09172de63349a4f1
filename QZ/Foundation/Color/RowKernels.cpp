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
#include "QZ/Foundation/Color/Stages.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// A formula, or a formula, a curve of each component, and so on.
template <auto... stages>
HWY_FLATTEN void ColorRow(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                          Math::CVector3<float>* out)
{
    RowIn<float> colors(Components(in), 3);
    RowOut<float> results(Components(out), 3);
    Convert<stages...>(
        settings, count,
        [&](std::size_t i, std::size_t size) HWY_ATTR { return LoadColors(colors.At(i, size)); },
        [&](std::size_t i, std::size_t size, const Vec3<Lane>& color)
            HWY_ATTR { results.Put(i, size, [&](float* to) HWY_ATTR { StoreColors(color, to); }); });
}

/// curve of the floats of whole vectors.
template <class Curve>
HWY_INLINE void MapInPlace(float* components, std::size_t whole, const Curve& curve)
{
    constexpr std::size_t kMost = 3 * Block::kColors;
    HWY_ALIGN_MAX float arguments[kMost];
    for (std::size_t i = 0; i < whole; i += kMost) {
        const std::size_t size = std::min(kMost, whole - i);
        std::memcpy(arguments, components + i, size * sizeof(float));
        MapVectors(static_cast<const float*>(arguments), size, Lane::Size(), components + i, curve);
    }
}

/// The curve of each component.
template <auto stage>
HWY_FLATTEN void ComponentRow(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                              Math::CVector3<float>* out)
{
    const std::size_t n = Lane::Size();
    const std::size_t whole = 3 * count / n * n;
    const std::size_t rest = 3 * count - whole;
    const RowSettings copy = settings;
    Stage<stage>::WithCurve(copy, [&](const auto& curve) HWY_ATTR {
        if (in == out)
            MapInPlace(Components(out), whole, curve);
        else
            MapVectors(Components(in), whole, n, Components(out), curve);
        if (rest == 0)
            return;
        RowIn<float> last(Components(in) + whole, 1);
        RowOut<float>(Components(out) + whole, 1).Put(0, rest, [&](float* to) HWY_ATTR {
            MapVectors(last.At(0, rest), n, n, to, curve);
        });
    });
}

/// What linear light a pixel has depends on the byte alone.
const ByteTable& LinearOfPixels(const RowSettings& settings)
{
    return settings.useGamma22 ? LinearOfGamma22Byte() : LinearOfSRGBByte();
}
HWY_FLATTEN void LinearFromPixels(const RowSettings& settings, const unsigned char* rgba, std::size_t count,
                                  Math::CVector3<float>* out)
{
    LookUpPixels(LinearOfPixels(settings), rgba, count, out);
}

/// The first formula starts from linear light.
template <auto... stages>
HWY_FLATTEN void FromPixels(const RowSettings& settings, const unsigned char* rgba, std::size_t count,
                            Math::CVector3<float>* out)
{
    const ByteTable& linear = LinearOfPixels(settings);
    RowIn<unsigned char> pixels(rgba, 4);
    RowOut<float> results(Components(out), 3);
    Convert<stages...>(
        settings, count,
        [&](std::size_t i, std::size_t size) HWY_ATTR { return LoadPixels(linear, pixels.At(i, size)); },
        [&](std::size_t i, std::size_t size, const Vec3<Lane>& color)
            HWY_ATTR { results.Put(i, size, [&](float* to) HWY_ATTR { StoreColors(color, to); }); });
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

/// The last formula ends with linear light. Its clamps are left to the curve of bytes, which has them all.
template <auto... stages>
HWY_FLATTEN void ToPixels(const RowSettings& settings, const Math::CVector3<float>* in, std::size_t count,
                          unsigned char* rgba)
{
    const ByteCurve& encode = EncodedByte(settings.useGamma22);
    RowIn<float> colors(Components(in), 3);
    RowOut<unsigned char> pixels(rgba, 4);
    Convert<stages...>(
        settings, count,
        [&](std::size_t i, std::size_t size) HWY_ATTR { return LoadColors(colors.At(i, size)); },
        [&](std::size_t i, std::size_t size, const Vec3<Lane>& color) HWY_ATTR {
            pixels.Put(i, size, [&](unsigned char* to) HWY_ATTR { StorePixels(encode, color, to); });
        });
}

// A formula, as the parameter of a row. The lambdas carry the instruction set themselves: GCC does not pass
// the pragma on to them.
#define QZ_FORMULA(...) \
    []([[maybe_unused]] const RowSettings& s, const auto& v) HWY_ATTR { return __VA_ARGS__; }
#define QZ_EACH(...) QZ_FORMULA(Each(v, [](auto c) HWY_ATTR { return __VA_ARGS__; }))
#define QZ_COMPONENT(...) [](const auto& c) HWY_ATTR { return __VA_ARGS__; }

// The curves of stages.
constexpr ByFlags<[](bool useGamma22, bool extendedRange, const auto& c)
                      HWY_ATTR { return ComponentToLinear(useGamma22, extendedRange, c); }>
    kDecode;
constexpr ByFlags<[](bool useGamma22, bool extendedRange, const auto& c)
                      HWY_ATTR { return ComponentToNonlinear(useGamma22, extendedRange, c); }>
    kEncode;
constexpr auto kRoot = QZ_COMPONENT(LightnessRoot(c));
constexpr auto kInverseRoot = QZ_COMPONENT(InverseLightnessRoot(c));
constexpr FirstComponent<kRoot> kRootOfFirst;
constexpr auto kCompress = QZ_COMPONENT(SignedPow<Exponent::k0_43>(c));
constexpr auto kExpand = QZ_COMPONENT(SignedPow<Exponent::k2_325581>(c));

// What several conversions have before, between or after them.
constexpr auto kSame = QZ_FORMULA(v);
constexpr auto kRGBToRatio = QZ_FORMULA(LinearRGBToRatio(s.illuminant, v));
constexpr auto kRatioToRGB = QZ_FORMULA(RatioToLinearRGB(s.extendedRange, s.illuminant, v));
constexpr auto kRootsToLab = QZ_FORMULA(RootsToLab(v));
constexpr auto kLabToRoots = QZ_FORMULA(LabToRoots(v));
constexpr auto kRGBToUniform = QZ_FORMULA(XYZToUniform(s.illuminant, LinearRGBToXYZ(s.illuminant, v)));
constexpr auto kUniformToLuv = QZ_FORMULA(UniformToLuv(v));
constexpr auto kRGBToCones = QZ_FORMULA(Constants::LinearRGBToLMS(s.illuminant) * v);
constexpr auto kConesToRGB = QZ_FORMULA(LMSToLinearRGB(s.extendedRange, s.illuminant, v));
constexpr auto kConesToIPT = QZ_FORMULA(Constants::lmsToIPT * v);
constexpr auto kIPTToCones = QZ_FORMULA(Constants::iptToLMS * v);

const RowKernels kRows =
    {
        .colors =
            {
                .NonlinearToLinearToneCurve = ComponentRow<kDecode>,
                .LinearToNonlinearToneCurve = ComponentRow<kEncode>,
                .NonlinearToLinear709ToneCurve = ComponentRow<QZ_COMPONENT(Rec709ToLinear(c))>,
                .LinearToNonlinear709ToneCurve = ComponentRow<QZ_COMPONENT(LinearToRec709(c))>,
                .NonlinearToLinearApple709ToneCurve = ComponentRow<QZ_COMPONENT(Pow<Exponent::k1_961>(c))>,
                .LinearToNonlinearApple709ToneCurve =
                    ComponentRow<QZ_COMPONENT(Pow<Exponent::k0_5099439>(c))>,
                .SRGBToRGB709 = ComponentRow<QZ_COMPONENT(SRGBToRec709(c))>,
                .LinearRGBToXYZ = ColorRow<QZ_FORMULA(LinearRGBToXYZ(s.illuminant, v))>,
                .XYZToLinearRGB = ColorRow<QZ_FORMULA(XYZToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .SRGBToXYZ = ColorRow<kSame, kDecode, QZ_FORMULA(LinearRGBToXYZ(s.illuminant, v))>,
                .XYZToSRGB =
                    ColorRow<QZ_FORMULA(XYZToLinearRGB(s.extendedRange, s.illuminant, v)), kEncode, kSame>,
                .SRGBToYCbCr = ColorRow<QZ_FORMULA(SRGBToYCbCr(v))>,
                .YCbCrToSRGB = ColorRow<QZ_FORMULA(YCbCrToSRGB(v))>,
                .RGBToYIQ = ColorRow<QZ_FORMULA(RGBToYIQ(v))>,
                .YIQToRGB = ColorRow<QZ_FORMULA(YIQToRGB(v))>,
                .XYZtoLab = ColorRow<QZ_FORMULA(XYZToRatio(s.illuminant, v)), kRoot, kRootsToLab>,
                .LabToXYZ = ColorRow<kLabToRoots, kInverseRoot, QZ_FORMULA(RatioToXYZ(s.illuminant, v))>,
                .LinearRGBToLab = ColorRow<kRGBToRatio, kRoot, kRootsToLab>,
                .LabToLinearRGB = ColorRow<kLabToRoots, kInverseRoot, kRatioToRGB>,
                .SRGBToLab = ColorRow<kSame, kDecode, kRGBToRatio, kRoot, kRootsToLab>,
                .LabToSRGB =
                    ColorRow<kLabToRoots, kInverseRoot,
                             QZ_FORMULA(ClampToUnit(RatioToLinearRGB(s.extendedRange, s.illuminant, v))),
                             kEncode, kSame>,
                .ExtendedRangeSRGBToLab =
                    ColorRow<QZ_FORMULA(ExtendedRangeSRGBToLab(s.useGamma22, s.illuminant, v))>,
                .LabToExtendedRangeSRGB =
                    ColorRow<QZ_FORMULA(LabToExtendedRangeSRGB(s.useGamma22, s.illuminant, v))>,
                .LabToLCh = ColorRow<QZ_FORMULA(ToPolar(v))>,
                .XYZtoLuv = ColorRow<QZ_FORMULA(XYZToUniform(s.illuminant, v)), kRootOfFirst, kUniformToLuv>,
                .LuvToXYZ = ColorRow<QZ_FORMULA(LuvToXYZ(s.illuminant, v))>,
                .LinearRGBToLuv = ColorRow<kRGBToUniform, kRootOfFirst, kUniformToLuv>,
                .LuvToLinearRGB = ColorRow<QZ_FORMULA(LuvToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .SRGBToLuv = ColorRow<kSame, kDecode, kRGBToUniform, kRootOfFirst, kUniformToLuv>,
                .LuvToSRGB = ColorRow<QZ_FORMULA(LuvToSRGB(s.useGamma22, s.extendedRange, s.illuminant, v))>,
                .LuvToLChuv = ColorRow<QZ_FORMULA(ToPolar(v))>,
                .XYZToYxy = ColorRow<QZ_FORMULA(XYZToYxy(v))>,
                .YxyToXYZ = ColorRow<QZ_FORMULA(YxyToXYZ(v))>,
                .LinearRGBToYxy = ColorRow<QZ_FORMULA(LinearRGBToYxy(s.illuminant, v))>,
                .YxyToLinearRGB = ColorRow<QZ_FORMULA(YxyToLinearRGB(s.extendedRange, s.illuminant, v))>,
                .RGBToHSV = ColorRow<QZ_FORMULA(RGBToHSV(v))>,
                .HSVToRGB = ColorRow<QZ_FORMULA(HSVToRGB(v))>,
                .XYZToIPT = ColorRow<QZ_FORMULA(Constants::XYZToLMS(s.illuminant) * v), kCompress,
                                     kConesToIPT>,
                .IPTToXYZ = ColorRow<kIPTToCones, kExpand, QZ_FORMULA(Constants::LMSToXYZ(s.illuminant) * v)>,
                .LinearRGBToIPT = ColorRow<kRGBToCones, kCompress, kConesToIPT>,
                .IPTToLinearRGB = ColorRow<kIPTToCones, kExpand, kConesToRGB>,
                .SRGBToIPT = ColorRow<kSame, kDecode, kRGBToCones, kCompress, kConesToIPT>,
                .IPTToSRGB = ColorRow<kIPTToCones, kExpand, kConesToRGB, kEncode, kSame>,
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
                .NonlinearToLinearToneCurve = LinearFromPixels,
                .SRGBToRGB709 = FromPixels<QZ_EACH(LinearToRec709(c))>,
                .SRGBToXYZ = FromPixels<QZ_FORMULA(LinearRGBToXYZ(s.illuminant, v))>,
                .SRGBToLab = FromPixels<kRGBToRatio, kRoot, kRootsToLab>,
                .ExtendedRangeSRGBToLab =
                    FromPixels<QZ_FORMULA(XYZToRatio(s.illuminant, LinearRGBToXYZ(CColor::eD50, v))), kRoot,
                               kRootsToLab>,
                .SRGBToLuv = FromPixels<kRGBToUniform, kRootOfFirst, kUniformToLuv>,
                .SRGBToIPT = FromPixels<kRGBToCones, kCompress, kConesToIPT>,
                .SRGBToLMS = FromPixels<QZ_FORMULA(Constants::XYZToLMS(s.illuminant) *
                                                   LinearRGBToXYZ(s.illuminant, v))>,
                .DisplayP3ToXYZ = FromPixels<QZ_FORMULA(LinearDisplayP3ToXYZ(s.illuminant, v))>,
                .DisplayP3ToSRGB =
                    FromPixels<QZ_FORMULA(XYZToSRGB(s.useGamma22, s.extendedRange, s.illuminant,
                                                    LinearDisplayP3ToXYZ(s.illuminant, v)))>,
                .SRGBToDisplayP3 = FromPixels<QZ_FORMULA(XYZToDisplayP3(s.useGamma22, s.illuminant,
                                                                        LinearRGBToXYZ(s.illuminant, v)))>,
                .DisplayP3ToLab =
                    FromPixels<QZ_FORMULA(XYZToRatio(s.illuminant, LinearDisplayP3ToXYZ(s.illuminant, v))),
                               kRoot, kRootsToLab>,
                .DisplayP3ToIPT = FromPixels<QZ_FORMULA(LinearDisplayP3ToIPT(s.illuminant, v))>,
            },
        .toPixels =
            {
                .LinearToNonlinearToneCurve =
                    ToPixels<QZ_FORMULA(PowerBase(s.useGamma22 && !s.extendedRange, v))>,
                .XYZToSRGB = ToPixels<QZ_FORMULA(XYZToLinearRGB(true, s.illuminant, v))>,
                .LabToSRGB =
                    ToPixels<kLabToRoots, kInverseRoot, QZ_FORMULA(RatioToLinearRGB(true, s.illuminant, v))>,
                .LabToExtendedRangeSRGB =
                    ToPixels<kLabToRoots, kInverseRoot,
                             QZ_FORMULA(XYZToLinearRGB(true, CColor::eD50, RatioToXYZ(s.illuminant, v)))>,
                .LuvToSRGB = ToPixels<QZ_FORMULA(LuvToLinearRGB(true, s.illuminant, v))>,
                .IPTToSRGB =
                    ToPixels<kIPTToCones, kExpand, QZ_FORMULA(LMSToLinearRGB(true, s.illuminant, v))>,
                .XYZToDisplayP3 =
                    ToPixels<QZ_FORMULA(PowerBase(s.useGamma22, XYZToLinearDisplayP3(s.illuminant, v)))>,
                .LinearDisplayP3ToDisplayP3 = ToPixels<QZ_FORMULA(PowerBase(s.useGamma22, v))>,
                .DisplayP3ToSRGB =
                    ToPixels<QZ_FORMULA(
                        XYZToLinearRGB(true, s.illuminant, DisplayP3ToXYZ(s.useGamma22, s.illuminant, v)))>,
                .SRGBToDisplayP3 =
                    ToPixels<QZ_FORMULA(
                        PowerBase(
                            s.useGamma22,
                            XYZToLinearDisplayP3(
                                s.illuminant, SRGBToXYZ(s.useGamma22, s.extendedRange, s.illuminant, v))))>,
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
