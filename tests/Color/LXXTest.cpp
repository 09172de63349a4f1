// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

TEST(LXX, AgreesWithTheReference)
{
    using Row = const ReferenceRow&;
    ExpectReference(
        "LXX",
        {
            {"LinearYToLXX", [](Row r) { return Numbers{Measured(Color::LinearYToLXX, r.in[0])}; }},
            {"LXXToLinearY", [](Row r) { return Numbers{Measured(Color::LXXToLinearY, r.in[0])}; }},
            {"LinearRGBToLXX", [](Row r) { return Numbers{Measured(Color::LinearRGBToLXX, r.ColourAt())}; }},
            {"SRGBToLXX",
             [](Row r) { return Numbers{Measured(Color::SRGBToLXX, r.Flag(0), r.Flag(1), r.ColourAt())}; }},
            {"SRGBYToLXX", [](Row r) { return Numbers{Measured(Color::SRGBYToLXX, r.Flag(0), r.in[0])}; }},
            {"LXXToSRGBY", [](Row r) { return Numbers{Measured(Color::LXXToSRGBY, r.Flag(0), r.in[0])}; }},
        });
}

// CIE 15:2004, 8.2.1: Y = 0.184187 is L* = 50, and a Y of 1 is 100. A power and two roundings below 1.
TEST(LinearYToLXX, IsTheLightnessOfTheCIE)
{
    EXPECT_NEAR(Measured(Color::LinearYToLXX, 0.18418652f), 0.5f, 1.5e-7f);
    EXPECT_NEAR(Measured(Color::LinearYToLXX, 1.0f), 1.0f, 1.5e-7f);
}

TEST(LinearYToLXX, TakesTheLineAtTheThresholdItself)
{
    for (const float Y : {0.001f, NextDown(0.008856f), 0.008856f})
        EXPECT_EQ(Measured(Color::LinearYToLXX, Y), 1.16f * (Y * 7.787f + 0.13793103f) - 0.16f);
}

TEST(LinearYToLXX, IsNeverBelowZeroAndNotClampedAbove)
{
    EXPECT_GT(Measured(Color::LinearYToLXX, 2.0f), 1.3f);
    EXPECT_EQ(Measured(Color::LinearYToLXX, kInfinity), kInfinity);
    for (const float Y : {-0.001f, -1.0f, -kInfinity, kNaN})
        EXPECT_TRUE(SameBits(Measured(Color::LinearYToLXX, Y), 0.0f)) << Y;
}

TEST(LXXToLinearY, DividesWhereLabMultiplies)
{
    for (const float L : {0.05f, 0.07f, 0.0799f, -0.3f})
        EXPECT_EQ(Measured(Color::LXXToLinearY, L), ((L + 0.16f) / 1.16f - 0.13793103f) * 0.12841916f);
    EXPECT_TRUE(std::isnan(Measured(Color::LXXToLinearY, kNaN)));
    EXPECT_EQ(Measured(Color::LXXToLinearY, kInfinity), kInfinity);
    EXPECT_EQ(Measured(Color::LXXToLinearY, -kInfinity), -kInfinity);
}

// The line leaves a rounding's worth of light in black: 0.13793103 is a digit short of 16 / 116.
TEST(LXX, TakesBlackToBlack)
{
    EXPECT_NEAR(Measured(Color::LinearYToLXX, 0.0f), 0.0f, 1.5e-8f);
    EXPECT_NEAR(Measured(Color::LXXToLinearY, 0.0f), 0.0f, 2e-9f);
}

TEST(LXX, TakesTheD65WeightsWithAnyFlags)
{
    const Colour weights(0.2126729f, 0.7151522f, 0.072175f);
    for (const Colour& c : EdgeColours(200)) {
        EXPECT_TRUE(
            SameBits(Measured(Color::LinearRGBToLXX, c), Measured(Color::LinearYToLXX, c.Dot(weights))));
        for (const bool g : kFlags)
            for (const bool e : kFlags) {
                Colour linear;
                Color::NonlinearToLinearToneCurve(g, e, c, linear);
                EXPECT_TRUE(
                    SameBits(Measured(Color::SRGBToLXX, g, e, c), Measured(Color::LinearRGBToLXX, linear)));
            }
    }
}

TEST(LXX, OfAnEncodedLuminanceTakesTheCurveOfOneComponent)
{
    for (const bool g : kFlags)
        for (const float x : EdgesAndRandoms(300)) {
            float linear = 0.0f;
            Color::NonlinearToLinearToneCurve(g, x, linear);
            EXPECT_TRUE(SameBits(Measured(Color::SRGBYToLXX, g, x), Measured(Color::LinearYToLXX, linear)))
                << x;
            float encoded = 0.0f;
            Color::LinearToNonlinearToneCurve(g, Measured(Color::LXXToLinearY, x), encoded);
            EXPECT_TRUE(SameBits(Measured(Color::LXXToSRGBY, g, x), encoded)) << x;
        }
}

TEST(LXX, NeverFalls)
{
    float last = 0.0f;
    for (int i = 0; i <= 20000; ++i) {
        const float L = Measured(Color::LinearYToLXX, static_cast<float>(i) * 5e-5f);
        ASSERT_GE(L, last);
        last = L;
    }
}

// An extra: a cube root and a cube, each rounded, and the constants' digits.
TEST(LXX, RoundTrips)
{
    for (const float Y : Randoms(500, 0.0f, 1.0f))
        EXPECT_NEAR(Measured(Color::LXXToLinearY, Measured(Color::LinearYToLXX, Y)), Y, 1e-6f);
}
