// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

TEST(Yxy, AgreesWithTheReference)
{
    using Row = const ReferenceRow&;
    ExpectReference(
        "Yxy",
        {
            {"XYZToYxy", [](Row r) { return List(Converted(Color::XYZToYxy, r.ColourAt())); }},
            {"YxyToXYZ", [](Row r) { return List(Converted(Color::YxyToXYZ, r.ColourAt())); }},
            {"LinearRGBToYxy",
             [](Row r) { return List(Converted(Color::LinearRGBToYxy, r.Illuminant(), r.ColourAt())); }},
            {"YxyToLinearRGB",
             [](Row r) {
                 return List(Converted(Color::YxyToLinearRGB, r.Flag(0), r.Illuminant(), r.ColourAt()));
             }},
        });
}

// IEC 61966-2-1:1999, table 1, in two and four digits.
TEST(LinearRGBToYxy, HasTheChromaticitiesOfTheStandard)
{
    const float expected[4][2] = {{0.64f, 0.33f}, {0.30f, 0.60f}, {0.15f, 0.06f}, {0.3127f, 0.3290f}};
    const Colour rgb[4] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}};
    for (int i = 0; i < 4; ++i) {
        const Colour c = Converted(Color::LinearRGBToYxy, Color::eD65, rgb[i]);
        EXPECT_NEAR(c.y, expected[i][0], 6e-5f) << i;
        EXPECT_NEAR(c.z, expected[i][1], 6e-5f) << i;
    }
}

TEST(XYZToYxy, HasTheChromaticityZeroWithoutLight)
{
    EXPECT_TRUE(SameBits(Converted(Color::XYZToYxy, Colour(0, 0, 0)), Colour(0, 0, 0)));
    EXPECT_TRUE(SameBits(Converted(Color::XYZToYxy, Colour(-0.5f, 0.2f, 0.1f)), Colour(0.2f, -0.0f, 0)));
    EXPECT_TRUE(SameBits(Converted(Color::XYZToYxy, Colour(-0.5f, 0.25f, 0.25f)), Colour(0.25f, -0.0f, 0)));
    EXPECT_TRUE(SameBits(Converted(Color::XYZToYxy, Colour(kNaN, 0.2f, 0.1f)), Colour(0.2f, kNaN, 0)));
    EXPECT_TRUE(SameBits(Converted(Color::XYZToYxy, Colour(kInfinity, 1, 1)), Colour(1, kNaN, 0)));
}

TEST(YxyToXYZ, TakesAChromaticityWithoutYAsItIs)
{
    for (const float zero : {0.0f, -0.0f})
        EXPECT_TRUE(SameBits(Converted(Color::YxyToXYZ, Colour(0.5f, 0.3f, zero)), Colour(0.3f, 0.5f, 0.7f)));
    EXPECT_TRUE(SameBits(Converted(Color::YxyToXYZ, Colour(kInfinity, 0.25f, 0.0f)),
                         Colour(0.25f, kInfinity, 0.75f)));
}

TEST(YxyToXYZ, PassesNaNAndInfinityOn)
{
    EXPECT_TRUE(SameBits(Converted(Color::YxyToXYZ, Colour(kNaN, 0.3f, 0.3f)), Colour(kNaN, kNaN, kNaN)));
    EXPECT_TRUE(SameBits(Converted(Color::YxyToXYZ, Colour(0.5f, 0.3f, kNaN)), Colour(kNaN, 0.5f, kNaN)));
    EXPECT_TRUE(SameBits(Converted(Color::YxyToXYZ, Colour(0.5f, 0.25f, kSmallestSubnormal)),
                         Colour(kInfinity, 0.5f, kInfinity)));
}

TEST(Yxy, TakesAnyIlluminantButZeroForD65AndClampsUnlessInExtendedRange)
{
    for (const Colour& c : EdgeColours(200)) {
        EXPECT_TRUE(SameBits(Converted(Color::LinearRGBToYxy, kOtherIlluminant, c),
                             Converted(Color::LinearRGBToYxy, Color::eD65, c)));
        for (const auto illuminant : kIlluminants) {
            const Colour free = Converted(Color::YxyToLinearRGB, true, illuminant, c);
            const Colour xyz = Converted(Color::YxyToXYZ, c);
            EXPECT_TRUE(SameBits(free, Converted(Color::XYZToLinearRGB, true, illuminant, xyz)));
            EXPECT_TRUE(SameBits(Converted(Color::YxyToLinearRGB, false, illuminant, c),
                                 Converted(Color::XYZToLinearRGB, false, illuminant, xyz)));
        }
    }
}

// The chromaticity does not depend on the light: a power of two scales every step exactly.
TEST(XYZToYxy, KeepsTheChromaticityOfABrighterColour)
{
    for (const Colour& c : RandomColours(200)) {
        const Colour dark = Converted(Color::XYZToYxy, c);
        const Colour bright = Converted(Color::XYZToYxy, c * 4.0f);
        EXPECT_TRUE(SameBits(bright, Colour(4.0f * dark.x, dark.y, dark.z)));
    }
}

// An extra: some six roundings, divided by a y of 0.1 or more.
TEST(Yxy, RoundTrips)
{
    for (const Colour& c : RandomColours(300, 0.2f, 1.0f)) {
        const Colour back = Converted(Color::YxyToXYZ, Converted(Color::XYZToYxy, c));
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(back[i], c[i], 2e-6f);
    }
}
