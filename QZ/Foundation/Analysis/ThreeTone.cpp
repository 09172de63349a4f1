// SPDX-License-Identifier: MIT
#include <cstddef>
#include <iterator>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"
#include "QZ/Foundation/Color/Elementary.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

using Quantizer = CGrayscaleHistogramHierarchicalClusterQuantization;
using Clusters = std::list<Quantizer::sCluster>;

namespace {

float UnitOfLevel(double level)
{
    return static_cast<float>(level * static_cast<double>(kByteToUnit));
}

/// Midway between the last level of one cluster and the first of the next.
float BoundaryBetween(const Quantizer::sCluster& lower, const Quantizer::sCluster& upper)
{
    return static_cast<float>(upper.first + lower.last) * 0.0019607844f;   // 1 / 510
}

double Moment(const Quantizer::sCluster& cluster)
{
    return cluster.weight * cluster.mean;
}

/// Before the exponents.
struct ThreeTone {
    float low = 0.0f;
    float high = 1.0f;
    float tone = 0.0f;
};

ThreeTone ThreeToneOf(const Clusters& clusters)
{
    if (clusters.empty())
        return {};
    const auto at = [&](int i) -> const Quantizer::sCluster& { return *std::next(clusters.begin(), i); };
    switch (clusters.size()) {
        case 2:
            return {BoundaryBetween(at(0), at(1)), 1.0f, UnitOfLevel(Moment(at(0)) + Moment(at(1)))};
        case 3:
            return {BoundaryBetween(at(0), at(1)), BoundaryBetween(at(1), at(2)), UnitOfLevel(at(1).mean)};
        case 4:
        case 5:   // the fifth does not count
            return {BoundaryBetween(at(0), at(1)), BoundaryBetween(at(2), at(3)),
                    UnitOfLevel((Moment(at(1)) + Moment(at(2))) / (at(1).weight + at(2).weight))};
        default:
            return {0.0f, 1.0f, UnitOfLevel(at(0).mean)};
    }
}

}   // namespace

void Quantizer::ComputeForThreeTone(float black, float white, float gamma, float toe, float shoulder,
                                    int numClusters, CGrayscaleWeightedHistogram::EGrayscaleFrom from,
                                    bool isSRGB, CColor::EIlluminant illuminant, int width, int height,
                                    const unsigned char* rgba, int alphaStride, int alphaOffset,
                                    const unsigned char* alpha, float thresholdExponent, float toneExponent,
                                    float& lowThreshold, float& highThreshold, float& midTone)
{
    numLevels = 256;
    CGrayscaleWeightedHistogram histogram;
    histogram.Compute(from, isSRGB, illuminant, width, height, rgba, alphaStride, alphaOffset, alpha);
    Clusters clusters;
    Cluster(numClusters, 0.0, histogram.bins, histogram.total, clusters);
    CGrayscaleToneCurve curve;
    curve.Compute(black, white, gamma, toe, shoulder);
    const auto toned = [&](float unit) {
        const int level = TruncateToRange(unit * 255.0f + 0.5f, 0, 255);
        return static_cast<float>(curve.lookupTable[static_cast<std::size_t>(level)]) * kByteToUnit;
    };

    // 0 stands for no threshold and stays 0, even under an exponent that makes 1 or infinity of it.
    const ThreeTone found = ThreeToneOf(clusters);
    const auto threshold = [&](float unit) {
        return unit == 0.0f ? unit : formula::Pow(unit, thresholdExponent);
    };
    lowThreshold = toned(threshold(found.low));
    highThreshold = toned(threshold(found.high));
    midTone = toned(formula::Pow(found.tone, toneExponent));
}

}   // namespace QZ::Foundation
