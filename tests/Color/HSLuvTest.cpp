// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>

#include "QZ/Foundation/Color/HSLuv.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

struct Reference {
    const char* hex;
    double L, C, H, saturation, pastelSaturation, maxChroma;
};

// The published algorithm in 50 digits. The largest chroma was found there by bisection on the RGB cube
// itself, the smallest from the distances of its sides, not from the six lines that the library uses.
constexpr Reference kReferences[] = {
    {"#FF0000", 53.23711559542936, 179.03809692362096, 12.177050630061153, 100.0, 426.74678918312826,
     179.03809692362092},
    {"#00FF00", 87.735519109660011, 135.78953199666872, 127.71501294924306, 100.0, 490.14537506371933,
     135.78953199666872},
    {"#0000FF", 32.300872903980177, 130.68975298582811, 265.87432021817733, 100.0, 513.41269684428289,
     130.68975298582811},
    {"#FFFF00", 97.138559341796998, 107.08560884691793, 85.874320218177326, 100.0, 1784.2359183569504,
     107.08560884691791},
    {"#00FFFF", 91.114752316705357, 72.086288264974291, 192.17705063006116, 100.0, 369.19053391709149,
     72.086288264974272},
    {"#FF00FF", 60.322731354551388, 137.40540053789747, 307.71501294924306, 100.0, 289.04278373048496,
     137.40540053789746},
    {"#FF8000", 67.052528723005953, 122.56154191754538, 30.106974727743056, 100.0, 231.94145741218046,
     122.56154191754537},
    {"#123456", 21.042472421009519, 29.694107194959005, 248.60938776939491, 85.433285696327673,
     179.06587608614016, 34.757070330300311},
    {"#804020", 34.723557409987929, 55.015633514231529, 27.165229233949173, 80.672041796109299,
     201.04868311873158, 68.196654366674103},
    {"#C0FFEE", 95.53768583796169, 31.90636013413469, 167.92237136321785, 100.0, 336.80627486939971,
     31.906360134134713},
    {"#010203", 0.50984265684062886, 0.30569932461394635, 235.43506295811209, 50.58497130872896,
     76.084753359430019, 0.60432835426199948},
    {"#7F8081", 53.530471331426928, 1.0983928735145907, 235.63912742735633, 1.7241527477978216,
     2.6037301118287579, 63.70623919009007},
    {"#FEDCBA", 89.768096816306303, 37.041940037504195, 51.136740066836015, 96.128554232549761,
     162.96350469729268, 38.533753402650834},
    {"#330033", 8.5066574695002182, 19.376786338889537, 307.71501294924306, 100.0, 289.04278373048496,
     19.376786338889534},
};

// The constants have 16 digits, a saturation magnifies their error by up to 20: 1e-9 of 100 percent.
constexpr double kTolerance = 1e-9;

Tuple Color(const char* hex)
{
    Tuple rgb{};
    EXPECT_TRUE(hexToRgb(hex, &rgb.a, &rgb.b, &rgb.c));
    return rgb;
}

using Conversion = void (*)(double, double, double, double*, double*, double*);
Tuple Converted(Conversion conversion, const Tuple& in)
{
    Tuple out{};
    conversion(in.a, in.b, in.c, &out.a, &out.b, &out.c);
    return out;
}

void ExpectSame(const Tuple& actual, const Tuple& expected)
{
    EXPECT_EQ(actual.a, expected.a);
    EXPECT_EQ(actual.b, expected.b);
    EXPECT_EQ(actual.c, expected.c);
}
void ExpectNear(const Tuple& actual, const Tuple& expected, double tolerance)
{
    EXPECT_NEAR(actual.a, expected.a, tolerance);
    EXPECT_NEAR(actual.b, expected.b, tolerance);
    EXPECT_NEAR(actual.c, expected.c, tolerance);
}

}   // namespace

TEST(HSLuv, FollowsThePublishedAlgorithm)
{
    for (const Reference& r : kReferences) {
        SCOPED_TRACE(r.hex);
        const Tuple rgb = Color(r.hex);
        ExpectNear(luvToLch(xyzToLuv(rgbToXyz(rgb))), {r.L, r.C, r.H}, kTolerance);
        ExpectNear(Converted(rgbToHusl, rgb), {r.H, r.saturation, r.L}, kTolerance);
        ExpectNear(Converted(rgbToHuslp, rgb), {r.H, r.pastelSaturation, r.L}, 20 * kTolerance);
        EXPECT_NEAR(maxChromaForLH(r.L, r.H), r.maxChroma, kTolerance);
    }
}

TEST(HSLuv, ComesBackToTheColorItStartedFrom)
{
    for (const Reference& r : kReferences) {
        SCOPED_TRACE(r.hex);
        const Tuple rgb = Color(r.hex);
        ExpectNear(Converted(huslToRgb, {r.H, r.saturation, r.L}), rgb, kTolerance);
        ExpectNear(Converted(huslpToRgb, {r.H, r.pastelSaturation, r.L}), rgb, kTolerance);
    }
}

TEST(HSLuv, IsTheChainOfItsSteps)
{
    for (const Reference& r : kReferences) {
        SCOPED_TRACE(r.hex);
        const Tuple rgb = Color(r.hex);
        const Tuple lch = luvToLch(xyzToLuv(rgbToXyz(rgb)));
        ExpectSame(Converted(rgbToHusl, rgb), lchToHusl(lch));
        ExpectSame(Converted(rgbToHuslp, rgb), lchToHuslp(lch));
        const Tuple hsl{r.H, 80.0, r.L};
        ExpectSame(Converted(huslToRgb, hsl), xyzToRgb(luvToXyz(lchToLuv(huslToLch(hsl)))));
        ExpectSame(Converted(huslpToRgb, hsl), xyzToRgb(luvToXyz(lchToLuv(huslpToLch(hsl)))));
    }
}

TEST(HSLuv, GivesWhiteAndBlackNoSaturation)
{
    for (const Conversion conversion : {rgbToHusl, rgbToHuslp}) {
        const Tuple white = Converted(conversion, {1, 1, 1});
        EXPECT_NEAR(white.c, 100.0, kTolerance);   // 16-digit matrix rows that sum to 1
        EXPECT_EQ(white.b, 0.0);
        ExpectSame(Converted(conversion, {0, 0, 0}), {0, 0, 0});
    }
}

TEST(HSLuv, KeepsTheLightnessOfBlackAndWhiteAsItIs)
{
    for (const auto toLch : {huslToLch, huslpToLch}) {
        ExpectSame(toLch({120, 50, 100}), {100, 0, 120});
        ExpectSame(toLch({120, 50, 99.99999995}), {99.99999995, 0, 120});
        ExpectSame(toLch({120, 50, 5e-9}), {5e-9, 0, 120});
        ExpectSame(toLch({120, 50, -3}), {-3, 0, 120});
        EXPECT_GT(toLch({120, 50, 99.9999999}).b, 0.0);
        EXPECT_GT(toLch({120, 50, 1e-8}).b, 0.0);
    }
    for (const auto toHsl : {lchToHusl, lchToHuslp}) {
        ExpectSame(toHsl({100, 50, 120}), {120, 0, 100});
        ExpectSame(toHsl({5e-9, 50, 120}), {120, 0, 5e-9});
        EXPECT_GT(toHsl({99.9999999, 50, 120}).b, 0.0);
        EXPECT_GT(toHsl({1e-8, 50, 120}).b, 0.0);
    }
}

TEST(HSLuv, GivesGreysTheHueZero)
{
    for (const auto toLch : {huslToLch, huslpToLch}) {
        ExpectSame(toLch({120, 0, 50}), {50, 0, 0});
        EXPECT_EQ(toLch({120, 9e-9, 50}).c, 0.0);
        EXPECT_EQ(toLch({120, 1e-8, 50}).c, 120.0);
    }
    for (const auto toHsl : {lchToHusl, lchToHuslp}) {
        EXPECT_EQ(toHsl({50, 9e-9, 120}).a, 0.0);
        EXPECT_EQ(toHsl({50, 1e-8, 120}).a, 120.0);
    }
    EXPECT_EQ(luvToLch({50, 6e-9, 6e-9}).c, 0.0);
}

TEST(HSLuv, MeasuresTheHueFromZeroTo360)
{
    ExpectSame(luvToLch({50, 3, 4}), {50, 5, std::atan2(4.0, 3.0) * 360.0 * 0.5 / M_PI});
    EXPECT_EQ(luvToLch({50, -1, 0}).c, 180.0);
    EXPECT_EQ(luvToLch({50, 0, -1}).c, 270.0);
    EXPECT_EQ(luvToLch({50, 1, -0.0}).c, 0.0);
    ExpectNear(lchToLuv({50, 2, 90}), {50, 0, 2}, 1e-15);   // pi is rounded
}

TEST(HSLuv, PassesNaNThrough)
{
    EXPECT_TRUE(std::isnan(fromLinear(kNaN)));
    EXPECT_TRUE(std::isnan(toLinear(kNaN)));
    EXPECT_TRUE(std::isnan(yToL(kNaN)));
    EXPECT_TRUE(std::isnan(lToY(kNaN)));
    EXPECT_TRUE(std::isnan(xyzToLuv({kNaN, 1, 1}).b));
    EXPECT_TRUE(std::isnan(luvToXyz({kNaN, 1, 1}).a));
    EXPECT_EQ(huslToLch({120, 50, kNaN}).b, 0.0);
    EXPECT_EQ(maxChromaForLH(kNaN, 120), kLargest);
    EXPECT_EQ(maxSafeChromaForL(kNaN), kLargest);
}

TEST(HSLuvCurve, TakesTheLineAtTheThresholdItself)
{
    EXPECT_EQ(fromLinear(0.0031308), 12.92 * 0.0031308);
    EXPECT_EQ(fromLinear(-1.0), -12.92);
    EXPECT_EQ(toLinear(0.04045), 0.04045 / 12.92);
    EXPECT_EQ(toLinear(-1.0), -1.0 / 12.92);
    // IEC 61966-2-1:1999 in 50 digits; one rounding of the base, one of the power.
    EXPECT_NEAR(fromLinear(0.5), 0.73535698305244949, 1e-15);
    EXPECT_NEAR(toLinear(0.5), 0.21404114048223244, 2e-16);
}

TEST(HSLuvLightness, TakesTheLineAtTheThresholdItself)
{
    EXPECT_EQ(yToL(epsilon), epsilon * kappa);
    EXPECT_EQ(yToL(-1.0), -kappa);
    EXPECT_NEAR(yToL(0.18), 49.496107610119583, 1e-13);   // 116 * cbrt(0.18) - 16
    EXPECT_EQ(lToY(8.0), 8.0 / kappa);
    EXPECT_EQ(lToY(-8.0), -8.0 / kappa);
    EXPECT_EQ(lToY(100.0), 1.0);
}

// Lightnesses for which rounding after each of two multiplications gives another last digit. The cubes in 60
// digits, rounded once.
TEST(HSLuvLightness, CubesWithOneRounding)
{
    constexpr double cases[][2] = {
        {0x1.aca3e5ba02300p+5, 0x1.b9fcbf25a4c9ep-3}, {0x1.0fc9455176594p+6, 0x1.841788089beb8p-2},
        {0x1.537478f8bd9c5p+3, 0x1.8b77bf5e7f676p-7}, {0x1.7e843d67e2612p+5, 0x1.54f831132c137p-3},
        {0x1.799b5d448968fp+6, 0x1.b9641d766c374p-1}, {0x1.bed595824db0dp+4, 0x1.bcd9f0e26fdd6p-5},
        {0x1.76ad8446c747cp+5, 0x1.4580cbb095c47p-3}, {0x1.d719adf79bdf5p+4, 0x1.ec89849314592p-5},
    };
    for (const auto& [L, Y] : cases)
        EXPECT_EQ(lToY(L), Y) << L;
    EXPECT_EQ(lToY(1e200), std::numeric_limits<double>::infinity());
    EXPECT_EQ(lToY(std::numeric_limits<double>::infinity()), std::numeric_limits<double>::infinity());
}

TEST(HSLuvXYZ, HasTheBlackOfEachSpace)
{
    ExpectSame(xyzToLuv({0.5, 0.0, 0.5}), {0, 0, 0});
    ExpectSame(luvToXyz({0.0, 30.0, -20.0}), {0, 0, 0});
}

TEST(HSLuvXYZ, IsNotClamped)
{
    EXPECT_GT(xyzToRgb({1, 0.2, 0.2}).a, 1.0);
    EXPECT_LT(xyzToRgb({1, 0.2, 0.2}).b, 0.0);
}

TEST(HSLuvXYZ, IsThePublishedMatrixOfLinearLight)
{
    EXPECT_EQ(m[0][0], 3.2409699419045213);
    EXPECT_EQ(m[1][0], -0.9692436362808798);
    EXPECT_EQ(m[2][2], 1.0569715142428786);
    EXPECT_EQ(refU, 0.19783000664283681);
    EXPECT_EQ(refV, 0.468319994938791);
    EXPECT_EQ(kappa, 903.2962962962963);
    EXPECT_EQ(epsilon, 0.008856451679035631);
    ExpectSame(rgbToXyz({1, 0, 0}), {0.4123907992659595, 0.21263900587151036, 0.01933081871559185});
    ExpectSame(rgbToXyz({0, 1, 0}), {0.35758433938387796, 0.7151686787677559, 0.11919477979462599});
    ExpectSame(rgbToXyz({0, 0, 1}), {0.1804807884018343, 0.07219231536073371, 0.9505321522496606});
    EXPECT_EQ(tupleDotProduct({1, 2, 3}, {4, 5, 6}), 32.0);
}

TEST(HSLuvGamut, HasTheSidesOfTheCube)
{
    for (const double L : {3.0, 8.0, 42.0, 97.0}) {
        const std::unique_ptr<GamutLine[], decltype(&std::free)> lines(getBounds(L), &std::free);
        ASSERT_NE(lines, nullptr);
        for (std::size_t side = 0; side < 6; ++side) {
            for (const double u : {-50.0, 0.0, 30.0}) {
                const Tuple rgb = xyzToRgb(luvToXyz({L, u, lines[side].slope * u + lines[side].intercept}));
                const double channels[] = {rgb.a, rgb.b, rgb.c};
                // Encoded near 0 an error of 1e-14 of linear light is 1e-13; far out of gamut more.
                EXPECT_NEAR(channels[side / 2], static_cast<double>(side % 2), 1e-11)
                    << L << ' ' << side << ' ' << u;
            }
        }
    }
}

TEST(HSLuvGamut, IsAtEveryHueAtLeastAsWideAsTheSafeChroma)
{
    for (double L = 0.5; L < 100.0; L += 0.5)
        for (double H = 0.0; H < 360.0; H += 1.5)
            ASSERT_LE(maxSafeChromaForL(L), maxChromaForLH(L, H) * (1 + 1e-12)) << L << ' ' << H;
}

// Distances of the six sides, solved in 50 digits.
TEST(HSLuvGamut, HasASafeChromaForEachLightness)
{
    EXPECT_NEAR(maxSafeChromaForL(1), 0.78806252071085955, kTolerance);
    EXPECT_NEAR(maxSafeChromaForL(8), 6.3045001656868764, kTolerance);
    EXPECT_NEAR(maxSafeChromaForL(50), 39.403126035542978, kTolerance);
    EXPECT_NEAR(maxSafeChromaForL(75), 59.104689053314466, kTolerance);
    EXPECT_NEAR(maxSafeChromaForL(99), 2.0688092654469228, kTolerance);
}

TEST(HSLuvGamut, MeetsItsLinesWherePlaneGeometrySays)
{
    EXPECT_EQ(intersectLineLine(1, 0, -1, 4), 2.0);
    EXPECT_EQ(intersectLineLine(2, 1, 2, 5), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(distanceFromPole(3, -4), 5.0);
    EXPECT_EQ(lengthOfRayUntilIntersect(0, -1, 2), 2.0);                // the line v = 2 - u along u
    EXPECT_NEAR(lengthOfRayUntilIntersect(M_PI_2, 7, 3), 3.0, 1e-14);   // pi is rounded
    EXPECT_NEAR(lengthOfRayUntilIntersect(-M_PI_2, 7, 3), -3.0, 1e-14);
}

TEST(HSLuvRange, ClampsToTheUnitInterval)
{
    EXPECT_EQ(checkBorders(-0.1), 0.0);
    EXPECT_EQ(checkBorders(0.25), 0.25);
    EXPECT_EQ(checkBorders(1.5), 1.0);
    EXPECT_EQ(checkBorders(kNaN), 1.0);
}
