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
Colour Decoded(bool useGamma22, bool extendedRange, const Colour& c)
{
    Colour linear;
    Color::NonlinearToLinearToneCurve(useGamma22, extendedRange, c, linear);
    return linear;
}
Colour Encoded(bool useGamma22, bool extendedRange, const Colour& c)
{
    Colour encoded;
    Color::LinearToNonlinearToneCurve(useGamma22, extendedRange, c, encoded);
    return encoded;
}

}   // namespace

TEST(DisplayP3, AgreesWithTheReference)
{
    using Row = const ReferenceRow&;
    const auto illuminated = [](auto conversion) {
        return [=](Row r) { return List(Converted(conversion, r.Illuminant(), r.ColourAt())); };
    };
    const auto flagged = [](auto conversion) {
        return [=](Row r) { return List(Converted(conversion, r.Flag(0), r.Illuminant(), r.ColourAt())); };
    };
    const auto twiceFlagged = [](auto conversion) {
        return [=](Row r) {
            return List(Converted(conversion, r.Flag(0), r.Flag(1), r.Illuminant(), r.ColourAt()));
        };
    };
    ExpectReference(
        "DisplayP3",
        {
            {"LinearDisplayP3ToXYZ", illuminated(Color::LinearDisplayP3ToXYZ)},
            {"XYZToLinearDisplayP3", illuminated(Color::XYZToLinearDisplayP3)},
            {"DisplayP3ToXYZ", flagged(Color::DisplayP3ToXYZ)},
            {"XYZToDisplayP3", flagged(Color::XYZToDisplayP3)},
            {"LinearDisplayP3ToDisplayP3",
             [](Row r) {
                 return List(Converted(Color::LinearDisplayP3ToDisplayP3, r.Flag(0), r.ColourAt()));
             }},
            {"DisplayP3ToSRGB", twiceFlagged(Color::DisplayP3ToSRGB)},
            {"SRGBToDisplayP3", twiceFlagged(Color::SRGBToDisplayP3)},
            {"DisplayP3ToLab", flagged(Color::DisplayP3ToLab)},
            {"LabToDisplayP3", flagged(Color::LabToDisplayP3)},
            {"DisplayP3ToIPT", flagged(Color::DisplayP3ToIPT)},
            {"IPTToDisplayP3", flagged(Color::IPTToDisplayP3)},
            {"LinearDisplayP3ToIPT", illuminated(Color::LinearDisplayP3ToIPT)},
            {"IPTToLinearDisplayP3", illuminated(Color::IPTToLinearDisplayP3)},
            {"LinearDisplayP3ToLinearY",
             [](Row r) {
                 return Numbers{Measured(Color::LinearDisplayP3ToLinearY, r.Illuminant(), r.ColourAt())};
             }},
            {"DisplayP3ToLinearY",
             [](Row r) {
                 return Numbers{Measured(Color::DisplayP3ToLinearY, r.Flag(0), r.Illuminant(), r.ColourAt())};
             }},
            {"DisplayP3ToDisplayP3Y",
             [](Row r) {
                 return Numbers{Measured(Color::DisplayP3ToDisplayP3Y, r.Flag(0), r.Flag(1), r.Illuminant(),
                                         r.ColourAt())};
             }},
        });
}

// SMPTE RP 431-2: the primaries (0.680, 0.320), (0.265, 0.690), (0.150, 0.060); the white is D65.
// The tolerance is for the digits in which the chromaticities of the white are stated.
TEST(LinearDisplayP3ToXYZMatrix, HasTheChromaticitiesOfThePrimaries)
{
    const float expected[4][2] = {{0.680f, 0.320f}, {0.265f, 0.690f}, {0.150f, 0.060f}, {0.3127f, 0.3290f}};
    const Colour rgb[4] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}};
    for (int i = 0; i < 4; ++i) {
        const Colour xyz = Color::LinearDisplayP3ToXYZMatrix(eD65) * rgb[i];
        EXPECT_NEAR(xyz.x / (xyz.x + xyz.y + xyz.z), expected[i][0], 1e-4f) << i;
        EXPECT_NEAR(xyz.y / (xyz.x + xyz.y + xyz.z), expected[i][1], 1e-4f) << i;
    }
}

TEST(LinearDisplayP3ToXYZMatrix, TakesWhiteToTheReferenceWhite)
{
    ExpectNear(Color::LinearDisplayP3ToXYZMatrix(eD65) * Colour(1, 1, 1), Color::XYZReference(eD65), 5e-4f);
    ExpectNear(Color::LinearDisplayP3ToXYZMatrix(eD50) * Colour(1, 1, 1), Color::XYZReference(eD50), 5e-4f);
}

TEST(LinearDisplayP3ToXYZMatrix, IsTheInverseOfItsPartnerAndHoldsTheLuminance)
{
    for (const auto illuminant : kIlluminants) {
        const Matrix& m = Color::LinearDisplayP3ToXYZMatrix(illuminant);
        const Matrix product = Color::XYZToLinearDisplayP3Matrix(illuminant) * m;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)   // seven digits of numbers up to 2.5
                EXPECT_NEAR(product(row, column), row == column ? 1.0f : 0.0f, 2e-6f)
                    << row << ", " << column;
        EXPECT_TRUE(
            SameBits(Color::LinearDisplayP3LuminanceVec3(illuminant), Colour(m(1, 0), m(1, 1), m(1, 2))));
        EXPECT_EQ(&Color::LinearDisplayP3LuminanceVec3(illuminant),
                  &Color::LinearDisplayP3LuminanceVec3(illuminant));
        EXPECT_EQ(&Color::LinearDisplayP3ToXYZMatrix(illuminant), &m);
    }
    EXPECT_EQ(&Color::LinearDisplayP3ToXYZMatrix(kOtherIlluminant), &Color::LinearDisplayP3ToXYZMatrix(eD65));
    EXPECT_EQ(&Color::XYZToLinearDisplayP3Matrix(kOtherIlluminant), &Color::XYZToLinearDisplayP3Matrix(eD65));
    EXPECT_EQ(&Color::LinearDisplayP3LuminanceVec3(kOtherIlluminant),
              &Color::LinearDisplayP3LuminanceVec3(eD65));
    EXPECT_NE(&Color::XYZToLinearDisplayP3Matrix(eD50), &Color::XYZToLinearDisplayP3Matrix(eD65));
}

TEST(DisplayP3, HasCompositeMatricesOfOneIlluminant)
{
    for (const auto illuminant : kIlluminants) {
        const Matrix toLMS =
            Color::XYZToLMSMatrix(illuminant) * Color::LinearDisplayP3ToXYZMatrix(illuminant);
        const Matrix fromLMS =
            Color::XYZToLinearDisplayP3Matrix(illuminant) * Color::LMSToXYZMatrix(illuminant);
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column) {
                EXPECT_EQ(Color::LinearDisplayP3ToXYZToLMSMatrix(illuminant)(row, column),
                          toLMS(row, column));
                EXPECT_EQ(Color::LMSToXYZToLinearDisplayP3Matrix(illuminant)(row, column),
                          fromLMS(row, column));
            }
    }
}

TEST(DisplayP3ToXYZ, HasNoExtendedRange)
{
    for (const auto illuminant : kIlluminants)
        for (const Colour& c : EdgeColours(200))
            for (const bool g : kFlags)
                EXPECT_TRUE(SameBits(Converted(Color::DisplayP3ToXYZ, g, illuminant, c),
                                     Color::LinearDisplayP3ToXYZMatrix(illuminant) * Decoded(g, false, c)));
    EXPECT_TRUE(SameBits(Converted(Color::DisplayP3ToXYZ, true, eD65, Colour(-0.5f, 0, 0)),
                         Colour(kNaN, kNaN, kNaN)));
}

TEST(XYZToDisplayP3, ClampsAfterTheEncodingSoThatNaNIsZero)
{
    const Colour outside(0.2f, 0.6f, -0.1f);
    for (const auto illuminant : kIlluminants) {
        const Colour linear = Converted(Color::XYZToLinearDisplayP3, illuminant, outside);
        ASSERT_LT(linear.x, 0.0f);
        ASSERT_GT(linear.y, 0.8f);
        ASSERT_LT(linear.z, 0.0f);
        EXPECT_TRUE(std::isnan(Converted(Color::LinearDisplayP3ToDisplayP3, true, linear).x));
        for (const bool g : kFlags) {
            const Colour p3 = Converted(Color::XYZToDisplayP3, g, illuminant, outside);
            EXPECT_TRUE(SameBits(p3.x, 0.0f));
            EXPECT_TRUE(SameBits(p3.z, 0.0f));
        }
        EXPECT_TRUE(SameBits(Converted(Color::XYZToDisplayP3, false, illuminant, Colour(kNaN, 1, 1)),
                             Colour(0, 0, 0)));
        EXPECT_TRUE(
            SameBits(Converted(Color::XYZToDisplayP3, false, illuminant, Colour(9, 9, 9)), Colour(1, 1, 1)));
    }
}

TEST(LinearDisplayP3ToDisplayP3, DoesNotClamp)
{
    const Colour p3 = Converted(Color::LinearDisplayP3ToDisplayP3, false, Colour(2.0f, -0.5f, kNaN));
    EXPECT_GT(p3.x, 1.3f);
    EXPECT_EQ(p3.y, -0.5f * 12.92f);
    EXPECT_TRUE(std::isnan(p3.z));
    for (const Colour& c : EdgeColours(200))
        for (const bool g : kFlags)
            EXPECT_TRUE(SameBits(Converted(Color::LinearDisplayP3ToDisplayP3, g, c), Encoded(g, false, c)));
}

TEST(SRGBToDisplayP3, ClampsInExtendedRangeToo)
{
    const Colour outside(-0.3f, 1.4f, 0.2f);
    for (const auto illuminant : kIlluminants)
        for (const bool g : kFlags) {
            const Colour p3 = Converted(Color::SRGBToDisplayP3, g, true, illuminant, outside);
            EXPECT_EQ(p3.y, 1.0f);
            for (int i = 0; i < 3; ++i)
                EXPECT_TRUE(p3[i] >= 0.0f && p3[i] <= 1.0f) << i;
        }
    for (const Colour& c : EdgeColours(200))
        for (const bool g : kFlags)
            for (const bool e : kFlags)
                EXPECT_TRUE(SameBits(
                    Converted(Color::SRGBToDisplayP3, g, e, eD50, c),
                    Converted(Color::XYZToDisplayP3, g, eD50, Converted(Color::SRGBToXYZ, g, e, eD50, c))));
}

TEST(DisplayP3ToSRGB, TakesOneCurveForBothSidesAndClampsUnlessInExtendedRange)
{
    for (const auto illuminant : kIlluminants)
        for (const Colour& c : EdgeColours(150))
            for (const bool g : kFlags)
                for (const bool e : kFlags)
                    EXPECT_TRUE(SameBits(Converted(Color::DisplayP3ToSRGB, g, e, illuminant, c),
                                         Converted(Color::XYZToSRGB, g, e, illuminant,
                                                   Converted(Color::DisplayP3ToXYZ, g, illuminant, c))));
    // P3's green lies outside sRGB: R is negative.
    const Colour green(0, 1, 0);
    EXPECT_LT(Converted(Color::DisplayP3ToSRGB, false, true, eD65, green).x, -0.4f);
    EXPECT_TRUE(SameBits(Converted(Color::DisplayP3ToSRGB, false, false, eD65, green).x, 0.0f));
}

// sRGB red in Display P3, as published: (0.9175, 0.2003, 0.1386), the matrices' own digits being good to
// 1e-4.
TEST(SRGBToDisplayP3, GivesThePublishedRed)
{
    ExpectNear(Converted(Color::SRGBToDisplayP3, false, false, eD65, Colour(1, 0, 0)),
               {0.9175f, 0.2003f, 0.1386f}, 2e-4f);
}

TEST(DisplayP3, ChainsTheConversionsOfXYZ)
{
    for (const Colour& c : EdgeColours(150))
        for (const auto illuminant : kIlluminants) {
            const auto through = [&](auto first, auto second) {
                return Converted(second, illuminant, Converted(first, illuminant, c));
            };
            EXPECT_TRUE(SameBits(Converted(Color::LinearDisplayP3ToIPT, illuminant, c),
                                 through(Color::LinearDisplayP3ToXYZ, Color::XYZToIPT)));
            EXPECT_TRUE(SameBits(Converted(Color::IPTToLinearDisplayP3, illuminant, c),
                                 through(Color::IPTToXYZ, Color::XYZToLinearDisplayP3)));
            for (const bool g : kFlags) {
                const Colour xyz = Converted(Color::DisplayP3ToXYZ, g, illuminant, c);
                EXPECT_TRUE(SameBits(Converted(Color::DisplayP3ToLab, g, illuminant, c),
                                     Converted(Color::XYZtoLab, illuminant, xyz)));
                EXPECT_TRUE(SameBits(Converted(Color::DisplayP3ToIPT, g, illuminant, c),
                                     Converted(Color::XYZToIPT, illuminant, xyz)));
                EXPECT_TRUE(SameBits(Converted(Color::LabToDisplayP3, g, illuminant, c),
                                     Converted(Color::XYZToDisplayP3, g, illuminant,
                                               Converted(Color::LabToXYZ, illuminant, c))));
                EXPECT_TRUE(SameBits(Converted(Color::IPTToDisplayP3, g, illuminant, c),
                                     Converted(Color::XYZToDisplayP3, g, illuminant,
                                               Converted(Color::IPTToXYZ, illuminant, c))));
            }
        }
}

TEST(DisplayP3ToLinearY, ClampsToTheUnitAndTakesNaNToZero)
{
    for (const auto illuminant : kIlluminants) {
        const auto Y = [&](const Colour& c) {
            return Measured(Color::LinearDisplayP3ToLinearY, illuminant, c);
        };
        EXPECT_EQ(Y({2, 2, 2}), 1.0f);
        EXPECT_TRUE(SameBits(Y({-1, 0, 0}), 0.0f));
        EXPECT_TRUE(SameBits(Y({kNaN, 1, 1}), 0.0f));
        EXPECT_EQ(Y({kInfinity, 0, 0}), 1.0f);
        EXPECT_EQ(Y({1, 0, 0}), Color::LinearDisplayP3LuminanceVec3(illuminant).x);
        EXPECT_TRUE(
            SameBits(Measured(Color::DisplayP3ToLinearY, true, illuminant, Colour(-0.5f, 1, 1)), 0.0f));
    }
}

TEST(DisplayP3ToDisplayP3Y, IgnoresItsSecondFlag)
{
    for (const Colour& c : EdgeColours(200))
        for (const auto illuminant : kIlluminants)
            for (const bool g : kFlags) {
                const float y = Measured(Color::DisplayP3ToDisplayP3Y, g, false, illuminant, c);
                EXPECT_TRUE(SameBits(Measured(Color::DisplayP3ToDisplayP3Y, g, true, illuminant, c), y));
                EXPECT_TRUE(y >= 0.0f && y <= 1.0f);
            }
}

// An extra: 2e-6 of the matrices, steepened by 12.92 near black.
TEST(DisplayP3, RoundTripsThroughExtendedSRGB)
{
    for (const auto illuminant : kIlluminants)
        for (const Colour& c : RandomColours(300))
            ExpectNear(Converted(Color::SRGBToDisplayP3, false, true, illuminant,
                                 Converted(Color::DisplayP3ToSRGB, false, true, illuminant, c)),
                       c, 7e-5f);
}
