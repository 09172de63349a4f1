// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Foundation/Color/QuickAngle.h"
#include "QZ/Foundation/Color/QuickPower.h"
#include "QZ/Math/Detail/Elementary.h"
#include "tests/Support/Mpfr.h"

// The quick evaluations against those in pairs of doubles: which themselves lie within 0.5001 units of
// MPFR's.

namespace QZ::Foundation {
namespace {

using Math::Detail::Bracket;
namespace InPairs = Math::Detail::InPairs;
using Pairs = std::vector<std::pair<double, double>>;

constexpr int kCount = 100000;

/// Arguments from a fixed seed; the distributions of <random> differ from library to library.
class Arguments {
public:
    /// From -1 to 1.
    double Unit() { return static_cast<double>(static_cast<std::int64_t>(m_generator())) * 0x1p-63; }
    /// From 0 to n - 1.
    int Below(int n) { return static_cast<int>(m_generator() % static_cast<unsigned>(n)); }
    /// x, off by from 2^-10 down to 2^-49 of it.
    double Near(double x) { return x * (1.0 + std::ldexp(Unit(), -Below(40) - 10)); }

private:
    std::mt19937_64 m_generator{1};
};

template <class Argument>
Pairs Each(Argument&& argument)
{
    Arguments arguments;
    Pairs pairs(kCount);
    for (auto& pair : pairs)
        pair = argument(arguments);
    return pairs;
}

/// That a sure bracket holds the slow result, and no other bracket leaves it out.
/// \return  how many are not sure.
template <class Quick, class Slow>
int CountUnsure(const Pairs& pairs, Quick&& quick, Slow&& slow)
{
    int unsure = 0;
    for (const auto& [x, y] : pairs) {
        const Bracket bracket = quick(x, y);
        const double expected = slow(x, y);
        if (bracket.IsSure())
            EXPECT_EQ(bracket.below, expected) << std::hexfloat << x << ", " << y;
        else
            ++unsure;
    }
    return unsure;
}

/// A thousandth of the arguments: more would show in the time.
constexpr int kFew = kCount / 1000;
/// An evaluation that is sure of all proves nothing about the bound it is to have.
constexpr int kSome = 1;

int UnsurePowers(const Pairs& pairs)
{
    return CountUnsure(pairs, QuickPow, Double::InPairs::Pow);
}

TEST(QuickPow, IsTheNearestDoubleOrSaysThatItMayNotBe)
{
    for (const double e : {0.3333333333333333, 0.4166666666666667, 2.4, -0.2, 0.5, 3.0}) {
        const int unsure =
            UnsurePowers(Each([e](Arguments& a) { return std::pair(std::fabs(a.Unit()), e); }));
        EXPECT_GE(unsure, kSome) << e;
        EXPECT_LE(unsure, kFew) << e;
    }
    const int unsure = UnsurePowers(
        Each([](Arguments& a) { return std::pair(100.0 * std::fabs(a.Unit()), 10.0 * a.Unit()); }));
    EXPECT_LE(unsure, kFew);
}

TEST(QuickPow, HoldsNearTheSimplestPowers)
{
    const int unsure = UnsurePowers(Each([](Arguments& a) { return std::pair(a.Near(1.0), 2.4); }));
    EXPECT_LE(unsure, kFew);
    // Short bases have short powers, of which some lie in the middle between two doubles.
    UnsurePowers(Each([](Arguments& a) { return std::pair(1.0 + a.Below(1 << 20), 1.0 + a.Below(4)); }));
    UnsurePowers(
        Each([](Arguments& a) { return std::pair(a.Near(std::pow(a.Below(99) + 2.0, 12.0)), 1.0 / 3.0); }));
    UnsurePowers(Each([](Arguments& a) { return std::pair(a.Near(1.0), 1e9 * a.Unit()); }));
}

TEST(QuickExp, IsTheNearestDoubleOrSaysThatItMayNotBe)
{
    for (const double reach : {708.0, 1.0, 0x1p-20}) {
        const int unsure = CountUnsure(
            Each([reach](Arguments& a) { return std::pair(reach * a.Unit(), 0.0); }),
            [](double x, double) { return Math::Detail::QuickExp(x, 0.0, 0.0); },
            [](double x, double) { return InPairs::Exp(x); });
        EXPECT_LE(unsure, kFew) << reach;
    }
}

int UnsureSines(const Pairs& pairs)
{
    const int ofSine = CountUnsure(
        pairs, [](double x, double) { return Math::Detail::QuickSine(x, 0); },
        [](double x, double) { return InPairs::Sin(x); });
    const int ofCosine = CountUnsure(
        pairs, [](double x, double) { return Math::Detail::QuickSine(x, 1); },
        [](double x, double) { return InPairs::Cos(x); });
    return ofSine + ofCosine;
}

TEST(QuickSine, IsTheNearestDoubleOrSaysThatItMayNotBe)
{
    for (const double reach : {6.5, 1.0, 0.03, 0x1p-16, 0x1p14}) {
        const int unsure =
            UnsureSines(Each([reach](Arguments& a) { return std::pair(reach * a.Unit(), 0.0); }));
        EXPECT_GE(unsure, kSome) << reach;
        EXPECT_LE(unsure, 2 * kFew) << reach;
    }
}

TEST(QuickSine, HoldsNearMultiplesOfAnEighthOfATurnAndOfItsTable)
{
    UnsureSines(
        Each([](Arguments& a) { return std::pair(a.Near(a.Below(10000) * 1.5707963267948966), 0.0); }));
    UnsureSines(
        Each([](Arguments& a) { return std::pair(a.Near(a.Below(10000) * 0.7853981633974483), 0.0); }));
    UnsureSines(
        Each([](Arguments& a) { return std::pair(a.Near(a.Below(600) * 0.01227184630308513), 0.0); }));
}

int UnsureAngles(const Pairs& pairs)
{
    return CountUnsure(
        pairs, [](double y, double x) { return QuickAngle(y, x, 0.0); }, Double::InPairs::Atan2);
}

TEST(QuickAngle, IsTheNearestDoubleOrSaysThatItMayNotBe)
{
    EXPECT_LE(UnsureAngles(Each([](Arguments& a) { return std::pair(std::fabs(a.Unit()), a.Unit()); })),
              kFew);
    const int nearTheAxis = UnsureAngles(Each([](Arguments& a) {
        const double x = std::fabs(a.Unit());
        return std::pair(x * std::fabs(a.Unit()) * 0x1p-7, x);
    }));
    EXPECT_GE(nearTheAxis, kSome);
    EXPECT_LE(nearTheAxis, kFew);
}

TEST(QuickAngle, HoldsNearTheAxesTheDiagonalsAndItsTable)
{
    const int nearTheAxes = UnsureAngles(Each([](Arguments& a) {
        const double x = a.Unit();
        return std::pair(std::fabs(std::ldexp(a.Unit() * x, a.Below(400) - 200)), x);
    }));
    EXPECT_LE(nearTheAxes, kFew);
    const int nearTheTable = UnsureAngles(Each([](Arguments& a) {
        const double x = a.Unit();
        return std::pair(std::fabs(a.Near(x * ((a.Below(64) + 1) / 64.0))), x);
    }));
    EXPECT_LE(nearTheTable, kFew);
}

TEST(QuickAcos, IsTheNearestDoubleOrSaysThatItMayNotBe)
{
    const auto unsure = [](const Pairs& pairs) {
        return CountUnsure(
            pairs, [](double x, double) { return QuickAcos(x); },
            [](double x, double) { return Double::InPairs::Acos(x); });
    };
    EXPECT_LE(unsure(Each([](Arguments& a) { return std::pair(a.Unit(), 0.0); })), kFew);
    // Some of these are 1 itself, which is out of range.
    unsure(Each([](Arguments& a) { return std::pair(1.0 - std::fabs(a.Near(1.0) - 1.0), 0.0); }));
    EXPECT_LE(unsure(Each([](Arguments& a) { return std::pair(std::ldexp(a.Unit(), -a.Below(99)), 0.0); })),
              kFew);
}

TEST(QuickEvaluations, LeaveWhatIsBeyondTheirRangeToTheOthers)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double x : {0.0, -1.0, 0x1p-1023, inf, nan})
        EXPECT_FALSE(QuickPow(x, 2.4).IsSure()) << x;
    for (const double e : {1e300, -1e300, inf, nan})
        EXPECT_FALSE(QuickPow(0.5, e).IsSure()) << e;
    for (const double x : {0.0, 0x1p-35, 0x1p14, -0x1p14, inf, nan})
        EXPECT_FALSE(Math::Detail::QuickSine(x, 0).IsSure()) << x;
    for (const double x : {0.0, -0.0, 0x1p-500, 0x1p500, inf, nan}) {
        EXPECT_FALSE(QuickAngle(x, 1.0, 0.0).IsSure()) << x;
        EXPECT_FALSE(QuickAngle(1.0, x, 0.0).IsSure()) << x;
    }
    for (const double x : {0.0, 1.0, -1.0, 1.5, inf, nan})
        EXPECT_FALSE(QuickAcos(x).IsSure()) << x;
}

// The bounds are about the exact values, which MPFR gives with 240 bits: where a bracket is not sure, its
// ends enclose the nearest double all the same.
TEST(QuickEvaluations, EncloseTheExactValue)
{
    using QZ::Test::Exactly;
    Arguments a;
    const auto isWithin = [](const Bracket& bracket, const QZ::Test::Mpfr& exact) {
        const double nearest = mpfr_get_d(exact.Get(), MPFR_RNDN);
        return std::fmin(bracket.below, bracket.above) <= nearest &&
               nearest <= std::fmax(bracket.below, bracket.above);
    };
    for (int i = 0; i < kCount / 4; ++i) {
        const double x = std::fabs(a.Unit());
        const double y = std::fabs(a.Unit());
        ASSERT_TRUE(isWithin(QuickPow(x, 2.4), Exactly(mpfr_pow, x, 2.4))) << x;
        ASSERT_TRUE(isWithin(Math::Detail::QuickSine(6.5 * x, 0), Exactly(mpfr_sin, 6.5 * x))) << x;
        ASSERT_TRUE(isWithin(Math::Detail::QuickSine(6.5 * x, 1), Exactly(mpfr_cos, 6.5 * x))) << x;
        ASSERT_TRUE(isWithin(QuickAngle(y, x, 0.0), Exactly(mpfr_atan2, y, x))) << y << ", " << x;
        ASSERT_TRUE(isWithin(QuickAcos(x), Exactly(mpfr_acos, x))) << x;
    }
}

}   // namespace
}   // namespace QZ::Foundation
