// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>

#include "QZ/Math/CVector3.h"

namespace QZ::Tool {

using Vec3 = Math::CVector3<float>;

[[nodiscard]] inline Vec3 Unit(Vec3 v)
{
    v.Normalize();
    return v;
}

[[nodiscard]] constexpr Vec3 Cross(const Vec3& a, const Vec3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

[[nodiscard]] constexpr Vec3 Mix(const Vec3& a, const Vec3& b, float t)
{
    return a * (1.0f - t) + b * t;
}

/// 0 up to `low`, 1 from `high` on, a smooth rise between.
[[nodiscard]] constexpr float Smoothstep(float low, float high, float x)
{
    const float t = x <= low ? 0.0f : x >= high ? 1.0f : (x - low) / (high - low);
    return t * t * (3.0f - 2.0f * t);
}

/// Scrambles 32 bits (M. O'Neill, "PCG", 2014: the output permutation of its 32-bit generator).
[[nodiscard]] constexpr std::uint32_t Hash(std::uint32_t x)
{
    const std::uint32_t state = x * 747796405u + 2891336453u;
    const std::uint32_t word = ((state >> ((state >> 28) + 4)) ^ state) * 277803737u;
    return (word >> 22) ^ word;
}

/// A stream of random numbers, each in [0, 1).
class Random {
public:
    explicit Random(std::uint32_t seed) : m_state(Hash(seed)) {}

    float operator()()
    {
        m_state = m_state * 1664525u + 1013904223u;
        return static_cast<float>(Hash(m_state) >> 8) * 0x1p-24f;
    }

    /// A point of the unit disc, in x and y.
    Vec3 OnDisc()
    {
        for (;;) {
            const Vec3 p(2.0f * (*this)() - 1.0f, 2.0f * (*this)() - 1.0f, 0.0f);
            if (p.MagnitudeSquared() < 1.0f)
                return p;
        }
    }

    /// A direction about a normal, as likely as its cosine is large.
    Vec3 AboutNormal(const Vec3& normal)
    {
        const Vec3 p = OnDisc();
        const Vec3 across = Unit(Cross(std::abs(normal.x) > 0.5f ? Vec3(0, 1, 0) : Vec3(1, 0, 0), normal));
        return across * p.x + Cross(normal, across) * p.y + normal * std::sqrt(1.0f - p.MagnitudeSquared());
    }

private:
    std::uint32_t m_state;
};

/// Smooth noise from 0 to 1 with a grain of about one unit.
[[nodiscard]] float ValueNoise(const Vec3& p);

/// Four octaves of it, from 0 to 1.
[[nodiscard]] float Turbulence(const Vec3& p);

}   // namespace QZ::Tool
