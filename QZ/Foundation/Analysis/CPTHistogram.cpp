// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"

namespace QZ::Foundation {

void CPTHistogram::Compute(int numBins, CColor::EIlluminant illuminant, int numPixels,
                           const unsigned char* rgba)
{
    counts.resize(static_cast<std::size_t>(std::max(numBins, 0)));
    sums.resize(counts.size());
    pixelCount = numPixels;
    if (numBins < 1)
        return;

    const HueArguments arguments{HueSpace::IPT, illuminant, UnitOfByte(), HueBins(numBins)};
    PTRow row;
    ForEachRow(static_cast<std::size_t>(std::max(numPixels, 0)), [&](std::size_t first, std::size_t n) {
        FindPT(arguments, rgba + 4 * first, n, row);
        for (std::size_t i = 0; i < n; ++i) {
            const auto bin = static_cast<std::size_t>(row.bin[i]);
            counts[bin] = WrappingAdd(counts[bin], 1);
            sums[bin] += Math::CVector2<double>(row.P[i], row.T[i]);
        }
    });
}

}   // namespace QZ::Foundation
