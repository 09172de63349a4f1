// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <vector>

#include "QZ/Foundation/Analysis/ColorQuantization.h"

/// \file
/// The clustering of hue bins on the circle, a step at a time.

namespace QZ::Foundation {

using HueCluster = CHueWeightedHistogramHierarchicalClusterQuantization::sCluster;
using HueClusters = std::list<HueCluster>;

/// f(bin) for each bin from first to last, across the seam when first > last.
template <class Function>
void ForEachBin(int first, int last, int numBins, Function&& f)
{
    if (first <= last) {
        for (int bin = first; bin <= last; ++bin)
            f(static_cast<std::size_t>(bin));
        return;
    }
    ForEachBin(first, numBins - 1, numBins, f);
    ForEachBin(0, last, numBins, f);
}

/// The clusters of a histogram. The first one may lie across the seam.
HueClusters ClusterHues(const CHueWeightedHistogram& histogram, int numClusters, double minAngleDegrees);

/// Extends the clusters over the empty bins between them.
void ShareGaps(int numBins, HueClusters& clusters);

}   // namespace QZ::Foundation
