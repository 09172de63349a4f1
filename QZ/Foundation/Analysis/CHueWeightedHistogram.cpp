// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"

namespace QZ::Foundation {

namespace {

/// The sums of a bin, side by side: a pixel adds to all of them.
struct BinSums {
    double weight, second, third, grey;

    void operator+=(const HueSample& sample)
    {
        weight += static_cast<double>(sample.weight);
        second += static_cast<double>(sample.second);
        third += static_cast<double>(sample.third);
        grey += static_cast<double>(sample.grey);
    }
};

std::vector<BinSums> SumsOf(const CHueWeightedHistogram& histogram)
{
    std::vector<BinSums> bins(histogram.weights.size());
    for (std::size_t i = 0; i < bins.size(); ++i)
        bins[i] = {histogram.weights[i], histogram.sums[i].x, histogram.sums[i].y, histogram.greySums[i]};
    return bins;
}

void Assign(const std::vector<BinSums>& bins, CHueWeightedHistogram& histogram)
{
    for (std::size_t i = 0; i < bins.size(); ++i) {
        histogram.weights[i] = bins[i].weight;
        histogram.sums[i] = {bins[i].second, bins[i].third};
        histogram.greySums[i] = bins[i].grey;
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
        HueRow row;
        std::vector<BinSums> bins = SumsOf(*this);
        ForEachRow(static_cast<std::size_t>(std::max(numPixels, 0)), [&](std::size_t first, std::size_t n) {
            WeighHues(arguments, rgba + 4 * first, n, row);
            for (std::size_t i = 0; i < n; ++i)
                bins[static_cast<std::size_t>(row.bin[i])] += row.sample[i];
        });
        Assign(bins, *this);
    }
    total = std::accumulate(weights.begin(), weights.end(), 0.0);
}

}   // namespace QZ::Foundation
