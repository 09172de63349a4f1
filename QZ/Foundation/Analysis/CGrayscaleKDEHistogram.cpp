// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Math/CDiscreteGaussianFilter.h"

namespace QZ::Foundation {

namespace {

/// Silverman's rule of thumb; NaN for a histogram of nothing.
double Bandwidth(const CGrayscaleHistogram& histogram)
{
    int moment = 0;
    for (int level = 1; level < 256; ++level)
        moment =
            WrappingAdd(moment, WrappingMultiply(level, histogram.bins[static_cast<std::size_t>(level)]));
    const double n = histogram.count;
    const double mean = moment * (1.0 / n);

    double variance = 0.0;
    for (int level = 0; level < 256; ++level) {
        const double deviation = level - mean;
        variance += histogram.bins[static_cast<std::size_t>(level)] * (deviation * deviation);
    }
    const double sigma = std::sqrt(variance / n) * 1.06;
    return sigma * Double::Pow(n, -0.2);
}

}   // namespace

void CGrayscaleKDEHistogram::Compute(int width, int height, double /*ignored*/, int stride, int offset,
                                     const unsigned char* data)
{
    CGrayscaleHistogram histogram;
    histogram.Compute(width, height, stride, offset, data);
    std::vector<double> coefficients;
    Math::CDiscreteGaussianFilter::CoefficientsByStandardDeviation1D(Bandwidth(histogram), 1.0, coefficients);
    const int half = static_cast<int>(coefficients.size() / 2);

    bins.resize(256);
    total = 0.0;
    for (int level = 0; level < 256; ++level) {
        double sum = 0.0;
        for (int j = level - half; j <= level + half; ++j)
            sum += histogram.bins[static_cast<std::size_t>(std::clamp(j, 0, 255))] *
                   coefficients[static_cast<std::size_t>(j - (level - half))];
        const int smoothed = TruncateToInt(sum + 0.5);
        bins[static_cast<std::size_t>(level)] = smoothed;
        total += smoothed;
    }
}

}   // namespace QZ::Foundation
