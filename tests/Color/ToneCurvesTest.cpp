// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

namespace {

Colour Linear(bool useGamma22, bool extendedRange, const Colour& in)
{
    Colour out;
    Color::NonlinearToLinearToneCurve(useGamma22, extendedRange, in, out);
    return out;
}
Colour Encoded(bool useGamma22, bool extendedRange, const Colour& in)
{
    Colour out;
    Color::LinearToNonlinearToneCurve(useGamma22, extendedRange, in, out);
    return out;
}
float Linear(bool useGamma22, float in)
{
    float out = -77.0f;
    Color::NonlinearToLinearToneCurve(useGamma22, in, out);
    return out;
}
float Encoded(bool useGamma22, float in)
{
    float out = -77.0f;
    Color::LinearToNonlinearToneCurve(useGamma22, in, out);
    return out;
}
Colour Grey(float c)
{
    return {c, c, c};
}

using Curve = Colour (*)(bool, bool, const Colour&);
constexpr Curve kBothWays[] = {Linear, Encoded};

}   // namespace

TEST(ToneCurves, AgreeWithTheReference)
{
    ExpectReference(
        "ToneCurves",
        {
            {"NonlinearToLinear",
             [](const ReferenceRow& r) { return List(Linear(r.Flag(0), r.Flag(1), r.ColourAt())); }},
            {"LinearToNonlinear",
             [](const ReferenceRow& r) { return List(Encoded(r.Flag(0), r.Flag(1), r.ColourAt())); }},
            {"NonlinearToLinearScalar",
             [](const ReferenceRow& r) { return Numbers{Linear(r.Flag(0), r.in[0])}; }},
            {"LinearToNonlinearScalar",
             [](const ReferenceRow& r) { return Numbers{Encoded(r.Flag(0), r.in[0])}; }},
            {"NonlinearToLinear709",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::NonlinearToLinear709ToneCurve, r.ColourAt()));
             }},
            {"LinearToNonlinear709",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::LinearToNonlinear709ToneCurve, r.ColourAt()));
             }},
            {"NonlinearToLinearApple709",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::NonlinearToLinearApple709ToneCurve, r.ColourAt()));
             }},
            {"LinearToNonlinearApple709",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::LinearToNonlinearApple709ToneCurve, r.ColourAt()));
             }},
            {"SRGBToRGB709",
             [](const ReferenceRow& r) { return List(Converted(Color::SRGBToRGB709, r.ColourAt())); }},
        });
}

// IEC 61966-2-1:1999, clause 5, worked in double precision. The tolerance is for a power and two roundings.
TEST(NonlinearToLinear, FollowsTheStandard)
{
    EXPECT_NEAR(Linear(false, 0.18f), 0.0272118f, 1e-7f);
    EXPECT_NEAR(Linear(false, 0.50f), 0.2140411f, 1e-7f);
    EXPECT_EQ(Linear(false, 0.0f), 0.0f);
    EXPECT_NEAR(Linear(false, 1.0f), 1.0f, 3e-7f);   // 1.055 times its rounded reciprocal, to a power
}

TEST(NonlinearToLinear, TakesTheLineAtTheThresholdItselfAndThePowerAboveIt)
{
    constexpr float threshold = 0.04045f;
    EXPECT_EQ(Linear(false, threshold), threshold * 0.07739938f);
    EXPECT_EQ(Linear(false, NextDown(threshold)), NextDown(threshold) * 0.07739938f);
    // The power lies 1.9e-9 above the line there, more than both can be off by rounding.
    EXPECT_GT(Linear(false, NextUp(threshold)), NextUp(threshold) * 0.07739938f);
}

TEST(LinearToNonlinear, TakesTheLineAtTheThresholdItselfAndThePowerAboveIt)
{
    constexpr float threshold = 0.0031308f;
    EXPECT_EQ(Encoded(false, threshold), threshold * 12.92f);
    EXPECT_EQ(Encoded(false, NextDown(threshold)), NextDown(threshold) * 12.92f);
    // The power lies 2.8e-8 below the line there.
    EXPECT_LT(Encoded(false, NextUp(threshold)), NextUp(threshold) * 12.92f);
}

TEST(Rec709, TakesTheLineAtTheThresholdsThemselves)
{
    const Colour decoded =
        Converted(Color::NonlinearToLinear709ToneCurve, Colour(0.081f, NextDown(0.081f), NextUp(0.081f)));
    EXPECT_EQ(decoded.x, 0.081f * 0.22222222f);
    EXPECT_EQ(decoded.y, NextDown(0.081f) * 0.22222222f);
    EXPECT_NE(decoded.z, NextUp(0.081f) * 0.22222222f);
    const Colour encoded =
        Converted(Color::LinearToNonlinear709ToneCurve, Colour(0.018f, NextDown(0.018f), NextUp(0.018f)));
    EXPECT_EQ(encoded.x, 0.018f * 4.5f);
    EXPECT_EQ(encoded.y, NextDown(0.018f) * 4.5f);
    EXPECT_NE(encoded.z, NextUp(0.018f) * 4.5f);
}

TEST(ToneCurves, MirrorAboutZeroInExtendedRangeWithPlusZeroForEitherZero)
{
    for (const Curve curve : kBothWays)
        for (const bool useGamma22 : kFlags) {
            const float d = curve(useGamma22, false, Grey(0.5f)).x;
            EXPECT_TRUE(SameBits(curve(useGamma22, true, {-0.5f, 0.5f, -0.0f}), Colour(-d, d, 0.0f)));
            EXPECT_TRUE(SameBits(curve(useGamma22, true, Grey(0.0f)), Grey(0.0f)));
        }
}

TEST(ToneCurves, InExtendedRangeAreOddForEveryValue)
{
    for (const Curve curve : kBothWays)
        for (const bool useGamma22 : kFlags)
            for (const float x : EdgesAndRandoms(500)) {
                const Colour c = curve(useGamma22, true, {std::fabs(x), -std::fabs(x), x});
                if (x != 0.0f) {
                    EXPECT_TRUE(SameBits(c.y, -c.x)) << x;
                    EXPECT_TRUE(SameBits(c.z, std::signbit(x) ? -c.x : c.x)) << x;
                }
            }
}

TEST(ToneCurves, WithoutExtendedRangeTakeTheLineBelowZeroAndHaveNoPowerThere)
{
    EXPECT_EQ(Linear(false, -0.5f), -0.5f * 0.07739938f);
    EXPECT_EQ(Encoded(false, -0.5f), -0.5f * 12.92f);
    EXPECT_TRUE(SameBits(Linear(false, -0.0f), -0.0f));
    EXPECT_TRUE(std::isnan(Linear(true, false, Grey(-0.5f)).x));
    EXPECT_TRUE(std::isnan(Encoded(true, false, Grey(-0.5f)).x));
    EXPECT_TRUE(std::isnan(Linear(true, -0.5f)));
    EXPECT_TRUE(std::isnan(Encoded(true, -0.5f)));
}

TEST(ToneCurves, PassNaNAndInfinityOn)
{
    for (const Curve curve : kBothWays)
        for (const bool useGamma22 : kFlags)
            for (const bool extendedRange : kFlags) {
                const Colour c = curve(useGamma22, extendedRange, {kNaN, kInfinity, 0.25f});
                EXPECT_TRUE(std::isnan(c.x));
                EXPECT_EQ(c.y, kInfinity);
                EXPECT_GT(c.z, 0.0f);
            }
    EXPECT_EQ(Linear(false, true, Grey(-kInfinity)).x, -kInfinity);
    EXPECT_EQ(Encoded(true, true, Grey(-kInfinity)).x, -kInfinity);
    EXPECT_EQ(Linear(false, -kInfinity), -kInfinity);
    const auto of709 = [](auto curve, float x) { return Converted(curve, Grey(x)).x; };
    for (const auto curve : {Color::NonlinearToLinear709ToneCurve, Color::LinearToNonlinear709ToneCurve}) {
        EXPECT_TRUE(std::isnan(of709(curve, kNaN)));
        EXPECT_EQ(of709(curve, kInfinity), kInfinity);
        EXPECT_EQ(of709(curve, -kInfinity), -kInfinity);
    }
    for (const auto curve :
         {Color::NonlinearToLinearApple709ToneCurve, Color::LinearToNonlinearApple709ToneCurve}) {
        EXPECT_TRUE(std::isnan(of709(curve, kNaN)));
        EXPECT_TRUE(std::isnan(of709(curve, -0.5f)));
        EXPECT_EQ(of709(curve, kInfinity), kInfinity);
        EXPECT_TRUE(SameBits(of709(curve, -0.0f), 0.0f));
    }
    EXPECT_TRUE(std::isnan(Converted(Color::SRGBToRGB709, Grey(kNaN)).x));
}

// The smallest subnormal is 2^-149: times 12.92 it is nearest 13 of them, times 0.0774 nearest none.
TEST(ToneCurves, KeepSubnormals)
{
    EXPECT_EQ(Encoded(false, kSmallestSubnormal), 13.0f * kSmallestSubnormal);
    EXPECT_TRUE(SameBits(Linear(false, kSmallestSubnormal), 0.0f));
    EXPECT_EQ(Linear(false, 100.0f * kSmallestSubnormal), 8.0f * kSmallestSubnormal);
}

TEST(ToneCurves, OfOneComponentAreThoseOfAColourWithoutExtendedRange)
{
    for (const bool useGamma22 : kFlags)
        for (const Colour& c : EdgeColours(300)) {
            EXPECT_TRUE(
                SameBits(Linear(useGamma22, false, c),
                         Colour(Linear(useGamma22, c.x), Linear(useGamma22, c.y), Linear(useGamma22, c.z))));
            EXPECT_TRUE(SameBits(
                Encoded(useGamma22, false, c),
                Colour(Encoded(useGamma22, c.x), Encoded(useGamma22, c.y), Encoded(useGamma22, c.z))));
        }
}

TEST(ToneCurves, InExtendedRangeAgreeWithTheOrdinaryOnesAboveZero)
{
    for (const Curve curve : kBothWays)
        for (const bool useGamma22 : kFlags)
            for (const Colour& c : RandomColours(300, 0.0f, 4.0f))
                EXPECT_TRUE(SameBits(curve(useGamma22, true, c), curve(useGamma22, false, c)));
}

// In steps of 1e-5: between two neighbouring floats the encoder falls once, by 2.8e-8, where its pieces meet.
TEST(ToneCurves, NeverFall)
{
    for (const Curve curve : kBothWays)
        for (const bool useGamma22 : kFlags)
            for (int i = 0; i < 100000; ++i) {
                const float x = static_cast<float>(i) * 1e-5f;
                const float here = curve(useGamma22, false, Grey(x)).x;
                const float next = curve(useGamma22, false, Grey(x + 1e-5f)).x;
                ASSERT_GE(next, here) << x;
            }
}

// An extra: exponents and factors are rounded, 2.4 * 0.41666666 among them, which costs about 1e-7 of the
// value.
TEST(ToneCurves, UndoEachOther)
{
    for (const bool useGamma22 : kFlags)
        for (const Colour& c : RandomColours(500, -2.0f, 2.0f)) {
            const Colour back = Encoded(useGamma22, true, Linear(useGamma22, true, c));
            for (int i = 0; i < 3; ++i)
                EXPECT_NEAR(back[i], c[i], 5e-7f * std::fabs(c[i]) + 4e-8f) << c[i];
        }
}
