// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>

#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/HueClusters.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/Recolor.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"

namespace QZ::Foundation {

using Quantization = CHueWeightedHistogramHierarchicalClusterQuantization;

namespace {

/// Weighted means of a cluster's pixels.
struct Mean {
    Math::CVector2<double> pair;
    double luminance = 0.0;
};

Mean MeanOf(const HueCluster& cluster, const CHueWeightedHistogram& histogram)
{
    Mean mean;
    double weight = 0.0;
    ForEachBin(cluster.first, cluster.last, static_cast<int>(histogram.weights.size()), [&](std::size_t bin) {
        mean.pair += histogram.sums[bin];
        weight += histogram.weights[bin];
        mean.luminance += histogram.greySums[bin];
    });
    if (weight != 0.0) {
        mean.pair /= weight;
        mean.luminance /= weight;
    }
    return mean;
}

/// The share of the largest chroma at a Luv colour's lightness and hue, at most 1.
double RelativeChroma(const Mean& mean)
{
    float L = 0.0f;
    CColor::LinearYToLXX(static_cast<float>(mean.luminance), L);
    const double largest = CLUVMaximumChromaMap::MaxChromaForLH(
        {L, static_cast<float>(mean.pair.x), static_cast<float>(mean.pair.y)});
    return std::min(1.0, mean.pair.Magnitude() / std::max(1e-6, largest));
}

Math::CVector2<float> ColorOf(const Mean& mean, Quantization::EHueMode mode,
                              CHueWeightedHistogram::EHueColorSpace space)
{
    Math::CVector2<double> color = mean.pair;
    if (mode == Quantization::eDirection) {
        color.Normalize();
    } else if (mode == Quantization::eRelativeChroma && space == CHueWeightedHistogram::eLuv) {
        color.Normalize();
        color *= RelativeChroma(mean);
    }
    return {static_cast<float>(color.x), static_cast<float>(color.y)};
}

}   // namespace

void Quantization::Compute(int bins, int numClusters, double minAngleDegrees,
                           CHueWeightedHistogram::EHueColorSpace hueSpace, bool isSRGB,
                           CColor::EIlluminant illuminant, EHueMode mode, int width, int height,
                           const unsigned char* rgba)
{
    binColours.clear();
    clusterColours.clear();
    binCluster.clear();
    space = hueSpace;
    numBins = bins;

    CHueWeightedHistogram histogram;
    histogram.Compute(bins, hueSpace, isSRGB, illuminant, WrappingMultiply(width, height), rgba);
    binColours.resize(histogram.weights.size());
    HueClusters clusters = ClusterHues(histogram, numClusters, minAngleDegrees);
    if (clusters.empty())
        return;

    for (const HueCluster& cluster : clusters)
        clusterColours.push_back(ColorOf(MeanOf(cluster, histogram), mode, hueSpace));
    ShareGaps(bins, clusters);
    binCluster.resize(binColours.size());
    int index = 0;
    for (const HueCluster& cluster : clusters) {
        ForEachBin(cluster.first, cluster.last, bins, [&](std::size_t bin) {
            binColours[bin] = clusterColours[static_cast<std::size_t>(index)];
            binCluster[bin] = index;
        });
        ++index;
    }
}

void Quantization::Recolor(int width, int height, CColor::EIlluminant illuminant, unsigned char* rgba) const
{
    RecolorPicture(binColours, width, height, illuminant, true, rgba);
}

}   // namespace QZ::Foundation
