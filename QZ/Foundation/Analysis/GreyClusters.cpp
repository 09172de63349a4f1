// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"

namespace QZ::Foundation {

using Quantizer = CGrayscaleHistogramHierarchicalClusterQuantization;
using Clusters = std::list<Quantizer::sCluster>;

namespace {

/// Whether the means of all neighbours differ by more than the gap.
bool AllGapsExceed(double gap, const Clusters& clusters)
{
    const auto isClose = [gap](const Quantizer::sCluster& a, const Quantizer::sCluster& b) {
        return b.mean - a.mean <= gap;
    };
    return std::adjacent_find(clusters.begin(), clusters.end(), isClose) == clusters.end();
}

/// Merges the cluster that is cheapest to merge with the one before it. There are two clusters or more.
void MergeCheapest(const std::vector<double>& normalizedBins, Clusters& clusters)
{
    const auto cheapest = std::min_element(
        std::next(clusters.begin()), clusters.end(),
        [](const Quantizer::sCluster& a, const Quantizer::sCluster& b) { return a.distance < b.distance; });
    cheapest->CombineWithPrevious(std::prev(cheapest));
    clusters.erase(std::prev(cheapest));

    if (cheapest != clusters.begin())
        cheapest->Distance(std::prev(cheapest), normalizedBins);
    const auto next = std::next(cheapest);
    if (next != clusters.end())
        next->Distance(cheapest, normalizedBins);
}

}   // namespace

Quantizer::sCluster::sCluster(double weight_, int level)
    : weight(weight_),
      mean(level),
      distance(std::numeric_limits<double>::max()),
      first(level),
      last(level),
      gray(0)
{}

void Quantizer::sCluster::Distance(std::list<sCluster>::const_iterator previous,
                                   const std::vector<double>& normalizedBins)
{
    distance = 0.0;
    if (previous->first > last)
        return;
    const double W = previous->weight + weight;
    const double M = (previous->weight * previous->mean + weight * mean) / W;
    double S = 0.0;
    for (int level = previous->first; level <= last; ++level) {
        const double share = normalizedBins[static_cast<std::size_t>(level)];
        if (share > 0.0)
            S += (level - M) * (level - M) * share;
    }
    const double gap = mean - previous->mean;
    distance = (S / W) * (previous->weight * weight * (gap * gap) / (W * W));
}

void Quantizer::sCluster::CombineWithPrevious(std::list<sCluster>::const_iterator previous)
{
    first = previous->first;
    mean = (mean * weight + previous->mean * previous->weight) / (weight + previous->weight);
    weight += previous->weight;
}

void Quantizer::Cluster(int numClusters, double minMeanGap, const std::vector<double>& bins, double total,
                        std::list<sCluster>& clusters)
{
    const auto wanted = static_cast<std::size_t>(numLevels > 0 ? numLevels : 256);
    std::vector<double> normalizedBins(std::min(wanted, bins.size()));
    const double scale = 1.0 / total;
    clusters.clear();
    for (std::size_t level = 0; level < normalizedBins.size(); ++level) {
        normalizedBins[level] = bins[level] * scale;
        if (bins[level] > 0.0)
            clusters.emplace_back(normalizedBins[level], static_cast<int>(level));
    }
    for (auto cluster = clusters.begin(); cluster != clusters.end(); ++cluster)
        if (cluster != clusters.begin())
            cluster->Distance(std::prev(cluster), normalizedBins);

    // Without a gap rule the end is met exactly or not at all; with one it is the earliest place to stop.
    const auto isDone = [&](std::size_t count) {
        const auto left = static_cast<long long>(count);
        return minMeanGap > 0.0 ? left <= numClusters && AllGapsExceed(minMeanGap, clusters)
                                : left == numClusters;
    };
    while (clusters.size() > 1 && !isDone(clusters.size()))
        MergeCheapest(normalizedBins, clusters);
}

}   // namespace QZ::Foundation
