// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

namespace {

using Conversion = void (*)(const Colour&, Colour&);
constexpr Conversion kConversions[] = {Color::RGBToYIQ, Color::YIQToRGB, Color::SRGBToYCbCr,
                                       Color::YCbCrToSRGB};

void ExpectNear(const Colour& actual, const Colour& expected, float tolerance)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

}   // namespace

TEST(YIQ, AgreesWithTheReference)
{
    const auto of = [](Conversion conversion) {
        return [=](const ReferenceRow& r) { return List(Converted(conversion, r.ColourAt())); };
    };
    ExpectReference("YIQ", {{"RGBToYIQ", of(Color::RGBToYIQ)},
                            {"YIQToRGB", of(Color::YIQToRGB)},
                            {"SRGBToYCbCr", of(Color::SRGBToYCbCr)},
                            {"YCbCrToSRGB", of(Color::YCbCrToSRGB)}});
}

TEST(YIQ, HasTheColumnsOfItsMatrix)
{
    EXPECT_TRUE(SameBits(Converted(Color::RGBToYIQ, Colour(1, 0, 0)), Colour(0.299f, 0.595716f, 0.211456f)));
    EXPECT_TRUE(
        SameBits(Converted(Color::RGBToYIQ, Colour(0, 1, 0)), Colour(0.587f, -0.274453f, -0.522591f)));
    EXPECT_TRUE(SameBits(Converted(Color::RGBToYIQ, Colour(0, 0, 1)), Colour(0.114f, -0.321263f, 0.311135f)));
    EXPECT_TRUE(SameBits(Converted(Color::YIQToRGB, Colour(0, 1, 0)), Colour(0.9563f, -0.2721f, -1.107f)));
    EXPECT_TRUE(SameBits(Converted(Color::YIQToRGB, Colour(0, 0, 1)), Colour(0.621f, -0.6474f, 1.7047f)));
}

// ITU-R BT.601-7: Cb is (B - Y) / 1.772 and Cr (R - Y) / 1.402; the matrices are rounded to three decimals.
TEST(YCbCr, IsTheRecommendationsWithinItsThreeDecimals)
{
    for (const Colour& c : RandomColours(200)) {
        const float Y = 0.299f * c.x + 0.587f * c.y + 0.114f * c.z;
        ExpectNear(Converted(Color::SRGBToYCbCr, c), {Y, (c.z - Y) / 1.772f, (c.x - Y) / 1.402f}, 1e-3f);
    }
    EXPECT_TRUE(SameBits(Converted(Color::YCbCrToSRGB, Colour(0.25f, 0, 0)), Colour(0.25f, 0.25f, 0.25f)));
}

// The chroma rows sum to 0 as decimals, so that a grey has none but for rounding.
TEST(YIQ, GivesGreysNoChroma)
{
    for (const float v : Randoms(100, 0.0f, 1.0f)) {
        ExpectNear(Converted(Color::RGBToYIQ, Colour(v, v, v)), {v, 0, 0}, 1.2e-7f);
        ExpectNear(Converted(Color::SRGBToYCbCr, Colour(v, v, v)), {v, 0, 0}, 1.2e-7f);
    }
}

// Rounded matrices, which are not exact inverses: the differences are theirs and are kept.
TEST(YIQ, ComesBackWithinTheRoundingOfItsMatrices)
{
    float worst = 0.0f;
    for (const Colour& c : RandomColours(500)) {
        ExpectNear(Converted(Color::YIQToRGB, Converted(Color::RGBToYIQ, c)), c, 1e-3f);
        const Colour back = Converted(Color::YCbCrToSRGB, Converted(Color::SRGBToYCbCr, c));
        ExpectNear(back, c, 2e-3f);
        worst = std::max(worst, std::fabs(back.y - c.y));
    }
    EXPECT_GT(worst, 1e-4f);
}

TEST(YIQ, NeitherDecodesNorClamps)
{
    for (const Conversion conversion : kConversions) {
        for (const Colour& c : RandomColours(100, -2.0f, 2.0f))   // a power of two scales exactly
            EXPECT_TRUE(SameBits(Converted(conversion, c * 4.0f), Converted(conversion, c) * 4.0f));
        EXPECT_TRUE(SameBits(Converted(conversion, Colour(kNaN, 0, 0)), Colour(kNaN, kNaN, kNaN)));
        EXPECT_EQ(Converted(conversion, Colour(kInfinity, 0.5f, 0.5f)).x, kInfinity);
        EXPECT_TRUE(SameBits(Converted(conversion, Colour(0, 0, 0)), Colour(0, 0, 0)));
    }
}
