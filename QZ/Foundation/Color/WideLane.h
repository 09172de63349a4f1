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

/// The bits of doubles.
using WideBits = hn::RebindToUnsigned<WideLane::Tag>;

/// A truth value for each double.
struct WideMask {
    hn::Mask<WideLane::Tag> lower;
    hn::Mask<WideLane::Tag> upper;
};

HWY_INLINE WideMask operator>(WideLane a, WideLane b)
{
    return {hn::Gt(a.lower, b.lower), hn::Gt(a.upper, b.upper)};
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

/// The bits of floats.
struct LaneCells {
    hn::Vec<hn::RebindToUnsigned<Lane::Tag>> bits;
};

HWY_INLINE LaneCells CellOf(Lane x)
{
    return {hn::ShiftRight<19>(hn::BitCast(hn::RebindToUnsigned<Lane::Tag>(), x.vector))};
}
HWY_INLINE Lane Mantissa(Lane x)
{
    const hn::RebindToUnsigned<Lane::Tag> tag;
    const auto fraction = hn::And(hn::BitCast(tag, x.vector), hn::Set(tag, 0x007fffffu));
    return hn::BitCast(Lane::Tag(), hn::Or(fraction, hn::Set(tag, 0x3f800000u)));
}

#if HWY_ARCH_X86 && HWY_TARGET == HWY_AVX2

/// Indices into a LookupTable. There are permutations of eight words, which beat gathers.
struct WideCells {
    __m256i words;   ///< so ordered that the halves of the entries interleave to both vectors of doubles
};

HWY_INLINE WideCells Widen(LaneCells cells)
{
    return {_mm256_permute4x64_epi64(cells.bits.raw, 0xd8)};
}
template <int bits>
HWY_INLINE WideCells ShiftRight(WideCells cells)
{
    return {_mm256_srli_epi32(cells.words, bits)};
}

HWY_INLINE __m256 LookupWord(const std::uint32_t (&table)[16], __m256i index)
{
    const auto half = [&](const std::uint32_t* words) HWY_ATTR {
        return _mm256_permutevar8x32_ps(_mm256_loadu_ps(reinterpret_cast<const float*>(words)), index);
    };
    return _mm256_blendv_ps(half(table), half(table + 8), _mm256_castsi256_ps(_mm256_slli_epi32(index, 28)));
}
HWY_INLINE WideLane Lookup(const LookupTable& table, WideCells cells)
{
    const __m256 low = LookupWord(table.lowWords, cells.words);
    const __m256 high = LookupWord(table.highWords, cells.words);
    return {WideLane::Vector{_mm256_castps_pd(_mm256_unpacklo_ps(low, high))},
            WideLane::Vector{_mm256_castps_pd(_mm256_unpackhi_ps(low, high))}};
}

#else

/// Indices into a LookupTable, each as wide as a double.
struct WideCells {
    hn::Vec<WideBits> lower;
    hn::Vec<WideBits> upper;
};

HWY_INLINE WideCells Widen(LaneCells cells)
{
    const hn::Half<hn::RebindToUnsigned<Lane::Tag>> half;
    return {hn::PromoteTo(WideBits(), hn::LowerHalf(half, cells.bits)),
            hn::PromoteTo(WideBits(), hn::UpperHalf(half, cells.bits))};
}
template <int bits>
HWY_INLINE WideCells ShiftRight(WideCells cells)
{
    return {hn::ShiftRight<bits>(cells.lower), hn::ShiftRight<bits>(cells.upper)};
}

HWY_INLINE WideLane::Vector Lookup(const LookupTable& table, hn::Vec<WideBits> index)
{
    const WideLane::Tag tag;
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
    // The permutation looks at just these four bits.
    const auto first = hn::LoadU(tag, table.entries);
    const auto second = hn::LoadU(tag, table.entries + 8);
    return WideLane::Vector{_mm512_permutex2var_pd(first.raw, index.raw, second.raw)};
#else
    const hn::RebindToSigned<WideLane::Tag> indices;
    return hn::GatherIndex(tag, table.entries,
                           hn::BitCast(indices, hn::And(index, hn::Set(WideBits(), std::uint64_t{15}))));
#endif
}
HWY_INLINE WideLane Lookup(const LookupTable& table, WideCells cells)
{
    return {Lookup(table, cells.lower), Lookup(table, cells.upper)};
}

#endif

HWY_INLINE Lane Lookup(const float (&table)[16], LaneCells index)
{
    const Lane::Tag tag;
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
    return Lane::Vector{_mm512_permutexvar_ps(index.bits.raw, _mm512_loadu_ps(table))};
#elif HWY_ARCH_X86 && HWY_TARGET == HWY_AVX2
    const auto lower = _mm256_permutevar8x32_ps(_mm256_loadu_ps(table), index.bits.raw);
    const auto upper = _mm256_permutevar8x32_ps(_mm256_loadu_ps(table + 8), index.bits.raw);
    const auto isUpper = hn::BitCast(tag, hn::ShiftLeft<28>(index.bits));
    return Lane::Vector{_mm256_blendv_ps(lower, upper, isUpper.raw)};
#else
    const hn::RebindToUnsigned<Lane::Tag> u;
    const hn::RebindToSigned<Lane::Tag> s;
    return hn::GatherIndex(tag, table, hn::BitCast(s, hn::And(index.bits, hn::Set(u, 15u))));
#endif
}

/// A fused multiplication gives the float itself, as doubles do.
HWY_INLINE WideLane TimesEntryLess1(Lane x, const float (&table)[16], LaneCells cell)
{
#if HWY_NATIVE_FMA
    return Widen(FusedMulSub(x, Lookup(table, cell), Lane(1.0f)));
#else
    return Widen(x) * Widen(Lookup(table, cell)) - WideLane(1.0);
#endif
}

/// Which of them are, in whatever places.
HWY_INLINE LaneMask AreNearMidpoint(WideLane x)
{
    const hn::RebindToUnsigned<Lane::Tag> u;
    const WideBits wide;
    // The lower halves of all doubles in one vector.
    const auto lower = hn::BitCast(u, x.lower);
    const auto upper = hn::BitCast(u, hn::ShiftLeft<32>(hn::BitCast(wide, x.upper)));
    const auto bits = hn::Add(hn::OddEven(upper, lower), hn::Set(u, 0x200u - 0x10000000u));
    constexpr std::uint32_t kBeyond = 0x20000000u - 0x400u;
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
    return LaneMask::Mask{_mm512_testn_epi32_mask(bits.raw, _mm512_set1_epi32(kBeyond))};
#else
    return hn::RebindMask(Lane::Tag(), hn::Eq(hn::And(bits, hn::Set(u, kBeyond)), hn::Zero(u)));
#endif
}

HWY_INLINE WideLane MulAdd(WideLane a, WideLane b, WideLane c)
{
    return {hn::MulAdd(a.lower, b.lower, c.lower), hn::MulAdd(a.upper, b.upper, c.upper)};
}

HWY_INLINE WideLane PowerOf2(Rounded<WideLane> n)
{
    const WideBits tag;
    const auto power = [&](WideLane::Vector shifted) HWY_ATTR {
        const auto biased = hn::Add(hn::BitCast(tag, shifted), hn::Set(tag, std::uint64_t{1023}));
        return hn::BitCast(WideLane::Tag(), hn::ShiftLeft<52>(biased));
    };
    return {power(n.shifted.lower), power(n.shifted.upper)};
}

HWY_INLINE WideLane SelectOdd(Rounded<WideLane> n, WideLane a, WideLane b)
{
    const WideLane::Tag tag;
    const auto select = [&](WideLane::Vector shifted, WideLane::Vector odd, WideLane::Vector even) HWY_ATTR {
        const auto lowestBit = hn::ShiftLeft<63>(hn::BitCast(WideBits(), shifted));
        return hn::IfNegativeThenElse(hn::BitCast(tag, lowestBit), odd, even);
    };
    return {select(n.shifted.lower, a.lower, b.lower), select(n.shifted.upper, a.upper, b.upper)};
}

template <int bit>
HWY_INLINE WideLane NegateWhere(Rounded<WideLane> n, WideLane x)
{
    const auto negate = [](WideLane::Vector shifted, WideLane::Vector value) HWY_ATTR {
        const auto sign = hn::ShiftLeft<63>(hn::ShiftRight<bit>(hn::BitCast(WideBits(), shifted)));
        return hn::Xor(value, hn::BitCast(WideLane::Tag(), sign));
    };
    return {negate(n.shifted.lower, x.lower), negate(n.shifted.upper, x.upper)};
}

HWY_INLINE WideMask WidenMask(LaneMask mask)
{
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
    using Mask = hn::Mask<WideLane::Tag>;
    return {Mask{static_cast<__mmask8>(mask.mask.raw)}, Mask{static_cast<__mmask8>(mask.mask.raw >> 8)}};
#else
    const hn::RebindToSigned<Lane::Tag> narrow;
    const hn::Half<decltype(narrow)> half;
    const hn::RebindToSigned<WideLane::Tag> wide;
    const auto bits = hn::BitCast(narrow, hn::VecFromMask(Lane::Tag(), mask.mask));
    const WideLane::Tag tag;
    return {hn::MaskFromVec(hn::BitCast(tag, hn::PromoteTo(wide, hn::LowerHalf(half, bits)))),
            hn::MaskFromVec(hn::BitCast(tag, hn::PromoteTo(wide, hn::UpperHalf(half, bits))))};
#endif
}

HWY_INLINE WideLane Select(WideMask mask, WideLane a, WideLane b)
{
    return {hn::IfThenElse(mask.lower, a.lower, b.lower), hn::IfThenElse(mask.upper, a.upper, b.upper)};
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
