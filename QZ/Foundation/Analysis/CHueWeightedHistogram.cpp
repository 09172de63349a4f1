// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"

namespace QZ::Foundation {

namespace {

std::vector<HueSums> SumsOf(const CHueWeightedHistogram& histogram)
{
    std::vector<HueSums> bins(histogram.weights.size());
    for (std::size_t i = 0; i < bins.size(); ++i)
        bins[i] = {histogram.weights[i], histogram.sums[i].x, histogram.sums[i].y, histogram.greySums[i]};
    return bins;
}

void Assign(const std::vector<HueSums>& bins, CHueWeightedHistogram& histogram)
{
    for (std::size_t i = 0; i < bins.size(); ++i) {
        const auto& [weight, second, third, grey] = bins[i].of;
        histogram.weights[i] = weight;
        histogram.sums[i] = {second, third};
        histogram.greySums[i] = grey;
    }
}

/// Whether the space is one of the three, and which.
bool IsHueSpace(CHueWeightedHistogram::EHueColorSpace space, HueSpace& which)
{
    switch (space) {
        case CHueWeightedHistogram::eLab:
            which = HueSpace::Lab;
            return true;
        case CHueWeightedHistogram::eLuv:
            which = HueSpace::Luv;
            return true;
        case CHueWeightedHistogram::eIPT:
            which = HueSpace::IPT;
            return true;
    }
    return false;
}

}   // namespace

void CHueWeightedHistogram::Compute(int numBins, EHueColorSpace space, bool isSRGB,
                                    CColor::EIlluminant illuminant, int numPixels, const unsigned char* rgba)
{
    weights.resize(static_cast<std::size_t>(std::max(numBins, 0)));
    sums.resize(weights.size());
    greySums.resize(weights.size());

    HueSpace which = HueSpace::Lab;
    if (numBins >= 1 && IsHueSpace(space, which)) {
        const HueArguments arguments{which, illuminant, LinearOfByte(isSRGB), HueBins(numBins)};
        std::vector<HueSums> bins = SumsOf(*this);
        ForEachRow(static_cast<std::size_t>(std::max(numPixels, 0)), [&](std::size_t first, std::size_t n) {
            WeighHues(arguments, rgba + 4 * first, n, bins.data());
        });
        Assign(bins, *this);
    }
    total = std::accumulate(weights.begin(), weights.end(), 0.0);
}

}   // namespace QZ::Foundation
