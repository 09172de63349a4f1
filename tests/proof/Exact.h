// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

#include "QZ/Foundation/Color/Elementary.h"
#include "QZ/Math/Detail/Elementary.h"
#include "tests/proof/PowerReference.h"

// In the namespace of the formulas, which find these by their arguments.
namespace QZ::Foundation::QZ_TARGET {

/// A pair of doubles as the number type of the formulas: about 100 bits.
struct Exact {
    DoubleDouble value;

    Exact() = default;
    Exact(double x) : value{x, 0.0} {}
    Exact(DoubleDouble v) : value(v) {}

    friend Exact operator+(Exact a, Exact b) { return a.value + b.value; }
    friend Exact operator-(Exact a, Exact b) { return a.value - b.value; }
    friend Exact operator*(Exact a, Exact b) { return a.value * b.value; }
    friend Exact operator/(Exact a, Exact b) { return a.value / b.value; }
    friend Exact operator-(Exact a) { return -a.value; }
    friend bool operator<(Exact a, Exact b) { return (a - b).value.high < 0.0; }
    friend bool operator>(Exact a, Exact b) { return b < a; }
    friend bool operator>=(Exact a, Exact b) { return !(a < b); }
    friend bool operator<=(Exact a, Exact b) { return !(b < a); }
    friend bool operator==(Exact a, Exact b) { return (a - b).value.high == 0.0; }
};

inline Exact Select(bool mask, Exact a, Exact b)
{
    return mask ? a : b;
}

template <class A, class B>
Exact Choose(bool mask, Exact x, A&& a, B&& b)
{
    return mask ? a(x) : b(x);
}

template <class Function>
Vec3<Exact> Each(const Vec3<Exact>& v, Function&& f)
{
    return Map(v, f);
}

inline Exact Abs(Exact x)
{
    return x < 0.0f ? -x : x;
}

inline Exact Floor(Exact x)
{
    const double floor = std::floor(x.value.high);
    return DoubleDouble{floor == x.value.high && x.value.low < 0.0 ? floor - 1.0 : floor, 0.0};
}

/// One step of Newton's from the root in double.
inline Exact Sqrt(Exact x)
{
    if (!(x > 0.0f))
        return 0.0f;
    const double root = std::sqrt(x.value.high);
    const DoubleDouble rest = x.value - TwoProduct(root, root);
    return FastTwoSum(root, rest.high / (2.0 * root));
}

/// sin(x + quarters pi / 2).
inline Exact SinOf(Exact x, unsigned quarters)
{
    const bool isNegative = x < 0.0f;
    const DoubleDouble magnitude = Abs(x).value;
    Math::Detail::QuarterTurns turns = Math::Detail::Reduce(magnitude.high);
    const DoubleDouble rest = turns.angle + DoubleDouble{magnitude.low, 0.0};
    const DoubleDouble angle = isNegative ? -rest : rest;
    const unsigned count = (isNegative ? 0u - turns.count : turns.count) + quarters;
    const DoubleDouble sine = (count & 1u) != 0 ? Math::Detail::AlternatingSeries(angle, 0)
                                                : angle * Math::Detail::AlternatingSeries(angle, 1);
    return (count & 2u) != 0 ? -sine : sine;
}
inline SineAndCosine<Exact> SinCos(Exact x)
{
    return {SinOf(x, 0), SinOf(x, 1)};
}

/// The angle in double, turned by what is left to the point.
inline Exact Atan2(Exact y, Exact x)
{
    if (x == 0.0f && y == 0.0f)
        return 0.0f;
    const Exact angle = DoubleDouble{Double::Atan2(y.value.high, x.value.high), 0.0};
    const auto [sine, cosine] = SinCos(angle);
    return angle + (y * cosine - x * sine) / (x * cosine + y * sine);
}

/// What has no power counts as 0, to which the conversions that meet it clamp.
template <Exponent exponent>
requires(exponent != Exponent::k3) Exact Pow(Exact x)
{
    if (!(x > 0.0f))
        return 0.0f;
    static const Proof::PowerReference reference(exponent);
    // The encoded values are 256: most powers were worked a moment ago.
    static std::array<std::pair<Exact, Exact>, 4096> known{};
    auto& [base, power] = known[(std::bit_cast<std::uint64_t>(x.value.high) * 0x9e3779b97f4a7c15u) >> 52];
    if (base.value.high != x.value.high || base.value.low != x.value.low) {
        base = x;
        power = reference.Power(x.value);
    }
    return power;
}

template <Exponent exponent>
requires(exponent == Exponent::k3) Exact Pow(Exact x)
{
    return x * x * x;
}

/// Of a positive number.
inline Exact Pow(Exact x, double exponent)
{
    // As above. Each entry belongs to one exponent.
    struct Known {
        Exact base;
        double exponent;
        Exact power;
    };
    static std::array<Known, 4096> known{};
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(x.value.high);
    Known& entry = known[((bits + std::bit_cast<std::uint64_t>(exponent)) * 0x9e3779b97f4a7c15u) >> 52];
    if (entry.base.value.high != x.value.high || entry.base.value.low != x.value.low ||
        entry.exponent != exponent)
        entry = {x, exponent, Proof::PowerByMPFR(x.value, exponent)};
    return entry.power;
}
inline Exact Cube(Exact x)
{
    return x * x * x;
}
inline Exact Sin(Exact x)
{
    return SinOf(x, 0);
}
inline Exact Cos(Exact x)
{
    return SinOf(x, 1);
}

}   // namespace QZ::Foundation::QZ_TARGET
