// SPDX-License-Identifier: MIT

/// \file
/// The number types that the formulas are written over, and the operations that are spelled alike for each of
/// them.
///
/// A formula is a function template over F: float for one colour, Lane for as many as a SIMD vector holds.
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
#include <concepts>

#include "QZ/Math/CMatrix3.h"
#include "QZ/Math/CVector3.h"

#undef QZ_TARGET
#define QZ_TARGET HWY_NAMESPACE

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

namespace hn = hwy::HWY_NAMESPACE;

/// A SIMD vector of floats. A float in an expression with lanes stands for as many copies of it.
struct Lane {
    using Tag = hn::ScalableTag<float>;
    using Vector = hn::Vec<Tag>;

    Vector vector;

    Lane() = default;
    HWY_INLINE Lane(Vector v) : vector(v) {}
    HWY_INLINE Lane(float x) : vector(hn::Set(Tag(), x)) {}

    /// How many floats it holds.
    static HWY_INLINE std::size_t Size() { return hn::Lanes(Tag()); }
};

// Outside the class: GCC does not give friends written inside it the instruction set.
HWY_INLINE Lane operator+(Lane a, Lane b)
{
    return hn::Add(a.vector, b.vector);
}
HWY_INLINE Lane operator-(Lane a, Lane b)
{
    return hn::Sub(a.vector, b.vector);
}
HWY_INLINE Lane operator*(Lane a, Lane b)
{
    return hn::Mul(a.vector, b.vector);
}
HWY_INLINE Lane operator/(Lane a, Lane b)
{
    return hn::Div(a.vector, b.vector);
}
HWY_INLINE Lane operator-(Lane a)
{
    return hn::Neg(a.vector);
}

/// a b + c, a b - c and c - a b, rounded once: where HWY_NATIVE_FMA says so.
HWY_INLINE Lane FusedMulAdd(Lane a, Lane b, Lane c)
{
    return hn::MulAdd(a.vector, b.vector, c.vector);
}
HWY_INLINE Lane FusedMulSub(Lane a, Lane b, Lane c)
{
    return hn::MulSub(a.vector, b.vector, c.vector);
}
HWY_INLINE Lane FusedNegMulAdd(Lane a, Lane b, Lane c)
{
    return hn::NegMulAdd(a.vector, b.vector, c.vector);
}

/// A truth value for each float of a Lane.
struct LaneMask {
    using Mask = hn::Mask<Lane::Tag>;

    Mask mask;

    HWY_INLINE LaneMask(Mask m) : mask(m) {}
};

HWY_INLINE LaneMask operator<(Lane a, Lane b)
{
    return hn::Lt(a.vector, b.vector);
}
HWY_INLINE LaneMask operator>(Lane a, Lane b)
{
    return hn::Gt(a.vector, b.vector);
}
HWY_INLINE LaneMask operator>=(Lane a, Lane b)
{
    return hn::Ge(a.vector, b.vector);
}
HWY_INLINE LaneMask operator<=(Lane a, Lane b)
{
    return hn::Le(a.vector, b.vector);
}
HWY_INLINE LaneMask operator==(Lane a, Lane b)
{
    return hn::Eq(a.vector, b.vector);
}
HWY_INLINE LaneMask operator!=(Lane a, Lane b)
{
    return hn::Ne(a.vector, b.vector);
}

/// a where the mask holds, b elsewhere; both are evaluated.
HWY_INLINE float Select(bool mask, float a, float b)
{
    return mask ? a : b;
}
HWY_INLINE Lane Select(LaneMask mask, Lane a, Lane b)
{
    return hn::IfThenElse(mask.mask, a.vector, b.vector);
}

/// a(x) where the mask holds, b(x) elsewhere. One float evaluates one of the two, a Lane both, but a() of 1
/// in place of what it is not meant for.
template <class A, class B>
HWY_INLINE float Choose(bool mask, float x, A&& a, B&& b)
{
    return mask ? a(x) : b(x);
}
template <class A, class B>
HWY_INLINE Lane Choose(LaneMask mask, Lane x, A&& a, B&& b)
{
    return Select(mask, a(Select(mask, x, Lane(1.0f))), b(x));
}

HWY_INLINE bool And(bool a, bool b)
{
    return a && b;
}
HWY_INLINE LaneMask And(LaneMask a, LaneMask b)
{
    return hn::And(a.mask, b.mask);
}
HWY_INLINE bool Or(bool a, bool b)
{
    return a || b;
}
HWY_INLINE LaneMask Or(LaneMask a, LaneMask b)
{
    return hn::Or(a.mask, b.mask);
}

HWY_INLINE bool Not(bool mask)
{
    return !mask;
}
HWY_INLINE LaneMask Not(LaneMask mask)
{
    return hn::Not(mask.mask);
}
HWY_INLINE bool NoneTrue(bool mask)
{
    return !mask;
}
HWY_INLINE bool NoneTrue(LaneMask mask)
{
    return hn::AllFalse(Lane::Tag(), mask.mask);
}

HWY_INLINE float Abs(float x)
{
    return std::fabs(x);
}
HWY_INLINE Lane Abs(Lane x)
{
    return hn::Abs(x.vector);
}
HWY_INLINE float Sqrt(float x)
{
    return std::sqrt(x);
}
HWY_INLINE Lane Sqrt(Lane x)
{
    return hn::Sqrt(x.vector);
}
HWY_INLINE float Floor(float x)
{
    return std::floor(x);
}
HWY_INLINE Lane Floor(Lane x)
{
    return hn::Floor(x.vector);
}

/// Whether the sign bit is set.
HWY_INLINE bool IsNegative(float x)
{
    return std::signbit(x);
}
HWY_INLINE LaneMask IsNegative(Lane x)
{
    const hn::RebindToSigned<Lane::Tag> bits;
    return hn::MaskFromVec(hn::BitCast(Lane::Tag(), hn::BroadcastSignBit(hn::BitCast(bits, x.vector))));
}

/// x with the sign of sign.
HWY_INLINE float CopySign(float x, float sign)
{
    return std::copysign(x, sign);
}
HWY_INLINE Lane CopySign(Lane x, Lane sign)
{
    return hn::CopySign(x.vector, sign.vector);
}

/// function(x) in place of otherwise where the mask holds, one float at a time: for what is rare.
template <class Function>
HWY_NOINLINE Lane ReplaceEach(LaneMask mask, Lane x, Lane otherwise, Function function)
{
    const Lane::Tag tag;
    HWY_ALIGN float arguments[HWY_MAX_BYTES / sizeof(float)];
    HWY_ALIGN float results[HWY_MAX_BYTES / sizeof(float)];
    HWY_ALIGN float isChosen[HWY_MAX_BYTES / sizeof(float)];
    hn::Store(x.vector, tag, arguments);
    hn::Store(otherwise.vector, tag, results);
    hn::Store(Select(mask, Lane(1.0f), Lane(0.0f)).vector, tag, isChosen);
    for (std::size_t i = 0; i < Lane::Size(); ++i)
        if (isChosen[i] != 0.0f)
            results[i] = function(arguments[i]);
    return hn::Load(tag, results);
}
template <class Function>
HWY_INLINE Lane ReplaceWhere(LaneMask mask, Lane x, Lane otherwise, Function function)
{
    return HWY_LIKELY(hn::AllFalse(Lane::Tag(), mask.mask)) ? otherwise
                                                            : ReplaceEach(mask, x, otherwise, function);
}
template <class Function>
HWY_INLINE float ReplaceWhere(bool mask, float x, float otherwise, Function function)
{
    return HWY_LIKELY(!mask) ? otherwise : function(x);
}

/// A colour over the number type F.
template <class F>
struct Vec3 {
    F x;
    F y;
    F z;

    Vec3() = default;
    HWY_INLINE Vec3(F x_, F y_, F z_) : x(x_), y(y_), z(z_) {}
    HWY_INLINE Vec3(float all) requires std::same_as<F, Lane> : x(all), y(all), z(all) {}

    /// One colour is what callers know as a CVector3.
    HWY_INLINE explicit Vec3(const Math::CVector3<float>& v) requires std::same_as<F, float>
        : x(v.x), y(v.y), z(v.z)
    {}
    HWY_INLINE operator Math::CVector3<float>() const requires std::same_as<F, float> { return {x, y, z}; }
};
Vec3(const Math::CVector3<float>&)->Vec3<float>;

/// Matrix times column.
template <class F>
HWY_INLINE Vec3<F> operator*(const Math::CMatrix3<float>& m, const Vec3<F>& v)
{
    return {m(0, 0) * v.x + m(0, 1) * v.y + m(0, 2) * v.z,   //
            m(1, 0) * v.x + m(1, 1) * v.y + m(1, 2) * v.z,   //
            m(2, 0) * v.x + m(2, 1) * v.y + m(2, 2) * v.z};
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

/// The same for a function of more than a few operations: one of three Lanes at a time, so that what is rare
/// is asked for once and not three times.
template <class Function>
HWY_INLINE Vec3<float> Each(const Vec3<float>& v, Function&& f)
{
    return Map(v, f);
}
template <class Function>
HWY_INLINE Vec3<Lane> Each(const Vec3<Lane>& v, Function&& f)
{
    return f(v);
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
    return Select(x > 0.0f, Select(x < 1.0f, x, F(1.0f)), F(0.0f));
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
