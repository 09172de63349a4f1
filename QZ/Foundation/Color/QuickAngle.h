// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "QZ/Foundation/Color/DoubleDouble.h"
#include "QZ/Foundation/Color/QuickTables.h"
#include "QZ/Math/Detail/Quick.h"

namespace QZ::Foundation {

/// (num - c den) / (den + c num) for c = i / 64 nearest num / den: the tangent of what is left of the angle.
/// It errs by less than 2^-75 of itself.
inline DoubleDouble TangentLeft(double num, double den, double c)
{
    using Math::Detail::Upper;
    const double numUpper = Upper(num);
    const double denUpper = Upper(den);
    // Products with c, of 7 bits, are exact; so is the difference, a multiple of the last bit of c den.
    const double difference = (num - c * denUpper) - c * (den - denUpper);
    const double sum = den + c * num;
    const double sumLower = (c * numUpper - (sum - den)) + c * (num - numUpper);

    const double inverse = 1.0 / sum;
    const double quotient = difference * inverse;
    const double q = Upper(quotient);
    const double s = Upper(sum);
    const double left = ((difference - q * s) - q * (sum - s)) - (quotient - q) * sum;
    return {quotient, (left - quotient * sumLower) * inverse};
}

/// atan2(y, x) + turn for y and |x| from 2^-400 to 2^400 and y > 0; turn is at most 2^-52 of the result.
///
/// With c = i / 64 nearest the quotient of the smaller and the greater of y and |x|, and z the tangent of
/// what is left, |z| < 2^-7: a multiple of pi / 2, atan(c) and z are summed exactly. What else atan(z) has,
/// below |z|^3 / 3, costs below 3.6 u z^2 |z|: 5 roundings and that of its first coefficient, and one for
/// taking z for a double; the sums with it cost below 4 (u / 3) z^2 |z|.
inline Math::Detail::Bracket QuickAngle(double y, double x, double turn)
{
    using namespace Math::Detail;
    using namespace QuickTables;
    const double magnitude = std::fabs(x);
    if (!(y > 0x1p-400 && y < 0x1p400 && magnitude > 0x1p-400 && magnitude < 0x1p400))
        return kUnsure;
    const bool isSteep = y > magnitude;
    const bool isLeft = x < 0.0;
    const double num = isSteep ? magnitude : y;
    const double den = isSteep ? y : magnitude;
    const double shifted = num / den * 64.0 + kRounder;
    const DoubleDouble z = TangentLeft(num, den, (shifted - kRounder) * 0x1p-6);

    const double z2 = z.high * z.high;
    const double series =
        (z.high * z2) * ((kAtan[0] + z2 * kAtan[1]) + (z2 * z2) * (kAtan[2] + z2 * kAtan[3]));
    const double sign = isSteep == isLeft ? 1.0 : -1.0;
    const Halves base = kQuadrant[(isSteep ? 1 : 0) + (isLeft ? 2 : 0)];
    const Halves angle = kAtanOf[std::bit_cast<std::uint64_t>(shifted) & 127];
    const DoubleDouble sum = FastTwoSum(base.upper + sign * angle.upper, sign * z.high);
    const double tail = sum.low + ((base.lower + sign * angle.lower) + (turn + sign * (z.low + series)));
    const double error = std::fabs(z.high) * (z2 * 0x1.5p-51) + sum.high * 0x1p-73;
    return BracketOf(sum.high, tail, error);
}

/// acos(x), the angle of the point at x on the unit circle, |x| from 2^-400 to below 1.
inline Math::Detail::Bracket QuickAcos(double x)
{
    if (!(std::fabs(x) < 1.0))
        return Math::Detail::kUnsure;
    const DoubleDouble square = TwoProduct(x, x);
    const DoubleDouble most = FastTwoSum(1.0, -square.high);
    const DoubleDouble height2 = FastTwoSum(most.high, most.low - square.low);
    // One step of Newton's from the root in double; a point higher by so much is turned by x times that.
    const double root = std::sqrt(height2.high);
    const DoubleDouble root2 = TwoProduct(root, root);
    const double higher = ((height2.high - root2.high) + (height2.low - root2.low)) / (2.0 * root);
    return QuickAngle(root, x, higher * x);
}

}   // namespace QZ::Foundation
