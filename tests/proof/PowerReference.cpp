// SPDX-License-Identifier: MIT
#include "tests/proof/PowerReference.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>

#include "tests/Support/Mpfr.h"

namespace QZ::Proof {

using Foundation::DoubleDouble;
using Foundation::FastTwoSum;
using Foundation::TwoProduct;
using Test::Exactly;
using Test::Mpfr;

namespace {

constexpr double kHard = 0x1p-52;

DoubleDouble ToPair(const Mpfr& x)
{
    const double high = mpfr_get_d(x.Get(), MPFR_RNDN);
    Mpfr rest;
    mpfr_sub_d(rest.Get(), x.Get(), high, MPFR_RNDN);
    return {high, mpfr_get_d(rest.Get(), MPFR_RNDN)};
}

/// e (e - 1) ... (e - j + 1) / j!
Mpfr Binomial(double e, int j)
{
    Mpfr product(1.0);
    for (int i = 0; i < j; ++i) {
        Mpfr factor(e);
        mpfr_sub_ui(factor.Get(), factor.Get(), static_cast<unsigned long>(i), MPFR_RNDN);
        mpfr_mul(product.Get(), product.Get(), factor.Get(), MPFR_RNDN);
        mpfr_div_ui(product.Get(), product.Get(), static_cast<unsigned long>(i + 1), MPFR_RNDN);
    }
    return product;
}

}   // namespace

PowerReference::PowerReference(Foundation::Exponent exponent) : m_exponent(Foundation::Value(exponent))
{
    const auto e = static_cast<double>(m_exponent);
    for (int j = 0; j < 4; ++j) {
        m_binomials[j] = ToPair(Binomial(e, j));
        m_highBinomials[j] = ToPair(Binomial(e, j + 4)).high;
    }
    for (std::size_t i = 0; i < kIntervals; ++i) {
        const double centre = 1.0 + (static_cast<double>(i) + 0.5) / kIntervals;
        const double reciprocal = std::floor(0x1p29 / centre + 0.5) * 0x1p-29;
        m_reciprocals.push_back(reciprocal);
        m_intervals.push_back(ToPair(Exactly(mpfr_pow, reciprocal, -e)));
    }
    for (int k = kLeastBinary; k <= 127; ++k)
        m_binaries.push_back(ToPair(Exactly(mpfr_exp2, e * k)));
}

namespace {

/// RoundToOdd() of a positive pair without a branch.
inline double OddOf(double high, double low)
{
    const auto bits = std::bit_cast<std::int64_t>(high);
    const std::int64_t step = low < 0.0 ? -1 : 1;
    const std::int64_t isInexact = low != 0.0 ? 1 : 0;
    return std::bit_cast<double>(bits + (step & -(isInexact & ~bits)));
}

/// The tables, as the loop over a chunk takes them.
struct Series {
    DoubleDouble low[4];
    double high[4];
    const double* reciprocals;
    const DoubleDouble* intervals;
    const DoubleDouble* binaries;   ///< the entry of 2^0
};

/// \param x  positive and finite
__attribute__((target_clones("avx512f", "avx2", "default"))) void Evaluate(const Series& tables,
                                                                           const float* __restrict x,
                                                                           float* __restrict nearest,
                                                                           float* __restrict above,
                                                                           float* __restrict below)
{
    const Series s = tables;
    for (std::size_t i = 0; i < kChunkSize; ++i) {
        const auto bits = std::bit_cast<std::int64_t>(static_cast<double>(x[i]));
        const auto m = std::bit_cast<double>((bits & 0x000fffffffffffff) | 0x3ff0000000000000);
        const std::int64_t interval = (bits >> 40) & 4095;
        const double t = m * s.reciprocals[interval] - 1.0;
        const double tail = (((s.high[3] * t + s.high[2]) * t + s.high[1]) * t + s.high[0]) * t;
        DoubleDouble series = s.low[3] + DoubleDouble{tail, 0.0};
        series = series * t + s.low[2];
        series = series * t + s.low[1];
        series = series * t + s.low[0];
        const DoubleDouble power = series * (s.intervals[interval] * s.binaries[(bits >> 52) - 1023]);
        const double margin = power.high * kHard;
        const DoubleDouble more = FastTwoSum(power.high, power.low + margin);
        const DoubleDouble less = FastTwoSum(power.high, power.low - margin);
        nearest[i] = static_cast<float>(OddOf(power.high, power.low));
        above[i] = static_cast<float>(OddOf(more.high, more.low));
        below[i] = static_cast<float>(OddOf(less.high, less.low));
    }
}

bool IsPositiveNumber(float x)
{
    return x > 0.0f && x <= std::numeric_limits<float>::max();
}

/// Negative numbers have no power; infinities and NaN stay, a zero loses its sign.
float PowerOfSpecial(float x)
{
    return x < 0.0f && std::isfinite(x) ? std::numeric_limits<float>::quiet_NaN() : std::fabs(x);
}

}   // namespace

void PowerReference::Chunk(const float* x, float* nearest, unsigned char* isHard) const
{
    Series series;
    std::copy(std::begin(m_binomials), std::end(m_binomials), series.low);
    std::copy(std::begin(m_highBinomials), std::end(m_highBinomials), series.high);
    series.reciprocals = m_reciprocals.data();
    series.intervals = m_intervals.data();
    series.binaries = m_binaries.data() - kLeastBinary;
    float numbers[kChunkSize];
    float above[kChunkSize];
    float below[kChunkSize];
    const bool hasAny = std::any_of(x, x + kChunkSize, IsPositiveNumber);
    if (hasAny) {
        std::transform(x, x + kChunkSize, numbers, [](float c) { return IsPositiveNumber(c) ? c : 1.0f; });
        Evaluate(series, numbers, nearest, above, below);
    }
    for (std::size_t i = 0; i < kChunkSize; ++i) {
        const bool isNumber = hasAny && IsPositiveNumber(x[i]);
        nearest[i] = isNumber ? nearest[i] : PowerOfSpecial(x[i]);
        isHard[i] = isNumber && above[i] != below[i];
    }
}

DoubleDouble PowerReference::Power(DoubleDouble x) const
{
    int k = 0;
    const double m = 2.0 * std::frexp(x.high, &k);
    const double low = std::ldexp(x.low, 1 - k);
    const auto interval = static_cast<std::size_t>((m - 1.0) * kIntervals);
    const double reciprocal = m_reciprocals[interval];
    const DoubleDouble product = TwoProduct(m, reciprocal);
    const DoubleDouble t = FastTwoSum(product.high - 1.0, product.low + low * reciprocal);
    const double* c = m_highBinomials;
    const double tail = (((c[3] * t.high + c[2]) * t.high + c[1]) * t.high + c[0]) * t.high;
    DoubleDouble series = m_binomials[3] + DoubleDouble{tail, 0.0};
    for (int j = 2; j >= 0; --j)
        series = series * t + m_binomials[j];
    return series * m_intervals[interval] * m_binaries[static_cast<std::size_t>(k - 1 - kLeastBinary)];
}

float PowerReference::Nearest(float x, double& distance) const
{
    const Mpfr power = Exactly(mpfr_pow, static_cast<double>(x), static_cast<double>(m_exponent));
    const float nearest = mpfr_get_flt(power.Get(), MPFR_RNDN);
    distance = std::numeric_limits<double>::infinity();
    if (!std::isfinite(nearest))
        return nearest;
    for (const double direction : {-HUGE_VAL, HUGE_VAL}) {
        const double next = static_cast<double>(std::nextafter(nearest, static_cast<float>(direction)));
        Mpfr off;
        mpfr_sub_d(off.Get(), power.Get(), (static_cast<double>(nearest) + next) / 2.0, MPFR_RNDN);
        mpfr_div(off.Get(), off.Get(), power.Get(), MPFR_RNDN);
        distance = std::fmin(distance, std::fabs(mpfr_get_d(off.Get(), MPFR_RNDN)));
    }
    return nearest;
}

DoubleDouble PowerByMPFR(DoubleDouble x, double exponent)
{
    Mpfr power(x.high);
    mpfr_add_d(power.Get(), power.Get(), x.low, MPFR_RNDN);
    const Mpfr e(exponent);
    mpfr_pow(power.Get(), power.Get(), e.Get(), MPFR_RNDN);
    return ToPair(power);
}

}   // namespace QZ::Proof
