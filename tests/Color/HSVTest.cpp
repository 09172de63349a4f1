// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

namespace {

Colour HSV(const Colour& rgb)
{
    return Converted(Color::RGBToHSV, rgb);
}
Colour RGB(const Colour& hsv)
{
    return Converted(Color::HSVToRGB, hsv);
}

}   // namespace

TEST(HSV, AgreesWithTheReference)
{
    ExpectReference("HSV", {{"RGBToHSV", [](const ReferenceRow& r) { return List(HSV(r.ColourAt())); }},
                            {"HSVToRGB", [](const ReferenceRow& r) { return List(RGB(r.ColourAt())); }}});
}

TEST(RGBToHSV, TestsRedBeforeGreenBeforeBlue)
{
    EXPECT_TRUE(SameBits(HSV({1, 0, 0}), Colour(0, 1, 1)));
    EXPECT_TRUE(SameBits(HSV({1, 1, 0}), Colour(1.0f / 6, 1, 1)));   // red's formula
    EXPECT_TRUE(SameBits(HSV({0, 1, 0}), Colour(0.33333334f, 1, 1)));
    EXPECT_TRUE(SameBits(HSV({0, 1, 1}), Colour(1.0f / 6 + 0.33333334f, 1, 1)));   // green's
    EXPECT_TRUE(SameBits(HSV({0, 0, 1}), Colour(0.6666667f, 1, 1)));
    EXPECT_TRUE(SameBits(HSV({1, 0, 1}), Colour(-1.0f / 6 + 1.0f, 1, 1)));   // red's, below 0 and turned
}

TEST(RGBToHSV, HasNoHueForGreys)
{
    for (const float v : {0.0f, 0.25f, 1.0f, 3.0f, -0.5f})
        EXPECT_TRUE(SameBits(HSV({v, v, v}), Colour(0, 0, v))) << v;
    // The largest component is 0: nothing to divide by.
    EXPECT_TRUE(SameBits(HSV({0, -0.5f, -1}), Colour(0, 0, 0)));
}

TEST(RGBToHSV, StaysDefinedForNegativeAndSpecialValues)
{
    EXPECT_TRUE(SameBits(HSV({-0.5f, -1, -1}), Colour(0, -1, -0.5f)));
    EXPECT_EQ(HSV({2, 0.5f, -1}).y, 1.5f);
    const Colour infinite = HSV({kInfinity, 0.5f, 0});
    EXPECT_TRUE(
        SameBits(infinite, Colour(0, kNaN, kInfinity)));   // infinity over infinity, 0.5 over infinity
    EXPECT_TRUE(std::isnan(HSV({kNaN, kNaN, kNaN}).z));
    EXPECT_TRUE(SameBits(HSV({kSmallestSubnormal, 0, 0}), Colour(0, 1, kSmallestSubnormal)));
}

TEST(RGBToHSV, GivesAHueFromZeroToOne)
{
    for (const Colour& c : RandomColours(2000)) {
        const Colour hsv = HSV(c);
        for (int i = 0; i < 3; ++i) {
            EXPECT_GE(hsv[i], 0.0f);
            EXPECT_LE(hsv[i], 1.0f);
        }
        EXPECT_EQ(hsv.z, std::max({c.x, c.y, c.z}));
    }
}

TEST(HSVToRGB, TakesAHueOfOneForZero)
{
    EXPECT_TRUE(SameBits(RGB({1, 0.5f, 0.8f}), RGB({0, 0.5f, 0.8f})));
    EXPECT_TRUE(SameBits(RGB({1, 0.5f, 0.8f}), Colour(0.8f, 0.4f, 0.4f)));
}

// A hue of k/8 is exact; saturation 1/2 and value 1 make every step exact too.
TEST(HSVToRGB, HasAFormulaForEachSixth)
{
    EXPECT_TRUE(SameBits(RGB({0.125f, 0.5f, 1}), Colour(1, 0.875f, 0.5f)));
    EXPECT_TRUE(SameBits(RGB({0.25f, 0.5f, 1}), Colour(0.75f, 1, 0.5f)));
    EXPECT_TRUE(SameBits(RGB({0.375f, 0.5f, 1}), Colour(0.5f, 1, 0.625f)));
    EXPECT_TRUE(SameBits(RGB({0.5f, 0.5f, 1}), Colour(0.5f, 1, 1)));
    EXPECT_TRUE(SameBits(RGB({0.625f, 0.5f, 1}), Colour(0.5f, 0.625f, 1)));
    EXPECT_TRUE(SameBits(RGB({0.75f, 0.5f, 1}), Colour(0.75f, 0.5f, 1)));
    EXPECT_TRUE(SameBits(RGB({0.875f, 0.5f, 1}), Colour(1, 0.5f, 0.875f)));
}

TEST(HSVToRGB, TakesTheLastFormulaForAHueThatIsNoSixth)
{
    EXPECT_TRUE(SameBits(RGB({-0.125f, 0.5f, 1}), Colour(1, 0.5f, 0.875f)));
    EXPECT_TRUE(SameBits(RGB({1.25f, 0.5f, 1}), Colour(1, 0.5f, 0.75f)));
    EXPECT_TRUE(SameBits(RGB({kNaN, 0.5f, 1}), Colour(1, 0.5f, kNaN)));
    EXPECT_TRUE(SameBits(RGB({kInfinity, 0.5f, 1}), Colour(1, 0.5f, kNaN)));
    EXPECT_TRUE(SameBits(RGB({-kInfinity, 0.5f, 1}), Colour(1, 0.5f, kNaN)));
    EXPECT_TRUE(SameBits(RGB({kLargest, 0.5f, 1}), Colour(1, 0.5f, kNaN)));
}

TEST(HSVToRGB, IsAGreyWithoutSaturationWhateverTheHue)
{
    for (const float hue : Edges())
        for (const float zero : {0.0f, -0.0f})
            EXPECT_TRUE(SameBits(RGB({hue, zero, 0.3f}), Colour(0.3f, 0.3f, 0.3f)));
    EXPECT_TRUE(SameBits(RGB({0, kNaN, 1}), Colour(1, kNaN, kNaN)));
}

// An extra: a hue that is divided by six and multiplied again loses about 1e-7, six times.
TEST(HSV, RoundTrips)
{
    for (const Colour& c : RandomColours(1000)) {
        const Colour back = RGB(HSV(c));
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(back[i], c[i], 1e-6f);
    }
}
