// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"

namespace QZ::Foundation {

using Quantizer = CGrayscaleHistogramHierarchicalClusterQuantization;
using Clusters = std::list<Quantizer::sCluster>;

namespace {

/// The levels between those that the tone curve makes black and those that it makes white, with one of each.
struct ActiveRange {
    int low = 0;
    int high = 255;

    explicit ActiveRange(const std::vector<int>& toneCurve)
    {
        const auto isBlack = [](int tone) { return tone == 0; };
        const auto isWhite = [](int tone) { return tone == 255; };
        const auto notBlack = std::find_if_not(toneCurve.begin() + 1, toneCurve.end(), isBlack);
        if (notBlack != toneCurve.end())
            low = static_cast<int>(notBlack - toneCurve.begin()) - 1;
        const auto notWhite = std::find_if_not(toneCurve.rbegin() + 1, toneCurve.rend(), isWhite);
        if (notWhite != toneCurve.rend())
            high = 255 - static_cast<int>(notWhite - toneCurve.rbegin()) + 1;
    }
};

unsigned char ToneOf(const Quantizer::sCluster& cluster, const std::vector<int>& toneCurve)
{
    const int level = TruncateToRange(std::floor(cluster.mean + 0.5), 0, 255);
    return static_cast<unsigned char>(toneCurve[static_cast<std::size_t>(level)]);
}

/// Gives the empty levels between two clusters to both, in proportion to their weights.
void ShareGap(Quantizer::sCluster& previous, Quantizer::sCluster& cluster)
{
    const int gap = cluster.first - previous.last;
    if (gap < 2)
        return;
    const double share = previous.weight / (previous.weight + cluster.weight);
    previous.last += TruncateToRange(std::floor(share * gap), 0, gap);
    cluster.first = previous.last + 1;
}

}   // namespace

void Quantizer::Paint(const Clusters& clusters, const std::vector<int>& toneCurve)
{
    const ActiveRange range(toneCurve);
    table.assign(256, 0);
    int start = range.low;
    for (auto cluster = clusters.begin(); cluster != clusters.end(); ++cluster) {
        const bool isFirst = cluster == clusters.begin();
        const bool isLast = std::next(cluster) == clusters.end();
        const int end = isLast ? range.high : isFirst ? cluster->last : std::min(cluster->last, range.high);
        for (int level = start; level <= end; ++level)
            table[static_cast<std::size_t>(level)] = cluster->gray;
        start = std::max(range.low, cluster->last + 1);
    }
    std::fill(table.begin() + range.high + 1, table.end(), static_cast<unsigned char>(255));
}

void Quantizer::Compute(float black, float white, float gamma, float toe, float shoulder,
                        float highlightsAmount, float highlightsBand, int numClusters, double minMeanGap,
                        const CGrayscaleWeightedHistogram& histogram)
{
    numLevels = 256;
    Clusters clusters;
    Cluster(numClusters, minMeanGap, histogram.bins, histogram.total, clusters);
    CGrayscaleToneCurve toneCurve;
    toneCurve.Compute(black, white, gamma, toe, shoulder);
    for (auto cluster = clusters.begin(); cluster != clusters.end(); ++cluster) {
        if (cluster != clusters.begin())
            ShareGap(*std::prev(cluster), *cluster);
        cluster->gray = ToneOf(*cluster, toneCurve.lookupTable);
    }
    Paint(clusters, toneCurve.lookupTable);

    if (highlightsAmount < 1.0f) {
        std::vector<unsigned char> highlights;
        CColor::Highlights(highlightsAmount, highlightsBand, highlights);
        for (unsigned char& tone : table)
            tone = highlights[tone];
    }
    levels.clear();
    std::unique_copy(table.begin(), table.end(), std::back_inserter(levels));
}

void Quantizer::Compute(float black, float white, float gamma, float toe, float shoulder,
                        float highlightsAmount, float highlightsBand, int numClusters, double minMeanGap,
                        CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB,
                        CColor::EIlluminant illuminant, int width, int height, const unsigned char* rgba,
                        int alphaStride, int alphaOffset, const unsigned char* alpha)
{
    CGrayscaleWeightedHistogram histogram;
    histogram.Compute(from, isSRGB, illuminant, width, height, rgba, alphaStride, alphaOffset, alpha);
    Compute(black, white, gamma, toe, shoulder, highlightsAmount, highlightsBand, numClusters, minMeanGap,
            histogram);
}

}   // namespace QZ::Foundation
