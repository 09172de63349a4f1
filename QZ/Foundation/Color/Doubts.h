// SPDX-License-Identifier: MIT

/// \file
/// Which results of a vector may be wrong: for functions that try a quick way first. FloatPairs.h reads this
/// file after it has found whether there are any.

#if defined(QZ_FOUNDATION_COLOR_DOUBTS) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_DOUBTS
#undef QZ_FOUNDATION_COLOR_DOUBTS
#else
#define QZ_FOUNDATION_COLOR_DOUBTS
#endif

#include <cstdint>

#include "QZ/Foundation/Color/Lane.h"

#if QZ_HAS_PAIRS

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// The bits in which a and b differ.
HWY_INLINE LaneCells Difference(Lane a, Lane b)
{
    const hn::RebindToUnsigned<Lane::Tag> tag;
    return {hn::Xor(hn::BitCast(tag, a.vector), hn::BitCast(tag, b.vector))};
}

#if HWY_TARGET <= HWY_AVX3

/// Which results of a vector are not sure. Plain numbers: the compiler drops what is known to be 0.
struct Doubts {
    __mmask16 bits;
};
HWY_INLINE Doubts NoDoubts()
{
    return {0};
}
HWY_INLINE Doubts Or(Doubts a, Doubts b)
{
    return {static_cast<__mmask16>(a.bits | b.bits)};
}
HWY_INLINE Doubts And(LaneMask mask, Doubts doubts)
{
    return {static_cast<__mmask16>(mask.mask.raw & doubts.bits)};
}
HWY_INLINE Doubts WhereDifferent(Lane a, Lane b)
{
    return {_mm512_cmp_ps_mask(a.vector.raw, b.vector.raw, _CMP_NEQ_UQ)};
}
/// Where any bit is set.
HWY_INLINE Doubts WhereSet(LaneCells x)
{
    return {_mm512_test_epi32_mask(x.bits.raw, x.bits.raw)};
}
/// A bit for each float, the first one's the lowest.
HWY_INLINE std::uint32_t BitsOf(Doubts doubts)
{
    return doubts.bits;
}

#else

/// Which results of a vector are not sure: those with any bit set.
struct Doubts {
    LaneCells cells;
};
HWY_INLINE Doubts NoDoubts()
{
    return {{hn::Zero(hn::RebindToUnsigned<Lane::Tag>())}};
}
HWY_INLINE Doubts Or(Doubts a, Doubts b)
{
    return {{hn::Or(a.cells.bits, b.cells.bits)}};
}
HWY_INLINE Doubts And(LaneMask mask, Doubts doubts)
{
    const hn::RebindToUnsigned<Lane::Tag> tag;
    return {{hn::IfThenElseZero(hn::RebindMask(tag, mask.mask), doubts.cells.bits)}};
}
HWY_INLINE Doubts WhereDifferent(Lane a, Lane b)
{
    return {Difference(a, b)};
}
HWY_INLINE Doubts WhereSet(LaneCells x)
{
    return {x};
}
HWY_INLINE std::uint32_t BitsOf(Doubts doubts)
{
    const hn::RebindToUnsigned<Lane::Tag> tag;
    const auto isSure =
        hn::BitCast(Lane::Tag(), hn::VecFromMask(tag, hn::Eq(doubts.cells.bits, hn::Zero(tag))));
    return static_cast<std::uint32_t>(_mm256_movemask_ps(isSure.raw)) ^ 0xffu;
}

#endif

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif

#endif
