// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

namespace {

constexpr Color::EIlluminant eD50 = Color::eD50;
constexpr Color::EIlluminant eD65 = Color::eD65;
const Matrix kIdentity(1, 0, 0, 0, 1, 0, 0, 0, 1);

void ExpectMatrix(const Matrix& actual, const Matrix& expected, float tolerance)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_NEAR(actual(row, column), expected(row, column), tolerance) << row << ", " << column;
}

Matrix HueRotation(bool luma, bool extendedRange, Color::EIlluminant illuminant, float angle,
                   bool useHaeberli)
{
    Matrix out = kIdentity;
    Color::HaeberliHueRotationMatrix(luma, extendedRange, illuminant, angle, useHaeberli, out);
    return out;
}
Matrix Saturation(bool luma, bool extendedRange, Color::EIlluminant illuminant, float saturation)
{
    Matrix out;
    Color::HaeberliSaturationMatrix(luma, extendedRange, illuminant, saturation, out);
    return out;
}
Matrix YIQRotation(float angle)
{
    Matrix out;
    Color::YIQHueRotation(angle, out);
    return out;
}
Colour Complementary(const Colour& rgb)
{
    return Converted(Color::ComplementaryColor, rgb);
}

Color::sInsomniacGamesToneCurve CurveOf(const std::vector<float>& in)
{
    return {in.at(0), in.at(1), in.at(2), in.at(3), in.at(4)};
}

Numbers Coefficients(const Color::sInsomniacGamesToneCurve& curve)
{
    QZ::Math::CVector4<float> toe;
    QZ::Math::CVector4<float> shoulder;
    Color::ToneCurveCoefficientsInsomniacGames(curve, toe, shoulder);
    return {toe.x, toe.y, toe.z, toe.w, shoulder.x, shoulder.y, shoulder.z, shoulder.w};
}

constexpr Color::sInsomniacGamesToneCurve kCurve = {0.05f, 0.5f, 0.3f, 0.8f, 4.0f};

}   // namespace

TEST(Adjustments, AgreeWithTheReference)
{
    using Row = const ReferenceRow&;
    ExpectReference(
        "Adjustments",
        {
            {"ComplementaryColor", [](Row r) { return List(Complementary(r.ColourAt())); }},
            {"HaeberliSaturationMatrix",
             [](Row r) { return List(Saturation(r.Flag(0), r.Flag(1), r.Illuminant(), r.in[0])); }},
            {"HaeberliHueRotationMatrix",
             [](Row r) {
                 const auto illuminant = static_cast<Color::EIlluminant>(r.flags[2]);
                 return List(HueRotation(r.Flag(0), r.Flag(1), illuminant, r.in[0], r.Flag(3)));
             }},
            {"YIQHueRotation", [](Row r) { return List(YIQRotation(r.in[0])); }},
            {"ColorCorrectionMethodPouli",
             [](Row r) {
                 return List(Color::ColorCorrectionMethodPouli(r.Flag(0), r.Flag(1), r.Illuminant(),
                                                               r.ColourAt(0), r.ColourAt(1)));
             }},
            {"ToneCurveModifiedHable",
             [](Row r) {
                 return Numbers{Color::ToneCurveModifiedHable(r.in[0], r.in[1], r.in[2], r.in[3], r.in[4])};
             }},
            {"ToneCurveInsomniacGames",
             [](Row r) {
                 return Numbers{Color::ToneCurveInsomniacGames(CurveOf(r.in), r.Flag(0), r.in[5])};
             }},
            {"ToneCurveCoefficientsInsomniacGames", [](Row r) { return Coefficients(CurveOf(r.in)); }},
            {"Highlights",
             // The table holds values before truncation: an entry stands for its own where that truncates to
             // it.
             [](Row r) {
                 std::vector<unsigned char> lut;
                 Color::Highlights(r.in[0], r.in[1], lut);
                 Numbers numbers(lut.begin(), lut.end());
                 for (std::size_t i = 0; i < std::min(numbers.size(), r.expected.size()); ++i)
                     if (std::floor(r.expected[i] + r.bound[i]) >= lut[i] &&
                         std::floor(r.expected[i] - r.bound[i]) <= lut[i])
                         numbers[i] = static_cast<float>(r.expected[i]);
                 return numbers;
             }},
        });
}

TEST(ComplementaryColor, OfRedIsCyan)
{
    EXPECT_TRUE(SameBits(Complementary({1, 0, 0}), Colour(0, 1, 1)));
    EXPECT_TRUE(SameBits(Complementary({0, 1, 1}), Colour(1, 0, 0)) || Complementary({0, 1, 1}).x == 1.0f);
}

TEST(ComplementaryColor, OfAGreyIsTheSameGrey)
{
    for (const float v : {0.0f, 0.25f, 0.7f, 1.0f})
        EXPECT_TRUE(SameBits(Complementary({v, v, v}), Colour(v, v, v)));
}

// The hue turns by exactly a half, so that each component is mirrored between the smallest and the largest.
TEST(ComplementaryColor, MirrorsEachComponentBetweenTheExtremes)
{
    for (const Colour& c : RandomColours(500)) {
        const float ends = std::max({c.x, c.y, c.z}) + std::min({c.x, c.y, c.z});
        const Colour out = Complementary(c);
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(out[i], ends - c[i], 1e-6f);   // a hue over six and back
    }
}

TEST(HaeberliBrightnessMatrix, IsADiagonal)
{
    Matrix out(9, 9, 9, 9, 9, 9, 9, 9, 9);
    Color::HaeberliBrightnessMatrix({2, -3, kNaN}, out);
    EXPECT_TRUE(SameBits(out(2, 2), kNaN));
    out(2, 2) = 4;
    ExpectMatrix(out, Matrix(2, 0, 0, 0, -3, 0, 0, 0, 4), 0.0f);
}

TEST(HaeberliSaturationMatrix, IsTheIdentityForOneAndGreyForNothing)
{
    for (const bool luma : kFlags)
        for (const bool extendedRange : kFlags)
            for (const auto illuminant : kIlluminants) {
                ExpectMatrix(Saturation(luma, extendedRange, illuminant, 1.0f), kIdentity, 0.0f);
                const Colour w = Color::RGBLuminanceVec3(luma, extendedRange, illuminant);
                ExpectMatrix(Saturation(luma, extendedRange, illuminant, 0.0f),
                             Matrix(w.x, w.x, w.x, w.y, w.y, w.y, w.z, w.z, w.z), 0.0f);
            }
}

// For row vectors: a grey column sum is 1, and the transposed matrix keeps the luminance of a column.
TEST(HaeberliSaturationMatrix, KeepsTheLuminanceOfARowVector)
{
    for (const float s : {-1.0f, 0.3f, 2.5f}) {
        Matrix m = Saturation(false, false, eD65, s);
        const Colour w = Color::RGBLuminanceVec3(false, false, eD65);
        m.Transpose();
        for (const Colour& c : RandomColours(50))
            EXPECT_NEAR(w.Dot(m * c), w.Dot(c), 1e-6f);   // weights that sum to 1 + 1e-7, and roundings
    }
}

TEST(HaeberliHueRotationMatrix, IsTheIdentityForNoAngle)
{
    for (const bool useHaeberli : kFlags)
        for (const bool luma : kFlags)   // a product of eight matrices with elements up to 1.7
            ExpectMatrix(HueRotation(luma, false, eD65, 0.0f, useHaeberli), kIdentity,
                         useHaeberli ? 2e-6f : 0.0f);
}

TEST(HaeberliHueRotationMatrix, KeepsGreysAndPermutesTheChannelsByAThirdOfATurn)
{
    constexpr float third = 2.09439510f;
    ExpectMatrix(HueRotation(false, false, eD65, third, false), Matrix(0, 0, 1, 1, 0, 0, 0, 1, 0), 3e-7f);
    for (const float angle : Randoms(20, -7.0f, 7.0f))
        for (const bool useHaeberli : kFlags) {
            const Colour grey =
                HueRotation(false, false, eD65, angle, useHaeberli) * Colour(0.5f, 0.5f, 0.5f);
            for (int i = 0; i < 3; ++i)
                EXPECT_NEAR(grey[i], 0.5f, 2e-6f);
        }
}

TEST(HaeberliHueRotationMatrix, KeepsLuminanceByItsShear)
{
    for (const bool luma : kFlags)
        for (const bool extendedRange : kFlags)
            for (const auto illuminant : kIlluminants)
                for (const float angle : Randoms(10, -7.0f, 7.0f)) {
                    const Matrix m = HueRotation(luma, extendedRange, illuminant, angle, true);
                    const Colour w = Color::RGBLuminanceVec3(luma, extendedRange, illuminant);
                    for (const Colour& c : RandomColours(20))
                        EXPECT_NEAR(w.Dot(m * c), w.Dot(c), 2e-6f);   // as for the identity above
                }
    // The plain rotation does not.
    const Colour w = Color::RGBLuminanceVec3(false, false, eD65);
    EXPECT_GT(std::fabs(w.Dot(HueRotation(false, false, eD65, 1.0f, false) * Colour(0, 1, 0)) - w.y), 0.1f);
}

TEST(HaeberliHueRotationMatrix, AsAPlainRotationDoesNotReadTheWeights)
{
    const Matrix m = HueRotation(false, false, eD50, 0.7f, false);
    for (const bool luma : kFlags)
        for (const auto illuminant : kIlluminants)
            ExpectMatrix(HueRotation(luma, true, illuminant, 0.7f, false), m, 0.0f);
}

TEST(HaeberliHueRotationMatrix, OfNaNIsNaN)
{
    for (const bool useHaeberli : kFlags)
        EXPECT_TRUE(std::isnan(HueRotation(false, false, eD65, kNaN, useHaeberli)(0, 0)));
}

// T^-1 T of the rounded matrices, worked by hand to six decimals.
TEST(YIQHueRotation, IsCloseToTheIdentityForNoAngleAndNotThere)
{
    const Matrix m = YIQRotation(0.0f);
    ExpectMatrix(m, kIdentity, 1.5e-3f);
    EXPECT_NEAR(m(0, 0), 0.299f + 0.956f * 0.596f + 0.621f * 0.211f, 1e-6f);
    EXPECT_NE(m(0, 0), 1.0f);
}

TEST(YIQHueRotation, KeepsLumaAndComesAroundInAFullTurn)
{
    const Colour w(0.299f, 0.587f, 0.114f);
    for (const float angle : Randoms(20, -7.0f, 7.0f)) {
        const Matrix m = YIQRotation(angle);
        for (const Colour& c : RandomColours(10))
            EXPECT_NEAR(w.Dot(m * c), w.Dot(c), 1e-3f);            // the matrices' three decimals
        ExpectMatrix(YIQRotation(angle + 6.2831853f), m, 4e-6f);   // the sum's rounding turns by up to 1e-6
    }
}

TEST(Highlights, HasBlackAtTheBottomAndWhiteAtTheTop)
{
    for (int a = 1; a < 40; ++a)
        for (int b = 1; b < 40; ++b) {
            std::vector<unsigned char> lut(a * b % 2 == 0 ? 1000 : 3, 77);
            Color::Highlights(static_cast<float>(a) / 40, static_cast<float>(b) / 40, lut);
            ASSERT_EQ(lut.size(), 256u);
            EXPECT_EQ(lut[0], 0) << a << ", " << b;
            EXPECT_EQ(lut[255], 255) << a << ", " << b;
        }
}

// Below the band the weight of the bend is under 0.006, at most 1.5 levels.
TEST(Highlights, LeavesWhatIsBelowTheBand)
{
    std::vector<unsigned char> lut;
    Color::Highlights(0.4f, 0.25f, lut);
    for (int i = 0; i < 190; ++i)
        EXPECT_NEAR(lut[static_cast<std::size_t>(i)], i, 2) << i;
    EXPECT_LT(lut[235], 235);
    EXPECT_TRUE(std::is_sorted(lut.begin(), lut.end()));
}

TEST(Highlights, IsBlackThroughoutForAStrengthOfOne)
{
    std::vector<unsigned char> lut(256, 9);
    Color::Highlights(1.0f, 0.5f, lut);
    EXPECT_EQ(lut, std::vector<unsigned char>(256, 0));
}

TEST(Highlights, TakesParametersOutsideItsRangeWithoutHarm)
{
    for (const float a : {0.0f, 1.0f, -1.0f, 2.0f, kNaN, kInfinity, -kInfinity, kSmallestSubnormal})
        for (const float b : {0.0f, 1.0f, -1.0f, 2.0f, kNaN, kInfinity, -kInfinity, kSmallestSubnormal}) {
            std::vector<unsigned char> lut;
            Color::Highlights(a, b, lut);
            EXPECT_EQ(lut.size(), 256u);
        }
    std::vector<unsigned char> lut(256, 9);
    Color::Highlights(kNaN, 0.5f, lut);
    EXPECT_EQ(lut, std::vector<unsigned char>(256, 0));
}

TEST(ColorCorrectionMethodPouli, KeepsTheTargetsIntensityAndTakesTheReferencesHue)
{
    for (const auto illuminant : kIlluminants) {
        const Colour reference(0.5f, 0.3f, 0.25f);
        const Colour target(0.3f, 0.35f, 0.4f);
        const Colour out = Color::ColorCorrectionMethodPouli(false, false, illuminant, reference, target);
        const Colour ich = Converted(Color::LinearRGBToICH, illuminant, out);
        // Through IPT and back: 1e-5 of the matrices.
        EXPECT_NEAR(ich.x, Converted(Color::LinearRGBToICH, illuminant, target).x, 2e-5f);
        EXPECT_NEAR(ich.z, Converted(Color::LinearRGBToICH, illuminant, reference).z, 5e-4f);
    }
}

// With s the target's chroma at the reference's intensity: C = C1 sqrt(I2^2 + s^2) / sqrt(I1^2 + C1^2).
TEST(ColorCorrectionMethodPouli, ScalesTheChromaByTheRatioOfTheSaturations)
{
    const Colour reference(0.5f, 0.3f, 0.25f);
    const Colour target(0.3f, 0.35f, 0.4f);
    const Colour one = Converted(Color::LinearRGBToICH, eD65, reference);
    const Colour two = Converted(Color::LinearRGBToICH, eD65, target);
    const float scaled = two.y * one.x / two.x;
    const float expected = one.y * std::hypot(two.x, scaled) / std::hypot(one.x, one.y);
    const Colour out = Color::ColorCorrectionMethodPouli(false, false, eD65, reference, target);
    EXPECT_NEAR(Converted(Color::LinearRGBToICH, eD65, out).y, expected, 5e-5f);   // the matrices' digits
}

TEST(ColorCorrectionMethodPouli, IsBlackForABlackTargetOrReference)
{
    const Colour c(0.5f, 0.3f, 0.25f);
    const Colour black(0, 0, 0);
    for (const bool nonlinear : kFlags)
        for (const bool extendedRange : kFlags)
            for (const auto illuminant : kIlluminants) {
                EXPECT_TRUE(SameBits(
                    Color::ColorCorrectionMethodPouli(nonlinear, extendedRange, illuminant, c, black),
                    black));
                EXPECT_TRUE(SameBits(
                    Color::ColorCorrectionMethodPouli(nonlinear, extendedRange, illuminant, black, c),
                    black));
                EXPECT_TRUE(SameBits(Color::ColorCorrectionMethodPouli(nonlinear, extendedRange, illuminant,
                                                                       c, {kNaN, 0.5f, 0.5f}),
                                     black));
            }
}

// A grey in IPT seldom has a chroma of exactly 0: it takes so little light that the cone responses are equal.
TEST(ColorCorrectionMethodPouli, IsBlackForATargetWithoutChroma)
{
    const Colour dim = Colour(12, 12, 14) * kSmallestSubnormal;
    const Colour ipt = Converted(Color::XYZToIPT, eD50, Converted(Color::LinearRGBToXYZ, eD50, dim));
    ASSERT_TRUE(ipt.x > 0.0f && ipt.y == 0.0f && ipt.z == 0.0f);
    EXPECT_TRUE(SameBits(Color::ColorCorrectionMethodPouli(false, true, eD50, {0.5f, 0.2f, 0.1f}, dim),
                         Colour(0, 0, 0)));
}

TEST(ColorCorrectionMethodPouli, ClampsInExtendedRangeTooAndTakesThePiecewiseCurve)
{
    for (const Colour& c : RandomColours(200, -0.5f, 2.0f)) {
        const Colour reference(c.z, c.x, c.y);
        const Colour linear = Color::ColorCorrectionMethodPouli(false, true, eD65, reference, c);
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(linear[i] >= 0.0f && linear[i] <= 1.0f);
        // Encoded in, encoded out: the same as decoding and encoding by hand.
        for (const bool extendedRange : kFlags) {
            Colour decodedReference;
            Colour decoded;
            Color::NonlinearToLinearToneCurve(false, extendedRange, reference, decodedReference);
            Color::NonlinearToLinearToneCurve(false, extendedRange, c, decoded);
            Colour expected;
            Color::LinearToNonlinearToneCurve(
                false, extendedRange,
                Color::ColorCorrectionMethodPouli(false, extendedRange, eD65, decodedReference, decoded),
                expected);
            EXPECT_TRUE(SameBits(Color::ColorCorrectionMethodPouli(true, extendedRange, eD65, reference, c),
                                 expected));
        }
    }
}

TEST(GrayscaleHistogramEqualization, TakesAConstantImageToWhiteAndLeavesOtherChannels)
{
    for (int offset = 0; offset < 4; ++offset) {
        std::vector<unsigned char> data(4 * 6, 100);
        Color::GrayscaleHistogramEqualization(3, 2, 4, offset, data.data());
        for (int i = 0; i < 24; ++i)
            EXPECT_EQ(data[static_cast<std::size_t>(i)], i % 4 == offset ? 255 : 100) << i;
    }
}

// Four levels of a quarter each: 63.75, 127.5, 191.25 and 255, rounded by adding a half.
TEST(GrayscaleHistogramEqualization, SpreadsTheLevelsByTheirRank)
{
    std::vector<unsigned char> data = {10, 11, 200, 12};
    Color::GrayscaleHistogramEqualization(2, 2, 1, 0, data.data());
    EXPECT_EQ(data, (std::vector<unsigned char>{64, 128, 255, 191}));
}

TEST(GrayscaleHistogramEqualization, OfAUniformHistogramIsNearlyTheIdentity)
{
    std::vector<unsigned char> data(256);
    std::iota(data.begin(), data.end(), static_cast<unsigned char>(0));
    Color::GrayscaleHistogramEqualization(16, 16, 1, 0, data.data());
    for (int i = 0; i < 256; ++i)   // (i + 1) / 256 of 255, exact in double
        EXPECT_EQ(data[static_cast<std::size_t>(i)], static_cast<int>((i + 1) / 256.0 * 255.0 + 0.5));
}

TEST(GrayscaleHistogramEqualization, ChangesNothingWithoutPixels)
{
    std::vector<unsigned char> data = {1, 2, 3};
    const std::vector<unsigned char> before = data;
    Color::GrayscaleHistogramEqualization(0, 5, 1, 0, data.data());
    Color::GrayscaleHistogramEqualization(5, 0, 1, 0, data.data());
    EXPECT_EQ(data, before);
    Color::GrayscaleHistogramEqualization(0, 0, 4, 3, nullptr);
}

// The cumulated shares pass 1 by a rounding here: 49 times a 49th.
TEST(GrayscaleHistogramEqualization, NeverPassesTheLastLevel)
{
    for (int n = 1; n <= 256; ++n) {
        std::vector<unsigned char> data(static_cast<std::size_t>(n));
        std::iota(data.begin(), data.end(), static_cast<unsigned char>(0));
        Color::GrayscaleHistogramEqualization(n, 1, 1, 0, data.data());
        EXPECT_EQ(data.back(), 255) << n;
        EXPECT_TRUE(std::is_sorted(data.begin(), data.end())) << n;
    }
}

TEST(ToneCurveModifiedHable, StartsAtZeroAndTendsToOne)
{
    EXPECT_TRUE(SameBits(Color::ToneCurveModifiedHable(0.22f, 0.3f, 0.5f, 0.06f, 0.0f), 0.0f));
    EXPECT_NEAR(Color::ToneCurveModifiedHable(0.22f, 0.3f, 0.5f, 0.06f, 1e6f), 1.0f, 2e-6f);   // 0.2 / 0.22e6
    EXPECT_TRUE(std::isnan(Color::ToneCurveModifiedHable(0.22f, 0.3f, 0.5f, 0.06f, kInfinity)));
    EXPECT_TRUE(std::isnan(Color::ToneCurveModifiedHable(1, 1, 1, 0, 0)));   // 0 / 0
    EXPECT_EQ(Color::ToneCurveModifiedHable(1, 2, 3, 4, 2), 8.0f / 14.0f);
}

TEST(ToneCurveInsomniacGames, TakesBlackToZeroAndWhiteToOne)
{
    EXPECT_NEAR(Color::ToneCurveInsomniacGames(kCurve, false, kCurve.blackPoint), 0.0f, 1e-8f);
    EXPECT_NEAR(Color::ToneCurveInsomniacGames(kCurve, false, kCurve.whitePoint), 1.0f, 5e-7f);
}

TEST(ToneCurveInsomniacGames, IsContinuousAtTheCrossoverAndTakesTheShoulderThere)
{
    const Numbers c = Coefficients(kCurve);
    const float x = kCurve.crossOverPoint;
    EXPECT_EQ(Color::ToneCurveInsomniacGames(kCurve, false, x), (c[4] * x + c[6]) / (c[5] * x + c[7]));
    const float below = NextDown(x);
    EXPECT_EQ(Color::ToneCurveInsomniacGames(kCurve, false, below),
              (c[0] * below + c[2]) / (c[1] * below + c[3]));
    EXPECT_NEAR(Color::ToneCurveInsomniacGames(kCurve, false, below),
                Color::ToneCurveInsomniacGames(kCurve, false, x),
                1e-6f);   // two quotients of rounded coefficients
}

TEST(ToneCurveInsomniacGames, ComesBackByItsInverse)
{
    for (const float x : Randoms(500, 0.05f, 4.0f)) {
        const float y = Color::ToneCurveInsomniacGames(kCurve, false, x);
        // The shoulder flattens to a slope of 0.03 at the white point: an error of 2e-7 grows by 30.
        EXPECT_NEAR(Color::ToneCurveInsomniacGames(kCurve, true, y), x, 2e-5f);
    }
}

TEST(ToneCurveInsomniacGames, TestsTheCrossoverOutputInTheInverse)
{
    const float y0 = Color::ToneCurveInsomniacGames(kCurve, false, kCurve.crossOverPoint);
    const Numbers c = Coefficients(kCurve);
    EXPECT_EQ(Color::ToneCurveInsomniacGames(kCurve, true, y0), (c[6] - c[7] * y0) / (c[5] * y0 - c[4]));
    const float below = NextDown(y0);
    EXPECT_EQ(Color::ToneCurveInsomniacGames(kCurve, true, below),
              (c[2] - c[3] * below) / (c[1] * below - c[0]));
}

TEST(ToneCurveInsomniacGames, PassesNaNOnAndDividesUnguarded)
{
    EXPECT_TRUE(std::isnan(Color::ToneCurveInsomniacGames(kCurve, false, kNaN)));
    EXPECT_TRUE(std::isnan(Color::ToneCurveInsomniacGames({0, 0, 0, 0, 0}, false, 0.5f)));
    EXPECT_TRUE(std::isnan(Color::ToneCurveInsomniacGames(kCurve, true, kNaN)));
}

TEST(Adjustments, TakeAnyIlluminantButZeroForD65)
{
    ExpectMatrix(Saturation(false, false, kOtherIlluminant, 0.3f), Saturation(false, false, eD65, 0.3f),
                 0.0f);
    ExpectMatrix(HueRotation(false, false, kOtherIlluminant, 0.3f, true),
                 HueRotation(false, false, eD65, 0.3f, true), 0.0f);
    EXPECT_TRUE(SameBits(
        Color::ColorCorrectionMethodPouli(false, false, kOtherIlluminant, {0.5f, 0.2f, 0.1f},
                                          {0.2f, 0.3f, 0.4f}),
        Color::ColorCorrectionMethodPouli(false, false, eD65, {0.5f, 0.2f, 0.1f}, {0.2f, 0.3f, 0.4f})));
}
