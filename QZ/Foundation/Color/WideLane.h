// SPDX-License-Identifier: MIT

/// \file
/// The operations of Wide.h on two vectors of doubles, for a Lane of floats. The instruction set of single
/// values has no vector to halve and goes without.

#if defined(QZ_FOUNDATION_COLOR_WIDELANE) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_WIDELANE
#undef QZ_FOUNDATION_COLOR_WIDELANE
#else
#define QZ_FOUNDATION_COLOR_WIDELANE
#endif

#include "QZ/Foundation/Color/Wide.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// The vectors of doubles that a Lane of floats widens to.
struct WideLane {
    using Tag = hn::Repartition<double, Lane::Tag>;
    using Vector = hn::Vec<Tag>;

    Vector lower;
    Vector upper;

    HWY_INLINE WideLane(Vector l, Vector u) : lower(l), upper(u) {}
    HWY_INLINE explicit WideLane(double x) : lower(hn::Set(Tag(), x)), upper(hn::Set(Tag(), x)) {}
};

HWY_INLINE WideLane operator+(WideLane a, WideLane b)
{
    return {hn::Add(a.lower, b.lower), hn::Add(a.upper, b.upper)};
}
HWY_INLINE WideLane operator-(WideLane a, WideLane b)
{
    return {hn::Sub(a.lower, b.lower), hn::Sub(a.upper, b.upper)};
}
HWY_INLINE WideLane operator*(WideLane a, WideLane b)
{
    return {hn::Mul(a.lower, b.lower), hn::Mul(a.upper, b.upper)};
}
HWY_INLINE WideLane operator/(WideLane a, WideLane b)
{
    return {hn::Div(a.lower, b.lower), hn::Div(a.upper, b.upper)};
}
HWY_INLINE WideLane operator-(WideLane a)
{
    return {hn::Neg(a.lower), hn::Neg(a.upper)};
}

/// A truth value for each double.
struct WideMask {
    hn::Mask<WideLane::Tag> lower;
    hn::Mask<WideLane::Tag> upper;
};

HWY_INLINE WideMask operator>(WideLane a, WideLane b)
{
    return {hn::Gt(a.lower, b.lower), hn::Gt(a.upper, b.upper)};
}

/// The bits of floats, each as wide as a double's.
struct WideBits {
    using Tag = hn::RebindToUnsigned<WideLane::Tag>;

    hn::Vec<Tag> lower;
    hn::Vec<Tag> upper;
};

template <int bits>
HWY_INLINE WideBits ShiftRight(WideBits x)
{
    return {hn::ShiftRight<bits>(x.lower), hn::ShiftRight<bits>(x.upper)};
}

HWY_INLINE WideLane Widen(Lane x)
{
    const WideLane::Tag tag;
    const hn::Half<Lane::Tag> half;
    return {hn::PromoteTo(tag, hn::LowerHalf(half, x.vector)),
            hn::PromoteTo(tag, hn::UpperHalf(half, x.vector))};
}

HWY_INLINE Lane Narrow(WideLane x)
{
    const hn::Half<Lane::Tag> half;
    return hn::Combine(Lane::Tag(), hn::DemoteTo(half, x.upper), hn::DemoteTo(half, x.lower));
}

HWY_INLINE WideBits BitsOf(Lane x)
{
    const hn::RebindToUnsigned<Lane::Tag> narrow;
    const hn::Half<decltype(narrow)> half;
    const auto bits = hn::BitCast(narrow, x.vector);
    return {hn::PromoteTo(WideBits::Tag(), hn::LowerHalf(half, bits)),
            hn::PromoteTo(WideBits::Tag(), hn::UpperHalf(half, bits))};
}

HWY_INLINE Lane Mantissa(Lane x)
{
    const hn::RebindToUnsigned<Lane::Tag> tag;
    const auto fraction = hn::And(hn::BitCast(tag, x.vector), hn::Set(tag, 0x007fffffu));
    return hn::BitCast(Lane::Tag(), hn::Or(fraction, hn::Set(tag, 0x3f800000u)));
}

HWY_INLINE WideLane::Vector Lookup(const double (&table)[16], hn::Vec<WideBits::Tag> index)
{
    const WideLane::Tag tag;
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
    // The permutation looks at just these four bits.
    const auto first = hn::LoadU(tag, table);
    const auto second = hn::LoadU(tag, table + 8);
    return WideLane::Vector{_mm512_permutex2var_pd(first.raw, index.raw, second.raw)};
#else
    const hn::RebindToSigned<WideLane::Tag> indices;
    return hn::GatherIndex(tag, table,
                           hn::BitCast(indices, hn::And(index, hn::Set(WideBits::Tag(), std::uint64_t{15}))));
#endif
}

HWY_INLINE WideLane Lookup(const double (&table)[16], WideBits index)
{
    return {Lookup(table, index.lower), Lookup(table, index.upper)};
}

HWY_INLINE WideLane MulAdd(WideLane a, WideLane b, WideLane c)
{
    return {hn::MulAdd(a.lower, b.lower, c.lower), hn::MulAdd(a.upper, b.upper, c.upper)};
}

HWY_INLINE WideLane PowerOf2(Rounded<WideLane> n)
{
    const WideBits::Tag tag;
    const auto power = [&](WideLane::Vector shifted) HWY_ATTR {
        const auto biased = hn::Add(hn::BitCast(tag, shifted), hn::Set(tag, std::uint64_t{1023}));
        return hn::BitCast(WideLane::Tag(), hn::ShiftLeft<52>(biased));
    };
    return {power(n.shifted.lower), power(n.shifted.upper)};
}

HWY_INLINE WideMask HasBit(Rounded<WideLane> n, std::uint64_t bit)
{
    const WideBits::Tag tag;
    const auto test = [&](WideLane::Vector shifted) HWY_ATTR {
        return hn::RebindMask(WideLane::Tag(), hn::TestBit(hn::BitCast(tag, shifted), hn::Set(tag, bit)));
    };
    return {test(n.shifted.lower), test(n.shifted.upper)};
}

HWY_INLINE WideMask WidenMask(LaneMask mask)
{
    const hn::RebindToSigned<Lane::Tag> narrow;
    const hn::Half<decltype(narrow)> half;
    const hn::RebindToSigned<WideLane::Tag> wide;
    const auto bits = hn::BitCast(narrow, hn::VecFromMask(Lane::Tag(), mask.mask));
    const WideLane::Tag tag;
    return {hn::MaskFromVec(hn::BitCast(tag, hn::PromoteTo(wide, hn::LowerHalf(half, bits)))),
            hn::MaskFromVec(hn::BitCast(tag, hn::PromoteTo(wide, hn::UpperHalf(half, bits))))};
}

HWY_INLINE WideLane Select(WideMask mask, WideLane a, WideLane b)
{
    return {hn::IfThenElse(mask.lower, a.lower, b.lower), hn::IfThenElse(mask.upper, a.upper, b.upper)};
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
