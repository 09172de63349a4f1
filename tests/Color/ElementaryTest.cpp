// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Elementary.h"

#include <gtest/gtest.h>

#include "tests/Support/Floats.h"
#include "tests/Support/Mpfr.h"

// The functions of Elementary.h on single floats, against MPFR.

namespace QZ::Foundation {
namespace {

namespace elementary = QZ_TARGET;

using namespace QZ::Test;

// Half a unit is what rounding alone costs; the rest is the error before it.
constexpr double kTolerance = 0.5001;

template <Exponent exponent>
struct Fixed {
    static constexpr Exponent value = exponent;
};

template <class T>
class PowOfFixedExponent : public testing::Test {};

using Exponents =
    testing::Types<Fixed<Exponent::k2_4>, Fixed<Exponent::k0_41666666>, Fixed<Exponent::k2_2>,
                   Fixed<Exponent::k0_45454544>, Fixed<Exponent::k0_33333334>, Fixed<Exponent::k0_43>,
                   Fixed<Exponent::k2_325581>, Fixed<Exponent::k2_2222223>, Fixed<Exponent::k0_45>,
                   Fixed<Exponent::k1_961>, Fixed<Exponent::k0_5099439>, Fixed<Exponent::k3>>;
TYPED_TEST_SUITE(PowOfFixedExponent, Exponents);

TYPED_TEST(PowOfFixedExponent, IsTheNearestFloat)
{
    constexpr Exponent e = TypeParam::value;
    for (const float x : EdgesAndRandoms(30000))
        ASSERT_PRED2([](float a, float b) { return SameBits(a, b); }, elementary::Pow<e>(x),
                     NearestPow(x, Value(e)))
            << x;
}

TYPED_TEST(PowOfFixedExponent, IsTheNearestFloatOfShortNumbersToo)
{
    // Whole numbers and simple fractions: where a result can be exact, or lie midway between two floats.
    constexpr Exponent e = TypeParam::value;
    for (int i = 1; i < 4096; ++i)
        for (const float x :
             {static_cast<float>(i), static_cast<float>(i) / 256.0f, 1.0f / static_cast<float>(i)})
            ASSERT_EQ(elementary::Pow<e>(x), NearestPow(x, Value(e))) << x;
}

TYPED_TEST(PowOfFixedExponent, IsTheNearestFloatWhereTheResultIsSubnormal)
{
    constexpr Exponent e = TypeParam::value;
    const float low = std::pow(kSmallestSubnormal, 1.0f / Value(e)) * 0.5f;
    const float high = std::pow(kSmallestNormal, 1.0f / Value(e)) * 2.0f;
    for (const float x : Randoms(5000, low, high))
        ASSERT_EQ(elementary::Pow<e>(x), NearestPow(x, Value(e))) << x;
}

TYPED_TEST(PowOfFixedExponent, HasTheSameBitsByThePairOfDoubles)
{
    constexpr Exponent e = TypeParam::value;
    for (const float x : EdgesAndRandoms(5000, 2))
        ASSERT_TRUE(SameBits(elementary::Pow<e>(x), Double::PowRounded(x, Value(e)))) << x;
}

TEST(PowOfFixedExponents, IsTheNearestFloatWhereAMidpointIsClosest)
{
    // Found by the proof program: the exact powers lie within 2^-52 of a midpoint between two floats,
    // relatively.
    EXPECT_EQ(elementary::Pow<Exponent::k2_4>(0x1.66b236p+17f), NearestPow(0x1.66b236p+17f, 2.4f));
    EXPECT_EQ(elementary::Pow<Exponent::k2_2>(0x1.8853fap-55f), NearestPow(0x1.8853fap-55f, 2.2f));
    for (const float x : {0x1.7302dap+70f, 0x1.bdb7fp+17f})
        EXPECT_EQ(elementary::Pow<Exponent::k0_41666666>(x), NearestPow(x, 0.41666666f));
    EXPECT_EQ(elementary::Pow<Exponent::k0_43>(0x1.51dddcp+80f), NearestPow(0x1.51dddcp+80f, 0.43f));
}

TEST(PowOfAnyExponent, TakesSpecialValuesAsTheStandardLibraryDoes)
{
    const float inf = kInfinity;
    const std::vector<float> values = {0.0f,  1.0f, 0.5f,  2.0f,  3.0f, 2.5f,  1e-40f,
                                       1e30f, inf,  3e38f, 0.25f, 7.0f, 1e-7f, 16777215.0f};
    for (const float x : values)
        for (const float e : values)
            for (const float xs : {x, -x})
                for (const float es : {e, -e})
                    ASSERT_TRUE(SameBits(elementary::Pow(xs, es), NearestPow(xs, es))) << xs << "^" << es;
    EXPECT_EQ(elementary::Pow(kNaN, 0.0f), 1.0f);
    EXPECT_EQ(elementary::Pow(1.0f, kNaN), 1.0f);
    EXPECT_TRUE(std::isnan(elementary::Pow(kNaN, 1.0f)));
    EXPECT_TRUE(std::isnan(elementary::Pow(2.0f, kNaN)));
}

TEST(PowOfAnyExponent, IsTheNearestFloat)
{
    const std::vector<float> x = EdgesAndRandoms(20000, 3);
    const std::vector<float> e = Randoms(x.size(), -40.0f, 40.0f, 4);
    for (std::size_t i = 0; i < x.size(); ++i)
        ASSERT_TRUE(SameBits(elementary::Pow(x[i], e[i]), NearestPow(x[i], e[i]))) << x[i] << "^" << e[i];
}

TEST(PowOfAnyExponent, BreaksExactTiesToTheEvenFloat)
{
    // x^e of 25 bits, the last of them set: 4097^2, and numbers whose roots are whole.
    EXPECT_EQ(elementary::Pow(4097.0f, 2.0f), 16785408.0f);   // 16785409, between ...408 and ...410
    EXPECT_EQ(elementary::Pow(4099.0f, 2.0f), 16801800.0f);   // 16801801
    for (int i = 3; i < 8000; i += 2) {
        const float x = static_cast<float>(i);
        for (const float e : {2.0f, 3.0f, 0.5f, 1.5f, 0.25f, 5.0f})
            ASSERT_EQ(elementary::Pow(x, e), NearestPow(x, e)) << x << "^" << e;
        const float square = x * x;
        for (const float e : {1.5f, 2.5f, 0.75f})
            ASSERT_EQ(elementary::Pow(square, e), NearestPow(square, e)) << square << "^" << e;
    }
    EXPECT_EQ(elementary::Pow(0x1p-75f, 2.0f), 0.0f);   // half the smallest subnormal
    EXPECT_EQ(elementary::Pow(0x1.000002p-75f, 2.0f), kSmallestSubnormal);
}

TEST(ExpAndLog, StayWithinRounding)
{
    for (const float unit : EdgesAndRandoms(100000, 5)) {
        const auto x = static_cast<double>(unit);
        ASSERT_LE(UnitsOff(elementary::Exp(unit), Exactly(mpfr_exp, x)), kTolerance) << unit;
        ASSERT_LE(UnitsOff(elementary::Exp2(unit), Exactly(mpfr_exp2, x)), kTolerance) << unit;
        ASSERT_LE(UnitsOff(elementary::Log(unit), Exactly(mpfr_log, x)), kTolerance) << unit;
    }
    for (const float x : Randoms(100000, -110.0f, 95.0f, 6))
        ASSERT_LE(UnitsOff(elementary::Exp(x), Exactly(mpfr_exp, static_cast<double>(x))), kTolerance) << x;
    for (const float x : Randoms(100000, -155.0f, 130.0f, 7))
        ASSERT_LE(UnitsOff(elementary::Exp2(x), Exactly(mpfr_exp2, static_cast<double>(x))), kTolerance) << x;
    for (const float x : Randoms(100000, 0.5f, 2.0f, 8))
        ASSERT_LE(UnitsOff(elementary::Log(x), Exactly(mpfr_log, static_cast<double>(x))), kTolerance) << x;
}

TEST(SinAndCos, StayWithinRounding)
{
    std::vector<float> angles = EdgesAndRandoms(100000, 9);
    for (const float x : Randoms(100000, -10.0f, 10.0f, 10))
        angles.push_back(x);
    for (const float x : Randoms(50000, -3e6f, 3e6f, 11))
        angles.push_back(x);
    for (int i = 1; i < 20000; ++i)   // next to the zeros
        angles.push_back(static_cast<float>(i * 1.5707963267948966));
    angles.push_back(0x1.6ac5b2p117f);   // the float nearest a multiple of pi / 2 for its size (J.-M. Muller)
    for (const float x : angles) {
        ASSERT_LE(UnitsOff(elementary::SinCos(x).sine, Exactly(mpfr_sin, static_cast<double>(x))), kTolerance)
            << x;
        ASSERT_LE(UnitsOff(elementary::SinCos(x).cosine, Exactly(mpfr_cos, static_cast<double>(x))),
                  kTolerance)
            << x;
    }
}

TEST(Atan2, StaysWithinRounding)
{
    const std::vector<float> y = EdgesAndRandoms(200000, 12);
    const std::vector<float> x = EdgesAndRandoms(200000, 13);
    for (std::size_t i = 0; i < x.size(); ++i)
        ASSERT_LE(UnitsOff(elementary::Atan2(y[i], x[i]),
                           Exactly(mpfr_atan2, static_cast<double>(y[i]), static_cast<double>(x[i]))),
                  kTolerance)
            << y[i] << ", " << x[i];
}

TEST(Atan2, TakesEveryPairOfEdges)
{
    for (const float y : Edges())
        for (const float x : Edges())
            ASSERT_LE(UnitsOff(elementary::Atan2(y, x),
                               Exactly(mpfr_atan2, static_cast<double>(y), static_cast<double>(x))),
                      kTolerance)
                << y << ", " << x;
}

}   // namespace
}   // namespace QZ::Foundation
