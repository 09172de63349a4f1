// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Foundation/Color/ElementaryTables.h"

namespace QZ::Foundation::Double {

using namespace ElementaryTables;

namespace {

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
QuarterTurns Reduce(double x)
{
    if (x <= kQuarterPi.high)
        return {0, {x, 0.0}};
    return TurnProduct(x).Result();
}

/// The sum of the terms (-1)^i r^(2 i) / (2 i + first)!.
DoubleDouble AlternatingSeries(DoubleDouble r, std::size_t first)
{
    const DoubleDouble minusR2 = -(r * r);
    DoubleDouble series = kInverseFactorial[26 + first];
    for (std::size_t i = 26 + first; i >= 2 + first; i -= 2)
        series = series * minusR2 + kInverseFactorial[i - 2];
    return series;
}

double SinOfQuadrant(const QuarterTurns& turns)
{
    const DoubleDouble value = (turns.count & 1) != 0 ? AlternatingSeries(turns.angle, 0)
                                                      : turns.angle * AlternatingSeries(turns.angle, 1);
    return (turns.count & 2) != 0 ? -value.high : value.high;
}

/// atan(y / x) for 0 <= y <= x and x > 0 of ordinary size.
DoubleDouble AtanOfQuotient(DoubleDouble y, DoubleDouble x)
{
    const int i = static_cast<int>(y.high / x.high * 32.0 + 0.5);
    const double c = i / 32.0;
    const DoubleDouble z = (y - x * c) / (x + y * c);
    const DoubleDouble minusZ2 = -(z * z);
    DoubleDouble series = kInverseOdd[9];
    for (int j = 8; j >= 0; --j)
        series = series * minusZ2 + kInverseOdd[j];
    return kAtanOf[i] + z * series;
}

/// The angle of a point above the x axis, at a distance of ordinary size.
double AngleOfPoint(DoubleDouble y, DoubleDouble x)
{
    const DoubleDouble ax = x.high < 0.0 ? -x : x;
    const DoubleDouble first = y.high <= ax.high ? AtanOfQuotient(y, ax) : kHalfPi - AtanOfQuotient(ax, y);
    return x.high < 0.0 ? (kPi - first).high : first.high;
}

/// atan2 of finite numbers that are not 0, y > 0.
double AngleOfFinite(double y, double x)
{
    if (x > 0.0 && y < x * 0x1p-60)
        return y / x;   // the cubic term is below 2^-120 of it
    int exponent = 0;
    static_cast<void>(std::frexp(std::fmax(y, std::fabs(x)), &exponent));
    return AngleOfPoint({std::ldexp(y, -exponent), 0.0}, {std::ldexp(x, -exponent), 0.0});
}

}   // namespace

double Sin(double x)
{
    const double magnitude = std::fabs(x);
    if (!std::isfinite(x))
        return x - x;
    if (magnitude < 0x1p-34)
        return x;   // the cubic term is below 2^-70 of it
    const double sine = SinOfQuadrant(Reduce(magnitude));
    return x < 0.0 ? -sine : sine;
}

double Cos(double x)
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

double Acos(double x)
{
    if (!(std::fabs(x) <= 1.0))
        return std::numeric_limits<double>::quiet_NaN();
    const DoubleDouble sine2 = TwoSum(1.0, -x) * TwoSum(1.0, x);
    if (sine2.high == 0.0)
        return x > 0.0 ? 0.0 : kPi.high;
    // One step of Newton's, in pairs of doubles, from the root in double.
    const double root = std::sqrt(sine2.high);
    const DoubleDouble rest = sine2 - TwoProduct(root, root);
    return AngleOfPoint(FastTwoSum(root, rest.high / (2.0 * root)), {x, 0.0});
}

double Atan2(double y, double x)
{
    if (std::isnan(x) || std::isnan(y))
        return x + y;
    if (std::isinf(x) && std::isinf(y))
        return std::copysign(x > 0.0 ? kQuarterPi.high : (kPi - kQuarterPi).high, y);
    if (y == 0.0 || std::isinf(x))
        return std::copysign(std::signbit(x) ? kPi.high : 0.0, y);
    if (x == 0.0 || std::isinf(y))
        return std::copysign(kHalfPi.high, y);
    return std::copysign(AngleOfFinite(std::fabs(y), x), y);
}

}   // namespace QZ::Foundation::Double
