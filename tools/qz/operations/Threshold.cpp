// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Threshold.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "QZ/Foundation/Analysis/COtsuMethod.h"

namespace QZ::Tool {

using Foundation::CGrayscaleWeightedHistogram;
using Foundation::COtsuMethod;

namespace {

// The method wants counts that add up to their total exactly. Weights are multiples of 1/255; a picture whose
// weights times 255 do not fit is scaled to what does.
std::vector<int> Counts(const CGrayscaleWeightedHistogram& histogram)
{
    constexpr double kMostCounts = 2'000'000'000.0;
    const double scale = std::min(255.0, kMostCounts / histogram.total);
    std::vector<int> counts(histogram.bins.size());
    std::transform(histogram.bins.begin(), histogram.bins.end(), counts.begin(),
                   [scale](double weight) { return static_cast<int>(std::lround(weight * scale)); });
    return counts;
}

}   // namespace

Threshold ApplyThreshold(const ThresholdOptions& options, Image& image)
{
    const std::vector<unsigned char> plane = GreyPlane(image, options.grey);
    const CGrayscaleWeightedHistogram histogram = GreyHistogram(plane, image, options.grey);
    const std::vector<int> counts = Counts(histogram);
    Threshold threshold;
    threshold.level =
        COtsuMethod<double, int>::Solution(std::accumulate(counts.begin(), counts.end(), 0), counts);
    const auto split = histogram.bins.begin() + threshold.level + 1;
    threshold.darkShare = std::accumulate(histogram.bins.begin(), split, 0.0) / histogram.total;

    std::vector<unsigned char> table(256, options.invert ? 0 : 255);
    std::fill_n(table.begin(), threshold.level + 1, static_cast<unsigned char>(options.invert ? 255 : 0));
    PaintGrey(plane, table, options.grey, image);
    return threshold;
}

}   // namespace QZ::Tool
