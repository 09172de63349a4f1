// SPDX-License-Identifier: MIT

/// \file
/// Every power, exponential, logarithm, sine and arc tangent of the library comes from here.
///
/// Powers are correctly rounded. The others are worked in double to about 2^-44 and lie within 0.5001 units
/// in the last place. None calls the mathematics library, and none contracts a product with a sum where the
/// result could show it: the bits are the same on every machine, for one float and for a Lane.

#if defined(QZ_FOUNDATION_COLOR_ELEMENTARY) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_ELEMENTARY
#undef QZ_FOUNDATION_COLOR_ELEMENTARY
#else
#define QZ_FOUNDATION_COLOR_ELEMENTARY
#endif

#include <cstddef>
#include <limits>

#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Foundation/Color/ElementaryTables.h"
#include "QZ/Foundation/Color/Exponent.h"
#include "QZ/Foundation/Color/FloatPairs.h"
#include "QZ/Foundation/Color/LaneTriple.h"
#include "QZ/Foundation/Color/PowerFactors.h"
#include "QZ/Foundation/Color/Wide.h"
#if HWY_TARGET != HWY_SCALAR
#include "QZ/Foundation/Color/WideLane.h"
#endif

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// c[0] + c[1] x + c[2] x^2 + ..., by Horner's rule.
template <std::size_t i = 0, class W, std::size_t n>
HWY_INLINE W Polynomial(const double (&c)[n], W x)
{
    if constexpr (i == n - 1)
        return W(c[i]);
    else
        return Polynomial<i + 1>(c, x) * x + W(c[i]);
}

/// The same where a product and a sum may be rounded once or twice.
template <std::size_t i = 0, class W, std::size_t n>
HWY_INLINE W LoosePolynomial(const double (&c)[n], W x)
{
    if constexpr (i == n - 1)
        return W(c[i]);
    else
        return MulAdd(LoosePolynomial<i + 1>(c, x), x, W(c[i]));
}

/// For one value the time to the result counts: even and odd terms side by side, and so on.
template <std::size_t first, std::size_t step, std::size_t n>
HWY_INLINE double EveryTerm(const double (&c)[n], double x)
{
    if constexpr (first + step >= n)
        return c[first];
    else
        return MulAdd(EveryTerm<first + step, 2 * step>(c, x * x), x, EveryTerm<first, 2 * step>(c, x * x));
}
template <std::size_t n>
HWY_INLINE double LoosePolynomial(const double (&c)[n], double x)
{
    return EveryTerm<0, 1>(c, x);
}

/// How a function of this file is worked. A result in double that is found either way differs by a few of its
/// roundings, far less than the reach of AreNearMidpoint(): where that finds nothing, the float is the same.
enum class Way {
    Strict,   ///< each operation rounded by itself: the result by definition
    Loose     ///< products and sums in any order
};
template <Way way, class W, std::size_t n>
HWY_INLINE W PolynomialBy(const double (&c)[n], W x)
{
    if constexpr (way == Way::Strict)
        return Polynomial(c, x);
    else
        return LoosePolynomial(c, x);
}

/// |x|^exponent for a normal x, of isUnit from 2^-15 to 2, to 2^-44.1: 2^-44.2 from the polynomial, and ten
/// roundings of 2^-53.
template <Exponent exponent, bool isUnit, class F>
HWY_INLINE auto PowInDouble(F x)
{
    using Factors = PowerFactors<exponent>;
    using W = decltype(Widen(x));
    const auto narrowCell = CellOf(x);
    const auto cell = Widen(narrowCell);
    const W t = TimesEntryLess1(Mantissa(x), ElementaryTables::kReciprocals, narrowCell);
    W scale = Lookup(isUnit ? Factors::unitIntervals : Factors::intervals, cell) *
              Lookup(Factors::binaryLow, ShiftRight<4>(cell));
    if constexpr (!isUnit)
        scale = scale * Lookup(Factors::binaryHigh, ShiftRight<8>(cell));

    return LoosePolynomial(Factors::power.polynomial, t) * scale;
}

/// What PowInDouble() may err by, relatively.
inline constexpr double kPowMargin = 0x1p-44;

/// x^3, correctly rounded. Its doubles err by one rounding.
template <class F>
HWY_INLINE F Cube(F x)
{
    using W = decltype(Widen(x));
    const W wide = Widen(x);
    const W cube = wide * wide * wide;
    const F rounded = Narrow(cube * W(1.0 + 0x1p-52));
    const auto isOpen = And(rounded != Narrow(cube * W(1.0 - 0x1p-52)), x == x);
    return ReplaceWhere(isOpen, x, rounded, [](float c) {
        const auto exact = static_cast<double>(c);
        return Narrow(RoundToOdd(TwoProduct(exact * exact, exact)));
    });
}

/// x to a fixed power, correctly rounded; zeros, infinities and NaN as std::pow gives them.
///
/// The result in double is rounded twice, once from either end of its margin of error. Where the two differ,
/// a midpoint between two floats is near, and the power is worked anew in pairs of doubles.
template <Exponent exponent>
HWY_NOINLINE float PowOfAny(float x)
{
    if (x >= std::numeric_limits<float>::min() && x <= std::numeric_limits<float>::max()) {
        const double power = PowInDouble<exponent, false>(x);
        const float rounded = Narrow(power * (1.0 + kPowMargin));
        if (rounded == Narrow(power * (1.0 - kPowMargin)))
            return rounded;
    }
    return x == 0.0f ? 0.0f : Double::PowRounded(x, Value(exponent));
}

/// The same, quickly for what is neither tiny nor large and, a few times in a million aside, not near a
/// midpoint.
template <Exponent exponent>
HWY_INLINE float Pow(float x)
{
    if constexpr (exponent == Exponent::k3) {
        return Cube(x);
    } else {
        if (HWY_LIKELY(x >= 0x1p-15f && x < 2.0f)) {
            const double power = PowInDouble<exponent, true>(x);
            if (HWY_LIKELY(!AreNearMidpoint(power)))
                return Narrow(power);
        }
        return PowOfAny<exponent>(x);
    }
}

/// x to any power, correctly rounded. Far slower than a fixed exponent.
HWY_INLINE float Pow(float x, float exponent)
{
    return Double::PowRounded(x, exponent);
}

/// e^x in double, x brought to where neither end is passed by more than a float sees.
template <Way way, class F>
HWY_INLINE auto ExpInDouble(F x)
{
    // Beyond these lie infinity and 0, and NaN passes.
    const F inRange = Select(x > 89.0f, F(89.0f), Select(x < -104.0f, F(-104.0f), x));
    const auto wide = Widen(inRange);
    using W = decltype(Widen(x));
    const auto n = RoundToInteger(wide * W(1.0 / ElementaryTables::kLn2.high));
    const W r =
        (wide - n.value * W(ElementaryTables::kLn2Parts[0])) - n.value * W(ElementaryTables::kLn2Parts[1]);
    return PolynomialBy<way>(ElementaryTables::kExp, r) * PowerOf2(n);
}
template <class F>
HWY_NOINLINE F ExpOfAny(F x)
{
    return Narrow(ExpInDouble<Way::Strict>(x));
}
/// e^x.
template <class F>
HWY_INLINE F Exp(F x)
{
    const auto quick = ExpInDouble<Way::Loose>(x);
    const auto isOpen = Or(Not(Abs(x) <= 87.0f), AreNearMidpoint(quick));
    return HWY_LIKELY(NoneTrue(isOpen)) ? Narrow(quick) : ExpOfAny(x);
}
/// For one value a table of 2^(i / 32) is at hand: five terms of the series, which err by less than 2^-48.
HWY_INLINE float Exp(float x)
{
    constexpr double kSeries[] = {1.0, 1.0, 1.0 / 2.0, 1.0 / 6.0, 1.0 / 24.0, 1.0 / 120.0};
    if (HWY_LIKELY(Abs(x) <= 87.0f)) {
        const double wide = Widen(x);
        const auto n = RoundToInteger(wide * (32.0 / ElementaryTables::kLn2.high));
        const double r = (wide - n.value * (ElementaryTables::kLn2Parts[0] / 32.0)) -
                         n.value * (ElementaryTables::kLn2Parts[1] / 32.0);
        const auto steps = std::bit_cast<std::uint64_t>(n.shifted);
        const auto power = std::bit_cast<std::uint64_t>(Math::Detail::kExp2[steps & 31].high);
        const double quick =
            LoosePolynomial(kSeries, r) * std::bit_cast<double>(power + ((steps >> 5) << 52));
        if (HWY_LIKELY(!AreNearMidpoint(quick)))
            return Narrow(quick);
    }
    return ExpOfAny(x);
}

/// 2^x.
HWY_INLINE float Exp2(float x)
{
    const double wide = Widen(Select(x > 129.0f, 129.0f, Select(x < -151.0f, -151.0f, x)));
    const auto n = RoundToInteger(wide);
    const double r = (wide - n.value) * ElementaryTables::kLn2.high;
    return Narrow(Polynomial(ElementaryTables::kExp, r) * PowerOf2(n));
}

/// The natural logarithm: -infinity of a zero, NaN below it.
HWY_INLINE float Log(float x)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    if (!(x > 0.0f && x < kInfinity))
        return x == 0.0f ? -kInfinity : x < 0.0f ? std::numeric_limits<float>::quiet_NaN() : x;
    // x = m 2^k, m from sqrt(1/2) to sqrt(2).
    constexpr std::uint64_t kRootOfHalf = 0x3fe6a09e667f3bcd;
    const auto bits = std::bit_cast<std::uint64_t>(Widen(x));
    const auto k = static_cast<std::int64_t>(bits - kRootOfHalf) >> 52;
    const auto m = std::bit_cast<double>(bits - (static_cast<std::uint64_t>(k) << 52));
    const double s = (m - 1.0) / (m + 1.0);
    const double logOfMantissa = 2.0 * s * Polynomial(ElementaryTables::kAtanh, s * s);
    return Narrow(static_cast<double>(k) * ElementaryTables::kLn2.high + logOfMantissa);
}

template <class W>
struct SineAndCosine {
    W sine;
    W cosine;
};

/// Both in double for |x| below 2^21.
template <Way way, class F>
HWY_INLINE auto SinCosOfModerate(F x)
{
    const auto wide = Widen(x);
    using W = decltype(Widen(x));
    const auto n = RoundToInteger(wide * W(2.0 / ElementaryTables::kPi.high));
    const W r = ((wide - n.value * W(ElementaryTables::kHalfPiParts[0])) -
                 n.value * W(ElementaryTables::kHalfPiParts[1])) -
                n.value * W(ElementaryTables::kHalfPiParts[2]);
    const W r2 = r * r;
    const W sine = r * PolynomialBy<way>(ElementaryTables::kSin, r2);
    const W cosine = PolynomialBy<way>(ElementaryTables::kCos, r2);

    const auto next = RoundToInteger(n.value + W(1.0));   // the cosine is the sine a quarter turn further
    return SineAndCosine<W>{NegateWhere<1>(n, SelectOdd(n, cosine, sine)),
                            NegateWhere<1>(next, SelectOdd(n, sine, cosine))};
}

inline constexpr float kModerate = 2097152.0f;   // 2^21

template <class F>
HWY_NOINLINE SineAndCosine<F> SinCosOfAny(F x)
{
    const auto moderate = SinCosOfModerate<Way::Strict>(x);
    const F sine = Select(x == 0.0f, x, Narrow(moderate.sine));
    const auto isLarge = Abs(x) >= kModerate;
    return {
        ReplaceWhere(isLarge, x, sine, [](float angle) { return Narrow(Double::Sin(Widen(angle))); }),
        ReplaceWhere(isLarge, x, Narrow(moderate.cosine),
                     [](float angle) { return Narrow(Double::Cos(Widen(angle))); }),
    };
}

/// Sine and cosine. Of what is neither tiny nor large they are far from subnormal.
template <class F>
HWY_INLINE SineAndCosine<F> SinCos(F x)
{
    const auto quick = SinCosOfModerate<Way::Loose>(x);
    const auto isOrdinary = And(Abs(x) >= 0x1p-60f, Abs(x) < kModerate);
    const auto isNear = Or(AreNearMidpoint(quick.sine), AreNearMidpoint(quick.cosine));
    if (HWY_LIKELY(NoneTrue(Or(Not(isOrdinary), isNear))))
        return {Narrow(quick.sine), Narrow(quick.cosine)};
    return SinCosOfAny(x);
}

/// The magnitude of atan2 in double, but for NaN.
template <Way way, class F>
HWY_INLINE auto AngleInDouble(F y, F x)
{
    const F ax = Abs(x);
    const F ay = Abs(y);
    const auto isSteep = ay > ax;
    const F longer = Select(isSteep, ay, ax);
    const F shorter = Select(isSteep, ax, ay);

    using W = decltype(Widen(x));
    const W quotient = Widen(shorter) / Widen(longer);
    // Two zeros count as the quotient 0, two infinities as 1.
    const W equal = Select(WidenMask(longer == 0.0f), W(0.0), W(1.0));
    const W q = Select(WidenMask(shorter == longer), equal, quotient);

    const auto isLarge = q > W(0.41421356237309503);   // tan(pi / 8)
    const W z = Select(isLarge, (q - W(1.0)) / (q + W(1.0)), q);
    const W atan = z * PolynomialBy<way>(ElementaryTables::kAtan, z * z);
    const W eighth = Select(isLarge, atan + W(ElementaryTables::kQuarterPi.high), atan);
    const W quarter = Select(WidenMask(isSteep), W(ElementaryTables::kHalfPi.high) - eighth, eighth);
    return Select(WidenMask(IsNegative(x)), W(ElementaryTables::kPi.high) - quarter, quarter);
}
template <class F>
HWY_NOINLINE F Atan2OfAny(F y, F x)
{
    const F angle = CopySign(Narrow(AngleInDouble<Way::Strict>(y, x)), y);
    return Select(And(x == x, y == y), angle, x + y);
}
/// The angle of the point (x, y), from -pi to pi; zeros and infinities as std::atan2 takes them.
template <class F>
HWY_INLINE F Atan2(F y, F x)
{
    const auto quick = AngleInDouble<Way::Loose>(y, x);
    const F angle = Narrow(quick);
    // Nothing here holds for NaN.
    const auto isOrdinary = Or(angle >= 0x1p-100f, And(y == 0.0f, x == x));
    return HWY_LIKELY(NoneTrue(Or(Not(isOrdinary), AreNearMidpoint(quick)))) ? CopySign(angle, y)
                                                                             : Atan2OfAny(y, x);
}

#if HWY_TARGET == HWY_SCALAR

// A Lane of one float.
template <Exponent exponent>
HWY_INLINE Lane Pow(Lane x)
{
    return Pow<exponent>(hn::GetLane(x.vector));
}
template <Exponent exponent>
HWY_INLINE LaneTriple Pow(const LaneTriple& v)
{
    return Map(v, [](Lane x) { return Pow<exponent>(x); });
}
HWY_INLINE Lane Exp(Lane x)
{
    return Exp(hn::GetLane(x.vector));
}
HWY_INLINE SineAndCosine<Lane> SinCos(Lane x)
{
    const auto [sine, cosine] = SinCos(hn::GetLane(x.vector));
    return {sine, cosine};
}
HWY_INLINE Lane Atan2(Lane y, Lane x)
{
    return Atan2(hn::GetLane(y.vector), hn::GetLane(x.vector));
}

#else

template <Exponent exponent>
HWY_INLINE Lane PowOfAnyByTables(Lane x)
{
    constexpr float kSmallest = std::numeric_limits<float>::min();
    constexpr float kLargest = std::numeric_limits<float>::max();
    const WideLane power = PowInDouble<exponent, false>(x);
    const Lane rounded = Narrow(power * WideLane(1.0 + kPowMargin));
    const LaneMask isOpen = rounded != Narrow(power * WideLane(1.0 - kPowMargin));

    const Lane magnitude = Abs(x);
    const LaneMask isNormal = And(x >= kSmallest, x <= kLargest);
    // Zeros, infinities and NaN are their own powers but for the sign.
    const LaneMask isNegative = And(x < 0.0f, magnitude <= kLargest);
    const Lane special = Select(isNegative, Lane(std::numeric_limits<float>::quiet_NaN()), magnitude);
    const LaneMask isSubnormal = And(x > 0.0f, x < kSmallest);
    return ReplaceWhere(Or(And(isNormal, isOpen), isSubnormal), x, Select(isNormal, rounded, special),
                        [](float c) { return Double::PowRounded(c, Value(exponent)); });
}

template <Exponent exponent>
HWY_NOINLINE Lane PowOfAny(Lane x)
{
    if constexpr (exponent == Exponent::k3)
        return Cube(x);
    else
        return PowOfAnyByTables<exponent>(x);
}
template <Exponent exponent>
HWY_NOINLINE LaneTriple PowOfAny(const LaneTriple& v)
{
    return {PowOfAny<exponent>(v.x), PowOfAny<exponent>(v.y), PowOfAny<exponent>(v.z)};
}

/// A power that is quick from 2^-15 to 2, and of 0; of other numbers, and near a midpoint, it is left open.
struct QuickPower {
    Lane result;
    LaneMask isOpen;   ///< in whatever places
};
template <Exponent exponent>
HWY_INLINE QuickPower QuickPowInDoubles(Lane x)
{
    const bool isCube = exponent == Exponent::k3;
    const Lane magnitude = isCube ? Abs(x) : x;
    const LaneMask isUnit = And(magnitude >= 0x1p-15f, magnitude < 2.0f);
    const auto power = [&]() HWY_ATTR {
        if constexpr (isCube)
            return Widen(x) * Widen(x) * Widen(x);   // one rounding: the first product is exact
        else
            return PowInDouble<exponent, true>(x);
    }();
    const Lane zero = isCube ? x : Lane(0.0f);
    return {Select(isUnit, Narrow(power), zero), Or(Not(Or(isUnit, x == 0.0f)), AreNearMidpoint(power))};
}

template <Exponent exponent>
HWY_INLINE Lane PowInDoubles(Lane x)
{
    const QuickPower quick = QuickPowInDoubles<exponent>(x);
    return HWY_LIKELY(NoneTrue(quick.isOpen)) ? quick.result : PowOfAny<exponent>(x);
}
template <Exponent exponent>
HWY_INLINE LaneTriple PowInDoubles(const LaneTriple& v)
{
    const QuickPower x = QuickPowInDoubles<exponent>(v.x);
    const QuickPower y = QuickPowInDoubles<exponent>(v.y);
    const QuickPower z = QuickPowInDoubles<exponent>(v.z);
    if (HWY_LIKELY(NoneTrue(Or(Or(x.isOpen, y.isOpen), z.isOpen))))
        return {x.result, y.result, z.result};
    return PowOfAny<exponent>(v);
}

#if QZ_HAS_PAIRS

/// Where pairs of floats are in doubt, as of one power in 1,600 to 5,000, and of 0.
template <Exponent exponent, class F>
HWY_NOINLINE F PowInDoubt(F x)
{
    return PowInDoubles<exponent>(x);
}

template <Exponent exponent>
HWY_INLINE Lane Pow(Lane x)
{
    const PairResult quick = QuickPow<exponent>(x);
    return HWY_LIKELY(BitsOf(quick.doubts) == 0) ? quick.value : PowInDoubt<exponent>(x);
}
template <Exponent exponent>
HWY_INLINE LaneTriple Pow(const LaneTriple& v)
{
    const PairResult x = QuickPow<exponent>(v.x);
    const PairResult y = QuickPow<exponent>(v.y);
    const PairResult z = QuickPow<exponent>(v.z);
    if (HWY_LIKELY(BitsOf(Or(Or(x.doubts, y.doubts), z.doubts)) == 0))
        return {x.value, y.value, z.value};
    return PowInDoubt<exponent>(v);
}

template <class F>
HWY_NOINLINE F ExpInDoubt(F x)
{
    return Exp<F>(x);
}
HWY_INLINE Lane Exp(Lane x)
{
    const PairResult quick = QuickExp(x);
    return HWY_LIKELY(BitsOf(quick.doubts) == 0) ? quick.value : ExpInDoubt(x);
}

#else

template <Exponent exponent, class F>
HWY_INLINE F Pow(const F& x) requires(std::same_as<F, Lane> || std::same_as<F, LaneTriple>)
{
    return PowInDoubles<exponent>(x);
}

#endif

#endif

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
