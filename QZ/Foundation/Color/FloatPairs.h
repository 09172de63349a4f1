// SPDX-License-Identifier: MIT

/// \file
/// Powers and exponentials as sums of two floats, for vectors that fuse a product with a sum: a vector holds
/// twice as many floats as doubles.

#if defined(QZ_FOUNDATION_COLOR_FLOATPAIRS) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_FLOATPAIRS
#undef QZ_FOUNDATION_COLOR_FLOATPAIRS
#else
#define QZ_FOUNDATION_COLOR_FLOATPAIRS
#endif

#include "QZ/Foundation/Color/ElementaryTables.h"
#include "QZ/Foundation/Color/Exponent.h"
#include "QZ/Foundation/Color/PairFactors.h"
#if HWY_TARGET != HWY_SCALAR
#include "QZ/Foundation/Color/WideLane.h"
#endif

/// Whether a product and a sum are rounded once, and sixteen floats looked up by permutations.
#undef QZ_HAS_PAIRS
#define QZ_HAS_PAIRS (HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX2 && HWY_NATIVE_FMA)

#include "QZ/Foundation/Color/Doubts.h"

#if QZ_HAS_PAIRS

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// A number for each float of a Lane, the sum of two.
struct LanePair {
    Lane high;   ///< the nearest float, or nearly
    Lane low;
};
/// To 2^-46.
HWY_INLINE LanePair operator*(LanePair a, LanePair b)
{
    const Lane high = a.high * b.high;
    const Lane low = FusedMulSub(a.high, b.high, high);
    return {high, FusedMulAdd(a.low, b.high, FusedMulAdd(a.high, b.low, low))};
}
HWY_INLINE LanePair SquareInPair(Lane x)
{
    const Lane square = x * x;
    return {square, FusedMulSub(x, x, square)};
}
/// The cell of the exponent alone.
HWY_INLINE LaneCells ExponentOf(LaneCells cell)
{
    return {hn::ShiftRight<4>(cell.bits)};
}
/// The bits of x as a number, rounded.
HWY_INLINE Lane NumberOf(Lane x)
{
    const hn::RebindToSigned<Lane::Tag> tag;
    return hn::ConvertTo(Lane::Tag(), hn::BitCast(tag, x.vector));
}
/// x with a mantissa of 12 bits.
HWY_INLINE Lane UpperHalf(Lane x)
{
    const hn::RebindToUnsigned<Lane::Tag> tag;
    return hn::BitCast(Lane::Tag(), hn::And(hn::BitCast(tag, x.vector), hn::Set(tag, 0xfffff000u)));
}
HWY_INLINE LanePair Lookup(const PairTable& table, LaneCells index)
{
    return {Lookup(table.high, index), Lookup(table.low, index)};
}

/// A result rounded twice, once from either end of its margin of error. Where the two are equal, they are the
/// nearest float.
struct TwoRoundings {
    Lane least;
    Lane most;
};
HWY_INLINE TwoRoundings Round(Lane high, Lane leastLow, Lane mostLow)
{
    return {high + leastLow, high + mostLow};
}

/// scale (1 + first + rest), and the same with mostRest.
HWY_INLINE TwoRoundings Round(LanePair scale, Lane first, Lane rest, Lane mostRest)
{
    const Lane high = FusedMulAdd(scale.high, first, scale.high);
    const Lane remainder = FusedMulAdd(scale.high, first, scale.high - high);   // exact
    const Lane low = FusedMulAdd(scale.low, first, scale.low + remainder);
    return Round(high, FusedMulAdd(scale.high, rest, low), FusedMulAdd(scale.high, mostRest, low));
}

/// x^3, whose low part errs by two roundings of 2^-48.
HWY_INLINE TwoRoundings CubeInPairs(Lane x)
{
    const LanePair square = SquareInPair(x);
    const Lane high = square.high * x;
    const Lane low = FusedMulAdd(square.low, x, FusedMulSub(square.high, x, high));
    return Round(high, FusedMulAdd(high, Lane(-0x1p-46f), low), FusedMulAdd(high, Lane(0x1p-46f), low));
}

/// x^e for x from 2^-15 to 2.
///
/// Nearly all that it may err by are a few roundings of the terms from t^2 on, so the margin is a part of
/// them, and small near the middle of each interval.
template <Exponent exponent>
HWY_INLINE TwoRoundings PowInPairs(Lane x)
{
    using Factors = PairFactors<exponent>;
    const LaneCells cell = CellOf(x);
    const Lane t = FusedMulSub(Mantissa(x), Lookup(ElementaryTables::kReciprocals, cell), Lane(1.0f));
    LanePair scale = Lookup(Factors::kIntervals, cell) * Lookup(Factors::kBinary, ExponentOf(cell));
    if constexpr (Factors::kHasSquare)
        scale = scale * SquareInPair(x);

    // (1 + t)^p = 1 + first + rest
    const Lane p(Factors::kPower);
    const Lane first = p * t;
    const Lane t2 = t * t;
    constexpr auto& c = Factors::kSeries;
    const Lane series =
        FusedMulAdd(t2, FusedMulAdd(t, Lane(c[3]), Lane(c[2])), FusedMulAdd(t, Lane(c[1]), Lane(c[0])));
    const Lane rest = FusedMulAdd(t2, series, FusedMulSub(p, t, first));
    const Lane mostRest = FusedMulAdd(rest, Lane(Factors::kMostSeries), Lane(Factors::kMostSum));
    return Round(scale, first, rest, mostRest);
}

/// x^0.33333334 for x from 2^-15 to 2.
///
/// With z near the reciprocal of the cube root, and so short that z^2 is a float, x z^2 is near the root, and
/// how near is what x z^3 lacks to 1. This spares the factors of an interval in pairs.
HWY_INLINE TwoRoundings RootInPairs(Lane x)
{
    constexpr auto& factors = kRootFactors;
    const LaneCells cell = CellOf(x);
    const Lane line = FusedMulAdd(Lookup(factors.slopes, cell), Mantissa(x), Lookup(factors.constants, cell));
    const Lane z = UpperHalf(line * Lookup(factors.binary, ExponentOf(cell)));
    const Lane z2 = z * z;
    const Lane high = x * z2;
    const Lane low = FusedMulSub(x, z2, high);
    const Lane lack = FusedNegMulAdd(z, low, FusedNegMulAdd(z, high, Lane(1.0f)));   // below 2^-9.9

    // (1 - lack)^(-2 / 3) = 1 + lack (2 / 3 + 5 / 9 lack + 40 / 81 lack^2)
    const Lane series =
        FusedMulAdd(FusedMulAdd(lack, Lane(40.0f / 81.0f), Lane(5.0f / 9.0f)), lack, Lane(2.0f / 3.0f));
    // A float's bits, as a number, are 2^23 times the binary exponent and the mantissa's part above 1.
    constexpr auto kLogOfBit =
        static_cast<float>(RootFactors::kExcess * ElementaryTables::kLn2.high * 0x1p-23);
    const Lane excess = FusedMulAdd(NumberOf(x), Lane(kLogOfBit), Lookup(factors.logarithms, cell));
    const Lane leastLow = FusedMulAdd(high, FusedMulAdd(lack, series, excess), low);
    return Round(high, leastLow, FusedMulAdd(high, Lane(RootFactors::kMost), leastLow));
}

/// A result, and whether it may be another: where the roundings differ, and outside a range.
struct PairResult {
    Lane value;
    Doubts doubts;
};
HWY_INLINE PairResult ResultOf(const TwoRoundings& roundings, LaneCells outside)
{
    return {roundings.least, Or(WhereSet(outside), WhereDifferent(roundings.least, roundings.most))};
}

/// result, but 0 of 0.
HWY_INLINE PairResult UnlessZero(Lane x, const PairResult& result)
{
    const LaneMask isZero = x == 0.0f;
    return {Select(isZero, Lane(0.0f), result.value), And(Not(isZero), result.doubts)};
}
/// Sure from 2^-15 to 2 but for one in 1,600 to 5,000, by the exponent; of cube roots one in 170.
template <Exponent exponent>
HWY_INLINE PairResult QuickPow(Lane x)
{
    // All floats from 2^-15 to 2, and no others, begin with the same five bits. A cube may have any sign.
    constexpr bool isCube = exponent == Exponent::k3;
    const hn::RebindToUnsigned<Lane::Tag> tag;
    const auto prefix = hn::Set(tag, isCube ? 0x78000000u : 0xf8000000u);
    const LaneCells outside = {hn::And(Difference(x, Lane(0x1p-15f)).bits, prefix)};
    if constexpr (isCube)
        return ResultOf(CubeInPairs(x), outside);
    else if constexpr (exponent == Exponent::k0_33333334)
        return ResultOf(RootInPairs(x), outside);
    else if constexpr (HasLineNearZero(exponent))
        return ResultOf(PowInPairs<exponent>(x), outside);
    else
        return UnlessZero(x, ResultOf(PowInPairs<exponent>(x), outside));
}

/// e^x for |x| up to 8.
HWY_INLINE TwoRoundings ExpInPairs(Lane x)
{
    // x = n ln 2 / 16 + remainder + low
    const hn::RebindToUnsigned<Lane::Tag> tag;
    const Lane shift(12582912.0f);   // 1.5 2^23: the nearest integer comes to the low bits
    const Lane shifted = FusedMulAdd(x, Lane(PairExp::kStepsOf1), shift);
    const Lane n = shifted - shift;
    const Lane most = FusedMulAdd(n, Lane(-PairExp::kUpperStep), x);   // exact
    const Lane step = n * PairExp::kLowerStep;
    const Lane remainder = most - step;
    const Lane low = (most - remainder) - step;

    // e^remainder = 1 + remainder + rest
    const LaneCells cell = {hn::BitCast(tag, shifted.vector)};
    constexpr auto& c = PairExp::kSeries;
    const Lane r2 = remainder * remainder;
    const Lane series = FusedMulAdd(r2, FusedMulAdd(remainder, Lane(c[3]), Lane(c[2])),
                                    FusedMulAdd(remainder, Lane(c[1]), Lane(c[0])));
    const Lane rest = FusedMulAdd(r2, series, low);
    const Lane mostRest = FusedMulAdd(rest, Lane(PairExp::kMostSeries), Lane(PairExp::kMostSum));
    const TwoRoundings mantissa = Round(Lookup(PairExp::kPowers, cell), remainder, rest, mostRest);

    const auto exponent = hn::ShiftLeft<23>(hn::ShiftRight<4>(cell.bits));
    const auto scaled = [&](Lane m) HWY_ATTR -> Lane {
        return hn::BitCast(Lane::Tag(), hn::Add(hn::BitCast(tag, m.vector), exponent));
    };
    return {scaled(mantissa.least), scaled(mantissa.most)};
}
HWY_INLINE PairResult QuickExp(Lane x)
{
    // Of two operands Max() takes the second where either is NaN.
    const Lane bound(8.0f);
    return ResultOf(ExpInPairs(x), Difference(hn::Max(bound.vector, Abs(x).vector), bound));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif

#endif
