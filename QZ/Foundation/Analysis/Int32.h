// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

/// \file
/// 32-bit integers where results may leave their range. Counts and their products wrap around on every
/// machine alike, and a floating-point value becomes an integer without undefined behaviour.

namespace QZ::Foundation {

constexpr int WrappingAdd(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}
constexpr int WrappingSubtract(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}
constexpr int WrappingMultiply(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

/// x without its fraction, at most `high` and at least `low`; NaN gives `low`.
template <class T>
constexpr int TruncateToRange(T x, int low, int high)
{
    if (!(x > static_cast<T>(low)))
        return low;
    return x < static_cast<T>(high) ? static_cast<int>(x) : high;
}

/// x without its fraction, brought into the range of int; NaN gives the lowest.
template <class T>
constexpr int TruncateToInt(T x)
{
    return TruncateToRange(x, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

}   // namespace QZ::Foundation
