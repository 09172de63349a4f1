// SPDX-License-Identifier: MIT

/// \file
/// The number types that the formulas are written over, and the operations that are spelled alike for each of
/// them.
///
/// A formula is a function template over F. F is float for one colour, and a SIMD vector for a row of them.
/// The namespace QZ_TARGET is one for each instruction set, so that the copies never meet; the guard lets a
/// file be read once for each.

#if defined(QZ_FOUNDATION_COLOR_LANE) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_LANE
#undef QZ_FOUNDATION_COLOR_LANE
#else
#define QZ_FOUNDATION_COLOR_LANE
#endif

#include <hwy/highway.h>
#include <cmath>

#include "QZ/Math/CVector3.h"

#undef QZ_TARGET
#define QZ_TARGET HWY_NAMESPACE

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// A colour over the number type F.
template <class F>
using Vec3 = Math::CVector3<F>;

/// a where the mask holds, b elsewhere; both are evaluated.
HWY_INLINE float Select(bool mask, float a, float b)
{
    return mask ? a : b;
}

/// a() where the mask holds, b() elsewhere. One float evaluates one of the two, a vector both.
template <class A, class B>
HWY_INLINE float Choose(bool mask, A&& a, B&& b)
{
    return mask ? a() : b();
}

HWY_INLINE bool And(bool a, bool b)
{
    return a && b;
}
HWY_INLINE bool Or(bool a, bool b)
{
    return a || b;
}

HWY_INLINE float Abs(float x)
{
    return std::fabs(x);
}
HWY_INLINE float Sqrt(float x)
{
    return std::sqrt(x);
}
HWY_INLINE float Floor(float x)
{
    return std::floor(x);
}

/// Component by component.
template <class M, class F>
HWY_INLINE Vec3<F> Select(M mask, const Vec3<F>& a, const Vec3<F>& b)
{
    return {Select(mask, a.x, b.x), Select(mask, a.y, b.y), Select(mask, a.z, b.z)};
}

/// f of each component.
template <class F, class Function>
HWY_INLINE Vec3<F> Map(const Vec3<F>& v, Function&& f)
{
    return {f(v.x), f(v.y), f(v.z)};
}

/// max(low, min(high, x)); NaN becomes low.
template <class F>
HWY_INLINE F Clamp(F x, float low, float high)
{
    const F atMost = Select(x < high, x, F(high));
    return Select(And(x == x, atMost > low), atMost, F(low));
}

/// x clamped to 0 to 1; NaN becomes 0.
template <class F>
HWY_INLINE F ClampToUnit(F x)
{
    return Clamp(x, 0.0f, 1.0f);
}

/// x, but 0 where it is not above 0; NaN becomes 0.
template <class F>
HWY_INLINE F NotBelowZero(F x)
{
    return Select(x > 0.0f, x, F(0.0f));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
