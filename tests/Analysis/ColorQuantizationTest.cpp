// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>

#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"
#include "tests/Support/Colours.h"
#include "tests/Support/Floats.h"
#include "tests/Support/Pictures.h"

namespace {

using QZ::Foundation::CColor;
using QZ::Foundation::CLUVMaximumChromaMap;
using QZ::Foundation::CPTMedianCutQuantization;
using Histogram = QZ::Foundation::CHueWeightedHistogram;
using Hues = QZ::Foundation::CHueWeightedHistogramHierarchicalClusterQuantization;
using QZ::Math::CVector2;
using QZ::Test::Colour;
using QZ::Test::Converted;
using QZ::Test::Photograph;
using QZ::Test::Picture;
using QZ::Test::RowOf;
using testing::Each;

Hues HuesOf(const Picture& picture, int numClusters, Hues::EHueMode mode,
            Histogram::EHueColorSpace space = Histogram::eIPT, double minAngle = 0.0, bool isSRGB = true)
{
    Hues hues;
    hues.Compute(256, numClusters, minAngle, space, isSRGB, CColor::eD65, mode, picture.width, picture.height,
                 picture.rgba.data());
    return hues;
}

/// A colour of bytes in one of the spaces.
Colour InSpace(const std::vector<int>& bytes, Histogram::EHueColorSpace space, bool isSRGB)
{
    const auto unit = [&](std::size_t i) { return static_cast<float>(bytes[i]) * 0.003921569f; };
    const Colour encoded(unit(0), unit(1), unit(2));
    Colour rgb = encoded;
    if (isSRGB)
        CColor::NonlinearToLinearToneCurve(false, false, encoded, rgb);
    switch (space) {
        case Histogram::eLab:
            return Converted(CColor::LinearRGBToLab, CColor::eD65, rgb);
        case Histogram::eLuv:
            return Converted(CColor::LinearRGBToLuv, CColor::eD65, rgb);
        default:
            return Converted(CColor::LinearRGBToIPT, CColor::eD65, rgb);
    }
}

/// The bin of an angle, worked in double precision.
std::size_t BinOf(double angle, int numBins)
{
    return static_cast<std::size_t>((angle + M_PI) * (numBins - 1) / (2 * M_PI) + 0.5);
}

std::vector<int> PixelAfter(const Hues& hues, std::vector<int> pixel)
{
    Picture picture = RowOf({pixel});
    hues.Recolor(1, 1, CColor::eD65, picture.rgba.data());
    return {picture.rgba.begin(), picture.rgba.end()};
}

/// The greatest difference of R, G and B.
int GreatestDifference(const Picture& a, const Picture& b)
{
    int greatest = 0;
    for (std::size_t i = 0; i < a.rgba.size(); ++i)
        if (i % 4 != 3)
            greatest = std::max(greatest, std::abs(a.rgba[i] - b.rgba[i]));
    return greatest;
}

/// Colours of medium saturation, far from the sides of the gamut.
Picture Pastel(int width, int height)
{
    Picture picture = Photograph(width, height);
    for (std::size_t i = 0; i < picture.rgba.size(); ++i)
        picture.rgba[i] = static_cast<unsigned char>(96 + picture.rgba[i] / 4);
    return picture;
}

constexpr unsigned char kPixel[] = {200, 30, 40, 255};
const std::vector<int> kRed = {220, 40, 30};
const std::vector<int> kGreen = {50, 180, 60};
const std::vector<int> kBlue = {40, 70, 210};

}   // namespace

TEST(HueQuantization, GivesEachClusterTheMeanPairOfItsPixels)
{
    for (const auto space : {Histogram::eLab, Histogram::eLuv, Histogram::eIPT}) {
        for (const bool isSRGB : QZ::Test::kFlags) {
            const Hues hues =
                HuesOf(RowOf({kRed, kBlue, kRed, kGreen}), 3, Hues::eMeanPair, space, 0.0, isSRGB);
            EXPECT_EQ(hues.space, space);
            EXPECT_EQ(hues.numBins, 256);
            ASSERT_EQ(hues.clusterColours.size(), 3u);
            ASSERT_EQ(hues.binColours.size(), 256u);
            for (const std::vector<int>& bytes : {kRed, kGreen, kBlue}) {
                const Colour color = InSpace(bytes, space, isSRGB);
                const bool isIPT = space == Histogram::eIPT;
                const auto bin =
                    BinOf(isIPT ? std::atan2(color.y, color.z) : std::atan2(color.z, color.y), 256);
                // A weight and a product in single precision, divided by the weight again.
                EXPECT_NEAR(hues.binColours[bin].x, color.y, 1e-6f);
                EXPECT_NEAR(hues.binColours[bin].y, color.z, 1e-6f);
                const auto cluster = static_cast<std::size_t>(hues.binCluster[bin]);
                EXPECT_EQ(hues.clusterColours[cluster].x, hues.binColours[bin].x);
            }
        }
    }
}

TEST(HueQuantization, GivesADirectionUnitLength)
{
    const Hues pairs = HuesOf(RowOf({kRed, kBlue, kGreen}), 3, Hues::eMeanPair);
    const Hues directions = HuesOf(RowOf({kRed, kBlue, kGreen}), 3, Hues::eDirection);
    for (std::size_t i = 0; i < 3; ++i) {
        const CVector2<float>& pair = pairs.clusterColours[i];
        const float length = std::hypot(pair.x, pair.y);
        EXPECT_NEAR(directions.clusterColours[i].x, pair.x / length, 1e-6f);   // rounded once more
        EXPECT_NEAR(directions.clusterColours[i].y, pair.y / length, 1e-6f);
    }
}

TEST(HueQuantization, MeasuresChromaAgainstTheGamutInLuvAlone)
{
    const Picture picture = RowOf({{150, 90, 80}, {70, 120, 90}});
    const Hues pairs = HuesOf(picture, 2, Hues::eMeanPair, Histogram::eLuv);
    const Hues relative = HuesOf(picture, 2, Hues::eRelativeChroma, Histogram::eLuv);
    for (const std::vector<int>& bytes : {std::vector<int>{150, 90, 80}, std::vector<int>{70, 120, 90}}) {
        const Colour luv = InSpace(bytes, Histogram::eLuv, true);
        const auto bin = BinOf(std::atan2(luv.z, luv.y), 256);
        const CVector2<float>& color = relative.binColours[bin];
        EXPECT_NEAR(std::hypot(color.x, color.y),
                    std::hypot(luv.y, luv.z) / CLUVMaximumChromaMap::MaxChromaForLH(luv), 1e-5f);
        EXPECT_NEAR(std::atan2(color.y, color.x), std::atan2(luv.z, luv.y), 1e-5f);
    }
    for (const auto space : {Histogram::eLab, Histogram::eIPT}) {
        const Hues mean = HuesOf(picture, 2, Hues::eMeanPair, space);
        const Hues same = HuesOf(picture, 2, Hues::eRelativeChroma, space);
        for (std::size_t bin = 0; bin < 256; ++bin) {
            EXPECT_EQ(same.binColours[bin].x, mean.binColours[bin].x);
            EXPECT_EQ(same.binColours[bin].y, mean.binColours[bin].y);
        }
    }
    EXPECT_NE(pairs.clusterColours[0].x, relative.clusterColours[0].x);
}

// The linear primaries of sRGB are the corners of the gamut; D50 puts them outside that of the D65 map.
TEST(HueQuantization, LimitsTheRelativeChromaToOne)
{
    Hues hues;
    for (const std::vector<int>& bytes : {std::vector<int>{255, 0, 0}, {0, 255, 0}, {0, 0, 255}}) {
        const Picture picture = RowOf({bytes});
        hues.Compute(64, 1, 0.0, Histogram::eLuv, true, CColor::eD50, Hues::eRelativeChroma, 1, 1,
                     picture.rgba.data());
        ASSERT_EQ(hues.clusterColours.size(), 1u);
        EXPECT_LE(std::hypot(hues.clusterColours[0].x, hues.clusterColours[0].y),
                  1.0f + 1e-6f);   // two roundings
    }
}

TEST(HueQuantization, CoversTheSeamWithOneCluster)
{
    // Two reds on either side of the seam of IPT and a blue away from it.
    std::vector<std::vector<int>> pixels;
    for (int hue = 0; hue < 360; hue += 2) {
        const double h = hue * M_PI / 180;
        const Colour srgb = Converted(
            CColor::IPTToSRGB, false, false, CColor::eD65,
            Colour(0.5f, static_cast<float>(0.25 * std::sin(h)), static_cast<float>(0.25 * std::cos(h))));
        const bool nearSeam = std::abs(hue - 180) < 12;
        if (nearSeam || std::abs(hue - 40) < 12)
            pixels.push_back({static_cast<int>(srgb.x * 255), static_cast<int>(srgb.y * 255),
                              static_cast<int>(srgb.z * 255)});
    }
    const Hues hues = HuesOf(RowOf(pixels), 2, Hues::eDirection);
    ASSERT_EQ(hues.clusterColours.size(), 2u);
    EXPECT_EQ(hues.binCluster.front(), hues.binCluster.back());
    EXPECT_NE(hues.binCluster.front(), hues.binCluster[BinOf(40 * M_PI / 180, 256)]);
    EXPECT_LT(hues.binColours.front().y, -0.9f) << "T points away from the seam";
    EXPECT_EQ(hues.binColours.front().y, hues.binColours.back().y);
}

TEST(HueQuantization, GivesEveryBinTheColorOfItsCluster)
{
    const Hues hues = HuesOf(Photograph(64, 48), 5, Hues::eDirection);
    ASSERT_EQ(hues.clusterColours.size(), 5u);
    ASSERT_EQ(hues.binCluster.size(), 256u);
    for (std::size_t bin = 0; bin < 256; ++bin) {
        const auto cluster = static_cast<std::size_t>(hues.binCluster[bin]);
        ASSERT_LT(cluster, 5u);
        EXPECT_EQ(hues.binColours[bin].x, hues.clusterColours[cluster].x);
        EXPECT_EQ(hues.binColours[bin].y, hues.clusterColours[cluster].y);
    }
    EXPECT_EQ(std::set<int>(hues.binCluster.begin(), hues.binCluster.end()).size(), 5u);
}

TEST(HueQuantization, KeepsItsClustersFurtherApartThanTheAngle)
{
    const Picture picture = Photograph(64, 48);
    EXPECT_GT(HuesOf(picture, 12, Hues::eDirection).clusterColours.size(), 11u);
    EXPECT_LT(HuesOf(picture, 12, Hues::eDirection, Histogram::eIPT, 60.0).clusterColours.size(), 7u);
    EXPECT_EQ(HuesOf(picture, 12, Hues::eDirection, Histogram::eIPT, 180.0).clusterColours.size(), 1u);
}

TEST(HueQuantization, OfNothingHasNoCluster)
{
    Hues hues = HuesOf(Photograph(16, 16), 3, Hues::eDirection);
    hues.Compute(16, 3, 0.0, Histogram::eLuv, true, CColor::eD65, Hues::eDirection, 0, 5, nullptr);
    ASSERT_EQ(hues.binColours.size(), 16u);
    for (const CVector2<float>& color : hues.binColours)
        EXPECT_TRUE(color.x == 0.0f && color.y == 0.0f);
    EXPECT_TRUE(hues.clusterColours.empty());
    EXPECT_TRUE(hues.binCluster.empty());
    hues.Compute(0, 3, 0.0, Histogram::eLuv, true, CColor::eD65, Hues::eDirection, 1, 1, kPixel);
    EXPECT_TRUE(hues.binColours.empty());
    hues.Compute(-5, 3, 0.0, Histogram::eLuv, true, CColor::eD65, Hues::eDirection, -2, 1, nullptr);
    EXPECT_TRUE(hues.binColours.empty());
}

// The same pixels in another order: sums differ in their last digits, and nothing else does.
TEST(HueQuantization, OfATurnedPictureIsTheSame)
{
    const Picture picture = Photograph(60, 40);
    const Picture turned = QZ::Test::Turned(picture);
    Histogram a, b;
    a.Compute(256, Histogram::eIPT, true, CColor::eD65, picture.Pixels(), picture.rgba.data());
    b.Compute(256, Histogram::eIPT, true, CColor::eD65, turned.Pixels(), turned.rgba.data());
    for (std::size_t bin = 0; bin < 256; ++bin)
        EXPECT_NEAR(a.weights[bin], b.weights[bin], 1e-12 * std::max(1.0, a.weights[bin]));
    const Hues hues = HuesOf(picture, 6, Hues::eDirection);
    const Hues huesOfTurned = HuesOf(turned, 6, Hues::eDirection);
    EXPECT_EQ(hues.binCluster, huesOfTurned.binCluster);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_NEAR(hues.clusterColours[i].x, huesOfTurned.clusterColours[i].x, 1e-6f);
}

TEST(Recolor, DoesNothingWithoutBinsOrPixels)
{
    Picture picture = RowOf({kRed, kBlue});
    const Picture before = picture;
    Hues().Recolor(2, 1, CColor::eD65, picture.rgba.data());
    CPTMedianCutQuantization().Recolor(2, 1, CColor::eD65, picture.rgba.data());
    const Hues hues = HuesOf(picture, 2, Hues::eDirection);
    hues.Recolor(0, 1, CColor::eD65, picture.rgba.data());
    hues.Recolor(-1, 1, CColor::eD65, picture.rgba.data());
    EXPECT_EQ(picture.rgba, before.rgba);
}

TEST(Recolor, TurnsThePairAndKeepsIntensityAndLength)
{
    Hues hues;
    hues.binColours.assign(256, CVector2<float>(0.6f, 0.8f));
    const std::vector<int> pixel = {150, 110, 100};
    const Colour encoded(150 * 0.003921569f, 110 * 0.003921569f, 100 * 0.003921569f);
    const Colour ipt = Converted(CColor::SRGBToIPT, true, false, CColor::eD65, encoded);
    const float length = std::sqrt(ipt.y * ipt.y + ipt.z * ipt.z);
    const Colour rgb =
        Converted(CColor::IPTToSRGB, true, false, CColor::eD65, Colour(ipt.x, 0.6f * length, 0.8f * length));
    const std::vector<int> after = PixelAfter(hues, pixel);
    const float channels[] = {rgb.x, rgb.y, rgb.z};
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(after[i], static_cast<int>(channels[i] * 255.0f + 0.5f));
}

TEST(Recolor, KeepsGreysAsTheyAre)
{
    const Hues hues = HuesOf(RowOf({kRed, kBlue, kGreen}), 3, Hues::eDirection);
    for (int grey = 0; grey < 256; ++grey) {
        const std::vector<int> after = PixelAfter(hues, {grey, grey, grey, 9});
        EXPECT_THAT(after, Each(testing::AllOf(testing::Ge(grey - 1), testing::Le(grey + 1))));
    }
}

TEST(Recolor, WritesTheLumaOfTheNewPixelForAlpha)
{
    Picture picture = Photograph(40, 30);
    HuesOf(picture, 4, Hues::eDirection).Recolor(40, 30, CColor::eD65, picture.rgba.data());
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
        const double luma =
            0.114 * picture.rgba[i + 2] + 0.587 * picture.rgba[i + 1] + 0.299 * picture.rgba[i];
        // Within single precision of a half it may fall either way.
        EXPECT_NEAR(picture.rgba[i + 3], luma, 0.5001);
    }
}

TEST(Recolor, PutsEveryPixelIntoTheOnlyBin)
{
    Hues hues;
    hues.binColours = {{1.0f, 0.0f}};
    Hues many;
    many.binColours.assign(9, CVector2<float>(1.0f, 0.0f));
    for (const std::vector<int>& pixel : {kRed, kGreen, kBlue})
        EXPECT_EQ(PixelAfter(hues, pixel), PixelAfter(many, pixel));
}

TEST(Recolor, TakesAnyColor)
{
    constexpr float kValues[] = {QZ::Test::kNaN, QZ::Test::kInfinity, -QZ::Test::kInfinity, 1e30f, -1e30f};
    Hues hues;
    CPTMedianCutQuantization segments;
    for (const float value : kValues) {
        hues.binColours.assign(4, CVector2<float>(value, -value));
        segments.binColours = hues.binColours;
        Picture picture = Photograph(8, 8);
        hues.Recolor(8, 8, CColor::eD65, picture.rgba.data());
        segments.Recolor(8, 8, CColor::eD50, picture.rgba.data());
        if (std::isnan(value)) {
            EXPECT_THAT(picture.rgba, Each(0)) << "NaN gives 0";
        }
    }
}

// The mean direction of a cluster lies in the cluster, so the second time each hue is turned to itself. What
// is left is the rounding to bytes, which grows where a dark colour has a steep curve.
TEST(Recolor, OfARecoloredPictureChangesLittle)
{
    Picture once = Pastel(80, 60);
    const Hues hues = HuesOf(once, 6, Hues::eDirection);
    hues.Recolor(once.width, once.height, CColor::eD65, once.rgba.data());
    Picture twice = once;
    hues.Recolor(once.width, once.height, CColor::eD65, twice.rgba.data());
    EXPECT_LE(GreatestDifference(once, twice), 1);
}

TEST(PTQuantization, GivesEachBinTheMeanDirectionOfItsSegment)
{
    const Picture picture = RowOf({kRed, kRed, kBlue, kBlue});
    CPTMedianCutQuantization quantization;
    quantization.Compute(64, 2, 4, 1, CColor::eD65, picture.rgba.data());
    ASSERT_EQ(quantization.binColours.size(), 64u);
    for (const std::vector<int>& bytes : {kRed, kBlue}) {
        const Colour ipt = InSpace(bytes, Histogram::eIPT, false);
        const CVector2<float>& color = quantization.binColours[BinOf(std::atan2(ipt.y, ipt.z), 64)];
        const float length = std::hypot(ipt.y, ipt.z);
        EXPECT_NEAR(color.x, ipt.y / length, 1e-6f);   // one rounding each
        EXPECT_NEAR(color.y, ipt.z / length, 1e-6f);
    }
}

TEST(PTQuantization, HasUnitDirectionsOrNone)
{
    const Picture picture = Photograph(64, 48);
    for (const int numColours : {2, 3, 5, 16, 300}) {
        CPTMedianCutQuantization quantization;
        quantization.Compute(128, numColours, picture.width, picture.height, CColor::eD50,
                             picture.rgba.data());
        ASSERT_EQ(quantization.binColours.size(), 128u);
        std::set<float> distinct;
        for (const CVector2<float>& color : quantization.binColours) {
            const float length = std::hypot(color.x, color.y);
            EXPECT_TRUE(length == 0.0f || std::abs(length - 1.0f) < 1e-6f) << length;   // two roundings
            distinct.insert(color.x);
        }
        EXPECT_LE(distinct.size(), static_cast<std::size_t>(numColours) + 2);
        EXPECT_GE(distinct.size(), 2u);
    }
}

TEST(PTQuantization, LeavesNewBinsAtZeroForFewerThanTwoColors)
{
    const Picture picture = RowOf({kRed, kBlue});
    for (const int numColours : {1, 0, -4}) {
        CPTMedianCutQuantization quantization;
        quantization.Compute(16, numColours, 2, 1, CColor::eD65, picture.rgba.data());
        ASSERT_EQ(quantization.binColours.size(), 16u);
        for (const CVector2<float>& color : quantization.binColours)
            EXPECT_TRUE(color.x == 0.0f && color.y == 0.0f);
    }
}

TEST(PTQuantization, TakesAnySize)
{
    for (const int numBins : {-3, 0, 1, 2, 3}) {
        for (const int width : {-1, 0, 1, 3}) {
            const Picture picture = RowOf({kRed, kBlue, kGreen});
            CPTMedianCutQuantization quantization;
            quantization.Compute(numBins, 3, width, 1, CColor::eD65, picture.rgba.data());
            EXPECT_EQ(quantization.binColours.size(), static_cast<std::size_t>(std::max(numBins, 0)));
        }
    }
}

TEST(PTRecolor, ReadsAndWritesLinearRGB)
{
    CPTMedianCutQuantization quantization;
    quantization.binColours.assign(32, CVector2<float>(0.0f, 1.0f));
    Picture picture = RowOf({{150, 110, 100}});
    quantization.Recolor(1, 1, CColor::eD50, picture.rgba.data());
    const Colour rgb(150 * 0.003921569f, 110 * 0.003921569f, 100 * 0.003921569f);
    const Colour ipt = Converted(CColor::LinearRGBToIPT, CColor::eD50, rgb);
    const Colour expected = Converted(CColor::IPTToLinearRGB, false, CColor::eD50,
                                      Colour(ipt.x, 0.0f, std::sqrt(ipt.y * ipt.y + ipt.z * ipt.z)));
    EXPECT_EQ(picture.rgba[0], static_cast<int>(expected.x * 255.0f + 0.5f));
    EXPECT_EQ(picture.rgba[1], static_cast<int>(expected.y * 255.0f + 0.5f));
    EXPECT_EQ(picture.rgba[2], static_cast<int>(expected.z * 255.0f + 0.5f));
}

TEST(PTRecolor, OfARecoloredPictureChangesLittle)
{
    Picture once = Pastel(80, 60);
    CPTMedianCutQuantization quantization;
    quantization.Compute(256, 6, once.width, once.height, CColor::eD65, once.rgba.data());
    quantization.Recolor(once.width, once.height, CColor::eD65, once.rgba.data());
    Picture twice = once;
    quantization.Recolor(once.width, once.height, CColor::eD65, twice.rgba.data());
    EXPECT_LE(GreatestDifference(once, twice), 1);
}
