// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

namespace {

constexpr Color::EIlluminant eD50 = Color::eD50;
constexpr Color::EIlluminant eD65 = Color::eD65;

void ExpectNear(const Colour& actual, const Colour& expected, float tolerance)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

}   // namespace

TEST(Luv, AgreesWithTheReference)
{
    using Row = const ReferenceRow&;
    const auto illuminated = [](auto conversion) {
        return [=](Row r) { return List(Converted(conversion, r.Illuminant(), r.ColourAt())); };
    };
    const auto twiceFlagged = [](auto conversion) {
        return [=](Row r) {
            return List(Converted(conversion, r.Flag(0), r.Flag(1), r.Illuminant(), r.ColourAt()));
        };
    };
    ExpectReference(
        "Luv",
        {
            {"XYZtoLuv", illuminated(Color::XYZtoLuv)},
            {"LuvToXYZ", illuminated(Color::LuvToXYZ)},
            {"LinearRGBToLuv", illuminated(Color::LinearRGBToLuv)},
            {"LuvToLinearRGB",
             [](Row r) {
                 return List(Converted(Color::LuvToLinearRGB, r.Flag(0), r.Illuminant(), r.ColourAt()));
             }},
            {"SRGBToLuv", twiceFlagged(Color::SRGBToLuv)},
            {"LuvToSRGB", twiceFlagged(Color::LuvToSRGB)},
            {"LuvToLChuv", [](Row r) { return List(Converted(Color::LuvToLChuv, r.ColourAt())); }},
            {"LChuvSaturation", [](Row r) { return Numbers{Color::LChuvSaturation(r.ColourAt())}; }},
        });
}

// The sRGB primaries in Luv under D65 as they are widely published (CIE scale, two decimals).
TEST(SRGBToLuv, HasThePublishedPrimaries)
{
    const auto luv = [](const Colour& c) {
        return Converted(Color::SRGBToLuv, false, false, eD65, c) * 100.0f;
    };
    constexpr float twoDecimals = 0.006f;
    ExpectNear(luv({1, 0, 0}), {53.24f, 175.01f, 37.76f}, twoDecimals);
    ExpectNear(luv({0, 1, 0}), {87.73f, -83.08f, 107.40f}, twoDecimals);
    ExpectNear(luv({0, 0, 1}), {32.30f, -9.40f, -130.34f}, twoDecimals);
}

TEST(XYZtoLuv, TakesTheWhiteToOneAndWhatHasNoDenominatorToZero)
{
    for (const auto illuminant : kIlluminants) {
        EXPECT_TRUE(SameBits(Converted(Color::XYZtoLuv, illuminant, Color::XYZReference(illuminant)),
                             Colour(1, 0, 0)));
        EXPECT_TRUE(SameBits(Converted(Color::XYZtoLuv, illuminant, Colour(0, 0, 0)), Colour(0, 0, 0)));
        // X + 15 Y + 3 Z = 0 with a Y above 0.
        EXPECT_TRUE(SameBits(Converted(Color::XYZtoLuv, illuminant, Colour(-15, 1, 0)), Colour(0, 0, 0)));
    }
}

TEST(XYZtoLuv, ClampsLAndNothingElse)
{
    const Colour bright = Converted(Color::XYZtoLuv, eD65, Colour(3.0f, 2.0f, 0.1f));
    EXPECT_EQ(bright.x, 1.0f);
    EXPECT_GT(bright.y, 1.0f);
    // A negative Y has no lightness, and with it no u and v.
    EXPECT_EQ(Converted(Color::XYZtoLuv, eD65, Colour(0.5f, -0.1f, 2.0f)).x, 0.0f);
    EXPECT_EQ(Converted(Color::XYZtoLuv, eD65, Colour(0.5f, -0.1f, 2.0f)).y, 0.0f);
    EXPECT_TRUE(SameBits(Converted(Color::XYZtoLuv, eD65, Colour(0.5f, kNaN, 0.5f)), Colour(0, kNaN, kNaN)));
    EXPECT_TRUE(SameBits(Converted(Color::XYZtoLuv, eD65, Colour(kInfinity, 0.5f, 0.5f)).y, kNaN));
}

TEST(LuvToXYZ, IsBlackWithoutLightnessWhateverUAndV)
{
    for (const auto illuminant : kIlluminants)
        for (const float zero : {0.0f, -0.0f})
            for (const Colour& c : EdgeColours(100))
                EXPECT_TRUE(SameBits(Converted(Color::LuvToXYZ, illuminant, Colour(zero, c.y, c.z)),
                                     Colour(0, 0, 0)));
}

TEST(LuvToXYZ, ClampsNothingAndIsNotFiniteWithoutV)
{
    EXPECT_GT(Converted(Color::LuvToXYZ, eD50, Colour(1.5f, 0, 0)).y, 2.0f);
    EXPECT_LT(Converted(Color::LuvToXYZ, eD50, Colour(-0.5f, 0, 0)).y, 0.0f);
    EXPECT_TRUE(SameBits(Converted(Color::LuvToXYZ, eD50, Colour(kNaN, 0, 0)), Colour(kNaN, kNaN, kNaN)));
    const Colour noU = Converted(Color::LuvToXYZ, eD50, Colour(0.5f, kNaN, 0));
    EXPECT_TRUE(std::isnan(noU.x) && noU.y > 0.18f && noU.y < 0.19f && std::isnan(noU.z));
    // Search the few floats about v = -13 L v'n until v' comes out 0: X and Z have no finite value there.
    const float vn = 9.0f / (0.96421206f + 15.0f + 3.0f * 0.8251883f);
    float v = -13.0f * 0.5f * vn;
    bool found = false;
    for (int i = 0; i < 40; ++i)
        v = NextDown(v);
    for (int i = 0; i < 80 && !found; ++i, v = NextUp(v)) {
        const Colour xyz = Converted(Color::LuvToXYZ, eD50, Colour(0.5f, 0.1f, v));
        found = !std::isfinite(xyz.x) && !std::isfinite(xyz.z);
        EXPECT_TRUE(xyz.y > 0.18f && xyz.y < 0.19f);
    }
    EXPECT_TRUE(found);
}

// On the CIE scale L = 8 is the threshold: t is 24 / 116 and its cube 0.00885645.
TEST(LuvToXYZ, TakesTheLineBelowTheThresholdByADivision)
{
    const auto Y = [](float L) { return Converted(Color::LuvToXYZ, eD65, Colour(L, 0, 0)).y; };
    for (const float L : {0.0799f, 0.04f, -0.5f}) {
        const float t = (L * 100.0f + 16.0f) / 116.0f;
        EXPECT_EQ(Y(L), (t - 0.13793103f) / 7.787f);
    }
    const float t = (0.0801f * 100.0f + 16.0f) / 116.0f;
    EXPECT_NEAR(Y(0.0801f), t * t * t, 2e-9f);   // three roundings of 4.7e-10
}

TEST(LuvToSRGB, DoesNotClampInExtendedRange)
{
    const Colour outside(0.6f, 2.0f, -0.2f);
    for (const auto illuminant : kIlluminants)
        for (const bool useGamma22 : kFlags) {
            const Colour free = Converted(Color::LuvToSRGB, useGamma22, true, illuminant, outside);
            EXPECT_GT(free.x, 1.0f);
            EXPECT_LT(free.y, 0.0f);
            const Colour clamped = Converted(Color::LuvToSRGB, useGamma22, false, illuminant, outside);
            EXPECT_NEAR(clamped.x, 1.0f, 1e-7f);   // 1.055 - 0.055 in floats
            EXPECT_TRUE(SameBits(clamped.y, 0.0f));
        }
}

TEST(Luv, ChainsTheConversionsOfXYZ)
{
    for (const Colour& c : EdgeColours(150))
        for (const auto illuminant : kIlluminants)
            for (const bool e : kFlags) {
                const Colour xyz = Converted(Color::LuvToXYZ, illuminant, c);
                EXPECT_TRUE(SameBits(Converted(Color::LuvToLinearRGB, e, illuminant, c),
                                     Converted(Color::XYZToLinearRGB, e, illuminant, xyz)));
                EXPECT_TRUE(SameBits(
                    Converted(Color::LinearRGBToLuv, illuminant, c),
                    Converted(Color::XYZtoLuv, illuminant, Converted(Color::LinearRGBToXYZ, illuminant, c))));
                for (const bool g : kFlags) {
                    EXPECT_TRUE(SameBits(Converted(Color::LuvToSRGB, g, e, illuminant, c),
                                         Converted(Color::XYZToSRGB, g, e, illuminant, xyz)));
                    EXPECT_TRUE(SameBits(Converted(Color::SRGBToLuv, g, e, illuminant, c),
                                         Converted(Color::XYZtoLuv, illuminant,
                                                   Converted(Color::SRGBToXYZ, g, e, illuminant, c))));
                }
            }
}

TEST(Luv, TakesAnyIlluminantButZeroForD65)
{
    for (const Colour& c : EdgeColours(200)) {
        EXPECT_TRUE(
            SameBits(Converted(Color::XYZtoLuv, kOtherIlluminant, c), Converted(Color::XYZtoLuv, eD65, c)));
        EXPECT_TRUE(
            SameBits(Converted(Color::LuvToXYZ, kOtherIlluminant, c), Converted(Color::LuvToXYZ, eD65, c)));
    }
}

TEST(LuvToLChuv, IsTheSameComputationAsForLab)
{
    for (const Colour& c : EdgeColours(300)) {
        EXPECT_TRUE(SameBits(Converted(Color::LuvToLChuv, c), Converted(Color::LabToLCh, c)));
        EXPECT_TRUE(SameBits(Color::LChuvSaturation(c), Color::LChSaturation(c)));
    }
}

// An extra, never the proof: u and v are differences of chromaticities, so that a dark colour keeps fewer
// digits.
TEST(Luv, RoundTripsThroughEncodedSRGB)
{
    for (const auto illuminant : kIlluminants)
        for (const Colour& c : RandomColours(300, 0.05f, 1.0f))
            ExpectNear(Converted(Color::LuvToSRGB, false, false, illuminant,
                                 Converted(Color::SRGBToLuv, false, false, illuminant, c)),
                       c, 2e-4f);
}
