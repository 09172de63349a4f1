// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <climits>
#include <cstdlib>
#include <numeric>
#include <random>

#include "QZ/Foundation/Analysis/MedianCut.h"

using QZ::Foundation::CCircularMedianCut;
using Segment = CCircularMedianCut::sSegment;

namespace {

std::vector<Segment> Segments(const std::vector<int>& bins, int numSegments)
{
    CCircularMedianCut cut;
    cut.Compute(bins, std::accumulate(bins.begin(), bins.end(), 0), numSegments);
    EXPECT_FALSE(cut.wrapJoined);
    return cut.segments;
}

void ExpectSegment(const Segment& s, int start, int end, int population)
{
    EXPECT_EQ(s.start, start);
    EXPECT_EQ(s.end, end);
    EXPECT_EQ(s.numBins, end - start + 1);
    EXPECT_EQ(s.population, population);
    EXPECT_TRUE(s.cuttable);
}

std::vector<int> Doubled(std::vector<int> bins)
{
    const std::vector<int> once = bins;
    bins.insert(bins.end(), once.begin(), once.end());
    return bins;
}

}   // namespace

TEST(CircularMedianCut, MakesNothingOfFewerThanTwoSegmentsOrNoBins)
{
    EXPECT_TRUE(Segments({1, 2, 3}, 1).empty());
    EXPECT_TRUE(Segments({}, 5).empty());
}

// From start 0 the parts are 4 | 4 in population and 2 | 2 in bins, and no start does better.
TEST(CircularMedianCut, OpensTheCircleAtTheLowestOfEquallyGoodStarts)
{
    const std::vector<Segment> segments = Segments({2, 2, 2, 2}, 2);
    ASSERT_EQ(segments.size(), 2u);
    ExpectSegment(segments[0], 0, 1, 4);
    ExpectSegment(segments[1], 2, 3, 4);
}

// Every start divides the population 5 | 5, starts 0 to 4 into 2 | 4, 5 | 1, 4 | 2, 5 | 1 and 4 | 2 bins.
TEST(FirstCut, PrefersTheMostEvenNumbersOfBinsAmongEqualPopulations)
{
    Segment first;
    Segment second;
    CCircularMedianCut().FirstCut(10, 6, first, second, Doubled({5, 0, 5, 0, 0, 0}));
    ExpectSegment(first, 5, 7, 5);
    ExpectSegment(second, 8, 10, 5);
}

TEST(FirstCut, LeavesItsResultsAloneWithoutBins)
{
    Segment first{7, 8, 2, 9, false};
    Segment second{3, 4, 2, 5, false};
    CCircularMedianCut().FirstCut(0, 0, first, second, {});
    EXPECT_EQ(first.start, 7);
    EXPECT_EQ(second.start, 3);
}

// The opening above, folded back: the first part lies across the seam.
TEST(CircularMedianCut, GivesASegmentAcrossTheSeamAsTwoPieces)
{
    const std::vector<Segment> segments = Segments({5, 0, 5, 0, 0, 0}, 2);
    ASSERT_EQ(segments.size(), 3u);
    ExpectSegment(segments[0], 0, 1, 5);
    ExpectSegment(segments[1], 2, 4, 5);
    ExpectSegment(segments[2], 5, 5, 0);
}

// The peak about the seam is 8 + 4 | 4 + 8 with the halves at 0 and at the last bin; the rest is empty.
TEST(CircularMedianCut, CutsAPeakAboutTheSeamAtItsMiddle)
{
    const std::vector<Segment> segments = Segments({8, 4, 0, 0, 0, 0, 4, 8}, 2);
    ASSERT_EQ(segments.size(), 2u);
    ExpectSegment(segments[0], 0, 3, 12);
    ExpectSegment(segments[1], 4, 7, 12);
}

// One bin: it is cut after itself, and the rest has no bins.
TEST(CircularMedianCut, LeavesASingleBinWhole)
{
    const std::vector<Segment> segments = Segments({4}, 3);
    ASSERT_EQ(segments.size(), 2u);
    ExpectSegment(segments[0], 0, 0, 4);
    ExpectSegment(segments[1], 1, 0, 0);
}

TEST(CircularMedianCut, TilesTheCircle)
{
    std::mt19937 random(3);
    int wrapped = 0;
    for (int round = 0; round < 500; ++round) {
        std::vector<int> bins(2 + random() % 40);
        for (int& bin : bins)
            bin = random() % 3 == 0 ? 0 : 1 + static_cast<int>(random() % 1000);
        bins[random() % bins.size()] = 500;
        const int wanted = 2 + static_cast<int>(random() % 12);
        const std::vector<Segment> segments = Segments(bins, wanted);
        EXPECT_LE(segments.size(), static_cast<std::size_t>(wanted) + 1);
        wrapped += segments.size() == static_cast<std::size_t>(wanted) + 1;
        int next = 0;
        for (const Segment& s : segments) {
            if (s.numBins == 0)
                continue;
            EXPECT_EQ(s.start, next);
            EXPECT_EQ(s.population, CCircularMedianCut().Population(s.start, s.end, bins));
            next = s.end + 1;
        }
        EXPECT_EQ(next, static_cast<int>(bins.size()));
    }
    EXPECT_GT(wrapped, 50);
}

// Every start and, for each, its median, tried one by one.
TEST(FirstCut, FindsTheMostEvenOfAllCuts)
{
    std::mt19937 random(4);
    for (int round = 0; round < 300; ++round) {
        const int n = 2 + static_cast<int>(random() % 15);
        std::vector<int> bins(static_cast<std::size_t>(n));
        for (int& bin : bins)
            bin = 1 + static_cast<int>(random() % 9);
        const std::vector<int> doubled = Doubled(bins);
        const int total = std::accumulate(bins.begin(), bins.end(), 0);
        int best = INT_MAX;
        for (int start = 0; start < n; ++start)
            for (int end = start; end < start + n - 1; ++end)
                best = std::min(best,
                                std::abs(2 * CCircularMedianCut().Population(start, end, doubled) - total));
        Segment first;
        Segment second;
        CCircularMedianCut().FirstCut(total, n, first, second, doubled);
        EXPECT_EQ(std::abs(first.population - second.population), best);
        EXPECT_EQ(first.population + second.population, total);
    }
}
