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

Colour Decoded(bool useGamma22, bool extendedRange, const Colour& srgb)
{
    Colour linear;
    Color::NonlinearToLinearToneCurve(useGamma22, extendedRange, srgb, linear);
    return linear;
}

}   // namespace

TEST(Lab, AgreesWithTheReference)
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
        "Lab", {
                   {"XYZtoLab", illuminated(Color::XYZtoLab)},
                   {"LabToXYZ", illuminated(Color::LabToXYZ)},
                   {"LinearRGBToLab", illuminated(Color::LinearRGBToLab)},
                   {"LabToLinearRGB", flagged(Color::LabToLinearRGB)},
                   {"SRGBToLab", twiceFlagged(Color::SRGBToLab)},
                   {"LabToSRGB", twiceFlagged(Color::LabToSRGB)},
                   {"ExtendedRangeSRGBToLab", flagged(Color::ExtendedRangeSRGBToLab)},
                   {"LabToExtendedRangeSRGB", flagged(Color::LabToExtendedRangeSRGB)},
                   {"LabToLCh", [](Row r) { return List(Converted(Color::LabToLCh, r.ColourAt())); }},
                   {"LChSaturation", [](Row r) { return Numbers{Color::LChSaturation(r.ColourAt())}; }},
                   {"DeltaESquaredLinearRGBLinearRGB",
                    [](Row r) {
                        return Numbers{Color::DeltaESquaredLinearRGBLinearRGB(r.Illuminant(), r.ColourAt(0),
                                                                              r.ColourAt(1))};
                    }},
                   {"DeltaESquaredLinearRGBLab",
                    [](Row r) {
                        return Numbers{
                            Color::DeltaESquaredLinearRGBLab(r.Illuminant(), r.ColourAt(0), r.ColourAt(1))};
                    }},
               });
}

// The sRGB primaries in Lab under D65 as they are widely published (CIE scale, two decimals).
TEST(SRGBToLab, HasThePublishedPrimaries)
{
    const auto lab = [](const Colour& c) {
        return Converted(Color::SRGBToLab, false, false, eD65, c) * 100.0f;
    };
    constexpr float twoDecimals = 0.006f;
    ExpectNear(lab({1, 0, 0}), {53.24f, 80.09f, 67.20f}, twoDecimals);
    ExpectNear(lab({0, 1, 0}), {87.73f, -86.18f, 83.18f}, twoDecimals);
    ExpectNear(lab({0, 0, 1}), {32.30f, 79.19f, -107.86f}, twoDecimals);
}

TEST(XYZtoLab, TakesTheWhiteToOneAndBlackToZero)
{
    for (const auto illuminant : kIlluminants) {
        // X and Z over the white come to 1 within 1.3e-7, a third of which is in the root, five times in a.
        ExpectNear(Converted(Color::XYZtoLab, illuminant, Color::XYZReference(illuminant)), {1, 0, 0}, 4e-7f);
        EXPECT_TRUE(
            SameBits(Converted(Color::XYZtoLab, illuminant, Colour(0, 0, 0)),
                     Colour(1.16f * 0.13793103f - 0.16f < 0 ? 0.0f : 1.16f * 0.13793103f - 0.16f, 0, 0)));
    }
}

TEST(XYZtoLab, TakesTheLineAtTheThresholdItself)
{
    // Y alone reaches the threshold unrounded: the white's Y is 1.
    const auto lightness = [](float Y) { return Converted(Color::XYZtoLab, eD65, Colour(0, Y, 0)).x; };
    for (const float Y : {NextDown(0.008856f), 0.008856f})
        EXPECT_EQ(lightness(Y), 1.16f * (Y * 7.787f + 0.13793103f) - 0.16f);
    // The root differs from the line by 2e-8 there, about a unit in the last place of the root itself.
    const float above = NextUp(0.008856f);
    EXPECT_NEAR(lightness(above), 1.16f * std::cbrt(above) - 0.16f, 3e-8f);
}

TEST(XYZtoLab, ClampsLAndNothingElse)
{
    const Colour bright = Converted(Color::XYZtoLab, eD65, Colour(4.0f, 2.0f, 0.5f));
    EXPECT_EQ(bright.x, 1.0f);
    EXPECT_GT(bright.y, 1.0f);
    EXPECT_GT(bright.z, 0.9f);
    const Colour dark = Converted(Color::XYZtoLab, eD65, Colour(0.0f, -0.5f, 0.0f));
    EXPECT_TRUE(SameBits(dark.x, 0.0f));
    EXPECT_GT(dark.y, 1.0f);
    const Colour nan = Converted(Color::XYZtoLab, eD65, Colour(kNaN, kNaN, 0.5f));
    EXPECT_TRUE(SameBits(nan, Colour(0.0f, kNaN, kNaN)));
    const Colour infinite = Converted(Color::XYZtoLab, eD65, Colour(0.5f, kInfinity, 0.5f));
    EXPECT_TRUE(SameBits(infinite, Colour(1.0f, -kInfinity, kInfinity)));
}

TEST(LabToXYZ, ClampsNothing)
{
    EXPECT_GT(Converted(Color::LabToXYZ, eD50, Colour(1.5f, 0, 0)).y, 2.0f);
    EXPECT_LT(Converted(Color::LabToXYZ, eD50, Colour(-0.5f, 0, 0)).y, 0.0f);
    EXPECT_TRUE(SameBits(Converted(Color::LabToXYZ, eD50, Colour(kNaN, 0, 0)), Colour(kNaN, kNaN, kNaN)));
    EXPECT_TRUE(SameBits(Converted(Color::LabToXYZ, eD50, Colour(kInfinity, 0, 0)),
                         Colour(kInfinity, kInfinity, kInfinity)));
}

// s is fy; the cube of 0.20689 is 0.0088553, that of 0.2069 is 0.0088566: the threshold lies between.
TEST(LabToXYZ, ComparesTheCubeWithTheThreshold)
{
    const auto Y = [](float L) { return Converted(Color::LabToXYZ, eD65, Colour(L, 0, 0)).y; };
    for (const float L : {0.0799f, 0.08001f}) {
        const float s = (L + 0.16f) * 0.862069f;
        const bool isAbove = static_cast<double>(s) * s * s > 0.008856;
        EXPECT_EQ(isAbove, L > 0.08f);
        if (isAbove)
            EXPECT_NEAR(Y(L), s * s * s, 2e-9f);   // three roundings of 4.7e-10
        else
            EXPECT_EQ(Y(L), (s - 0.13793103f) * 0.12841916f);
    }
    // A negative cube is below the threshold, so a negative lightness stays on the line.
    EXPECT_EQ(Y(-1.0f), ((-1.0f + 0.16f) * 0.862069f - 0.13793103f) * 0.12841916f);
}

TEST(SRGBToLab, TakesItsFlagsInTheReverseOrder)
{
    for (const auto illuminant : kIlluminants)
        for (const bool extendedRange : kFlags)
            for (const bool useGamma22 : kFlags)
                for (const Colour& c : EdgeColours(100))
                    EXPECT_TRUE(SameBits(
                        Converted(Color::SRGBToLab, extendedRange, useGamma22, illuminant, c),
                        Converted(Color::LinearRGBToLab, illuminant, Decoded(useGamma22, extendedRange, c))));
    // The piecewise curve, mirrored; a power of 2.2 would leave NaN or another value.
    const Colour c(-0.2f, 0.3f, 0.4f);
    EXPECT_TRUE(SameBits(Converted(Color::SRGBToLab, true, false, eD65, c),
                         Converted(Color::LinearRGBToLab, eD65, Decoded(false, true, c))));
    EXPECT_FALSE(SameBits(Converted(Color::SRGBToLab, true, false, eD65, c),
                          Converted(Color::LinearRGBToLab, eD65, Decoded(true, true, c))));
}

TEST(LabToSRGB, ClampsTheLinearValuesInExtendedRangeToo)
{
    const Colour outside(0.6f, 1.2f, -0.4f);
    for (const auto illuminant : kIlluminants)
        for (const bool useGamma22 : kFlags) {
            const Colour linear = Converted(Color::LabToLinearRGB, true, illuminant, outside);
            ASSERT_GT(linear.x, 1.0f);
            ASSERT_LT(linear.y, 0.0f);
            Colour expected;
            Color::LinearToNonlinearToneCurve(useGamma22, true, Color::Clamp(linear, 0.0f, 1.0f), expected);
            for (const bool extendedRange : kFlags)
                EXPECT_TRUE(SameBits(
                    Converted(Color::LabToSRGB, useGamma22, extendedRange, illuminant, outside), expected));
        }
    EXPECT_TRUE(SameBits(Converted(Color::LabToSRGB, true, true, eD65, Colour(kNaN, 0, 0)), Colour(0, 0, 0)));
}

TEST(LabToLinearRGB, ClampsUnlessInExtendedRange)
{
    const Colour outside(0.6f, 1.2f, -0.4f);
    const Colour free = Converted(Color::LabToLinearRGB, true, eD65, outside);
    EXPECT_TRUE(
        SameBits(Converted(Color::LabToLinearRGB, false, eD65, outside), Color::Clamp(free, 0.0f, 1.0f)));
    EXPECT_TRUE(
        SameBits(Converted(Color::LabToLinearRGB, false, eD65, Colour(0.5f, kNaN, 0)), Colour(0, 0, 0)));
}

TEST(ExtendedRangeSRGBToLab, TakesTheD50MatrixUnderEitherWhite)
{
    for (const bool useGamma22 : kFlags)
        for (const Colour& c : EdgeColours(200)) {
            const Colour xyz = Converted(Color::LinearRGBToXYZ, eD50, Decoded(useGamma22, true, c));
            for (const auto illuminant : kIlluminants)
                EXPECT_TRUE(SameBits(Converted(Color::ExtendedRangeSRGBToLab, useGamma22, illuminant, c),
                                     Converted(Color::XYZtoLab, illuminant, xyz)));
        }
    // White is neutral under D50 and not under D65.
    const Colour white(1, 1, 1);
    ExpectNear(Converted(Color::ExtendedRangeSRGBToLab, false, eD50, white), {1, 0, 0},
               3e-4f);   // D50 of the matrix
    EXPECT_GT(Converted(Color::ExtendedRangeSRGBToLab, false, eD65, white).z, 0.1f);
}

TEST(LabToExtendedRangeSRGB, TakesTheD50MatrixAndClampsNothing)
{
    for (const bool useGamma22 : kFlags)
        for (const Colour& c : RandomColours(200, -1.0f, 2.0f))
            for (const auto illuminant : kIlluminants) {
                const Colour xyz = Converted(Color::LabToXYZ, illuminant, c);
                Colour expected;
                Color::LinearToNonlinearToneCurve(
                    useGamma22, true, Converted(Color::XYZToLinearRGB, true, eD50, xyz), expected);
                EXPECT_TRUE(
                    SameBits(Converted(Color::LabToExtendedRangeSRGB, useGamma22, illuminant, c), expected));
            }
    EXPECT_LT(Converted(Color::LabToExtendedRangeSRGB, true, eD50, Colour(0.6f, 1.2f, -0.4f)).y, 0.0f);
}

TEST(Lab, TakesAnyIlluminantButZeroForD65)
{
    for (const Colour& c : EdgeColours(200)) {
        const auto same = [&](auto conversion, const auto&... flags) {
            EXPECT_TRUE(SameBits(Converted(conversion, flags..., kOtherIlluminant, c),
                                 Converted(conversion, flags..., eD65, c)));
        };
        same(Color::XYZtoLab);
        same(Color::LabToXYZ);
        same(Color::LinearRGBToLab);
        for (const bool flag : kFlags) {
            same(Color::LabToLinearRGB, flag);
            same(Color::ExtendedRangeSRGBToLab, flag);
            same(Color::LabToExtendedRangeSRGB, flag);
            for (const bool second : kFlags) {
                same(Color::SRGBToLab, flag, second);
                same(Color::LabToSRGB, flag, second);
            }
        }
        EXPECT_TRUE(SameBits(Color::DeltaESquaredLinearRGBLab(kOtherIlluminant, c, Colour(0.5f, 0, 0)),
                             Color::DeltaESquaredLinearRGBLab(eD65, c, Colour(0.5f, 0, 0))));
    }
}

// atan2 of the four signs of zero, C17 F.10.1.4.
TEST(LabToLCh, MeasuresHueFromAToB)
{
    constexpr float pi = 3.14159265f;
    const auto hue = [](float a, float b) { return Converted(Color::LabToLCh, Colour(0.5f, a, b)).z; };
    EXPECT_TRUE(SameBits(hue(0.0f, 0.0f), 0.0f));
    EXPECT_TRUE(SameBits(hue(0.0f, -0.0f), -0.0f));
    EXPECT_EQ(hue(-0.0f, 0.0f), pi);
    EXPECT_EQ(hue(-0.3f, 0.0f), pi);
    EXPECT_EQ(hue(0.0f, 0.3f), pi / 2);
    EXPECT_EQ(hue(0.0f, -0.3f), -pi / 2);
    EXPECT_EQ(hue(kInfinity, 0.5f), 0.0f);
    EXPECT_TRUE(SameBits(Converted(Color::LabToLCh, Colour(0.5f, kNaN, 0.1f)), Colour(0.5f, kNaN, kNaN)));
    EXPECT_EQ(Converted(Color::LabToLCh, Colour(0.5f, 0.3f, kInfinity)).y, kInfinity);
    EXPECT_EQ(Converted(Color::LabToLCh, Colour(0.5f, -3.0f, 4.0f)).y, 5.0f);
}

TEST(LChSaturation, IsZeroForBlackAndForNaN)
{
    EXPECT_TRUE(SameBits(Color::LChSaturation({0, 0, 1}), 0.0f));
    EXPECT_TRUE(SameBits(Color::LChSaturation({kNaN, 0.5f, 0}), 0.0f));
    EXPECT_TRUE(SameBits(Color::LChSaturation({0.5f, kNaN, 0}), 0.0f));
    EXPECT_EQ(Color::LChSaturation({0, 0.5f, 0}), 1.0f);
    EXPECT_EQ(Color::LChSaturation({4, 3, 0}), 0.6f);
    // The squares underflow to 0.
    EXPECT_TRUE(SameBits(Color::LChSaturation({1e-30f, 1e-30f, 0}), 0.0f));
}

TEST(DeltaESquared, IsZeroForEqualColoursAndSymmetric)
{
    for (const auto illuminant : kIlluminants)
        for (const Colour& c : RandomColours(100)) {
            EXPECT_EQ(Color::DeltaESquaredLinearRGBLinearRGB(illuminant, c, c), 0.0f);
            const Colour d(c.z, c.x, c.y);
            EXPECT_EQ(Color::DeltaESquaredLinearRGBLinearRGB(illuminant, c, d),
                      Color::DeltaESquaredLinearRGBLinearRGB(illuminant, d, c));
            EXPECT_EQ(Color::DeltaESquaredLinearRGBLinearRGB(illuminant, c, d),
                      Color::DeltaESquaredLinearRGBLab(illuminant, c,
                                                       Converted(Color::LinearRGBToLab, illuminant, d)));
        }
    EXPECT_TRUE(std::isnan(Color::DeltaESquaredLinearRGBLab(eD65, {0, 0, 0}, {kNaN, 0, 0})));
}

TEST(Lab, LightnessNeverFallsWithLuminance)
{
    float last = 0.0f;
    for (int i = 0; i <= 20000; ++i) {
        const float Y = static_cast<float>(i) * 5e-5f;
        const float L = Converted(Color::XYZtoLab, eD65, Colour(0, Y, 0)).x;
        ASSERT_GE(L, last) << Y;
        last = L;
    }
    EXPECT_EQ(last, 1.0f);
}

// An extra, never the proof: 5e-6 of the matrices and references, steepened by 12.92 near black.
TEST(Lab, RoundTripsThroughEncodedSRGB)
{
    for (const auto illuminant : kIlluminants)
        for (const Colour& c : RandomColours(300))
            ExpectNear(Converted(Color::LabToSRGB, false, false, illuminant,
                                 Converted(Color::SRGBToLab, false, false, illuminant, c)),
                       c, 7e-5f);
}
