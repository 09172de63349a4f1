// SPDX-License-Identifier: MIT

/// \file
/// The hue bins of vectors of colours, and the weights of their pixels.

#if defined(QZ_FOUNDATION_ANALYSIS_HUELANES) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_ANALYSIS_HUELANES
#undef QZ_FOUNDATION_ANALYSIS_HUELANES
#else
#define QZ_FOUNDATION_ANALYSIS_HUELANES
#endif

#include "QZ/Foundation/Analysis/HueBins.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"
#include "QZ/Foundation/Color/Elementary.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

using LaneInts = hn::Vec<hn::RebindToSigned<Lane::Tag>>;

/// Where an angle lies among the bins.
HWY_INLINE Lane PositionOf(const HueBins& binOf, Lane angle)
{
    return (angle + static_cast<float>(Math::CConstants::PI)) * binOf.Scale() + 0.5f;
}

/// HueBins on lanes.
HWY_INLINE LaneInts BinsAt(const HueBins& binOf, Lane position)
{
    const hn::RebindToSigned<Lane::Tag> s;
    const Lane inRange = Clamp(position, 0.0f, static_cast<float>(binOf.Last()));
    return hn::Min(hn::ConvertTo(s, inRange.vector), hn::Set(s, binOf.Last()));
}

/// Atan2() to 2e-6, and exact where y is 0 and x is not negative; NaN for two infinities.
HWY_INLINE Lane RoughAtan2(Lane y, Lane x)
{
    const Lane ax = Abs(x);
    const Lane ay = Abs(y);
    const LaneMask isSteep = ay > ax;
    const Lane longer = Select(isSteep, ay, ax);
    const Lane q = Select(longer == 0.0f, Lane(0.0f), Select(isSteep, ax, ay) / longer);
    // Pairs of terms, and pairs of pairs: the sum of all one after the other would be waited for.
    const auto& c = ElementaryTables::kRoughAtan;
    const auto mulAdd = [](Lane a, Lane b, Lane sum)
                            HWY_ATTR -> Lane { return hn::MulAdd(a.vector, b.vector, sum.vector); };
    const Lane q2 = q * q;
    const Lane q4 = q2 * q2;
    const Lane lower = mulAdd(mulAdd(c[3], q2, c[2]), q4, mulAdd(c[1], q2, c[0]));
    const Lane upper = mulAdd(mulAdd(c[7], q2, c[6]), q4, mulAdd(c[5], q2, c[4]));
    const Lane sum = mulAdd(upper, q4 * q4, lower);
    const Lane eighth = sum * q;
    const Lane quarter = Select(isSteep, 1.5707963f - eighth, eighth);
    return CopySign(Select(IsNegative(x), 3.1415927f - quarter, quarter), y);
}

HWY_NOINLINE LaneInts BinsOfAny(const HueBins& binOf, Lane y, Lane x)
{
    return BinsAt(binOf, PositionOf(binOf, Atan2(y, x)));
}

/// Bins by a rough angle, which tells them unless it lies near the end of one.
struct RoughBins {
    LaneInts bins;
    LaneMask isOpen;
};
HWY_INLINE RoughBins RoughBinsOf(const HueBins& binOf, Lane y, Lane x)
{
    const Lane position = PositionOf(binOf, RoughAtan2(y, x));
    // 2e-6 in the angle, and less than that in each of the two roundings after it.
    const float reach = 1e-5f * binOf.Scale();
    const Lane distance = Abs(position - Floor(position + 0.5f));
    const LaneMask isExact = And(y == 0.0f, Not(IsNegative(x)));
    return {BinsAt(binOf, position), Not(Or(distance > reach, isExact))};
}

/// The bins of Atan2(y, x).
HWY_INLINE LaneInts BinsOf(const HueBins& binOf, Lane y, Lane x)
{
    const RoughBins rough = RoughBinsOf(binOf, y, x);
    return HWY_LIKELY(NoneTrue(rough.isOpen)) ? rough.bins : BinsOfAny(binOf, y, x);
}

/// \name Two weights, each by 1 / (1 + e^x), which falls from 1 to 0 about x = 0
/// The exponent x is one function, the weight of e^x another: all exponentials of a row are worked together.
/// \{

/// 0 for saturation 0, a half at 0.5, 1 for 1.
template <class F>
HWY_INLINE F SaturationExponent(F saturation)
{
    return (0.5f - saturation) * 10.0f;
}
template <class F>
HWY_INLINE F SaturationWeight(F exponential)
{
    return (1.0f / (exponential + 1.0f) - 0.006692851f) * 1.0135672f;
}

/// 1 for lightness 0.5, a half about 0.25 and 0.75, 0 for 0 and 1.
template <class F>
HWY_INLINE F LightnessExponent(F lightness)
{
    return Select(lightness <= 0.5f, 0.25f - lightness, lightness - 0.75f) * 10.0f;
}
template <class F>
HWY_INLINE F LightnessWeight(F exponential)
{
    return (1.0f / (exponential + 1.0f) - 0.075858176f) * 1.178851f;
}
/// \}

/// The axes of the hue: from x, the second, towards y, the third, but in IPT from T towards P.
struct HueAxes {
    Lane y;
    Lane x;
};
template <HueSpace space>
HWY_INLINE HueAxes HueAxesOf(const Vec3<Lane>& color)
{
    if constexpr (space == HueSpace::IPT)
        return {color.y, color.z};
    else
        return {color.z, color.y};
}
HWY_INLINE LaneInts HueBinsOfIPT(const HueBins& binOf, const Vec3<Lane>& ipt)
{
    const auto [y, x] = HueAxesOf<HueSpace::IPT>(ipt);
    return BinsOf(binOf, y, x);
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
