// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "QZ/Math/Detail/DoubleDouble.h"
#include "QZ/Math/Detail/Halves.h"
#include "QZ/Math/Detail/QuickTables.h"

/// \file
/// First evaluations of the exponential, sine and cosine, to some 65 bits and with a bound of their error:
/// where both ends of what is possible round to one double, that is the nearest to the exact value. In all
/// but one case in thousands they do; the others ask for more bits. A. Ziv, "Fast Evaluation of Elementary
/// Mathematical Functions with Correctly Rounded Last Bit", ACM TOMS 17(3), 1991, pp. 410-423.
///
/// Error bounds count u = 2^-53, by which a result of an operation errs at most, relatively.

namespace QZ::Math::Detail {

/// The doubles nearest to the least and the greatest value that is possible.
struct Bracket {
    double below;
    double above;

    /// Whether the exact value is known to round to either.
    [[nodiscard]] constexpr bool IsSure() const { return below == above; }
};

/// For arguments beyond the range of an evaluation.
inline constexpr Bracket kUnsure{0.0, 1.0};

/// high + low, |low| <= |high| / 2, with an error of at most that bound, the rounding of low + error
/// included.
constexpr Bracket BracketOf(double high, double low, double error)
{
    return {high + (low - error), high + (low + error)};
}

/// Added to a double below 2^51 and taken off again, it leaves the nearest integer, whose lowest bits are
/// those of the sum.
inline constexpr double kRounder = 0x1.8p52;

/// e^(high + low) for |high| up to 708.
///
/// With n = round(128 high / ln 2) and r the rest, |r| < 0.0028: 2^(n / 128) (1 + r + r^2 p(r)), where the
/// first two terms are summed exactly. In units of 2^-71 of the result: r errs by 5, of that 2 for a low
/// of 2^-18 and 2 where high + low loses its order of sizes; r^2 p(r), below 2^-17.9, by 5.5 with its
/// polynomial and what it takes r for; the sums with it by 6. Together below 2^-66.8.
/// \param low    at most 2^-18.
/// \param error  what high + low errs by.
inline Bracket QuickExp(double high, double low, double error)
{
    using namespace QuickTables;
    const double shifted = high * (1.0 / (kLn2Step[0] + kLn2Step[1])) + kRounder;
    const double n = shifted - kRounder;
    const DoubleDouble r = FastTwoSum(high - n * kLn2Step[0], low - n * kLn2Step[1]);   // the first is exact

    const double r2 = r.high * r.high;
    const double series =
        r2 * ((kExp[0] + r.high * kExp[1]) + r2 * ((kExp[2] + r.high * kExp[3]) + r2 * kExp[4]));
    const double upper = Upper(r.high);
    const double rest = (r.high - upper) + (r.low + series);

    const auto bits = std::bit_cast<std::uint64_t>(shifted);
    const Halves power = kPowersOf2[bits & 127];
    const DoubleDouble sum = FastTwoSum(power.upper, power.upper * upper);   // the product is exact
    const double tail = sum.low + ((power.lower + power.lower * upper) + (power.upper + power.lower) * rest);
    const Bracket bracket = BracketOf(sum.high, tail, sum.high * (0x1p-66 + error));

    const double scale = std::bit_cast<double>(((bits >> 7) + 1023) << 52);
    return {bracket.below * scale, bracket.above * scale};
}

/// sin(x + quarters pi / 2) for |x| from 2^-34 to 2^14.
///
/// With n = round(128 x / pi), a = n pi / 128 and r the rest, which errs by 2^-105: sin(a) cos(r) +
/// cos(a) sin(r), where sin(a) + cos(a) r are summed exactly. What the rest of cos(r), below r^2 / 2, costs
/// is below 5.8 u r^2 sin(a): 2.3 for its operations, 1 for taking r for a double, 2.5 for sums with it.
/// The rest of sin(r), below |r|^3 / 6, costs 2.2 u |r|^3. Both polynomials, and sums with lower halves,
/// cost below 2^-67.5 of the result.
inline Bracket QuickSine(double x, unsigned quarters)
{
    using namespace QuickTables;
    const double magnitude = std::fabs(x);
    if (!(magnitude >= 0x1p-34 && magnitude < 0x1p14))
        return kUnsure;
    const double shifted = x * (1.0 / kPiStep[0]) + kRounder;
    const double n = shifted - kRounder;
    const DoubleDouble most = TwoSum(x - n * kPiStep[0], -n * kPiStep[1]);   // both products are exact
    const DoubleDouble r = FastTwoSum(most.high, most.low - n * kPiStep[2]);

    const auto i = std::bit_cast<std::uint64_t>(shifted) + 64 * quarters;
    const Halves sine = kSine[i & 255];
    const Halves cosine = kSine[(i + 64) & 255];
    const double wholeSine = sine.upper + sine.lower;
    const double r2 = r.high * r.high;
    const double cosineRest = r2 * (r2 * (kCosine[0] + r2 * kCosine[1]) - 0.5);
    const double sineRest = (r.high * r2) * (kSineRest[0] + r2 * (kSineRest[1] + r2 * kSineRest[2]));

    const double upper = Upper(r.high);
    const DoubleDouble sum = FastTwoSum(sine.upper, cosine.upper * upper);   // the product is exact
    const double ofCosine = (cosine.upper + cosine.lower) * (((r.high - upper) + r.low) + sineRest);
    const double tail = sum.low + ((sine.lower + cosine.lower * upper) + (wholeSine * cosineRest + ofCosine));
    const double error = r2 * (std::fabs(wholeSine) * 0x1.8p-51 + std::fabs(r.high) * 0x1.4p-52) +
                         (std::fabs(sum.high) * 0x1p-67 + 0x1p-100);
    return BracketOf(sum.high, tail, error);
}

}   // namespace QZ::Math::Detail
