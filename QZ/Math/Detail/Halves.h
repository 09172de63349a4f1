// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

namespace QZ::Math::Detail {

/// A number as the sum of 26 bits, or few enough for what they are added to, and a double for the rest.
struct Halves {
    double upper;
    double lower;
};

/// The upper 26 bits of x; the rest has 27. Products of two such numbers of 26 bits, and of 26 and 27, are
/// exact.
constexpr double Upper(double x)
{
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) & 0xfffffffff8000000u);
}

}   // namespace QZ::Math::Detail
