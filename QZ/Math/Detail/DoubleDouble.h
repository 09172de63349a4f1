// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

namespace QZ::Math::Detail {

/// A number of about 106 bits: the sum of two doubles, the second at most half a unit in the last place of
/// the first. T. J. Dekker, "A Floating-Point Technique for Extending the Available Precision", Numerische
/// Mathematik 18, 1971, pp. 224-242.
///
/// Meant for magnitudes from 1e-140 to 1e140, where no product over- or underflows. Each operation errs by
/// less than 2^-100 of its result (M. Joldes, J.-M. Muller and V. Popescu, "Tight and Rigorous Error Bounds
/// for Basic Building Blocks of Double-Word Arithmetic", ACM TOMS 44(2), 2017).
struct DoubleDouble {
    double high = 0.0;
    double low = 0.0;
};

/// a + b exactly, |a| >= |b| or a = 0.
constexpr DoubleDouble FastTwoSum(double a, double b)
{
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// a + b exactly.
constexpr DoubleDouble TwoSum(double a, double b)
{
    const double sum = a + b;
    const double bRounded = sum - a;
    return {sum, (a - (sum - bRounded)) + (b - bRounded)};
}

/// a to 26 bits and the rest, of 26. By its bits: a product for it could be fused with what follows.
constexpr DoubleDouble Split(double a)
{
    const std::uint64_t rounded = std::bit_cast<std::uint64_t>(a) + (1u << 26);
    const double high = std::bit_cast<double>(rounded & 0xfffffffff8000000u);
    return {high, a - high};
}

/// a * b exactly. Without a fused multiplication, which not every machine has.
constexpr DoubleDouble TwoProduct(double a, double b)
{
    const double product = a * b;
    const DoubleDouble x = Split(a);
    const DoubleDouble y = Split(b);
    const double low = ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low;
    return {product, low};
}

constexpr DoubleDouble operator-(DoubleDouble a)
{
    return {-a.high, -a.low};
}

constexpr DoubleDouble operator+(DoubleDouble a, DoubleDouble b)
{
    const DoubleDouble high = TwoSum(a.high, b.high);
    const DoubleDouble low = TwoSum(a.low, b.low);
    const DoubleDouble sum = FastTwoSum(high.high, high.low + low.high);
    return FastTwoSum(sum.high, sum.low + low.low);
}

constexpr DoubleDouble operator-(DoubleDouble a, DoubleDouble b)
{
    return a + -b;
}

constexpr DoubleDouble operator*(DoubleDouble a, DoubleDouble b)
{
    const DoubleDouble product = TwoProduct(a.high, b.high);
    return FastTwoSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

constexpr DoubleDouble operator*(DoubleDouble a, double b)
{
    const DoubleDouble product = TwoProduct(a.high, b);
    return FastTwoSum(product.high, product.low + a.low * b);
}

constexpr DoubleDouble operator/(DoubleDouble a, DoubleDouble b)
{
    const double first = a.high / b.high;
    DoubleDouble rest = a - b * first;
    const double second = rest.high / b.high;
    rest = rest - b * second;
    return FastTwoSum(first, second) + DoubleDouble{rest.high / b.high, 0.0};
}

/// The sum rounded to a double whose last bit tells that something was cut off (it is odd then). A later
/// rounding to at most 51 bits, subnormal floats included, is the rounding of the sum itself.
/// S. Boldo and G. Melquiond, "Emulation of a FMA and Correctly Rounded Sums", IEEE TC 57(4), 2008.
constexpr double RoundToOdd(DoubleDouble a)
{
    auto bits = std::bit_cast<std::uint64_t>(a.high);
    if (a.low == 0.0 || (bits & 1) != 0)
        return a.high;
    const bool towardsZero = (a.high > 0.0) != (a.low > 0.0);
    return std::bit_cast<double>(towardsZero ? bits - 1 : bits + 1);
}

}   // namespace QZ::Math::Detail
