// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "QZ/Foundation/Color/DoubleDouble.h"
#include "QZ/Foundation/Color/QuickTables.h"
#include "QZ/Math/Detail/Quick.h"

namespace QZ::Foundation {

/// The natural logarithm of a positive normal number, as a sum: the second is at most 2^-23.7. The error is
/// below 2^-74.
///
/// With x = 2^k m and z = m r - 1, |z| < 0.0056, for the reciprocal r of m's interval, which is exact:
/// k ln 2 - log(r) + z - z^2 / 2 + z^3 p(z). The first three are summed exactly, and so is the square of the
/// upper half of z; z^3 p(z), below 2^-23.9, errs by 5 u, and four sums with it by u each.
inline DoubleDouble QuickLog(double x)
{
    using namespace QuickTables;
    const auto bits = std::bit_cast<std::uint64_t>(x);
    const double k = static_cast<double>(static_cast<int>(bits >> 52) - 1023);
    const Interval& interval = kIntervals[(bits >> 45) & 127];
    const double m = std::bit_cast<double>((bits & 0xfffffffffffffu) | 0x3ff0000000000000u);
    const double mUpper = Math::Detail::Upper(m);
    const double zUpper = mUpper * interval.reciprocal - 1.0;
    const double zLower = (m - mUpper) * interval.reciprocal;
    const double z = zUpper + zLower;

    const double z2 = z * z;
    const double series = (kLog[0] + z * kLog[1]) +
                          z2 * ((kLog[2] + z * kLog[3]) + z2 * ((kLog[4] + z * kLog[5]) + z2 * kLog[6]));
    // z^2 = zUpper^2 + zLower (zUpper + z)
    const double half = 0.5 * zUpper;
    const DoubleDouble first = FastTwoSum(k * kLn2.upper + interval.log, z);
    const DoubleDouble second = FastTwoSum(first.high, -half * zUpper);
    const double tail =
        (z * z2) * series + ((k * kLn2.lower + interval.logRest) - 0.5 * zLower * (zUpper + z));
    return {second.high, tail + (first.low + second.low)};
}

/// x^e for a positive normal x, where |e log(x)| is below 64.
///
/// e log(x) is summed with an error of 2^-74 |e| for that of the logarithm, and 2^-70 for roundings, which
/// QuickExp() counts.
inline Math::Detail::Bracket QuickPow(double x, double e)
{
    using namespace Math::Detail;
    if (!(x >= 0x1p-1022 && x < HUGE_VAL))
        return kUnsure;
    const DoubleDouble log = QuickLog(x);
    const double logUpper = Upper(log.high);
    const double logLower = (log.high - logUpper) + log.low;
    const double eUpper = Upper(e);
    const double high = eUpper * logUpper;   // exact
    const double low = (e - eUpper) * logUpper + e * logLower;
    if (!(std::fabs(high) < 64.0 && std::fabs(low) < 0x1p-18))
        return kUnsure;
    return QuickExp(high, low, std::fabs(e) * 0x1p-73);
}

}   // namespace QZ::Foundation
