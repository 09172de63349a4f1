// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <set>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "tests/Support/Pictures.h"

using QZ::Foundation::CColor;
using Quantizer = QZ::Foundation::CGrayscaleHistogramHierarchicalClusterQuantization;
using Histogram = QZ::Foundation::CGrayscaleWeightedHistogram;
using testing::Each;
using testing::ElementsAre;

namespace {

Histogram HistogramOf(const std::vector<std::pair<std::size_t, int>>& levels)
{
    std::vector<int> counts(256);
    for (const auto& [level, count] : levels)
        counts[level] = count;
    return Histogram(counts);
}

Quantizer Quantize(const Histogram& histogram, int numClusters, double minMeanGap = 0.0)
{
    Quantizer quantizer;
    quantizer.Compute(0, 1, 1, 0, 1, 1, 0, numClusters, minMeanGap, histogram);   // the straight tone curve
    return quantizer;
}

/// (first, last) of each cluster.
std::vector<std::pair<int, int>> Clusters(const Histogram& histogram, int numClusters,
                                          double minMeanGap = 0.0)
{
    std::list<Quantizer::sCluster> clusters;
    Quantizer().Cluster(numClusters, minMeanGap, histogram.bins, histogram.total, clusters);
    std::vector<std::pair<int, int>> ranges;
    for (const auto& cluster : clusters)
        ranges.emplace_back(cluster.first, cluster.last);
    return ranges;
}

using Ranges = std::vector<std::pair<int, int>>;

/// The clustering as one would write it down: ranges of levels, every cost computed afresh for every merge.
Ranges ClustersPlainly(const Histogram& histogram, std::size_t numClusters)
{
    const auto moments = [&](int first, int last) {
        double weight = 0.0;
        double mean = 0.0;
        for (int i = first; i <= last; ++i) {
            weight += histogram.bins[static_cast<std::size_t>(i)];
            mean += i * histogram.bins[static_cast<std::size_t>(i)];
        }
        return std::pair(weight / histogram.total, mean / weight);
    };
    const auto cost = [&](const std::pair<int, int>& a, const std::pair<int, int>& b) {
        const auto [wa, ma] = moments(a.first, a.second);
        const auto [wb, mb] = moments(b.first, b.second);
        const auto [w, m] = moments(a.first, b.second);
        double variance = 0.0;
        for (int i = a.first; i <= b.second; ++i)
            variance += (i - m) * (i - m) * histogram.bins[static_cast<std::size_t>(i)] / histogram.total / w;
        return variance * wa * wb * (ma - mb) * (ma - mb) / (w * w);
    };
    Ranges ranges;
    for (int i = 0; i < 256; ++i)
        if (histogram.bins[static_cast<std::size_t>(i)] > 0.0)
            ranges.emplace_back(i, i);
    while (ranges.size() > numClusters) {
        std::size_t cheapest = 1;
        for (std::size_t i = 2; i < ranges.size(); ++i)
            // Costs that are equal on paper differ in their last digits here and there.
            if (cost(ranges[i - 1], ranges[i]) < cost(ranges[cheapest - 1], ranges[cheapest]) * (1.0 - 1e-9))
                cheapest = i;
        ranges[cheapest - 1].second = ranges[cheapest].second;
        ranges.erase(ranges.begin() + static_cast<std::ptrdiff_t>(cheapest));
    }
    return ranges;
}

}   // namespace

TEST(GreyCluster, StartsAsASingleLevel)
{
    const Quantizer::sCluster cluster(0.25, 77);
    EXPECT_EQ(cluster.weight, 0.25);
    EXPECT_EQ(cluster.mean, 77.0);
    EXPECT_EQ(cluster.distance, 1.7976931348623157e308);
    EXPECT_EQ(cluster.first, 77);
    EXPECT_EQ(cluster.last, 77);
    EXPECT_EQ(cluster.gray, 0);
}

// Weights 0.25 at 0 and 0.75 at 4: W = 1, M = 3, variance (9 * 0.25 + 1 * 0.75) / 1 = 3,
// between (0.25 * 0.75 * 16) / 1 = 3; the cost is 9.
TEST(GreyCluster, CostsTheVarianceOfTheUnionTimesTheVarianceBetween)
{
    const std::list<Quantizer::sCluster> previous = {{0.25, 0}};
    Quantizer::sCluster cluster(0.75, 4);
    cluster.Distance(previous.begin(), {0.25, 0.0, -7.0, 0.0, 0.75});
    EXPECT_EQ(cluster.distance, 9.0);
}

TEST(GreyCluster, CostsNothingWithoutLevels)
{
    const std::list<Quantizer::sCluster> previous = {{0.25, 5}};
    Quantizer::sCluster cluster(0.75, 4);
    cluster.Distance(previous.begin(), {});
    EXPECT_EQ(cluster.distance, 0.0);
}

TEST(GreyCluster, TakesInTheClusterBefore)
{
    const std::list<Quantizer::sCluster> previous = {{0.25, 0}};
    Quantizer::sCluster cluster(0.75, 4);
    cluster.CombineWithPrevious(previous.begin());
    EXPECT_EQ(cluster.weight, 1.0);
    EXPECT_EQ(cluster.mean, 3.0);
    EXPECT_EQ(cluster.first, 0);
    EXPECT_EQ(cluster.last, 4);
}

// Equal weights w at 0, 1, 10, 12: a pair costs d^2/4 * d^2/4, so 0 and 1 go first, then 10 and 12.
TEST(Cluster, MergesTheClosestFirst)
{
    const Histogram histogram = HistogramOf({{0, 5}, {1, 5}, {10, 5}, {12, 5}});
    EXPECT_EQ(Clusters(histogram, 3), (Ranges{{0, 1}, {10, 10}, {12, 12}}));
    EXPECT_EQ(Clusters(histogram, 2), (Ranges{{0, 1}, {10, 12}}));
    EXPECT_EQ(Clusters(histogram, 1), (Ranges{{0, 12}}));
}

TEST(Cluster, MergesTheDarkestOfEqualPairs)
{
    EXPECT_EQ(Clusters(HistogramOf({{3, 1}, {5, 1}, {9, 9}, {20, 1}, {22, 1}}), 4),
              (Ranges{{3, 5}, {9, 9}, {20, 20}, {22, 22}}));
}

TEST(Cluster, LeavesEveryLevelItsOwnWhenAskedForThatMany)
{
    EXPECT_EQ(Clusters(HistogramOf({{0, 1}, {1, 1}, {2, 1}}), 3), (Ranges{{0, 0}, {1, 1}, {2, 2}}));
}

TEST(Cluster, MergesAllWhenAskedForMoreThanThereAreLevelsOrForNone)
{
    for (const int numClusters :
         {4, 256, std::numeric_limits<int>::max(), 1, 0, -1, std::numeric_limits<int>::min()})
        EXPECT_EQ(Clusters(HistogramOf({{0, 1}, {1, 1}, {2, 1}}), numClusters), (Ranges{{0, 2}}));
}

TEST(Cluster, MergesOnUntilTheMeansAreFurtherApartThanTheGap)
{
    const Histogram histogram = HistogramOf({{0, 1}, {10, 1}, {30, 1}, {100, 1}});
    EXPECT_EQ(Clusters(histogram, 3, 9.0), (Ranges{{0, 10}, {30, 30}, {100, 100}}));
    EXPECT_EQ(Clusters(histogram, 3, 25.0), (Ranges{{0, 30}, {100, 100}}));   // 30 - 5 is not more than 25
    EXPECT_EQ(Clusters(histogram, 3, 24.9), (Ranges{{0, 10}, {30, 30}, {100, 100}}));
    EXPECT_EQ(Clusters(histogram, 3, 1000.0), (Ranges{{0, 100}}));
}

TEST(Cluster, StopsAtTheGapWhenAskedForMoreThanThereAreLevels)
{
    const Histogram histogram = HistogramOf({{0, 1}, {10, 1}, {30, 1}});
    EXPECT_EQ(Clusters(histogram, 99, 9.0), (Ranges{{0, 0}, {10, 10}, {30, 30}}));
    EXPECT_EQ(Clusters(histogram, 99, 10.0), (Ranges{{0, 10}, {30, 30}}));
}

TEST(Cluster, TakesNaNForNoGap)
{
    EXPECT_EQ(Clusters(HistogramOf({{0, 1}, {1, 1}, {2, 1}}), 3, std::nan("")).size(), 3u);
}

TEST(Cluster, HoldsTheShareAndTheMeanOfItsLevels)
{
    const Histogram histogram = HistogramOf({{10, 1}, {13, 2}, {200, 5}});
    std::list<Quantizer::sCluster> clusters(3, {9.0, 9});   // replaced
    Quantizer().Cluster(2, 0.0, histogram.bins, histogram.total, clusters);
    ASSERT_EQ(clusters.size(), 2u);
    EXPECT_DOUBLE_EQ(clusters.front().weight, 0.375);
    EXPECT_DOUBLE_EQ(clusters.front().mean, 12.0);
    EXPECT_EQ(clusters.back().weight, 0.625);
    EXPECT_EQ(clusters.back().mean, 200.0);
}

TEST(Cluster, IsEmptyWithoutAnOccupiedLevel)
{
    EXPECT_TRUE(Clusters(HistogramOf({}), 3).empty());
    EXPECT_TRUE(Clusters(Histogram(), 3).empty());
}

TEST(Cluster, UsesAsManyLevelsAsTheObjectSays)
{
    const Histogram histogram = HistogramOf({{3, 1}, {200, 1}});
    Quantizer quantizer;
    quantizer.numLevels = 4;
    std::list<Quantizer::sCluster> clusters;
    quantizer.Cluster(9, 0.0, histogram.bins, histogram.total, clusters);
    EXPECT_EQ(clusters.size(), 1u);
}

TEST(Cluster, AgreesWithThePlainClustering)
{
    std::mt19937 random(7);
    for (int round = 0; round < 40; ++round) {
        std::vector<int> counts(256);
        const std::size_t spacing = 1 + random() % 12;
        for (std::size_t i = random() % 5; i < counts.size(); i += 1 + random() % spacing)
            counts[i] = static_cast<int>(1 + random() % 1000);
        const Histogram histogram(counts);
        const int wanted = 1 + static_cast<int>(random() % 9);
        EXPECT_EQ(Clusters(histogram, wanted), ClustersPlainly(histogram, static_cast<std::size_t>(wanted)));
    }
}

// The empty levels 1 to 254 are shared equally: floor(0.5 * 255) = 127 of them go to the dark cluster.
TEST(HierarchicalQuantization, SharesTheGapOfATwoLevelPicture)
{
    const Quantizer quantizer = Quantize(HistogramOf({{0, 8}, {255, 8}}), 2);
    EXPECT_THAT(quantizer.levels, ElementsAre(0, 255));
    EXPECT_EQ(quantizer.numLevels, 256);
    EXPECT_EQ(quantizer.table[127], 0);
    EXPECT_EQ(quantizer.table[128], 255);
}

// 100 to 200 with weights 3 : 1: floor(0.75 * 100) = 75 levels follow the dark cluster.
TEST(HierarchicalQuantization, GivesTheHeavierClusterMoreOfTheGap)
{
    const Quantizer quantizer = Quantize(HistogramOf({{100, 3}, {200, 1}}), 2);
    EXPECT_EQ(quantizer.table[175], 100);
    EXPECT_EQ(quantizer.table[176], 200);
    EXPECT_THAT(quantizer.levels, ElementsAre(100, 200));
}

TEST(HierarchicalQuantization, HasNoGapBetweenNeighbouringLevels)
{
    const Quantizer quantizer = Quantize(HistogramOf({{100, 1}, {101, 1000}}), 2);
    EXPECT_EQ(quantizer.table[100], 100);
    EXPECT_EQ(quantizer.table[101], 101);
}

TEST(HierarchicalQuantization, PaintsASingleClusterOverTheWholeRange)
{
    const Quantizer quantizer = Quantize(HistogramOf({{50, 1}, {51, 1}}), 1);
    EXPECT_THAT(quantizer.table, Each(51));   // the mean 50.5, rounded up
    EXPECT_THAT(quantizer.levels, ElementsAre(51));
}

// Black 0.2 and white 0.8: levels up to 51 are black and from 204 on white, whatever cluster they are in.
TEST(HierarchicalQuantization, KeepsWhatTheToneCurveMakesBlackAndWhite)
{
    Quantizer quantizer;
    quantizer.Compute(0.2f, 0.8f, 1, 0, 1, 1, 0, 2, 0.0, HistogramOf({{60, 1}, {150, 1}}));
    EXPECT_EQ(quantizer.table[50], 0);
    EXPECT_EQ(quantizer.table[51], 15);   // (60 - 51) / 0.6, from the last black level on
    EXPECT_EQ(quantizer.table[105], 15);
    EXPECT_EQ(quantizer.table[106], 165);
    EXPECT_EQ(quantizer.table[204], 165);   // up to the first white level
    EXPECT_EQ(quantizer.table[205], 255);
    EXPECT_THAT(quantizer.levels, ElementsAre(0, 15, 165, 255));
}

// Clusters at 10 and 250, both outside the active range 51 to 204, the dark one ending at 10 + 120.
TEST(HierarchicalQuantization, PaintsClustersOutsideTheActiveRangeWithinIt)
{
    Quantizer quantizer;
    quantizer.Compute(0.2f, 0.8f, 1, 0, 1, 1, 0, 2, 0.0, HistogramOf({{10, 1}, {250, 1}}));
    EXPECT_EQ(quantizer.table[130], 0);
    EXPECT_EQ(quantizer.table[131], 255);
    quantizer.Compute(0.2f, 0.8f, 1, 0, 1, 1, 0, 3, 0.0, HistogramOf({{220, 1}, {230, 1}, {250, 1}}));
    EXPECT_EQ(quantizer.table[50], 0);
    EXPECT_EQ(quantizer.table[51], 255);
}

// A toneless curve: black beyond white leaves the whole range active, and every tone is that of a level.
TEST(HierarchicalQuantization, TakesACurveWithoutBlackOrWhite)
{
    Quantizer quantizer;
    quantizer.Compute(2.0f, 2.0f, 1, 0, 1, 1, 0, 1, 0.0, HistogramOf({{60, 1}, {150, 1}}));   // all black
    EXPECT_THAT(quantizer.table, Each(0));
    EXPECT_THAT(quantizer.levels, ElementsAre(0));
}

TEST(HierarchicalQuantization, PutsTheHighlightsCurveOnTheTones)
{
    const Histogram histogram = HistogramOf({{40, 1}, {120, 1}, {210, 1}});
    const Quantizer plain = Quantize(histogram, 3);
    std::vector<unsigned char> highlights;
    CColor::Highlights(0.2f, 0.5f, highlights);
    Quantizer quantizer;
    quantizer.Compute(0, 1, 1, 0, 1, 0.2f, 0.5f, 3, 0.0, histogram);
    for (std::size_t level = 0; level < 256; ++level)
        EXPECT_EQ(quantizer.table[level], highlights[plain.table[level]]);
    EXPECT_NE(quantizer.table, plain.table);
    for (const float amount : {1.0f, 2.0f, std::numeric_limits<float>::quiet_NaN()}) {
        quantizer.Compute(0, 1, 1, 0, 1, amount, 0.5f, 3, 0.0, histogram);
        EXPECT_EQ(quantizer.table, plain.table);
    }
}

TEST(HierarchicalQuantization, HasATableForAHistogramWithoutALevel)
{
    const Quantizer quantizer = Quantize(Histogram(), 3);
    EXPECT_THAT(quantizer.table, testing::AllOf(testing::SizeIs(256), Each(0)));
    EXPECT_THAT(quantizer.levels, ElementsAre(0));
}

TEST(HierarchicalQuantization, StaysWithinItsTableForAnyTotalAndAnyCurve)
{
    const float curves[][5] = {
        {0, 1, -1, 0, 1}, {1, 0, 1, 1, 0}, {NAN, NAN, NAN, NAN, NAN}, {0, 1, 1, 1e-40f, 0}};
    for (const double total : {0.0, -5.0, 1e-320, std::nan("")})
        for (const auto& c : curves) {
            Histogram histogram = HistogramOf({{10, 4}, {90, 3}, {255, 9}});
            histogram.total = total;
            Quantizer quantizer;
            quantizer.Compute(c[0], c[1], c[2], c[3], c[4], 0.5f, 0.5f, 2, 0.0, histogram);
            EXPECT_EQ(quantizer.table.size(), 256u);
            EXPECT_FALSE(quantizer.levels.empty());
        }
}

TEST(HierarchicalQuantization, GivesAPictureItsTones)
{
    const auto picture = QZ::Test::Photograph(97, 61);
    Histogram histogram;
    histogram.Compute(Histogram::eNonlinearY, true, CColor::eD65, 97, 61, picture.rgba.data(), 4, 3,
                      picture.rgba.data());
    for (const int numClusters : {2, 3, 5, 8, 16}) {
        Quantizer quantizer;
        quantizer.Compute(0, 1, 1, 0, 1, 1, 0, numClusters, 0.0, Histogram::eNonlinearY, true, CColor::eD65,
                          97, 61, picture.rgba.data(), 4, 3, picture.rgba.data());
        EXPECT_EQ(quantizer.table, Quantize(histogram, numClusters).table);
        EXPECT_EQ(quantizer.levels.size(), static_cast<std::size_t>(numClusters));
        EXPECT_TRUE(std::is_sorted(quantizer.table.begin(), quantizer.table.end()));
        EXPECT_EQ(Clusters(histogram, numClusters),
                  ClustersPlainly(histogram, static_cast<std::size_t>(numClusters)));
    }
}
