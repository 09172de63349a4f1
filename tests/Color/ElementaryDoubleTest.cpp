// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ElementaryDouble.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <vector>

#include "QZ/Math/Detail/Elementary.h"
#include "tests/Support/Mpfr.h"

namespace QZ::Foundation {
namespace {

using namespace QZ::Test;

// Half a unit is what rounding alone costs; the rest is the error before it.
constexpr double kTolerance = 0.5001;

/// A subnormal power is rounded twice, to a double and to its place.
double PowTolerance(double power)
{
    return std::fabs(power) < std::numeric_limits<double>::min() ? 0.7501 : kTolerance;
}

void ExpectPow(double x, double e)
{
    const double power = Double::Pow(x, e);
    EXPECT_LE(UnitsOff(power, Exactly(mpfr_pow, x, e)), PowTolerance(power)) << x << "^" << e;
}

/// Zeros, infinities, NaN, the ends of the ranges and some numbers between, each of either sign.
std::vector<double> Edges()
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    std::vector<double> edges = {std::numeric_limits<double>::quiet_NaN()};
    for (const double x : {0.0,
                           0x1p-1074,
                           0x1p-1022,
                           1e-300,
                           1e-30,
                           0x1p-30,
                           0.25,
                           0.5,
                           1.0 - 0x1p-53,
                           1.0,
                           1.0 + 0x1p-52,
                           1.5,
                           2.0,
                           3.0,
                           1e15,
                           0x1p53 - 1.0,
                           1e20,
                           1e300,
                           0x1.fffffffffffffp1023,
                           inf}) {
        edges.push_back(x);
        edges.push_back(-x);
    }
    return edges;
}

/// Half of them from -1 to 1, half of any bits.
std::vector<double> Randoms(std::size_t n, std::uint64_t seed)
{
    std::mt19937_64 generator(seed);
    std::vector<double> values(n);
    for (double& x : values) {
        const std::uint64_t bits = generator();
        x = bits % 2 == 0 ? static_cast<double>(static_cast<std::int64_t>(generator())) * 0x1p-63
                          : std::bit_cast<double>(generator());
    }
    return values;
}

TEST(PowInDouble, StaysWithinRoundingForTheExponentsOfHSLuv)
{
    for (const double value : Randoms(20000, 1))
        for (const double e : {0.3333333333333333, 0.4166666666666667, 2.4, 3.0})
            ExpectPow(std::fabs(value), e);
}

TEST(PowInDouble, TakesEveryPairOfEdges)
{
    for (const double x : Edges())
        for (const double e : Edges())
            ExpectPow(x, e);
}

TEST(PowInDouble, StaysWithinRoundingForAnyExponent)
{
    const std::vector<double> x = Randoms(20000, 2);
    const std::vector<double> e = Randoms(20000, 3);
    for (std::size_t i = 0; i < x.size(); ++i)
        ExpectPow(x[i], e[i]);
}

TEST(CubeInDouble, StaysWithinRounding)
{
    for (const double x : Randoms(20000, 4)) {
        if (std::fabs(x) > 1e-90 && std::fabs(x) < 1e90) {   // beyond, digits of the pair under- or overflow
            ASSERT_LE(UnitsOff(Double::Cube(x), Exactly(mpfr_pow, x, 3.0)), kTolerance) << x;
        }
    }
    EXPECT_EQ(Double::Cube(-3.0), -27.0);
    EXPECT_EQ(Double::Cube(1e200), std::numeric_limits<double>::infinity());
}

TEST(SinAndCosInDouble, StayWithinRounding)
{
    std::vector<double> angles = Edges();
    for (const double x : Randoms(20000, 5)) {
        angles.push_back(x);
        angles.push_back(x * 100.0);
    }
    for (int i = 1; i < 5000; ++i)   // next to the zeros
        angles.push_back(i * 1.5707963267948966);
    angles.push_back(6381956970095103.0 * 0x1p797);   // the double nearest a multiple of pi / 2 for its size
    for (const double x : angles) {
        ASSERT_LE(UnitsOff(Double::Sin(x), Exactly(mpfr_sin, x)), kTolerance) << x;
        ASSERT_LE(UnitsOff(Double::Cos(x), Exactly(mpfr_cos, x)), kTolerance) << x;
    }
}

TEST(ExpInDouble, StaysWithinRounding)
{
    std::vector<double> exponents = Edges();
    for (const double x : Randoms(20000, 9)) {
        exponents.push_back(x);
        exponents.push_back(x * 745.0);
    }
    for (const double x : exponents) {
        const double power = Math::Detail::Exp(x);
        ASSERT_LE(UnitsOff(power, Exactly(mpfr_exp, x)), PowTolerance(power)) << x;
    }
}

TEST(AcosInDouble, StaysWithinRounding)
{
    std::vector<double> cosines = Edges();
    for (const double x : Randoms(40000, 6))
        cosines.push_back(x);
    for (const double x : cosines)
        ASSERT_LE(UnitsOff(Double::Acos(x), Exactly(mpfr_acos, x)), kTolerance) << x;
}

TEST(Atan2InDouble, StaysWithinRounding)
{
    const std::vector<double> y = Randoms(40000, 7);
    const std::vector<double> x = Randoms(40000, 8);
    for (std::size_t i = 0; i < x.size(); ++i)
        ASSERT_LE(UnitsOff(Double::Atan2(y[i], x[i]), Exactly(mpfr_atan2, y[i], x[i])), kTolerance)
            << y[i] << ", " << x[i];
}

TEST(Atan2InDouble, TakesEveryPairOfEdges)
{
    for (const double y : Edges())
        for (const double x : Edges())
            ASSERT_LE(UnitsOff(Double::Atan2(y, x), Exactly(mpfr_atan2, y, x)), kTolerance) << y << ", " << x;
}

}   // namespace
}   // namespace QZ::Foundation
