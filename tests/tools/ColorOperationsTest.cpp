// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <vector>

#include "tools/qz/Failure.h"
#include "tools/qz/operations/Balance.h"
#include "tools/qz/operations/Hues.h"
#include "tools/qz/operations/Posterize.h"

namespace {

using namespace QZ::Tool;
using QZ::Foundation::CHueWeightedHistogram;

using Color = std::array<unsigned char, 3>;

// A column a colour, three pixels high; alpha is 7 everywhere.
Image Columns(const std::vector<Color>& colors)
{
    Image image(static_cast<int>(colors.size()), 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < image.width; ++x) {
            std::ranges::copy(colors[static_cast<std::size_t>(x)], image.At(x, y));
            image.At(x, y)[3] = 7;
        }
    return image;
}

void ExpectAlpha7(const Image& image)
{
    for (std::size_t i = 3; i < image.pixels.size(); i += 4)
        ASSERT_EQ(image.pixels[i], 7);
}

int Spread(const unsigned char* p)
{
    return std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]});
}

TEST(ReduceToHues, LeavesAPictureOfAsManyHuesNearlyAsItIsInEverySpace)
{
    const std::vector<Color> colors = {{170, 90, 80}, {80, 140, 90}, {80, 100, 170}, {128, 128, 128}};
    for (const HueSpace space :
         {CHueWeightedHistogram::eLab, CHueWeightedHistogram::eLuv, CHueWeightedHistogram::eIPT}) {
        Image image = Columns(colors);
        const Image before = image;
        HuesOptions options;
        options.count = 3;
        options.space = space;
        const Hues hues = ReduceToHues(options, image);
        for (std::size_t i = 0; i < image.pixels.size(); ++i)
            EXPECT_NEAR(image.pixels[i], before.pixels[i], 1) << space;   // rounding there and back
        EXPECT_EQ(hues.colors.size(), 3u);
        EXPECT_DOUBLE_EQ(hues.greyShare, 0.25);
        EXPECT_DOUBLE_EQ(hues.colors[0].share, 0.25);
        ExpectAlpha7(image);
    }
}

TEST(ReduceToHues, JoinsReddishHuesAndKeepsBlueApart)
{
    for (const auto method : {HuesOptions::Method::Clusters, HuesOptions::Method::MedianCut}) {
        Image image = Columns({{170, 90, 80}, {170, 90, 90}, {80, 100, 170}, {80, 100, 165}});
        HuesOptions options;
        options.method = method;
        options.count = 2;
        const Hues hues = ReduceToHues(options, image);
        ASSERT_EQ(hues.colors.size(), 2u);
        EXPECT_DOUBLE_EQ(hues.colors[0].share, 0.5);
        EXPECT_GT(image.At(0, 0)[0], image.At(0, 0)[2] + 50);
        EXPECT_GT(image.At(2, 0)[2], image.At(2, 0)[0] + 50);
        ExpectAlpha7(image);
    }
}

TEST(ReduceToHues, LeavesAGreyPictureAsItIs)
{
    Image image = Columns({{0, 0, 0}, {90, 90, 90}, {255, 255, 255}});
    const std::vector<unsigned char> before = image.pixels;
    const Hues hues = ReduceToHues({}, image);
    EXPECT_TRUE(hues.colors.empty());
    EXPECT_EQ(hues.greyShare, 1.0);
    EXPECT_EQ(image.pixels, before);
}

TEST(ReduceToHues, TellsWhatMedianCutDoesNotKnow)
{
    Image image = Columns({{170, 90, 80}});
    HuesOptions options;
    options.method = HuesOptions::Method::MedianCut;
    options.minAngle = 10.0;
    EXPECT_THROW(ReduceToHues(options, image), Failure);
    options.minAngle = 0.0;
    options.count = 1;
    EXPECT_THROW(ReduceToHues(options, image), Failure);
}

TEST(Posterize, GivesEachHueItsOwnGrey)
{
    Image image = Columns({{255, 0, 0}, {0, 60, 0}, {0, 200, 0}, {10, 10, 10}, {240, 240, 240}});
    PosterizeOptions options;
    options.hues = 2;
    options.greys = 1;
    const Posterized result = Posterize(options, image);
    EXPECT_EQ(result.groups, 3);
    EXPECT_EQ(image.At(1, 0)[0], image.At(2, 0)[0]) << "one grey for both greens";
    EXPECT_EQ(image.At(3, 0)[0], image.At(4, 0)[0]) << "one for what has no colour";
    EXPECT_NE(image.At(0, 0)[0], image.At(1, 0)[0]);
    double share = 0.0;
    for (std::size_t i = 0; i < result.tones.size(); ++i) {
        share += result.tones[i].share;
        EXPECT_TRUE(i == 0 || result.tones[i - 1].rgb[0] < result.tones[i].rgb[0]);
    }
    EXPECT_NEAR(share, 1.0, 1e-12);   // a sum of a few roundings
    for (std::size_t i = 0; i < image.pixels.size(); i += 4)
        ASSERT_EQ(Spread(image.pixels.data() + i), 0);
    ExpectAlpha7(image);
}

// sRGB (255, 224, 192) decoded and carried to XYZ by IEC 61966-2-1:1999 in double precision, over Y.
QZ::Math::CVector3<double> WarmLight()
{
    const auto decode = [](double byte) { return std::pow((byte / 255.0 + 0.055) / 1.055, 2.4); };
    const double r = 1.0, g = decode(224.0), b = decode(192.0);
    const double Y = 0.2126 * r + 0.7152 * g + 0.0722 * b;
    return {(0.4124 * r + 0.3576 * g + 0.1805 * b) / Y, 1.0, (0.0193 * r + 0.1192 * g + 0.9505 * b) / Y};
}

TEST(BalanceWhite, FindsAKnownLightByEveryMethodAndTakesItOut)
{
    const QZ::Math::CVector3<double> expected = WarmLight();
    BalanceOptions given;
    given.light = {255.0f, 224.0f, 192.0f};
    std::vector<BalanceOptions> all = {given};
    using Method = BalanceOptions::Method;
    for (const Method method : {Method::GreyWorld, Method::MaxGray, Method::LSRS}) {
        BalanceOptions options;
        options.method = method;
        all.push_back(options);
    }
    for (const BalanceOptions& options : all) {
        Image image = Columns(std::vector<Color>(12, {255, 224, 192}));
        const Light light = BalanceWhite(options, image);
        // The standard's matrix has four digits, the library's more.
        EXPECT_NEAR(light.white.x, expected.x, 3e-4);
        EXPECT_EQ(light.white.y, 1.0);
        EXPECT_NEAR(light.white.z, expected.z, 3e-4);
        EXPECT_LE(Spread(image.At(5, 1)), 1);   // encoded values lose their fraction
        ExpectAlpha7(image);
    }
}

TEST(BalanceWhite, GivesTheReferenceWhiteForAGreyPicture)
{
    for (const auto& [illuminant, x, y] : {std::tuple(QZ::Foundation::CColor::eD50, 0.3457, 0.3585),
                                           std::tuple(QZ::Foundation::CColor::eD65, 0.3127, 0.3290)}) {
        Image image = Columns(std::vector<Color>(4, {120, 120, 120}));
        BalanceOptions options;
        options.illuminant = illuminant;
        const Light light = BalanceWhite(options, image);
        EXPECT_NEAR(light.x, x, 2e-4);   // published to four digits
        EXPECT_NEAR(light.y, y, 2e-4);
        EXPECT_NEAR(image.At(0, 0)[0], 120, 1);
    }
}

TEST(BalanceWhite, SaysThatTheResultIsDisplayP3)
{
    Image image = Columns({{200, 30, 30}, {30, 30, 200}});
    BalanceOptions options;
    options.displayP3 = true;
    BalanceWhite(options, image);
    EXPECT_EQ(image.colorSpace, ColorSpace::DisplayP3);
}

TEST(BalanceWhite, FailsWithoutLight)
{
    for (const auto method :
         {BalanceOptions::Method::GreyWorld, BalanceOptions::Method::MaxGray, BalanceOptions::Method::LSRS}) {
        BalanceOptions options;
        options.method = method;
        Image black = Columns(std::vector<Color>(12, {0, 0, 0}));
        EXPECT_THROW(BalanceWhite(options, black), Failure);
    }
    Image tiny(1, 1);
    tiny.pixels = {255, 255, 255, 255};
    BalanceOptions options;
    options.method = BalanceOptions::Method::LSRS;
    EXPECT_THROW(BalanceWhite(options, tiny), Failure) << "smaller than a tile";
    options.light = {0.0f, 0.0f, 0.0f};
    EXPECT_THROW(BalanceWhite(options, tiny), Failure);
}

// CIE 15:2004, table 11.1, for the chromaticities; A and D65 are 2856 and 6504 K.
TEST(CorrelatedColorTemperature, IsThatOfTheStandardIlluminants)
{
    EXPECT_NEAR(CorrelatedColorTemperature(0.44758, 0.40745).value(), 2856.0, 3.0);   // McCamy's own error
    EXPECT_NEAR(CorrelatedColorTemperature(0.31272, 0.32903).value(), 6504.0, 3.0);
    EXPECT_NEAR(CorrelatedColorTemperature(0.34567, 0.35850).value(), 5003.0, 3.0);
}

TEST(CorrelatedColorTemperature, IsNoneForColoursThatAreNoWhite)
{
    EXPECT_FALSE(CorrelatedColorTemperature(0.64, 0.33).has_value());   // the primaries of sRGB
    EXPECT_FALSE(CorrelatedColorTemperature(0.30, 0.60).has_value());
    EXPECT_FALSE(CorrelatedColorTemperature(0.15, 0.06).has_value());
    EXPECT_FALSE(CorrelatedColorTemperature(std::nan(""), 0.3).has_value());
}

}   // namespace
