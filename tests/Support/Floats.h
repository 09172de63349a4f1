// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>
#include <vector>

/// \file
/// Floats that tests need: comparison of bits, neighbours, and values chosen to find trouble.

namespace QZ::Test {

inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr float kInfinity = std::numeric_limits<float>::infinity();
inline constexpr float kSmallestSubnormal = std::numeric_limits<float>::denorm_min();
inline constexpr float kSmallestNormal = std::numeric_limits<float>::min();
inline constexpr float kLargest = std::numeric_limits<float>::max();

/// Whether two floats are the same bit for bit; +0 and -0 differ, any NaN is taken for any other.
[[nodiscard]] inline bool SameBits(float a, float b)
{
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}
/// The same for doubles.
[[nodiscard]] inline bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
/// The same for each component of a vector or colour.
template <class Vector>
requires requires(const Vector& v)
{
    v.z;
}
[[nodiscard]] bool SameBits(const Vector& a, const Vector& b)
{
    return SameBits(a.x, b.x) && SameBits(a.y, b.y) && SameBits(a.z, b.z);
}

/// The next float towards plus infinity.
[[nodiscard]] inline float NextUp(float x)
{
    return std::nextafter(x, kInfinity);
}
/// The next float towards minus infinity.
[[nodiscard]] inline float NextDown(float x)
{
    return std::nextafter(x, -kInfinity);
}

/// The zeros, the ends of the subnormal, normal and whole range, the infinities, NaN, and the thresholds of
/// the library's curves with both neighbours; each of either sign.
[[nodiscard]] inline std::vector<float> Edges()
{
    std::vector<float> edges = {kNaN};
    const auto add = [&edges](float x) {
        edges.push_back(x);
        edges.push_back(-x);
    };
    for (const float x :
         {0.0f, kSmallestSubnormal, NextDown(kSmallestNormal), kSmallestNormal, kLargest, kInfinity})
        add(x);
    for (const float x : {0.04045f, 0.0031308f, 0.081f, 0.018f, 0.008856f, 0.20689f, 0.5f, 1.0f, 2.0f}) {
        add(NextDown(x));
        add(x);
        add(NextUp(x));
    }
    return edges;
}

/// n floats: edges, then random ones, in a shuffled order that is the same for every run. Half of the random
/// ones lie in [0, 1), the other half is spread over the whole range of exponents, of either sign.
[[nodiscard]] inline std::vector<float> EdgesAndRandoms(std::size_t n, std::uint32_t seed = 1)
{
    // Bits are taken from the generator directly: the distributions of <random> differ from library to
    // library.
    std::mt19937 generator(seed);
    std::vector<float> values = Edges();
    while (values.size() < n) {
        const float unit = static_cast<float>(generator() >> 8) * 0x1p-24f;
        const auto anyBits = std::bit_cast<float>(static_cast<std::uint32_t>(generator()));
        values.push_back(generator() % 2 == 0 ? unit : anyBits);
    }
    for (std::size_t i = values.size() - 1; i > 0; --i)
        std::swap(values[i], values[generator() % (i + 1)]);
    values.resize(n);
    return values;
}

/// n random floats in [low, high), the same in every run.
[[nodiscard]] inline std::vector<float> Randoms(std::size_t n, float low, float high, std::uint32_t seed = 1)
{
    std::mt19937 generator(seed);
    std::vector<float> values(n);
    for (float& value : values)
        value = low + (high - low) * (static_cast<float>(generator() >> 8) * 0x1p-24f);
    return values;
}

}   // namespace QZ::Test
