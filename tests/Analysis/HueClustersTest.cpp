// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

#include "QZ/Foundation/Analysis/HueClusters.h"
#include "QZ/Foundation/Analysis/HueSegments.h"

namespace {

using namespace QZ::Foundation;
using QZ::Math::CVector2;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Pair;

using Ranges = std::vector<std::pair<int, int>>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kPi = 3.14159265358979323846;

Ranges RangesOf(const HueClusters& clusters)
{
    Ranges ranges;
    for (const HueCluster& cluster : clusters)
        ranges.emplace_back(cluster.first, cluster.last);
    return ranges;
}

CHueWeightedHistogram HistogramOf(const std::vector<double>& weights)
{
    CHueWeightedHistogram histogram;
    histogram.weights = weights;
    histogram.sums.resize(weights.size());
    histogram.greySums.resize(weights.size());
    histogram.total = std::accumulate(weights.begin(), weights.end(), 0.0);
    return histogram;
}

HueCluster Cluster(double weight, int first, int last)
{
    HueCluster cluster(weight, {1.0, 0.0}, first);
    cluster.last = last;
    return cluster;
}

Ranges Shared(int numBins, HueClusters clusters)
{
    ShareGaps(numBins, clusters);
    return RangesOf(clusters);
}

}   // namespace

TEST(HueCluster, StartsAsOneBin)
{
    const HueCluster cluster(0.25, {0.6, 0.8}, 7);
    EXPECT_EQ(cluster.weight, 0.25);
    EXPECT_EQ(cluster.direction.y, 0.8);
    EXPECT_EQ(cluster.distance, std::numeric_limits<double>::max());
    EXPECT_EQ(cluster.first, 7);
    EXPECT_EQ(cluster.last, 7);
}

// Two bins of equal weight a right angle apart: their mean (0.5, 0.5) has the dot product 0.5 with either, an
// arc cosine of pi / 3, whose square is the variance; between them (pi / 2)^2 / 4.
TEST(HueCluster, CostsTheVarianceWithinTimesTheVarianceBetween)
{
    const std::vector<double> weights = {0.5, 0.5, 0.0, -0.5};
    const std::vector<CVector2<double>> directions = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    HueClusters clusters = {{0.5, directions[0], 0}, {0.5, directions[1], 1}};
    clusters.back().Distance(clusters.begin(), weights, directions);
    const double expected = (kPi / 3) * (kPi / 3) * 0.25 * (kPi / 2) * (kPi / 2);
    EXPECT_NEAR(clusters.back().distance, expected, 1e-14);   // an arc cosine and a dozen roundings

    // From bin 1 around to bin 0, where bins 2 and 3 have no weight above 0, it is the same.
    clusters.front().Distance(std::prev(clusters.end()), weights, directions);
    EXPECT_NEAR(clusters.front().distance, expected, 1e-14);
}

TEST(HueCluster, TakesInItsPredecessor)
{
    HueClusters clusters = {{0.1, {1, 0}, 3}, {0.3, {0, 1}, 8}};
    clusters.back().CombineWithPrevious(clusters.begin());
    EXPECT_NEAR(clusters.back().weight, 0.4, 1e-16);
    EXPECT_NEAR(clusters.back().direction.x, 0.25, 1e-15);
    EXPECT_NEAR(clusters.back().direction.y, 0.75, 1e-15);
    EXPECT_EQ(clusters.back().first, 3);
    EXPECT_EQ(clusters.back().last, 8);
}

TEST(HueCluster, WithoutWeightCostsNothingAndDividesNothing)
{
    HueClusters clusters = {{0.0, {1, 0}, 0}, {0.0, {0, 1}, 1}};
    clusters.back().Distance(clusters.begin(), {0.0, 0.0}, {{1, 0}, {0, 1}});
    EXPECT_EQ(clusters.back().distance, 0.0);
    clusters.back().CombineWithPrevious(clusters.begin());
    EXPECT_EQ(clusters.back().direction.x, 0.0);
    EXPECT_EQ(clusters.back().direction.y, 1.0);
}

TEST(HueCluster, CostsNaNWhenRoundingPushesAProductAboveOne)
{
    const double above = std::nextafter(1.0, 2.0);
    HueClusters clusters = {{0.5, {above, 0}, 0}, {0.5, {1, 0}, 1}};
    clusters.back().Distance(clusters.begin(), {0.5, 0.5}, {{1, 0}, {1, 0}});
    EXPECT_TRUE(std::isnan(clusters.back().distance));
}

// Expected ranges from a separate program that works on plain lists.
TEST(HueClustering, AgreesWithAnIndependentProgram)
{
    const struct {
        std::vector<double> weights;
        int numClusters;
        double minAngle;
        Ranges merged, shared;
    } cases[] = {
        {{3, 0, 0, 1, 0, 2, 0, 0, 4, 0, 1, 0}, 3, 0, {{0, 0}, {3, 5}, {8, 10}}, {{0, 1}, {2, 6}, {7, 11}}},
        {{3, 0, 0, 1, 0, 2, 0, 0, 4, 0, 1, 0}, 1, 0, {{3, 0}}, {{0, 11}}},
        {{3, 0, 0, 1, 0, 2, 0, 0, 4, 0, 1, 0},
         6,
         0,
         {{0, 0}, {3, 3}, {5, 5}, {8, 8}, {10, 10}},
         {{11, 2}, {3, 3}, {4, 6}, {7, 9}, {10, 10}}},
        {{3, 0, 0, 1, 0, 2, 0, 0, 4, 0, 1, 0}, 2, 0, {{8, 0}, {3, 5}}, {{6, 2}, {3, 5}}},
        {{3, 0, 0, 1, 0, 2, 0, 0, 4, 0, 1, 0}, 5, 70, {{0, 0}, {3, 5}, {8, 10}}, {{0, 1}, {2, 6}, {7, 11}}},
        {{3, 0, 0, 1, 0, 2, 0, 0, 4, 0, 1, 0}, 5, 360, {{3, 0}}, {{0, 11}}},
        {{0, 0, 2, 0, 0, 0, 5, 1, 0, 0, 0, 0}, 3, 0, {{2, 2}, {6, 6}, {7, 7}}, {{10, 3}, {4, 6}, {7, 9}}},
        {{0, 0, 8, 0, 0, 0, 5, 1, 0, 0, 0, 0}, 2, 0, {{2, 2}, {6, 7}}, {{10, 4}, {5, 9}}},
        {{0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 9, 0}, 2, 0, {{4, 4}, {10, 10}}, {{4, 4}, {5, 3}}},
        {{2, 3, 0, 8, 13, 1, 0, 0, 0, 8, 3, 0, 2, 5, 3, 1, 0, 3, 2, 0, 3, 3, 2, 1},
         4,
         0,
         {{0, 5}, {9, 10}, {12, 15}, {17, 23}},
         {{0, 7}, {8, 11}, {12, 15}, {16, 23}}},
        {{3, 3, 5, 0, 5, 8, 2, 1, 2, 13, 3, 0, 3, 0, 3, 3, 2, 8, 8, 3, 8, 13, 1, 2},
         5,
         0,
         {{23, 2}, {4, 6}, {7, 12}, {14, 19}, {20, 22}},
         {{23, 2}, {3, 6}, {7, 12}, {13, 19}, {20, 22}}},
        {{3, 3, 0, 0, 0, 13, 3, 13, 5, 1, 2, 0, 8,  2, 13, 3, 1, 5, 8,
          5, 2, 5, 0, 0, 2,  3, 2,  0, 5, 1, 3, 13, 0, 0,  5, 0, 3},
         6,
         0,
         {{34, 1}, {5, 9}, {10, 15}, {16, 21}, {24, 26}, {28, 31}},
         {{33, 2}, {3, 9}, {10, 15}, {16, 23}, {24, 26}, {27, 32}}},
        {{5,  0, 5, 3, 5, 1, 8,  0, 3, 2, 13, 3, 1, 3, 8, 1, 5, 0,  5, 0,
          13, 1, 5, 5, 3, 0, 13, 2, 8, 2, 0,  0, 0, 0, 1, 1, 0, 13, 2, 5},
         3,
         0,
         {{34, 6}, {8, 16}, {18, 29}},
         {{32, 7}, {8, 16}, {17, 31}}},
    };
    for (const auto& c : cases) {
        HueClusters clusters = ClusterHues(HistogramOf(c.weights), c.numClusters, c.minAngle);
        EXPECT_THAT(RangesOf(clusters), ElementsAreArray(c.merged));
        ShareGaps(static_cast<int>(c.weights.size()), clusters);
        EXPECT_THAT(RangesOf(clusters), ElementsAreArray(c.shared));
    }
}

TEST(HueClustering, EndsWithAsManyClustersAsThereAreToBeHad)
{
    const CHueWeightedHistogram histogram = HistogramOf({1, 2, 0, 3, 5, 0, 0, 4});
    for (int numClusters = -1; numClusters < 9; ++numClusters)
        EXPECT_EQ(ClusterHues(histogram, numClusters, 0.0).size(),
                  static_cast<std::size_t>(std::clamp(numClusters, 1, 5)));
    EXPECT_EQ(ClusterHues(histogram, std::numeric_limits<int>::min(), 0.0).size(), 1u);
    EXPECT_EQ(ClusterHues(histogram, std::numeric_limits<int>::max(), kNaN).size(), 5u);
    EXPECT_TRUE(ClusterHues(HistogramOf({0, 0, 0}), 2, 0.0).empty());
    EXPECT_TRUE(ClusterHues(HistogramOf({}), 2, 0.0).empty());
}

TEST(HueClustering, GoesOnWhileNeighboursAreAsCloseAsTheAngle)
{
    // Bins 45 degrees apart.
    const CHueWeightedHistogram histogram = HistogramOf({1, 1, 0, 0, 1, 0, 0, 0});
    EXPECT_THAT(RangesOf(ClusterHues(histogram, 3, 44.0)), ElementsAre(Pair(0, 0), Pair(1, 1), Pair(4, 4)));
    EXPECT_THAT(RangesOf(ClusterHues(histogram, 3, 46.0)), ElementsAre(Pair(0, 1), Pair(4, 4)));
}

// Opposite directions cancel: the mean is 0, whose arc cosine with any direction is a right angle.
TEST(HueClustering, MergesTheFirstOfEquals)
{
    const CHueWeightedHistogram histogram = HistogramOf({1, 0, 1, 0});
    EXPECT_THAT(RangesOf(ClusterHues(histogram, 1, 0.0)), ElementsAre(Pair(2, 0)));
}

// A total of 0 makes every weight infinite and every distance NaN.
TEST(HueClustering, EndsWhereEveryDistanceIsNaN)
{
    CHueWeightedHistogram histogram = HistogramOf({1, 2, 3, -6});
    ASSERT_EQ(histogram.total, 0.0);
    HueClusters clusters = ClusterHues(histogram, 2, 10.0);
    EXPECT_THAT(RangesOf(clusters), ElementsAre(Pair(2, 0), Pair(1, 1))) << "the first takes in the last";
}

TEST(HueGaps, AreSharedByWeight)
{
    // From bin 2 to bin 8 floor(0.75 * 6) = 4 and the rest; across the seam there is no gap.
    EXPECT_THAT(Shared(12, {Cluster(3, 0, 2), Cluster(1, 8, 11)}), ElementsAre(Pair(0, 6), Pair(7, 11)));
    EXPECT_THAT(Shared(12, {Cluster(1, 0, 6), Cluster(1, 7, 11)}), ElementsAre(Pair(0, 6), Pair(7, 11)));
    EXPECT_THAT(Shared(12, {Cluster(5, 3, 4)}), ElementsAre(Pair(0, 11)));
}

// The gap of 4 bins after bin 9 of 12 and before bin 2: floor(share * 5) bins go to the first.
TEST(HueGaps, AreSharedAcrossTheSeam)
{
    EXPECT_THAT(Shared(12, {Cluster(1, 2, 5), Cluster(4, 6, 9)}), ElementsAre(Pair(1, 5), Pair(6, 0)));
    EXPECT_THAT(Shared(12, {Cluster(2, 2, 5), Cluster(3, 6, 9)}), ElementsAre(Pair(0, 5), Pair(6, 11)));
    EXPECT_THAT(Shared(12, {Cluster(3, 2, 5), Cluster(2, 6, 9)}), ElementsAre(Pair(11, 5), Pair(6, 10)));
    EXPECT_THAT(Shared(12, {Cluster(1, 2, 5), Cluster(9, 6, 9)}), ElementsAre(Pair(2, 5), Pair(6, 1)));
}

TEST(HueGaps, AreSharedBeforeAClusterAcrossTheSeam)
{
    EXPECT_THAT(Shared(12, {Cluster(1, 10, 2), Cluster(1, 3, 6)}), ElementsAre(Pair(8, 2), Pair(3, 7)));
    EXPECT_THAT(Shared(12, {Cluster(1, 10, 2), Cluster(1, 3, 9)}), ElementsAre(Pair(10, 2), Pair(3, 9)));
}

TEST(HueGaps, LeaveEveryClusterABin)
{
    constexpr double kHuge = 1e300;
    EXPECT_THAT(Shared(12, {Cluster(kHuge, 0, 2), Cluster(1, 8, 8), Cluster(1, 9, 11)}),
                ElementsAre(Pair(0, 7), Pair(8, 8), Pair(9, 11)));
    EXPECT_THAT(Shared(12, {Cluster(kHuge, 3, 6), Cluster(1, 7, 7)}), ElementsAre(Pair(8, 6), Pair(7, 7)));
    EXPECT_THAT(Shared(12, {Cluster(kHuge, 9, 6), Cluster(1, 7, 7)}), ElementsAre(Pair(8, 6), Pair(7, 7)));
}

TEST(HueGaps, GoToTheLaterClusterWhereNoWeightDecides)
{
    EXPECT_THAT(Shared(12, {Cluster(0, 0, 2), Cluster(0, 8, 11)}), ElementsAre(Pair(0, 2), Pair(3, 11)));
    EXPECT_THAT(Shared(12, {Cluster(kNaN, 0, 2), Cluster(1, 8, 11)}), ElementsAre(Pair(0, 2), Pair(3, 11)));
}

TEST(HueSegments, HaveTheMeanDirectionOfTheirPixels)
{
    CPTHistogram histogram;
    histogram.counts = {2, 1, 0, 0};
    histogram.sums = {{3, 0}, {0, 4}, {0, 0}, {0, 0}};
    CCircularMedianCut cut;
    cut.segments = {{0, 1, 2, 3, true}, {2, 3, 2, 0, true}};
    const auto colors = SegmentColors(cut, histogram);
    ASSERT_EQ(colors.size(), 2u);
    EXPECT_FLOAT_EQ(colors[0].x, 0.6f);
    EXPECT_FLOAT_EQ(colors[0].y, 0.8f);
    EXPECT_EQ(colors[1].x, 0.0f);
    EXPECT_EQ(colors[1].y, 0.0f);
}

TEST(HueSegments, BlendTheTwoPiecesAcrossTheSeamWhenTheyAreJoined)
{
    CPTHistogram histogram;
    histogram.counts = {3, 5, 1};
    histogram.sums = {{3, 0}, {-5, 0}, {0, 1}};
    CCircularMedianCut cut;
    cut.segments = {{0, 0, 1, 3, true}, {1, 1, 1, 5, true}, {2, 2, 1, 1, true}};
    cut.wrapJoined = true;
    const auto colors = SegmentColors(cut, histogram);
    ASSERT_EQ(colors.size(), 3u);
    for (const std::size_t i : {0u, 2u}) {
        EXPECT_EQ(colors[i].x, 0.75f);
        EXPECT_EQ(colors[i].y, 0.25f);
    }
    EXPECT_EQ(colors[1].x, -1.0f);
    cut.segments[0].population = cut.segments[2].population = 0;
    EXPECT_EQ(SegmentColors(cut, histogram)[0].x, 0.5f) << "halves where there is no pixel";
    cut.segments.clear();
    EXPECT_TRUE(SegmentColors(cut, histogram).empty());
}
