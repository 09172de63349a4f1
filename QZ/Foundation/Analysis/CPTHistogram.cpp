// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/HueBins.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/Formulas/IPT.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

void CPTHistogram::Compute(int numBins, CColor::EIlluminant illuminant, int numPixels,
                           const unsigned char* rgba)
{
    counts.resize(static_cast<std::size_t>(std::max(numBins, 0)));
    sums.resize(counts.size());
    pixelCount = numPixels;
    if (numBins < 1)
        return;

    const HueBins binOf(numBins);
    const ByteTable& unitOfByte = UnitOfByte();
    for (std::ptrdiff_t k = 0; k < numPixels; ++k) {
        const formula::Vec3<float> ipt =
            formula::LinearRGBToIPT(illuminant, formula::Vec3(ColorOfPixel(unitOfByte, rgba + 4 * k)));
        const auto bin = static_cast<std::size_t>(binOf(formula::IPTHue(ipt)));
        counts[bin] = WrappingAdd(counts[bin], 1);
        sums[bin] += Math::CVector2<double>(ipt.y, ipt.z);
    }
}

}   // namespace QZ::Foundation
