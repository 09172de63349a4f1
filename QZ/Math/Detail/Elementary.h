// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "QZ/Math/Detail/DoubleDouble.h"
#include "QZ/Math/Detail/ElementaryTables.h"
#include "QZ/Math/Detail/Quick.h"

/// \file
/// Sine, cosine and exponential in double precision, to some 65 bits, and in pairs of doubles where these do
/// not tell the nearest double: the same bits on every machine, whatever its mathematics library. A host that
/// lets its compiler fuse products with sums gets them too: what is to be exact stays so, and the bounds of
/// Quick.h hold with fewer roundings. Not for hosts to call.

namespace QZ::Math::Detail {

struct QuarterTurns {
    unsigned count;       ///< modulo 4
    DoubleDouble angle;   ///< what is left, from -pi / 4 to pi / 4
};

/// M. H. Payne and R. N. Hanek, "Radian Reduction for Trigonometric Functions", ACM SIGNUM 18(1), 1983: the
/// 53 bits of x times those 256 bits of 2 / pi that matter for the quadrant and the 108 bits below it,
/// however close to a multiple of pi / 2 the angle comes.
class TurnProduct {
public:
    /// \param x  positive and finite.
    explicit TurnProduct(double x)
    {
        int exponent = 0;
        const auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(x, &exponent), 53));
        exponent -= 53;
        // Words of whole multiples of four quarter turns are left out.
        const int skipped = exponent > 2 ? (exponent - 2) / 32 : 0;
        for (std::size_t i = 0; i < 8; ++i) {
            const std::uint64_t word = kTwoOverPi[static_cast<std::size_t>(skipped) + 7 - i];
            Add(i, word * (mantissa & 0xffffffffu));
            Add(i + 1, word * (mantissa >> 32));
        }
        const int fractionBits = 32 * (skipped + 8) - exponent;
        ShiftLeft((32 - fractionBits % 32) % 32);
        m_fractionWords = static_cast<std::size_t>((fractionBits + 31) / 32);
    }

    [[nodiscard]] QuarterTurns Result()
    {
        unsigned count = m_words[m_fractionWords] & 3u;
        const bool isAboveHalf = (m_words[m_fractionWords - 1] >> 31) != 0;
        if (isAboveHalf) {
            ++count;
            NegateFraction();
        }
        DoubleDouble fraction;
        int exponent = 0;
        for (std::size_t i = m_fractionWords; i-- > 0;) {
            exponent -= 32;
            fraction = fraction + DoubleDouble{std::ldexp(static_cast<double>(m_words[i]), exponent), 0.0};
        }
        const DoubleDouble angle = fraction * kHalfPi;
        return {count & 3u, isAboveHalf ? -angle : angle};
    }

private:
    void Add(std::size_t i, std::uint64_t product)
    {
        for (std::uint64_t carry = product; carry != 0; ++i) {
            const std::uint64_t sum = m_words[i] + (carry & 0xffffffffu);
            m_words[i] = static_cast<std::uint32_t>(sum);
            carry = (carry >> 32) + (sum >> 32);
        }
    }

    void ShiftLeft(int bits)
    {
        std::uint64_t carry = 0;
        for (std::uint32_t& word : m_words) {
            carry |= static_cast<std::uint64_t>(word) << bits;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }

    void NegateFraction()
    {
        for (std::size_t i = 0; i < m_fractionWords; ++i)
            m_words[i] = ~m_words[i];
        for (std::size_t i = 0; i < m_fractionWords && ++m_words[i] == 0; ++i) {
        }
    }

    std::array<std::uint32_t, 12> m_words{};   ///< least significant first
    std::size_t m_fractionWords = 0;
};

/// \param x  not negative, finite.
inline QuarterTurns Reduce(double x)
{
    if (x <= kQuarterPi.high)
        return {0, {x, 0.0}};
    return TurnProduct(x).Result();
}

/// The sum of the terms (-1)^i r^(2 i) / (2 i + first)!.
inline DoubleDouble AlternatingSeries(DoubleDouble r, std::size_t first)
{
    const DoubleDouble minusR2 = -(r * r);
    DoubleDouble series = kInverseFactorial[26 + first];
    for (std::size_t i = 26 + first; i >= 2 + first; i -= 2)
        series = series * minusR2 + kInverseFactorial[i - 2];
    return series;
}

inline double SinOfQuadrant(const QuarterTurns& turns)
{
    const DoubleDouble value = (turns.count & 1) != 0 ? AlternatingSeries(turns.angle, 0)
                                                      : turns.angle * AlternatingSeries(turns.angle, 1);
    return (turns.count & 2) != 0 ? -value.high : value.high;
}

struct Scaled {
    DoubleDouble value;   ///< about 1
    int exponent;         ///< of the power of 2 that it is to be multiplied by
};

/// e^x for |x| up to 1000; the relative error is below 2^-98.
inline Scaled Exp(DoubleDouble x)
{
    const double n = std::floor(x.high * (32.0 / kLn2.high) + 0.5);
    const DoubleDouble r = x - (DoubleDouble{kLn2Over32[0] * n, 0.0} + DoubleDouble{kLn2Over32[1] * n, 0.0} +
                                TwoProduct(kLn2Over32[2], n));
    DoubleDouble series = kInverseFactorial[13];
    for (int j = 12; j >= 0; --j)
        series = series * r + kInverseFactorial[j];
    const int steps = static_cast<int>(n);
    return {kExp2[steps & 31] * series, steps >> 5};
}

/// The functions worked in pairs of doubles from the start, for any argument.
namespace InPairs {

inline double Sin(double x)
{
    const double magnitude = std::fabs(x);
    if (!std::isfinite(x))
        return x - x;
    if (magnitude < 0x1p-34)
        return x;   // the cubic term is below 2^-70 of it
    const double sine = SinOfQuadrant(Reduce(magnitude));
    return x < 0.0 ? -sine : sine;
}

inline double Cos(double x)
{
    const double magnitude = std::fabs(x);
    if (!std::isfinite(x))
        return x - x;
    if (magnitude < 0x1p-34)
        return 1.0;
    QuarterTurns turns = Reduce(magnitude);
    turns.count += 1;
    return SinOfQuadrant(turns);
}

inline double Exp(double x)
{
    if (!(x > -750.0))
        return std::isnan(x) ? x : 0.0;
    if (x > 710.0)
        return HUGE_VAL;
    const Scaled power = Detail::Exp(DoubleDouble{x, 0.0});
    return std::ldexp(power.value.high, power.exponent);
}

}   // namespace InPairs

/// \name The double nearest to the exact value, or within 0.5001 units in the last place where the exact value
/// lies within 2^-45 units of the middle between two; 0.75 for a subnormal power.
/// \{
/// NaN for an infinity.
inline double Sin(double x)
{
    const Bracket quick = QuickSine(x, 0);
    return quick.IsSure() ? quick.below : InPairs::Sin(x);
}

/// NaN for an infinity.
inline double Cos(double x)
{
    const Bracket quick = QuickSine(x, 1);
    return quick.IsSure() ? quick.below : InPairs::Cos(x);
}

inline double Exp(double x)
{
    const Bracket quick = std::fabs(x) < 708.0 ? QuickExp(x, 0.0, 0.0) : kUnsure;
    return quick.IsSure() ? quick.below : InPairs::Exp(x);
}
/// \}

}   // namespace QZ::Math::Detail
