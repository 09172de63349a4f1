// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"

namespace QZ::Foundation {

namespace {

void Add(const HueRow& row, std::size_t n, CHueWeightedHistogram& histogram)
{
    for (std::size_t i = 0; i < n; ++i) {
        const auto bin = static_cast<std::size_t>(row.bin[i]);
        histogram.weights[bin] += row.weight[i];
        histogram.sums[bin] += Math::CVector2<double>(row.second[i], row.third[i]);
        histogram.greySums[bin] += row.grey[i];
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
        ForEachRow(static_cast<std::size_t>(std::max(numPixels, 0)), [&](std::size_t first, std::size_t n) {
            WeighHues(arguments, rgba + 4 * first, n, row);
            Add(row, n, *this);
        });
    }
    total = std::accumulate(weights.begin(), weights.end(), 0.0);
}

}   // namespace QZ::Foundation
