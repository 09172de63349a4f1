// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <algorithm>
#include <climits>
#include <numeric>
#include <random>

#include "QZ/Foundation/Analysis/MedianCut.h"

using QZ::Foundation::CMedianCut;
using Segment = CMedianCut::sSegment;
using testing::ElementsAre;

namespace QZ::Foundation {

bool operator==(const CMedianCut::sSegment& a, const CMedianCut::sSegment& b)
{
    return a.start == b.start && a.end == b.end && a.numBins == b.numBins && a.population == b.population &&
           a.cuttable == b.cuttable;
}

void PrintTo(const CMedianCut::sSegment& s, std::ostream* out)
{
    *out << "{" << s.start << ", " << s.end << ", " << s.numBins << ", " << s.population << ", " << s.cuttable
         << "}";
}

}   // namespace QZ::Foundation

namespace {

struct TwoParts {
    Segment first;
    Segment second;
    int deviation;
};

TwoParts CutAll(const std::vector<int>& bins, bool refine = false)
{
    const int n = static_cast<int>(bins.size());
    TwoParts parts;
    parts.deviation = CMedianCut().Cut({0, n - 1, n, std::accumulate(bins.begin(), bins.end(), 0), true},
                                       parts.first, parts.second, refine, bins);
    return parts;
}

std::vector<Segment> Segments(const std::vector<int>& bins, int numSegments, int low = 0, int high = INT_MAX)
{
    CMedianCut cut;
    cut.Compute(bins, std::accumulate(bins.begin(), bins.end(), 0), numSegments, low, high);
    return cut.segments;
}

}   // namespace

TEST(Population, SumsTheBinsFromFirstToLast)
{
    const std::vector<int> bins = {1, 20, 300, 4000};
    EXPECT_EQ(CMedianCut().Population(1, 2, bins), 320);
    EXPECT_EQ(CMedianCut().Population(3, 3, bins), 4000);
    EXPECT_EQ(CMedianCut().Population(2, 1, bins), 0);
}

TEST(Population, TakesBinsThatDoNotExistForEmpty)
{
    EXPECT_EQ(CMedianCut().Population(-3, 9, {1, 20, 300}), 321);
    EXPECT_EQ(CMedianCut().Population(INT_MIN, INT_MAX, {}), 0);
}

TEST(Population, WrapsAroundAt32Bits)
{
    EXPECT_EQ(CMedianCut().Population(0, 1, {INT_MAX, 1}), INT_MIN);
}

// Populations 3 | 4 + 5: |2*3 - 12| = 6; 3 + 4 | 5: |2*7 - 12| = 2.
TEST(Cut, FallsWhereThePartsAreMostEven)
{
    const TwoParts parts = CutAll({3, 4, 5});
    EXPECT_EQ(parts.first, (Segment{0, 1, 2, 7, true}));
    EXPECT_EQ(parts.second, (Segment{2, 2, 1, 5, true}));
    EXPECT_EQ(parts.deviation, 2);
}

// 1 | 2 + 1 and 1 + 2 | 1 are both 2 apart.
TEST(Cut, TakesTheLaterOfTwoEquallyGoodBoundaries)
{
    const TwoParts parts = CutAll({1, 2, 1});
    EXPECT_EQ(parts.first, (Segment{0, 1, 2, 3, true}));
    EXPECT_EQ(parts.deviation, 2);
}

TEST(Cut, LetsTheBinThatCompletesThePopulationStartTheSecondPart)
{
    const TwoParts parts = CutAll({0, 0, 9, 0});
    EXPECT_EQ(parts.first, (Segment{0, 1, 2, 0, true}));
    EXPECT_EQ(parts.second, (Segment{2, 3, 2, 9, true}));
    EXPECT_EQ(parts.deviation, 9);   // of the boundary before: |0 - 9|
}

TEST(Cut, LeavesAFirstBinThatHoldsAllInTheFirstPart)
{
    const TwoParts parts = CutAll({9, 0, 0});
    EXPECT_EQ(parts.first, (Segment{0, 0, 1, 9, true}));
    EXPECT_EQ(parts.second, (Segment{1, 2, 2, 0, true}));
    EXPECT_EQ(parts.deviation, INT_MAX);
}

TEST(Cut, GivesASegmentWithoutBinsTheLargestDeviation)
{
    Segment first;
    Segment second;
    EXPECT_EQ(CMedianCut().Cut({4, 3, 0, 0, true}, first, second, true, {1, 1, 1, 1, 1}), INT_MAX);
    EXPECT_EQ(first, (Segment{4, 0, -3, 0, true}));
    EXPECT_EQ(second, (Segment{1, 3, 3, 0, true}));
}

// The segment claims 99 and holds 3: the walk runs off its end, and the boundary is the absolute bin 0.
TEST(Cut, EndsAfterBin0WhenThePopulationIsNeverMet)
{
    Segment first;
    Segment second;
    EXPECT_EQ(CMedianCut().Cut({2, 4, 3, 99, true}, first, second, false, {5, 5, 1, 1, 1}), 93);
    EXPECT_EQ(first, (Segment{2, 0, -1, 0, true}));
    EXPECT_EQ(second, (Segment{1, 4, 4, 99, true}));
}

TEST(Cut, LeavesTheFlagOfTheSecondPartToTheCaller)
{
    Segment first;
    Segment second;
    second.cuttable = false;
    CMedianCut().Cut({0, 1, 2, 2, true}, first, second, false, {1, 1});
    EXPECT_FALSE(second.cuttable);
}

// Without refinement 8 | 2 + 2 + 2 + 2, deviation 0. The second part has more bins and is cut at its median,
// and the boundary moves there.
TEST(RefinedCut, MovesTheBoundaryToTheMedianOfTheLongerPart)
{
    const TwoParts parts = CutAll({8, 2, 2, 2, 2}, true);
    EXPECT_EQ(parts.first, (Segment{0, 2, 3, 12, true}));
    EXPECT_EQ(parts.second, (Segment{3, 4, 2, 4, true}));
    EXPECT_EQ(parts.deviation, 0);   // of the cut before refinement
}

TEST(RefinedCut, MovesBackWhenTheFirstPartIsTheLonger)
{
    const TwoParts parts = CutAll({2, 2, 2, 2, 8}, true);
    EXPECT_EQ(parts.first, (Segment{0, 1, 2, 4, true}));
    EXPECT_EQ(parts.second, (Segment{2, 4, 3, 12, true}));
    EXPECT_EQ(parts.deviation, 0);
}

TEST(RefinedCut, TakesTheSecondOfTwoPartsOfEqualLength)
{
    const TwoParts parts = CutAll({2, 2, 2, 2}, true);
    EXPECT_EQ(parts.first, (Segment{0, 2, 3, 6, true}));
    EXPECT_EQ(parts.second, (Segment{3, 3, 1, 2, true}));
}

TEST(RefinedCut, LeavesTwoBinsAsTheyAre)
{
    EXPECT_EQ(CutAll({1, 1}, true).first, (Segment{0, 0, 1, 1, true}));
}

TEST(SegmentOrder, PutsTheWidestFirst)
{
    EXPECT_TRUE(CMedianCut::SegmentLargestNumBinsFirstCompare({0, 4, 5, 1, true}, {0, 3, 4, 9, true}));
    EXPECT_FALSE(CMedianCut::SegmentLargestNumBinsFirstCompare({0, 3, 4, 1, true}, {5, 8, 4, 9, true}));
}

TEST(SegmentOrder, PutsTheLowestStartFirst)
{
    EXPECT_TRUE(CMedianCut::SegmentSmallestStartFirstCompare({0, 0, 1, 1, true}, {1, 1, 1, 1, true}));
    EXPECT_FALSE(CMedianCut::SegmentSmallestStartFirstCompare({1, 1, 1, 1, true}, {1, 1, 1, 1, true}));
}

// 2^16 * 2^15 is 2^31, which wraps to the lowest int.
TEST(SegmentOrder, WrapsTheProductOfWidthAndPopulationAt32Bits)
{
    const Segment small{0, 1, 2, 3, true};
    const Segment large{0, 32767, 32768, 65536, true};
    EXPECT_TRUE(CMedianCut::SegmentLargestNumBinsTimesPopulationFirstCompare(small, large));
    EXPECT_FALSE(CMedianCut::SegmentLargestNumBinsTimesPopulationFirstCompare(large, small));
    EXPECT_TRUE(CMedianCut::SegmentLargestNumBinsTimesPopulationFirstCompare({0, 1, 2, 4, true}, small));
}

TEST(MedianCut, MakesNothingOfFewerThanTwoSegments)
{
    EXPECT_TRUE(Segments({1, 2, 3}, 1).empty());
    EXPECT_TRUE(Segments({1, 2, 3}, INT_MIN).empty());
}

TEST(MedianCut, MakesTwoSegmentsByOneCutAtTheMedian)
{
    EXPECT_THAT(Segments({1, 1, 5, 1, 4}, 2),
                ElementsAre(Segment{0, 2, 3, 7, true}, Segment{3, 4, 2, 5, true}));
}

// Three cuts for four segments: half = ceil(3 / 2) = 2 by width, then one by width times population.
// {0-7: 8} -> 0-3, 4-7 by population 4 | 4; the widest, lowest start: 0-3 -> 0-1 | 2-3; then 4-7 with 4 * 4.
TEST(MedianCut, CutsEqualSegmentsInTheOrderOfTheirStarts)
{
    EXPECT_THAT(Segments({1, 1, 1, 1, 1, 1, 1, 1}, 3),
                ElementsAre(Segment{0, 1, 2, 2, true}, Segment{2, 3, 2, 2, true}, Segment{4, 7, 4, 4, true}));
    EXPECT_EQ(Segments({1, 1, 1, 1, 1, 1, 1, 1}, 4).size(), 4u);
}

// The heavy bin starts the second part; that part's first bin then holds all, and is set apart.
TEST(MedianCut, SetsASingleOccupiedBinApartAndStops)
{
    std::vector<int> bins(256);
    bins[100] = 50;
    EXPECT_THAT(Segments(bins, 10), ElementsAre(Segment{0, 99, 100, 0, true}, Segment{100, 100, 1, 50, true},
                                                Segment{101, 255, 155, 0, true}));
}

TEST(MedianCut, KeepsFixedEndsWhole)
{
    const std::vector<int> bins(256, 1);
    const std::vector<Segment> segments = Segments(bins, 5, 10, 200);
    ASSERT_EQ(segments.size(), 7u);
    EXPECT_EQ(segments.front(), (Segment{0, 9, 10, 10, false}));
    EXPECT_EQ(segments.back(), (Segment{200, 255, 56, 56, false}));
}

TEST(MedianCut, FixesTheLowEndAlone)
{
    EXPECT_THAT(
        Segments({9, 9, 1, 1}, 2, 2, 3),
        ElementsAre(Segment{0, 1, 2, 18, false}, Segment{2, 2, 1, 1, true}, Segment{3, 3, 1, 1, true}));
}

TEST(MedianCut, FixesTheHighEndAlone)
{
    EXPECT_THAT(
        Segments({1, 1, 9, 9}, 2, 0, 2),
        ElementsAre(Segment{0, 0, 1, 1, true}, Segment{1, 1, 1, 1, true}, Segment{2, 3, 2, 18, false}));
}

TEST(MedianCut, BringsFixedEndsIntoTheHistogram)
{
    EXPECT_THAT(Segments({1, 2}, 2, 99, INT_MAX),
                ElementsAre(Segment{0, 1, 2, 3, false}, Segment{2, 1, 0, 0, true}));
    EXPECT_THAT(Segments({1, 2}, 2, INT_MIN, INT_MIN),
                testing::UnorderedElementsAre(Segment{0, -1, 0, 0, true}, Segment{0, 1, 2, 3, false}));
}

TEST(MedianCut, GivesAnEmptyHistogramOneSegmentWithoutBins)
{
    EXPECT_THAT(Segments({}, 4), ElementsAre(Segment{0, -1, 0, 0, true}));
}

TEST(MedianCut, TakesTheTotalPopulationAtItsWord)
{
    CMedianCut cut;
    cut.Compute({1, 1, 1}, 99, 2, 0, INT_MAX);
    EXPECT_THAT(cut.segments, ElementsAre(Segment{0, 0, 1, 0, true}, Segment{1, 2, 2, 99, true}));
}

TEST(MedianCut, AppendsToWhatTheObjectHolds)
{
    CMedianCut cut;
    cut.segments = {{7, 9, 3, 0, true}};
    cut.Compute({1, 1}, 2, 2, 0, INT_MAX);
    EXPECT_EQ(cut.segments.size(), 3u);
}

// Whatever the counts, the segments tile the bins in order, and their populations are those of their bins.
TEST(MedianCut, TilesTheHistogram)
{
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        std::vector<int> bins(1 + random() % 64);
        for (int& bin : bins)
            bin = random() % 3 == 0 ? 0 : static_cast<int>(random() % 1000);
        const int wanted = 2 + static_cast<int>(random() % 20);
        const std::vector<Segment> segments = Segments(bins, wanted);
        EXPECT_LE(segments.size(), static_cast<std::size_t>(wanted));
        int next = 0;
        for (const Segment& s : segments) {
            EXPECT_EQ(s.start, next);
            EXPECT_EQ(s.numBins, s.end - s.start + 1);
            EXPECT_EQ(s.population, CMedianCut().Population(s.start, s.end, bins));
            next = s.end + 1;
        }
        EXPECT_EQ(next, static_cast<int>(bins.size()));
    }
}

// The best boundary found by trying each: of all with the least deviation the last, unless a later bin would
// complete the population, which then stays with the second part.
TEST(Cut, FindsTheBestOfAllBoundaries)
{
    std::mt19937 random(2);
    for (int round = 0; round < 2000; ++round) {
        std::vector<int> bins(2 + random() % 20);
        for (int& bin : bins)
            bin = 1 + static_cast<int>(random() % 9);
        const int total = std::accumulate(bins.begin(), bins.end(), 0);
        int best = INT_MAX;
        int boundary = 0;
        int sum = 0;
        for (int i = 0; i + 1 < static_cast<int>(bins.size()); ++i) {
            sum += bins[static_cast<std::size_t>(i)];
            if (std::abs(2 * sum - total) <= best) {
                best = std::abs(2 * sum - total);
                boundary = i;
            }
        }
        const TwoParts parts = CutAll(bins);
        EXPECT_EQ(parts.first.end, boundary);
        EXPECT_EQ(parts.deviation, best);
    }
}
