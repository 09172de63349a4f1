// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <climits>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "tests/Support/Pictures.h"

using QZ::Foundation::CGrayscaleHistogram;

TEST(GrayscaleHistogram, CountsTheChosenChannel)
{
    const auto picture = QZ::Test::RowOf({{1, 2, 3, 4}, {1, 5, 3, 4}, {7, 2, 3, 255}});
    CGrayscaleHistogram histogram;
    histogram.Compute(3, 1, 4, 1, picture.rgba.data());
    ASSERT_EQ(histogram.bins.size(), 256u);
    EXPECT_EQ(histogram.bins[2], 2);
    EXPECT_EQ(histogram.bins[5], 1);
    EXPECT_EQ(std::accumulate(histogram.bins.begin(), histogram.bins.end(), 0), 3);
    EXPECT_EQ(histogram.count, 3);
}

TEST(GrayscaleHistogram, AddsASecondPictureToTheFirst)
{
    const std::vector<unsigned char> data = {9, 9, 0, 255};
    CGrayscaleHistogram histogram;
    histogram.Compute(2, 2, 1, 0, data.data());
    histogram.Compute(2, 1, 1, 0, data.data());
    EXPECT_EQ(histogram.bins[9], 4);
    EXPECT_EQ(histogram.bins[255], 1);
    EXPECT_EQ(histogram.count, 2);
}

TEST(GrayscaleHistogram, KeepsEachCounterApartAtEveryLength)
{
    std::vector<unsigned char> data(9);
    std::iota(data.begin(), data.end(), static_cast<unsigned char>(250));   // 250 to 255, 0, 1, 2
    for (int n = 0; n <= 9; ++n) {
        CGrayscaleHistogram histogram;
        histogram.Compute(n, 1, 1, 0, data.data());
        for (int k = 0; k < 9; ++k)
            EXPECT_EQ(histogram.bins[data[static_cast<std::size_t>(k)]], k < n ? 1 : 0) << n;
    }
}

// From half a million on, bytes are counted by pairs, eight at a time.
TEST(GrayscaleHistogram, CountsManyBytesToTheLastOne)
{
    std::vector<unsigned char> data((1 << 19) + 9);
    for (std::size_t k = 0; k < data.size(); ++k)
        data[k] = static_cast<unsigned char>(k * k / 3 + k / 1000);
    for (std::size_t n = (1 << 19) - 1; n <= data.size(); ++n) {
        std::vector<int> counts(256);
        for (std::size_t k = 0; k < n; ++k)
            ++counts[data[k]];
        CGrayscaleHistogram histogram;
        histogram.Compute(static_cast<int>(n), 1, 1, 0, data.data());
        EXPECT_EQ(histogram.bins, counts) << n;
    }
}

// Indices 5, 9 and 13 of a picture of 12 bytes: only those below 12 are read.
TEST(GrayscaleHistogram, StaysWithinTheBufferWhenTheOffsetIsBeyondAPixel)
{
    const std::vector<unsigned char> data = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    CGrayscaleHistogram histogram;
    histogram.Compute(3, 1, 4, 5, data.data());
    EXPECT_EQ(histogram.bins[5], 1);
    EXPECT_EQ(histogram.bins[9], 1);
    EXPECT_EQ(std::accumulate(histogram.bins.begin(), histogram.bins.end(), 0), 2);
    EXPECT_EQ(histogram.count, 3);
}

TEST(GrayscaleHistogram, HasEmptyBinsForAPictureWithoutPixels)
{
    CGrayscaleHistogram histogram;
    histogram.Compute(0, 10, 4, 0, nullptr);
    EXPECT_EQ(histogram.bins, std::vector<int>(256));
    EXPECT_EQ(histogram.count, 0);
    histogram.Compute(-3, 10, 4, 0, nullptr);
    EXPECT_EQ(histogram.count, -30);
    histogram.Compute(3, 10, 0, 0, nullptr);
    EXPECT_EQ(histogram.bins, std::vector<int>(256));
}

TEST(GrayscaleHistogram, WrapsTheNumberOfPixelsAt32Bits)
{
    CGrayscaleHistogram histogram;
    histogram.Compute(65536, 32768, 4, 0, nullptr);   // 2^31
    EXPECT_EQ(histogram.count, INT_MIN);
}

TEST(GrayscaleHistogram, WrapsItsCountsAt32Bits)
{
    const unsigned char byte = 3;
    CGrayscaleHistogram histogram;
    histogram.bins.assign(256, INT_MAX);
    histogram.Compute(1, 1, 1, 0, &byte);
    EXPECT_EQ(histogram.bins[3], INT_MIN);
}
