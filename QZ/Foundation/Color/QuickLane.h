// SPDX-License-Identifier: MIT

/// \file
/// A number type of the curves for loops without calls. A call, however rare, would have all that a loop
/// keeps in registers stored and loaded for every vector.

#if defined(QZ_FOUNDATION_COLOR_QUICKLANE) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_QUICKLANE
#undef QZ_FOUNDATION_COLOR_QUICKLANE
#else
#define QZ_FOUNDATION_COLOR_QUICKLANE
#endif

#include "QZ/Foundation/Color/FloatPairs.h"

#if QZ_HAS_PAIRS

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// A Lane that says whether it may be wrong, where a Lane would have been worked anew.
struct QuickLane {
    Lane value;
    Doubts doubts;

    HWY_INLINE explicit QuickLane(Lane v) : value(v), doubts(NoDoubts()) {}
    HWY_INLINE QuickLane(float x) : value(x), doubts(NoDoubts()) {}
    HWY_INLINE QuickLane(Lane v, Doubts d) : value(v), doubts(d) {}
};

HWY_INLINE QuickLane operator+(const QuickLane& a, const QuickLane& b)
{
    return {a.value + b.value, Or(a.doubts, b.doubts)};
}
HWY_INLINE QuickLane operator-(const QuickLane& a, const QuickLane& b)
{
    return {a.value - b.value, Or(a.doubts, b.doubts)};
}
HWY_INLINE QuickLane operator*(const QuickLane& a, const QuickLane& b)
{
    return {a.value * b.value, Or(a.doubts, b.doubts)};
}
HWY_INLINE QuickLane operator-(const QuickLane& a)
{
    return {-a.value, a.doubts};
}
HWY_INLINE LaneMask operator>(const QuickLane& a, float b)
{
    return a.value > b;
}
HWY_INLINE LaneMask operator>=(const QuickLane& a, float b)
{
    return a.value >= b;
}
HWY_INLINE QuickLane Abs(const QuickLane& a)
{
    return {Abs(a.value), a.doubts};
}
HWY_INLINE QuickLane Select(LaneMask mask, const QuickLane& a, const QuickLane& b)
{
    return {Select(mask, a.value, b.value), Or(a.doubts, b.doubts)};
}
/// Doubts about a(x) do not count where it is not chosen.
template <class A, class B>
HWY_INLINE QuickLane Choose(LaneMask mask, const QuickLane& x, A&& a, B&& b)
{
    const QuickLane chosen = a(x);
    const QuickLane other = b(QuickLane(x.value));
    return {Select(mask, chosen.value, other.value),
            Or(Or(x.doubts, other.doubts), And(mask, chosen.doubts))};
}

template <Exponent exponent>
HWY_INLINE QuickLane Pow(const QuickLane& x)
{
    const PairResult power = QuickPow<exponent>(x.value);
    return {power.value, Or(x.doubts, power.doubts)};
}
HWY_INLINE QuickLane Exp(const QuickLane& x)
{
    const PairResult power = QuickExp(x.value);
    return {power.value, Or(x.doubts, power.doubts)};
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif

#endif
