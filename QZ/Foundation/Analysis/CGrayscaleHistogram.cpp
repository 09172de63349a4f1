// SPDX-License-Identifier: MIT
#include <cstddef>

#include "QZ/Foundation/Analysis/ByteCounts.h"
#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/Int32.h"

namespace QZ::Foundation {

void CGrayscaleHistogram::Compute(int width, int height, int stride, int offset, const unsigned char* data)
{
    bins.resize(256);
    count = WrappingMultiply(width, height);
    if (count < 1 || stride < 1)
        return;
    // As many bytes as lie below count * stride: an offset beyond the first pixel leaves some at the end out.
    ByteCounts counts;
    counts.Add(data + offset, stride, count - offset / stride);
    for (std::size_t level = 0; level < 256; ++level)
        bins[level] = WrappingAdd(bins[level], static_cast<int>(counts[level]));
}

}   // namespace QZ::Foundation
