// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/HueClusters.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Math/CConstants.h"

namespace QZ::Foundation {

using Direction = Math::CVector2<double>;

namespace {

/// The square of the angle between two directions, if both are of unit length.
double SquaredAngle(const Direction& a, const Direction& b)
{
    const double angle = Double::Acos(a.Dot(b));
    return angle * angle;
}

/// The predecessor on the circle.
HueClusters::const_iterator Previous(const HueClusters& clusters, HueClusters::const_iterator cluster)
{
    return std::prev(cluster == clusters.begin() ? clusters.end() : cluster);
}

/// Whether two neighbours have directions of at most so many degrees between them. NaN is no angle.
bool HasPairWithin(double degrees, const HueClusters& clusters)
{
    if (!(degrees > 0.0))
        return false;
    for (auto cluster = clusters.begin(); cluster != clusters.end(); ++cluster) {
        const double dot = cluster->direction.Dot(Previous(clusters, cluster)->direction);
        if (Double::Acos(dot > 1.0 ? 1.0 : dot) * Math::CConstants::RadiansToDegrees <= degrees)
            return true;
    }
    return false;
}

/// The cluster of the smallest distance, the first among equals; the first of all if every one is NaN.
HueClusters::iterator Cheapest(HueClusters& clusters)
{
    auto cheapest = clusters.begin();
    for (auto cluster = std::next(cheapest); cluster != clusters.end(); ++cluster) {
        const bool isFirstNumber = std::isnan(cheapest->distance) && !std::isnan(cluster->distance);
        if (cluster->distance < cheapest->distance || isFirstNumber)
            cheapest = cluster;
    }
    return cheapest;
}

/// How much of a gap falls to the cluster of weight `own`.
int Share(double own, double other, int gap)
{
    const double sum = own + other;
    return sum != 0.0 ? TruncateToRange(std::floor(own / sum * gap), 0, gap) : 0;
}

}   // namespace

void HueCluster::Distance(std::list<sCluster>::const_iterator previous,
                          const std::vector<double>& normalisedWeights,
                          const std::vector<Direction>& binDirections)
{
    const double sum = weight + previous->weight;
    if (sum == 0.0) {
        distance = 0.0;
        return;
    }
    const Direction mean = (weight * direction + previous->weight * previous->direction) / sum;
    double variance = 0.0;
    ForEachBin(previous->first, last, static_cast<int>(normalisedWeights.size()), [&](std::size_t bin) {
        if (normalisedWeights[bin] > 0.0)
            variance += SquaredAngle(binDirections[bin], mean) * normalisedWeights[bin];
    });
    const double between = weight * previous->weight * SquaredAngle(direction, previous->direction);
    distance = (variance / sum) * (between / (sum * sum));
}

void HueCluster::CombineWithPrevious(std::list<sCluster>::const_iterator previous)
{
    const double sum = weight + previous->weight;
    first = previous->first;
    if (sum != 0.0)
        direction = (weight * direction + previous->weight * previous->direction) / sum;
    weight = sum;
}

HueClusters ClusterHues(const CHueWeightedHistogram& histogram, int numClusters, double minAngleDegrees)
{
    const std::size_t numBins = histogram.weights.size();
    const double inverseTotal = 1.0 / histogram.total;
    std::vector<double> weights(numBins);
    std::vector<Direction> directions(numBins);
    HueClusters clusters;
    for (std::size_t bin = 0; bin < numBins; ++bin) {
        // The angles only count against one another: they start at 0 and have a step of their own.
        const double angle =
            static_cast<double>(bin) * Math::CConstants::TwoPI / static_cast<double>(numBins);
        weights[bin] = histogram.weights[bin] * inverseTotal;
        directions[bin].Set(Double::Cos(angle), Double::Sin(angle));
        if (histogram.weights[bin] > 0.0)
            clusters.emplace_back(weights[bin], directions[bin], static_cast<int>(bin));
    }
    const auto setDistance = [&](HueClusters::iterator cluster) {
        cluster->Distance(Previous(clusters, cluster), weights, directions);
    };
    for (auto cluster = clusters.begin(); cluster != clusters.end(); ++cluster)
        setDistance(cluster);

    const auto isDone = [&] {
        return static_cast<long long>(clusters.size()) <= numClusters &&
               !HasPairWithin(minAngleDegrees, clusters);
    };
    while (clusters.size() > 1 && !isDone()) {
        const auto cluster = Cheapest(clusters);
        const auto previous = Previous(clusters, cluster);
        cluster->CombineWithPrevious(previous);
        clusters.erase(previous);
        const auto next = std::next(cluster);
        setDistance(cluster);
        setDistance(next == clusters.end() ? clusters.begin() : next);
    }
    return clusters;
}

void ShareGaps(int numBins, HueClusters& clusters)
{
    HueCluster& front = clusters.front();
    HueCluster& back = clusters.back();
    if (clusters.size() == 1) {
        front.first = 0;
        front.last = numBins - 1;
        return;
    }
    // A share is at most what leaves the other cluster one bin: without any it would seem to lie across the
    // seam and cover the whole circle.
    for (auto next = std::next(clusters.begin()); next != clusters.end(); ++next) {
        HueCluster& cluster = *next;
        HueCluster& previous = *std::prev(next);
        const int gap = cluster.first - previous.last;
        if (gap < 2)
            continue;
        const int share =
            std::min(Share(previous.weight, cluster.weight, gap), cluster.last - previous.last - 1);
        previous.last += share;
        cluster.first = previous.last + 1;
    }
    const bool crossesSeam = front.first > front.last;
    const int gap = front.first - back.last + (crossesSeam ? 0 : numBins);
    if (gap < 2)
        return;
    const int end = crossesSeam ? front.first : front.first + numBins;
    const int share = std::min(Share(front.weight, back.weight, gap), end - back.first - 1);
    front.first = (end - share) % numBins;
    back.last = (end - share - 1) % numBins;
}

}   // namespace QZ::Foundation
