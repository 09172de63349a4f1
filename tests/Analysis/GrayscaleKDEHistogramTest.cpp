// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <cmath>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "tests/Support/Pictures.h"

using QZ::Foundation::CGrayscaleHistogram;
using Histogram = QZ::Foundation::CGrayscaleKDEHistogram;
using testing::Each;

namespace {

Histogram Of(const std::vector<unsigned char>& data)
{
    Histogram histogram;
    histogram.Compute(static_cast<int>(data.size()), 1, 0.0, 1, 0, data.data());
    return histogram;
}

std::vector<unsigned char> Repeated(std::initializer_list<std::pair<unsigned char, std::size_t>> levels)
{
    std::vector<unsigned char> data;
    for (const auto& [level, count] : levels)
        data.insert(data.end(), count, level);
    return data;
}

std::vector<int> Slice(const std::vector<int>& bins, std::ptrdiff_t first, std::ptrdiff_t last)
{
    return {bins.begin() + first, bins.begin() + last + 1};
}

}   // namespace

// Bandwidth 5 * 1.06 * 1600^-0.2 = 1.2119; worked with 30 digits.
TEST(GrayscaleKDEHistogram, SmoothsByAGaussianOfSilvermansBandwidth)
{
    const Histogram histogram = Of(Repeated({{100, 800}, {110, 800}}));
    EXPECT_EQ(Slice(histogram.bins, 94, 116),
              (std::vector<int>{0, 0,  1,  12,  67,  187, 263, 187, 67, 12, 1, 0,
                                1, 12, 67, 187, 263, 187, 67,  12,  1,  0,  0}));
    EXPECT_EQ(histogram.total, 1594.0);
}

// Bandwidth 1.8389; with the first bin repeated, bin 0 is 3.82, without it would be 2.52.
TEST(GrayscaleKDEHistogram, RepeatsTheOutermostBins)
{
    const Histogram histogram = Of(Repeated({{0, 6}, {3, 3}, {9, 1}}));
    EXPECT_EQ(Slice(histogram.bins, 0, 5), (std::vector<int>{4, 3, 2, 1, 1, 0}));
}

TEST(GrayscaleKDEHistogram, LeavesAPictureOfOneLevelAsItIs)
{
    const Histogram histogram = Of(Repeated({{77, 1000}}));
    EXPECT_EQ(histogram.bins[77], 1000);
    EXPECT_EQ(std::accumulate(histogram.bins.begin(), histogram.bins.end(), 0), 1000);
    EXPECT_EQ(histogram.total, 1000.0);
}

TEST(GrayscaleKDEHistogram, IsEmptyForAPictureWithoutPixels)
{
    Histogram histogram;
    histogram.Compute(0, 5, 0.0, 1, 0, nullptr);
    EXPECT_THAT(histogram.bins, Each(0));
    histogram.Compute(-4, 5, 0.0, 1, 0, nullptr);
    EXPECT_THAT(histogram.bins, Each(0));
    EXPECT_EQ(histogram.bins.size(), 256u);
    EXPECT_EQ(histogram.total, 0.0);
}

TEST(GrayscaleKDEHistogram, AssignsItsBinsAndNeverReadsTheDoubleArgument)
{
    const auto picture = QZ::Test::Photograph(50, 40);
    Histogram once;
    once.Compute(50, 40, 0.0, 4, 2, picture.rgba.data());
    Histogram twice = once;
    twice.Compute(50, 40, std::nan(""), 4, 2, picture.rgba.data());
    EXPECT_EQ(twice.bins, once.bins);
    EXPECT_EQ(twice.total, once.total);
    EXPECT_NEAR(once.total, 2000.0, 128.0);   // 256 roundings by at most a half
}

// 255 * 9,000,000 wraps to -1999967296, so the mean is -222 and the kernel is as wide as that makes it.
TEST(GrayscaleKDEHistogram, WrapsItsFirstMomentAt32Bits)
{
    const Histogram histogram = Of(std::vector<unsigned char>(9000000, 255));
    EXPECT_EQ(Slice(histogram.bins, 250, 255),
              (std::vector<int>{3720529, 3891841, 4064575, 4238333, 4412709, 4587291}));
}
