// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <climits>
#include <cmath>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "tests/Support/Pictures.h"

using QZ::Foundation::CColor;
using QZ::Foundation::CPTHistogram;
using QZ::Test::Picture;
using testing::Each;

namespace {

CPTHistogram Of(int numBins, const Picture& picture, CColor::EIlluminant illuminant = CColor::eD65)
{
    CPTHistogram histogram;
    histogram.Compute(numBins, illuminant, picture.Pixels(), picture.rgba.data());
    return histogram;
}

}   // namespace

// Worked with 40 digits from the same matrices; the sums carry the rounding of a dozen float operations.
TEST(PTHistogram, SumsThePAndTOfAPixelInTheBinOfItsHue)
{
    const struct {
        std::vector<int> pixel;
        std::size_t bin;
        double P;
        double T;
    } cases[] = {{{200, 60, 40}, 23, 0.270415294, 0.209995301},
                 {{30, 90, 180}, 3, -0.130250536, -0.265424187},
                 {{60, 140, 70}, 13, -0.158490643, 0.12711774}};
    for (const auto& c : cases) {
        const CPTHistogram histogram = Of(36, QZ::Test::RowOf({c.pixel, c.pixel}));
        EXPECT_EQ(histogram.counts[c.bin], 2);
        EXPECT_EQ(std::accumulate(histogram.counts.begin(), histogram.counts.end(), 0), 2);
        EXPECT_NEAR(histogram.sums[c.bin].x, 2 * c.P, 2e-6);
        EXPECT_NEAR(histogram.sums[c.bin].y, 2 * c.T, 2e-6);
        EXPECT_EQ(histogram.pixelCount, 2);
    }
}

// Black has P = T = 0 exactly, and atan2(0, 0) is 0: trunc(pi * 359 / (2 pi) + 0.5) = trunc(180).
TEST(PTHistogram, PutsAHuelessPixelIntoTheMiddle)
{
    EXPECT_EQ(Of(360, QZ::Test::RowOf({{0, 0, 0}})).counts[180], 1);
    EXPECT_EQ(Of(5, QZ::Test::RowOf({{0, 0, 0}})).counts[2], 1);
    EXPECT_EQ(Of(1, QZ::Test::RowOf({{0, 0, 0}})).counts[0], 1);
}

TEST(PTHistogram, AddsPicturesAsLongAsItsSizeIsTheSame)
{
    const Picture picture = QZ::Test::RowOf({{200, 60, 40}});
    CPTHistogram histogram = Of(36, picture);
    histogram.Compute(36, CColor::eD65, 1, picture.rgba.data());
    EXPECT_EQ(histogram.counts[23], 2);
    EXPECT_EQ(histogram.pixelCount, 1);
    histogram.counts[23] = INT_MAX;
    histogram.Compute(36, CColor::eD65, 1, picture.rgba.data());
    EXPECT_EQ(histogram.counts[23], INT_MIN);
}

TEST(PTHistogram, IsEmptyWithoutPixelsOrBins)
{
    CPTHistogram histogram;
    histogram.Compute(12, CColor::eD50, -1, nullptr);
    EXPECT_EQ(histogram.counts, std::vector<int>(12));
    EXPECT_EQ(histogram.pixelCount, -1);
    for (const int numBins : {0, -7}) {
        const CPTHistogram none = Of(numBins, QZ::Test::RowOf({{1, 2, 3}}));
        EXPECT_TRUE(none.counts.empty());
        EXPECT_TRUE(none.sums.empty());
        EXPECT_EQ(none.pixelCount, 1);
    }
}

TEST(PTHistogram, AgreesWithThePlainLoopOnAPhotograph)
{
    const Picture picture = QZ::Test::Photograph(97, 61);
    constexpr float pi = 3.14159274f;
    for (const auto illuminant : {CColor::eD50, CColor::eD65}) {
        std::vector<int> counts(360);
        std::vector<double> sumP(360);
        std::vector<double> sumT(360);
        for (std::size_t k = 0; k < static_cast<std::size_t>(picture.Pixels()); ++k) {
            const unsigned char* pixel = picture.rgba.data() + 4 * k;
            QZ::Math::CVector3<float> ipt;
            CColor::LinearRGBToIPT(
                illuminant, QZ::Math::CVector3<float>(pixel[0], pixel[1], pixel[2]) * 0.003921569f, ipt);
            float hue = 0.0f;
            CColor::IPTToXXH(ipt, hue);
            const auto bin = static_cast<std::size_t>((hue + pi) * (359.0f / 6.28318531f) + 0.5f);
            ++counts[bin];
            sumP[bin] += static_cast<double>(ipt.y);
            sumT[bin] += static_cast<double>(ipt.z);
        }
        const CPTHistogram histogram = Of(360, picture, illuminant);
        EXPECT_EQ(histogram.counts, counts);
        for (std::size_t bin = 0; bin < 360; ++bin) {
            EXPECT_EQ(histogram.sums[bin].x, sumP[bin]);
            EXPECT_EQ(histogram.sums[bin].y, sumT[bin]);
        }
    }
}
