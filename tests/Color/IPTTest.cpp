// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

namespace {

constexpr Color::EIlluminant eD50 = Color::eD50;
constexpr Color::EIlluminant eD65 = Color::eD65;
constexpr float kPi = 3.14159265f;

void ExpectNear(const Colour& actual, const Colour& expected, float tolerance)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}
void ExpectIdentity(const Matrix& m, float tolerance)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_NEAR(m(row, column), row == column ? 1.0f : 0.0f, tolerance) << row << ", " << column;
}
void ExpectSame(const Matrix& a, const Matrix& b)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_TRUE(SameBits(a(row, column), b(row, column))) << row << ", " << column;
}

}   // namespace

TEST(IPT, AgreesWithTheReference)
{
    using Row = const ReferenceRow&;
    const auto plain = [](auto conversion) {
        return [=](Row r) { return List(Converted(conversion, r.ColourAt())); };
    };
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
        "IPT", {
                   {"XYZToIPT", illuminated(Color::XYZToIPT)},
                   {"IPTToXYZ", illuminated(Color::IPTToXYZ)},
                   {"LinearRGBToIPT", illuminated(Color::LinearRGBToIPT)},
                   {"IPTToLinearRGB", flagged(Color::IPTToLinearRGB)},
                   {"SRGBToIPT", twiceFlagged(Color::SRGBToIPT)},
                   {"IPTToSRGB", twiceFlagged(Color::IPTToSRGB)},
                   {"LinearYToIXX", [](Row r) { return Numbers{Measured(Color::LinearYToIXX, r.in[0])}; }},
                   {"IPTSaturation", [](Row r) { return Numbers{Color::IPTSaturation(r.ColourAt())}; }},
                   {"IPTToICH", plain(Color::IPTToICH)},
                   {"ICHToIPT", plain(Color::ICHToIPT)},
                   {"IPTToXXH", [](Row r) { return Numbers{Measured(Color::IPTToXXH, r.ColourAt())}; }},
                   {"LinearRGBToICH", illuminated(Color::LinearRGBToICH)},
                   {"ICHToLinearRGB", flagged(Color::ICHToLinearRGB)},
                   {"ICHSaturation", [](Row r) { return Numbers{Color::ICHSaturation(r.ColourAt())}; }},
                   {"SRGBToLMS", twiceFlagged(Color::SRGBToLMS)},
               });
}

// Ebner and Fairchild, CIC 1998: the three matrices as printed.
TEST(IPT, HasThePublishedMatrices)
{
    ExpectSame(Color::XYZToLMSMatrix(eD65),
               Matrix(0.4002f, 0.7075f, -0.0807f, -0.2280f, 1.1500f, 0.0612f, 0, 0, 0.9184f));
    ExpectSame(Color::LMSToIPTMatrix(),
               Matrix(0.4000f, 0.4000f, 0.2000f, 4.4550f, -4.8510f, 0.3960f, 0.8056f, 0.3572f, -1.1628f));
}

// The stored digits of each pair: seven or eight, so that the product is off by a few 1e-7 times its largest
// terms.
TEST(IPT, HasMatricesThatAreInversesOfEachOther)
{
    for (const auto illuminant : kIlluminants)
        ExpectIdentity(Color::LMSToXYZMatrix(illuminant) * Color::XYZToLMSMatrix(illuminant), 1e-6f);
    ExpectIdentity(Color::IPTToLMSMatrix() * Color::LMSToIPTMatrix(), 2e-6f);
}

TEST(IPT, HasEqualConeResponsesForTheWhite)
{
    ExpectNear(Color::XYZToLMSMatrix(eD50) * Color::XYZReference(eD50), {1, 1, 1}, 1e-6f);
    ExpectNear(Color::XYZToLMSMatrix(eD65) * Color::XYZReference(eD65), {1, 1, 1}, 1e-4f);   // four decimals
}

TEST(IPT, HasCompositeMatricesOfOneIlluminant)
{
    for (const auto illuminant : kIlluminants) {
        ExpectSame(Color::LinearRGBToXYZToLMSMatrix(illuminant),
                   Color::XYZToLMSMatrix(illuminant) * Color::LinearRGBToXYZMatrix(illuminant));
        ExpectSame(Color::LMSToXYZToLinearRGBMatrix(illuminant),
                   Color::XYZToLinearRGBMatrix(illuminant) * Color::LMSToXYZMatrix(illuminant));
        EXPECT_EQ(&Color::XYZToLMSMatrix(illuminant), &Color::XYZToLMSMatrix(illuminant));
        EXPECT_EQ(&Color::LMSToXYZMatrix(illuminant), &Color::LMSToXYZMatrix(illuminant));
    }
    EXPECT_EQ(&Color::XYZToLMSMatrix(kOtherIlluminant), &Color::XYZToLMSMatrix(eD65));
    EXPECT_EQ(&Color::LMSToXYZMatrix(kOtherIlluminant), &Color::LMSToXYZMatrix(eD65));
    EXPECT_NE(&Color::XYZToLMSMatrix(eD50), &Color::XYZToLMSMatrix(eD65));
    EXPECT_EQ(&Color::LMSToIPTMatrix(), &Color::LMSToIPTMatrix());
    EXPECT_EQ(&Color::IPTToLMSMatrix(), &Color::IPTToLMSMatrix());
}

TEST(XYZToIPT, TakesBlackToBlackAndTheWhiteToOne)
{
    for (const auto illuminant : kIlluminants) {
        EXPECT_TRUE(SameBits(Converted(Color::XYZToIPT, illuminant, Colour(0, 0, 0)), Colour(0, 0, 0)));
        // 1e-4 in a cone response is 4.3e-5 after the power, times up to 5.
        ExpectNear(Converted(Color::XYZToIPT, illuminant, Color::XYZReference(illuminant)), {1, 0, 0}, 2e-4f);
    }
}

TEST(XYZToIPT, KeepsTheSignOfANegativeConeResponse)
{
    const Colour xyz(-0.5f, -0.3f, -0.2f);
    for (const auto illuminant : kIlluminants) {
        const Colour lms = Color::XYZToLMSMatrix(illuminant) * xyz;
        ASSERT_LT(lms.x, 0.0f);
        const Colour negative = Converted(Color::XYZToIPT, illuminant, xyz);
        const Colour positive = Converted(Color::XYZToIPT, illuminant, xyz * -1.0f);
        EXPECT_TRUE(SameBits(negative, positive * -1.0f));
        EXPECT_LT(negative.x, 0.0f);
        // One response of each sign.
        const Colour mixed = Converted(Color::XYZToIPT, illuminant, Colour(1.0f, 0.05f, 0.1f));
        EXPECT_LT((Color::XYZToLMSMatrix(illuminant) * Colour(1.0f, 0.05f, 0.1f)).y, 0.0f);
        EXPECT_TRUE(std::isfinite(mixed.x) && std::isfinite(mixed.y) && std::isfinite(mixed.z));
    }
    EXPECT_TRUE(SameBits(Converted(Color::XYZToIPT, eD65, Colour(0, 0, kNaN)), Colour(kNaN, kNaN, kNaN)));
    // Three infinite responses, whose differences are NaN.
    EXPECT_TRUE(
        SameBits(Converted(Color::XYZToIPT, eD65, Colour(0, kInfinity, 1)), Colour(kNaN, kNaN, kNaN)));
}

TEST(IPTToXYZ, IsOddAndNeverClamps)
{
    for (const auto illuminant : kIlluminants) {
        for (const Colour& c : RandomColours(200, -2.0f, 2.0f))
            EXPECT_TRUE(SameBits(Converted(Color::IPTToXYZ, illuminant, c * -1.0f),
                                 Converted(Color::IPTToXYZ, illuminant, c) * -1.0f));
        EXPECT_GT(Converted(Color::IPTToXYZ, illuminant, Colour(2, 0, 0)).y, 4.0f);
    }
    EXPECT_TRUE(SameBits(Converted(Color::IPTToXYZ, eD50, Colour(0.5f, kNaN, 0)), Colour(kNaN, kNaN, kNaN)));
}

TEST(IPT, RoundTripsForColoursOfTheGamut)
{
    for (const auto illuminant : kIlluminants)
        for (const Colour& rgb : RandomColours(500)) {
            const Colour xyz = Converted(Color::LinearRGBToXYZ, illuminant, rgb);
            const Colour back =
                Converted(Color::IPTToXYZ, illuminant, Converted(Color::XYZToIPT, illuminant, xyz));
            // The matrices' 2e-6, raised by the power 2.33, and a product of the two powers of 1 - 2e-7.
            ExpectNear(back, xyz, 1e-5f);
        }
}

TEST(IPTToLinearRGB, ClampsUnlessInExtendedRange)
{
    for (const Colour& c : EdgeColours(200))
        for (const auto illuminant : kIlluminants) {
            const Colour free = Converted(Color::IPTToLinearRGB, true, illuminant, c);
            EXPECT_TRUE(SameBits(Converted(Color::IPTToLinearRGB, false, illuminant, c),
                                 Color::Clamp(free, 0.0f, 1.0f)));
        }
    const Colour ipt = Converted(Color::LinearRGBToIPT, eD65, Colour(1.5f, -0.25f, 0.2f));
    const Colour outside = Converted(Color::IPTToLinearRGB, true, eD65, ipt);
    EXPECT_GT(outside.x, 1.0f);
    EXPECT_LT(outside.y, 0.0f);
}

TEST(SRGBToIPT, IsTheToneCurveAndTheConversion)
{
    for (const Colour& c : EdgeColours(100))
        for (const auto illuminant : kIlluminants)
            for (const bool g : kFlags)
                for (const bool e : kFlags) {
                    Colour linear;
                    Color::NonlinearToLinearToneCurve(g, e, c, linear);
                    EXPECT_TRUE(SameBits(Converted(Color::SRGBToIPT, g, e, illuminant, c),
                                         Converted(Color::LinearRGBToIPT, illuminant, linear)));
                    EXPECT_TRUE(SameBits(Converted(Color::SRGBToLMS, g, e, illuminant, c),
                                         Color::XYZToLMSMatrix(illuminant) *
                                             Converted(Color::LinearRGBToXYZ, illuminant, linear)));
                    Colour encoded;
                    Color::LinearToNonlinearToneCurve(
                        g, e, Converted(Color::IPTToLinearRGB, e, illuminant, c), encoded);
                    EXPECT_TRUE(SameBits(Converted(Color::IPTToSRGB, g, e, illuminant, c), encoded));
                }
}

TEST(LinearYToIXX, IsAPlainPower)
{
    EXPECT_EQ(Measured(Color::LinearYToIXX, 1.0f), 1.0f);
    EXPECT_TRUE(SameBits(Measured(Color::LinearYToIXX, 0.0f), 0.0f));
    EXPECT_TRUE(SameBits(Measured(Color::LinearYToIXX, -0.0f), 0.0f));
    EXPECT_TRUE(std::isnan(Measured(Color::LinearYToIXX, -0.5f)));
    EXPECT_TRUE(std::isnan(Measured(Color::LinearYToIXX, kNaN)));
    EXPECT_EQ(Measured(Color::LinearYToIXX, kInfinity), kInfinity);
}

TEST(IPTSaturation, IsZeroWithoutChromaAndOneWithoutIntensity)
{
    EXPECT_TRUE(SameBits(Color::IPTSaturation({1, 0, 0}), 0.0f));
    EXPECT_TRUE(SameBits(Color::IPTSaturation({0, 0, 0}), 0.0f));
    EXPECT_EQ(Color::IPTSaturation({0, 0.3f, 0.4f}), 1.0f);
    EXPECT_TRUE(SameBits(Color::IPTSaturation({0.5f, kNaN, 0.4f}), 0.0f));
    EXPECT_TRUE(std::isnan(Color::IPTSaturation({kNaN, 0.3f, 0.4f})));
}

TEST(ICHSaturation, IsZeroForBlackAndForNaN)
{
    EXPECT_TRUE(SameBits(Color::ICHSaturation({0, 0, 1}), 0.0f));
    EXPECT_TRUE(SameBits(Color::ICHSaturation({kNaN, 0.5f, 0}), 0.0f));
    for (const Colour& c : EdgeColours(200))
        EXPECT_TRUE(SameBits(Color::ICHSaturation(c), Color::LChSaturation(c)));
}

TEST(IPTToICH, MeasuresHueFromTTowardsP)
{
    const Colour ich = Converted(Color::IPTToICH, Colour(0.5f, 0.1f, 0));
    EXPECT_TRUE(SameBits(ich, Colour(0.5f, 0.1f, kPi / 2)));
    // The cosine of the rounded pi / 2 is -4.4e-8.
    ExpectNear(Converted(Color::ICHToIPT, ich), {0.5f, 0.1f, 0}, 8e-9f);
    EXPECT_TRUE(SameBits(Converted(Color::IPTToICH, Colour(0.5f, 0, 0.1f)), Colour(0.5f, 0.1f, 0)));
    EXPECT_EQ(Converted(Color::IPTToICH, Colour(0.5f, 0, -0.1f)).z, kPi);
    EXPECT_EQ(Converted(Color::IPTToICH, Colour(0.5f, -0.0f, -0.1f)).z, -kPi);
    EXPECT_EQ(Converted(Color::IPTToICH, Colour(0.5f, -0.1f, 0)).z, -kPi / 2);
    EXPECT_TRUE(SameBits(Converted(Color::IPTToICH, Colour(0.5f, 0, 0)), Colour(0.5f, 0, 0)));
    EXPECT_TRUE(SameBits(Converted(Color::IPTToICH, Colour(0.5f, kNaN, 0)), Colour(0.5f, kNaN, kNaN)));
    EXPECT_TRUE(
        SameBits(Converted(Color::ICHToIPT, Colour(0.5f, 0.2f, kInfinity)), Colour(0.5f, kNaN, kNaN)));
}

TEST(ICH, ChainsTheConversionsOfIPT)
{
    for (const Colour& c : EdgeColours(200)) {
        EXPECT_TRUE(SameBits(Measured(Color::IPTToXXH, c), Converted(Color::IPTToICH, c).z));
        for (const auto illuminant : kIlluminants) {
            EXPECT_TRUE(
                SameBits(Converted(Color::LinearRGBToICH, illuminant, c),
                         Converted(Color::IPTToICH, Converted(Color::LinearRGBToIPT, illuminant, c))));
            for (const bool e : kFlags)
                EXPECT_TRUE(
                    SameBits(Converted(Color::ICHToLinearRGB, e, illuminant, c),
                             Converted(Color::IPTToLinearRGB, e, illuminant, Converted(Color::ICHToIPT, c))));
        }
    }
}

TEST(IPT, TakesAnyIlluminantButZeroForD65)
{
    for (const Colour& c : EdgeColours(200)) {
        const auto same = [&](auto conversion, const auto&... flags) {
            EXPECT_TRUE(SameBits(Converted(conversion, flags..., kOtherIlluminant, c),
                                 Converted(conversion, flags..., eD65, c)));
        };
        same(Color::XYZToIPT);
        same(Color::IPTToXYZ);
        same(Color::LinearRGBToIPT);
        same(Color::IPTToLinearRGB, true);
        same(Color::SRGBToLMS, false, true);
    }
}
