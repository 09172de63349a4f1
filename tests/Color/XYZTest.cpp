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

TEST(XYZ, AgreesWithTheReference)
{
    ExpectReference(
        "XYZ",
        {
            {"LinearRGBToXYZ",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::LinearRGBToXYZ, r.Illuminant(), r.ColourAt()));
             }},
            {"XYZToLinearRGB",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::XYZToLinearRGB, r.Flag(0), r.Illuminant(), r.ColourAt()));
             }},
            {"SRGBToXYZ",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::SRGBToXYZ, r.Flag(0), r.Flag(1), r.Illuminant(), r.ColourAt()));
             }},
            {"XYZToSRGB",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::XYZToSRGB, r.Flag(0), r.Flag(1), r.Illuminant(), r.ColourAt()));
             }},
            {"YToXYZ",
             [](const ReferenceRow& r) { return List(Converted(Color::YToXYZ, r.Illuminant(), r.in[0])); }},
            {"XYZtoXYZWithModifiedY",
             [](const ReferenceRow& r) {
                 return List(Converted(Color::XYZtoXYZWithModifiedY, r.Illuminant(), r.ColourAt(), r.in[3]));
             }},
            {"LinearRGBToLinearY",
             [](const ReferenceRow& r) {
                 return Numbers{Measured(Color::LinearRGBToLinearY, r.Flag(0), r.Illuminant(), r.ColourAt())};
             }},
            {"SRGBToLinearY",
             [](const ReferenceRow& r) {
                 return Numbers{
                     Measured(Color::SRGBToLinearY, r.Flag(0), r.Flag(1), r.Illuminant(), r.ColourAt())};
             }},
            {"LinearRGBToNonlinearY",
             [](const ReferenceRow& r) {
                 return Numbers{Measured(Color::LinearRGBToNonlinearY, r.Flag(0), r.Flag(1), r.Illuminant(),
                                         r.ColourAt())};
             }},
            {"SRGBToNonlinearY",
             [](const ReferenceRow& r) {
                 return Numbers{
                     Measured(Color::SRGBToNonlinearY, r.Flag(0), r.Flag(1), r.Illuminant(), r.ColourAt())};
             }},
        });
}

// The sRGB primaries (0.64, 0.33), (0.30, 0.60), (0.15, 0.06) and white (0.3127, 0.3290) of IEC
// 61966-2-1:1999, table 1, give the D65 matrix; the tolerance is for the four digits in which the standard
// states the white, which the matrix takes from the tristimulus values (0.95047, 1, 1.08883) instead.
TEST(LinearRGBToXYZMatrix, HasTheChromaticitiesOfTheStandardsPrimaries)
{
    const auto& m = Color::LinearRGBToXYZMatrix(eD65);
    const float expected[4][2] = {{0.64f, 0.33f}, {0.30f, 0.60f}, {0.15f, 0.06f}, {0.3127f, 0.3290f}};
    const Colour rgb[4] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}};
    for (int i = 0; i < 4; ++i) {
        const Colour xyz = m * rgb[i];
        EXPECT_NEAR(xyz.x / (xyz.x + xyz.y + xyz.z), expected[i][0], 6e-5f) << i;
        EXPECT_NEAR(xyz.y / (xyz.x + xyz.y + xyz.z), expected[i][1], 6e-5f) << i;
    }
}

// The colorants of the ICC's sRGB profile (PCS D50), to the five digits in which they are published.
TEST(LinearRGBToXYZMatrix, UnderD50HasTheColorantsOfTheProfile)
{
    const auto& m = Color::LinearRGBToXYZMatrix(eD50);
    ExpectNear(m * Colour(1, 0, 0), {0.43607f, 0.22249f, 0.01392f}, 1e-5f);
    ExpectNear(m * Colour(0, 1, 0), {0.38515f, 0.71687f, 0.09708f}, 1e-5f);
    ExpectNear(m * Colour(0, 0, 1), {0.14307f, 0.06061f, 0.71410f}, 1e-5f);
}

// White is the sum of the columns; the published digits of a column are rounded at 1e-6, D50 comes out 1.1e-4
// off in Z as the profile's own colorants do.
TEST(LinearRGBToXYZMatrix, TakesWhiteToTheReferenceWhite)
{
    ExpectNear(Color::LinearRGBToXYZMatrix(eD65) * Colour(1, 1, 1), Color::XYZReference(eD65), 1e-6f);
    ExpectNear(Color::LinearRGBToXYZMatrix(eD50) * Colour(1, 1, 1), Color::XYZReference(eD50), 1.2e-4f);
}

// Rounded to seven digits, a matrix and its inverse multiply to the identity within a few 1e-6.
TEST(LinearRGBToXYZMatrix, IsTheInverseOfItsPartner)
{
    for (const auto illuminant : kIlluminants) {
        const Matrix product =
            Color::XYZToLinearRGBMatrix(illuminant) * Color::LinearRGBToXYZMatrix(illuminant);
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                EXPECT_NEAR(product(row, column), row == column ? 1.0f : 0.0f, 5e-6f)
                    << row << ", " << column;
    }
}

TEST(LinearRGBToXYZMatrix, HasTheLuminanceVectorAsItsSecondRow)
{
    for (const auto illuminant : kIlluminants) {
        const auto& m = Color::LinearRGBToXYZMatrix(illuminant);
        EXPECT_TRUE(
            SameBits(Color::RGBLuminanceVec3(false, false, illuminant), Colour(m(1, 0), m(1, 1), m(1, 2))));
    }
}

// ASTM E308, 2 degrees: D65 is (95.047, 100, 108.883) and D50 (96.422, 100, 82.521), here with more digits.
TEST(XYZReference, IsThePublishedWhite)
{
    EXPECT_TRUE(SameBits(Color::XYZReference(eD65), Colour(0.95047f, 1.0f, 1.08883f)));
    EXPECT_TRUE(SameBits(Color::XYZReference(eD50), Colour(0.96421206f, 1.0f, 0.8251883f)));
    ExpectNear(Color::XYZReference(eD50), {0.96422f, 1.0f, 0.82521f}, 2.5e-5f);
}

// One over a float, rounded, is within half a unit of 1 or 1.25 of the stored reciprocal; its digits are 8.
TEST(InvXYZReference, IsOneOverTheWhite)
{
    for (const auto illuminant : kIlluminants)
        ExpectNear(Color::XYZReference(illuminant) * Color::InvXYZReference(illuminant), {1, 1, 1}, 1.3e-7f);
}

TEST(RGBLuminanceVec3, IsD50InExtendedRangeWhateverTheIlluminant)
{
    const Colour luma(0.299f, 0.587f, 0.114f);
    const Colour d50(0.222488f, 0.716873f, 0.0606079f);
    const Colour d65(0.2126729f, 0.7151522f, 0.072175f);
    for (const auto illuminant : kIlluminants) {
        EXPECT_TRUE(SameBits(Color::RGBLuminanceVec3(true, false, illuminant), luma));
        EXPECT_TRUE(SameBits(Color::RGBLuminanceVec3(true, true, illuminant), luma));
        EXPECT_TRUE(SameBits(Color::RGBLuminanceVec3(false, true, illuminant), d50));
    }
    EXPECT_TRUE(SameBits(Color::RGBLuminanceVec3(false, false, eD50), d50));
    EXPECT_TRUE(SameBits(Color::RGBLuminanceVec3(false, false, eD65), d65));
    EXPECT_TRUE(SameBits(Color::RGBLuminanceVec3(false, false, kOtherIlluminant), d65));
}

TEST(ConstantTables, AreTheSameObjectsForTheLifeOfTheProcess)
{
    for (const auto illuminant : kIlluminants) {
        EXPECT_EQ(&Color::XYZReference(illuminant), &Color::XYZReference(illuminant));
        EXPECT_EQ(&Color::InvXYZReference(illuminant), &Color::InvXYZReference(illuminant));
        EXPECT_EQ(&Color::LinearRGBToXYZMatrix(illuminant), &Color::LinearRGBToXYZMatrix(illuminant));
        EXPECT_EQ(&Color::XYZToLinearRGBMatrix(illuminant), &Color::XYZToLinearRGBMatrix(illuminant));
        EXPECT_EQ(&Color::RGBLuminanceVec3(false, true, illuminant),
                  &Color::RGBLuminanceVec3(false, false, eD50));
    }
    EXPECT_EQ(&Color::XYZReference(kOtherIlluminant), &Color::XYZReference(eD65));
    EXPECT_NE(&Color::XYZReference(eD50), &Color::XYZReference(eD65));
}

TEST(XYZ, TakesAnyIlluminantButZeroForD65)
{
    for (const Colour& c : EdgeColours(200))
        for (const bool g : kFlags)
            for (const bool e : kFlags) {
                const auto same = [&](auto conversion, const auto&... arguments) {
                    EXPECT_TRUE(SameBits(Converted(conversion, arguments..., kOtherIlluminant, c),
                                         Converted(conversion, arguments..., eD65, c)));
                };
                same(Color::LinearRGBToXYZ);
                same(Color::XYZToLinearRGB, e);
                same(Color::SRGBToXYZ, g, e);
                same(Color::XYZToSRGB, g, e);
                EXPECT_TRUE(SameBits(Measured(Color::SRGBToNonlinearY, g, e, kOtherIlluminant, c),
                                     Measured(Color::SRGBToNonlinearY, g, e, eD65, c)));
                EXPECT_TRUE(SameBits(Converted(Color::YToXYZ, kOtherIlluminant, c.x),
                                     Converted(Color::YToXYZ, eD65, c.x)));
            }
}

TEST(XYZToLinearRGB, ClampsUnlessInExtendedRange)
{
    const Colour outside(0.9f, 0.1f, 0.1f);   // R far above 1, G below 0
    for (const auto illuminant : kIlluminants) {
        const Colour free = Converted(Color::XYZToLinearRGB, true, illuminant, outside);
        EXPECT_GT(free.x, 1.0f);
        EXPECT_LT(free.y, 0.0f);
        const Colour clamped = Converted(Color::XYZToLinearRGB, false, illuminant, outside);
        EXPECT_TRUE(SameBits(clamped, Colour(1.0f, 0.0f, free.z)));
    }
}

TEST(XYZToLinearRGB, ClampsNaNAndInfinityAndPassesThemOnInExtendedRange)
{
    const Colour nan(kNaN, 0.5f, 0.5f);
    EXPECT_TRUE(SameBits(Converted(Color::XYZToLinearRGB, false, eD65, nan), Colour(0, 0, 0)));
    EXPECT_TRUE(SameBits(Converted(Color::XYZToLinearRGB, true, eD65, nan), Colour(kNaN, kNaN, kNaN)));
    // The column of X holds the signs +, -, +.
    const Colour infinite(kInfinity, 0.5f, 0.5f);
    EXPECT_TRUE(SameBits(Converted(Color::XYZToLinearRGB, false, eD65, infinite), Colour(1, 0, 1)));
    EXPECT_TRUE(SameBits(Converted(Color::XYZToLinearRGB, true, eD65, infinite),
                         Colour(kInfinity, -kInfinity, kInfinity)));
}

TEST(LinearRGBToXYZ, IsLinearAndPassesNaNOn)
{
    EXPECT_TRUE(
        SameBits(Converted(Color::LinearRGBToXYZ, eD50, Colour(kNaN, 0, 0)), Colour(kNaN, kNaN, kNaN)));
    EXPECT_TRUE(SameBits(Converted(Color::LinearRGBToXYZ, eD50, Colour(0, 0, 0)), Colour(0, 0, 0)));
    // A power of two scales every step exactly.
    for (const Colour& c : RandomColours(200, -1.0f, 1.0f))
        EXPECT_TRUE(SameBits(Converted(Color::LinearRGBToXYZ, eD65, c * 8.0f),
                             Converted(Color::LinearRGBToXYZ, eD65, c) * 8.0f));
}

TEST(SRGBToXYZ, IsTheToneCurveAndTheMatrix)
{
    for (const bool g : kFlags)
        for (const bool e : kFlags)
            for (const auto illuminant : kIlluminants)
                for (const Colour& c : EdgeColours(100)) {
                    Colour linear;
                    Color::NonlinearToLinearToneCurve(g, e, c, linear);
                    EXPECT_TRUE(SameBits(Converted(Color::SRGBToXYZ, g, e, illuminant, c),
                                         Color::LinearRGBToXYZMatrix(illuminant) * linear));
                }
}

TEST(YToXYZ, IsTheWhiteScaled)
{
    EXPECT_TRUE(SameBits(Converted(Color::YToXYZ, eD65, 1.0f), Color::XYZReference(eD65)));
    EXPECT_TRUE(SameBits(Converted(Color::YToXYZ, eD50, 0.0f), Colour(0, 0, 0)));
    EXPECT_TRUE(SameBits(Converted(Color::YToXYZ, eD50, -0.5f), Color::XYZReference(eD50) * -0.5f));
    EXPECT_TRUE(SameBits(Converted(Color::YToXYZ, eD50, kNaN), Colour(kNaN, kNaN, kNaN)));
}

TEST(XYZtoXYZWithModifiedY, GivesAGreyWhereThereIsNoChromaticityAndBlackForNoLuminance)
{
    for (const auto illuminant : kIlluminants) {
        const auto modified = [&](const Colour& xyz, float Y) {
            return Converted(Color::XYZtoXYZWithModifiedY, illuminant, xyz, Y);
        };
        EXPECT_TRUE(SameBits(modified({0.3f, 0.0f, 0.2f}, 0.5f), Color::XYZReference(illuminant) * 0.5f));
        EXPECT_TRUE(SameBits(modified({0.3f, -0.0f, 0.2f}, 0.5f), Color::XYZReference(illuminant) * 0.5f));
        EXPECT_TRUE(SameBits(modified({0.3f, 0.0f, 0.2f}, 0.0f), Colour(0, 0, 0)));
        EXPECT_TRUE(SameBits(modified({0.3f, 0.4f, 0.2f}, 0.0f), Colour(0, 0, 0)));
        EXPECT_TRUE(SameBits(modified({0.3f, 0.4f, 0.2f}, -0.0f), Colour(0, 0, 0)));
        EXPECT_TRUE(SameBits(modified({kNaN, kInfinity, -kInfinity}, 0.0f), Colour(0, 0, 0)));
        EXPECT_TRUE(SameBits(modified({0.25f, 0.5f, 0.125f}, 1.0f), Colour(0.5f, 1.0f, 0.25f)));
        EXPECT_TRUE(SameBits(modified({0.25f, 0.5f, 0.125f}, kNaN), Colour(kNaN, kNaN, kNaN)));
        EXPECT_TRUE(SameBits(modified({0.25f, kNaN, 0.125f}, 0.5f), Colour(kNaN, 0.5f, kNaN)));
    }
}

TEST(LinearY, ClampsWithItsIlluminantAndIsFreeWithD50InExtendedRange)
{
    const Colour bright(2.0f, 3.0f, -1.0f);
    const Colour dark(-1.0f, -1.0f, 0.5f);
    for (const auto illuminant : kIlluminants) {
        EXPECT_EQ(Measured(Color::LinearRGBToLinearY, false, illuminant, bright), 1.0f);
        EXPECT_TRUE(SameBits(Measured(Color::LinearRGBToLinearY, false, illuminant, dark), 0.0f));
        EXPECT_TRUE(
            SameBits(Measured(Color::LinearRGBToLinearY, false, illuminant, Colour(kNaN, 0, 0)), 0.0f));
        EXPECT_EQ(Measured(Color::LinearRGBToLinearY, true, illuminant, bright),
                  Color::RGBLuminanceVec3(false, false, eD50).Dot(bright));
        EXPECT_TRUE(std::isnan(Measured(Color::LinearRGBToLinearY, true, illuminant, Colour(kNaN, 0, 0))));
        Colour linear;
        Color::NonlinearToLinearToneCurve(false, true, dark, linear);
        EXPECT_EQ(Measured(Color::SRGBToLinearY, false, true, illuminant, dark),
                  Color::RGBLuminanceVec3(false, false, eD50).Dot(linear));
    }
}

TEST(NonlinearY, EncodesANegativeExtendedLuminanceWithoutRegardToItsSign)
{
    const Colour dark(-0.5f, -0.25f, 0.0f);
    for (const auto illuminant : kIlluminants) {
        const float Y = Measured(Color::LinearRGBToLinearY, true, illuminant, dark);
        ASSERT_LT(Y, 0.0f);
        EXPECT_EQ(Measured(Color::LinearRGBToNonlinearY, false, true, illuminant, dark), 12.92f * Y);
        EXPECT_TRUE(std::isnan(Measured(Color::LinearRGBToNonlinearY, true, true, illuminant, dark)));
        EXPECT_TRUE(SameBits(Measured(Color::LinearRGBToNonlinearY, false, false, illuminant, dark), 0.0f));
        EXPECT_LT(Measured(Color::SRGBToNonlinearY, false, true, illuminant, dark), 0.0f);
        EXPECT_TRUE(std::isnan(Measured(Color::SRGBToNonlinearY, true, true, illuminant, dark)));
        EXPECT_TRUE(
            SameBits(Measured(Color::SRGBToNonlinearY, true, false, illuminant, Colour(0, 0, 0)), 0.0f));
    }
}

TEST(Clamp, TakesTheLowerOfTheUpperBoundFirstAndNaNToTheLowerBound)
{
    EXPECT_TRUE(SameBits(Color::Clamp({kNaN, 2.0f, -1.0f}, 0.0f, 1.0f), Colour(0, 1, 0)));
    EXPECT_TRUE(
        SameBits(Color::Clamp({kInfinity, -kInfinity, 0.5f}, -2.0f, 3.0f), Colour(3.0f, -2.0f, 0.5f)));
    // Bounds that cross: the lower one comes last and wins.
    EXPECT_TRUE(SameBits(Color::Clamp({0.0f, 0.5f, 2.0f}, 1.0f, -1.0f), Colour(1, 1, 1)));
    EXPECT_TRUE(SameBits(Color::Clamp({-1.0f, 1.0f, NextUp(1.0f)}, -1.0f, 1.0f), Colour(-1, 1, 1)));
}

// An extra, never the proof.
TEST(XYZ, RoundTripsThroughEncodedSRGB)
{
    for (const bool g : kFlags)
        for (const auto illuminant : kIlluminants)
            for (const Colour& c : RandomColours(200)) {
                const Colour xyz = Converted(Color::SRGBToXYZ, g, true, illuminant, c);
                // 5e-6 of the matrices, steepened by the slope 12.92 of the encoder near black.
                ExpectNear(Converted(Color::XYZToSRGB, g, true, illuminant, xyz), c, g ? 2e-3f : 7e-5f);
            }
}
