// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <cmath>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "tests/Support/Pictures.h"

using QZ::Foundation::CColor;
using QZ::Test::Picture;
using Histogram = QZ::Foundation::CGrayscaleWeightedHistogram;

namespace {

Histogram Of(Histogram::EGrayscaleFrom from, const Picture& picture, bool isSRGB = true,
             const unsigned char* alpha = nullptr, CColor::EIlluminant illuminant = CColor::eD65)
{
    Histogram histogram;
    histogram.Compute(from, isSRGB, illuminant, picture.width, picture.height, picture.rgba.data(), 4, 3,
                      alpha);
    return histogram;
}

/// The one bin that holds the picture's single pixel.
int LevelOf(Histogram::EGrayscaleFrom from, bool isSRGB, CColor::EIlluminant illuminant,
            const std::vector<int>& pixel)
{
    const Histogram histogram = Of(from, QZ::Test::RowOf({pixel}), isSRGB, nullptr, illuminant);
    for (int level = 0; level < 256; ++level)
        if (histogram.bins[static_cast<std::size_t>(level)] == 1.0)
            return level;
    return -1;
}

double Sum(const std::vector<double>& bins)
{
    return std::accumulate(bins.begin(), bins.end(), 0.0);
}

/// The histogram as one would write it down, a pixel at a time.
Histogram Plainly(Histogram::EGrayscaleFrom from, bool isSRGB, CColor::EIlluminant illuminant,
                  const Picture& picture, const unsigned char* alpha)
{
    Histogram histogram;
    histogram.bins.resize(256);
    for (std::size_t k = 0; k < static_cast<std::size_t>(picture.Pixels()); ++k) {
        const unsigned char* pixel = picture.rgba.data() + 4 * k;
        const QZ::Math::CVector3<float> rgb =
            QZ::Math::CVector3<float>(pixel[0], pixel[1], pixel[2]) * 0.003921569f;
        float grey = 0.0f;
        if (from == Histogram::eLXX)
            isSRGB ? CColor::SRGBToLXX(false, false, rgb, grey) : CColor::LinearRGBToLXX(rgb, grey);
        else
            isSRGB ? CColor::SRGBToNonlinearY(false, false, illuminant, rgb, grey)
                   : CColor::LinearRGBToNonlinearY(false, false, illuminant, rgb, grey);
        const auto bin = static_cast<std::size_t>(std::floor(grey * 255.0f + 0.5f));
        const float weight = alpha == nullptr ? 1.0f : static_cast<float>(alpha[4 * k + 3]) * 0.003921569f;
        histogram.bins[bin] += static_cast<double>(weight);
        histogram.total += static_cast<double>(weight);
    }
    return histogram;
}

}   // namespace

TEST(GrayscaleWeightedHistogram, TakesExactly256Values)
{
    std::vector<int> counts(256);
    counts[3] = 7;
    counts[255] = 2147483647;
    const Histogram ofCounts(counts);
    EXPECT_EQ(ofCounts.bins[3], 7.0);
    EXPECT_EQ(ofCounts.total, 2147483654.0);

    std::vector<float> weights(256);
    weights[0] = 0.25f;
    weights[9] = 16777216.0f;
    const Histogram ofWeights(weights);
    EXPECT_EQ(ofWeights.bins[0], 0.25);
    EXPECT_EQ(ofWeights.total, 16777216.25);   // more digits than a float has
}

TEST(GrayscaleWeightedHistogram, HasNoBinsFromAnyOtherNumberOfValues)
{
    for (const std::size_t n : {0u, 255u, 257u}) {
        EXPECT_TRUE(Histogram(std::vector<int>(n, 1)).bins.empty());
        EXPECT_TRUE(Histogram(std::vector<float>(n, 1.0f)).bins.empty());
        EXPECT_EQ(Histogram(std::vector<int>(n, 1)).total, 0.0);
    }
}

TEST(GrayscaleWeightedHistogram, PutsBlackIntoTheFirstBinAndWhiteIntoTheLast)
{
    for (const auto from : {Histogram::eLXX, Histogram::eNonlinearY})
        for (const bool isSRGB : {false, true})
            for (const auto illuminant : {CColor::eD50, CColor::eD65}) {
                EXPECT_EQ(LevelOf(from, isSRGB, illuminant, {0, 0, 0}), 0);
                EXPECT_EQ(LevelOf(from, isSRGB, illuminant, {255, 255, 255}), 255);
            }
}

TEST(GrayscaleWeightedHistogram, KeepsEncodedGreysWhereTheyAre)
{
    for (int grey = 0; grey < 256; ++grey)
        EXPECT_EQ(LevelOf(Histogram::eNonlinearY, true, CColor::eD65, {grey, grey, grey}), grey);
}

TEST(GrayscaleWeightedHistogram, TakesTheFourthByteAsItStands)
{
    EXPECT_EQ(LevelOf(Histogram::eFourthChannel, true, CColor::eD65, {9, 9, 9, 77}), 77);
}

TEST(GrayscaleWeightedHistogram, AddsNothingForAnotherSourceOfGrey)
{
    Histogram histogram;
    histogram.bins.assign(256, 2.0);
    histogram.total = 9.0;
    const Picture picture = QZ::Test::RowOf({{1, 2, 3}});
    histogram.Compute(static_cast<Histogram::EGrayscaleFrom>(3), true, CColor::eD65, 1, 1,
                      picture.rgba.data(), 0, 0, nullptr);
    EXPECT_EQ(histogram.bins, std::vector<double>(256, 2.0));
    EXPECT_EQ(histogram.total, 0.0);
}

TEST(GrayscaleWeightedHistogram, WeighsPixelsByTheMask)
{
    const Picture picture = QZ::Test::RowOf({{0, 0, 0, 51}, {0, 0, 0, 102}, {255, 255, 255, 0}});
    const Histogram histogram = Of(Histogram::eLXX, picture, true, picture.rgba.data());
    const double weight = static_cast<double>(51 * 0.003921569f) + static_cast<double>(102 * 0.003921569f);
    EXPECT_EQ(histogram.bins[0], weight);
    EXPECT_EQ(histogram.bins[255], 0.0);
    EXPECT_EQ(histogram.total, weight);
}

TEST(GrayscaleWeightedHistogram, ReadsASeparateMaskAtItsOwnStrideAndOffset)
{
    const Picture picture = QZ::Test::RowOf({{0, 0, 0}, {255, 255, 255}});
    const std::vector<unsigned char> mask = {9, 255, 9, 9, 0};
    Histogram histogram;
    histogram.Compute(Histogram::eLXX, true, CColor::eD65, 2, 1, picture.rgba.data(), 3, 1, mask.data());
    EXPECT_EQ(histogram.bins[0], 1.0);
    EXPECT_EQ(histogram.total, 1.0);
}

TEST(GrayscaleWeightedHistogram, IsEmptyUnderAFullyTransparentMask)
{
    const Picture picture = QZ::Test::Photograph(40, 30);
    const std::vector<unsigned char> mask(4 * 40 * 30);
    const Histogram masked = Of(Histogram::eNonlinearY, picture, true, mask.data());
    EXPECT_EQ(masked.bins, std::vector<double>(256));
    EXPECT_EQ(masked.total, 0.0);
    EXPECT_EQ(Of(Histogram::eNonlinearY, picture).total, 1200.0);
}

TEST(GrayscaleWeightedHistogram, TakesTheAreaForTheTotalEvenWhenThereIsNoPixel)
{
    Histogram histogram;
    histogram.Compute(Histogram::eLXX, true, CColor::eD65, -2, 3, nullptr, 0, 0, nullptr);
    EXPECT_EQ(histogram.bins, std::vector<double>(256));
    EXPECT_EQ(histogram.total, -6.0);
    histogram.ComputeFromComponent(-2, 3, 1, 0, nullptr, 0, 0, nullptr);
    EXPECT_EQ(histogram.total, -6.0);
}

TEST(GrayscaleWeightedHistogram, AddsToItsBinsAndResetsTheTotal)
{
    const Picture picture = QZ::Test::RowOf({{0, 0, 0, 255}});
    Histogram histogram = Of(Histogram::eLXX, picture);
    histogram.Compute(Histogram::eLXX, true, CColor::eD65, 1, 1, picture.rgba.data(), 4, 3,
                      picture.rgba.data());
    EXPECT_EQ(histogram.bins[0], 2.0);
    EXPECT_EQ(histogram.total, 1.0);
    histogram.ComputeFromComponent(1, 1, 4, 0, picture.rgba.data(), 0, 0, nullptr);
    EXPECT_EQ(histogram.bins[0], 3.0);
    EXPECT_EQ(histogram.total, 1.0);
}

TEST(GrayscaleWeightedHistogram, CountsAComponent)
{
    const std::vector<unsigned char> data = {1, 10, 1, 20, 1, 10};
    const std::vector<unsigned char> mask = {255, 255, 0};
    Histogram histogram;
    histogram.ComputeFromComponent(3, 1, 2, 1, data.data(), 0, 0, nullptr);
    EXPECT_EQ(histogram.bins[10], 2.0);
    EXPECT_EQ(histogram.bins[20], 1.0);
    EXPECT_EQ(histogram.total, 3.0);

    Histogram masked;
    masked.ComputeFromComponent(3, 1, 2, 1, data.data(), 1, 0, mask.data());
    EXPECT_EQ(masked.bins[10], 1.0);
    EXPECT_EQ(masked.bins[20], 1.0);
    EXPECT_EQ(masked.total, 2.0);
}

// The sum starts with the newest: 1e16 + 1 + 1 would lose both ones, 1 + 1 + 1e16 keeps them.
TEST(GrayscaleWeightedHistogram, SumsTheLastOfASeriesNewestFirst)
{
    std::vector<Histogram> series(4, Histogram(std::vector<int>(256, 1)));
    series[0].bins[0] = 64.0;
    series[1].bins[0] = 1e16;
    series[1].total = 1000.0;
    const Histogram sum = Histogram::Sum(3, series);
    EXPECT_EQ(sum.bins[0], 1e16 + 2.0);
    EXPECT_EQ(sum.bins[255], 3.0);
    EXPECT_EQ(sum.total, 1512.0);
}

TEST(GrayscaleWeightedHistogram, SumsAllWhenAskedForMoreThanThereAre)
{
    const std::vector<Histogram> series(3, Histogram(std::vector<int>(256, 2)));
    EXPECT_EQ(Histogram::Sum(99, series).bins, std::vector<double>(256, 6.0));
    EXPECT_EQ(Histogram::Sum(99, series).total, 1536.0);
}

TEST(GrayscaleWeightedHistogram, SumsNothingToEmptyBins)
{
    const std::vector<Histogram> series(3, Histogram(std::vector<int>(256, 2)));
    for (const int n : {0, -1}) {
        EXPECT_EQ(Histogram::Sum(n, series).bins, std::vector<double>(256));
        EXPECT_EQ(Histogram::Sum(n, series).total, 0.0);
    }
    EXPECT_EQ(Histogram::Sum(5, {}).bins, std::vector<double>(256));
    EXPECT_EQ(Histogram::Sum(5, {Histogram()}).bins, std::vector<double>(256));
}

TEST(GrayscaleWeightedHistogram, AgreesWithThePlainLoopOnAPhotograph)
{
    const Picture picture = QZ::Test::Photograph(97, 61);
    for (const auto from : {Histogram::eLXX, Histogram::eNonlinearY})
        for (const bool isSRGB : {false, true})
            for (const auto illuminant : {CColor::eD50, CColor::eD65})
                for (const unsigned char* alpha :
                     {static_cast<const unsigned char*>(nullptr), picture.rgba.data()}) {
                    const Histogram expected = Plainly(from, isSRGB, illuminant, picture, alpha);
                    const Histogram histogram = Of(from, picture, isSRGB, alpha, illuminant);
                    EXPECT_EQ(histogram.bins, expected.bins);
                    EXPECT_EQ(histogram.total, expected.total);
                    EXPECT_NEAR(Sum(histogram.bins), histogram.total, 1e-9);   // other order of addition
                }
}
