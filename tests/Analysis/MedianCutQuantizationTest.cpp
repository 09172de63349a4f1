// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <set>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "tests/Support/Pictures.h"

using Quantizer = QZ::Foundation::CGrayscaleHistogramMedianCutQuantization;
using testing::Each;

namespace {

std::vector<unsigned char> Table(const std::vector<unsigned char>& data, int numSegments,
                                 unsigned char mergeThreshold = 0)
{
    Quantizer quantizer;
    quantizer.Compute(0, 1, 1, 0, 1, numSegments, static_cast<int>(data.size()), 1, 1, 0, mergeThreshold,
                      data.data());
    return quantizer.table;
}

/// The tones of the levels.
std::vector<int> Tones(const std::vector<unsigned char>& table, const std::vector<std::size_t>& levels)
{
    std::vector<int> tones;
    for (const std::size_t level : levels)
        tones.push_back(table[level]);
    return tones;
}

}   // namespace

// Four levels of equal population: cut before 160, then each half, the wider one first.
TEST(MedianCutQuantization, PaintsEachSegmentWithItsMean)
{
    const std::vector<unsigned char> data = {30, 90, 160, 221};
    EXPECT_EQ(Tones(Table(data, 2), {0, 30, 90, 159, 160, 221, 255}),
              (std::vector<int>{60, 60, 60, 60, 191, 191, 191}));
    EXPECT_EQ(Tones(Table(data, 4), {30, 90, 160, 221}), (std::vector<int>{30, 90, 160, 221}));
}

TEST(MedianCutQuantization, PaintsSegmentsWithoutPixelsBlack)
{
    const std::vector<unsigned char> table = Table({100, 100}, 3);
    EXPECT_EQ(Tones(table, {0, 99, 100, 101, 255}), (std::vector<int>{0, 0, 100, 0, 0}));
}

TEST(MedianCutQuantization, LeavesTheTableBlackWithFewerThanTwoSegments)
{
    EXPECT_THAT(Table({1, 2, 3}, 1), testing::AllOf(testing::SizeIs(256), Each(0)));
    EXPECT_THAT(Table({}, 4), testing::AllOf(testing::SizeIs(256), Each(0)));
}

TEST(MedianCutQuantization, KeepsTheEntriesThatNoSegmentCovers)
{
    Quantizer quantizer;
    quantizer.table.assign(300, 9);
    const std::vector<unsigned char> data = {1, 2};
    quantizer.Compute(0, 1, 1, 0, 1, 1, 2, 1, 1, 0, 0, data.data());
    EXPECT_THAT(quantizer.table, testing::AllOf(testing::SizeIs(256), Each(9)));
}

// From 30 to 90 is 60, from 160 to 221 is 61; 60 and 160 then are 100 apart.
TEST(MedianCutQuantization, MergesTonesThatAreNoFurtherApartThanTheThreshold)
{
    const std::vector<unsigned char> data = {30, 90, 160, 221};
    EXPECT_EQ(Tones(Table(data, 4, 59), {30, 90, 160, 221}), (std::vector<int>{30, 90, 160, 221}));
    EXPECT_EQ(Tones(Table(data, 4, 60), {30, 90, 160, 221}), (std::vector<int>{60, 60, 160, 221}));
    EXPECT_EQ(Tones(Table(data, 4, 61), {30, 90, 160, 221}), (std::vector<int>{60, 60, 191, 191}));
}

// 30 and 90 make 60, of 2 pixels; with 160: (2 * 60 + 160) / 3 = 93.3; with 221: (3 * 93 + 221) / 4 = 125.
TEST(MedianCutQuantization, MergesEveryIncreasingNeighbourWithTheLargestThreshold)
{
    EXPECT_EQ(Tones(Table({30, 90, 160, 221}, 4, 255), {0, 30, 90, 160, 221, 255}),
              (std::vector<int>{125, 125, 125, 125, 125, 125}));
}

// Segments 0-99 empty, 100, 101-255 empty: the tones are 0, 100, 0. 0 and 100 merge to their mean weighted by
// population, which is 100; the fall from 100 to 0 is never merged.
TEST(MedianCutQuantization, NeverMergesADarkerNeighbour)
{
    EXPECT_EQ(Tones(Table({100, 100}, 3, 255), {0, 100, 101, 255}), (std::vector<int>{100, 100, 0, 0}));
}

TEST(MedianCutQuantization, ReadsOneChannelOfAPicture)
{
    const auto picture = QZ::Test::Photograph(64, 48);
    std::vector<unsigned char> green;
    for (std::size_t i = 1; i < picture.rgba.size(); i += 4)
        green.push_back(picture.rgba[i]);
    Quantizer quantizer;
    quantizer.Compute(9, 9, 9, 9, 9, 6, 64, 48, 4, 1, 0, picture.rgba.data());
    EXPECT_EQ(quantizer.table, Table(green, 6));
    const std::set<unsigned char> tones(quantizer.table.begin(), quantizer.table.end());
    EXPECT_EQ(tones.size(), 6u);
}

// 9,000,000 * 255 wraps to -1999967296; divided by 9,000,000 that is -222.2, and -221 has the low byte 35.
TEST(MedianCutQuantization, WrapsTheMomentOfALevelAt32Bits)
{
    std::vector<unsigned char> data(9000001, 255);
    data[0] = 0;
    EXPECT_EQ(Tones(Table(data, 2), {0, 255}), (std::vector<int>{0, 35}));
}
