// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

#include "QZ/Foundation/Analysis/ByteCounts.h"
#include "QZ/Foundation/Analysis/GreyLevels.h"
#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/Int32.h"

namespace QZ::Foundation {

namespace {

constexpr std::size_t kLevels = 256;
constexpr int kRow = 256;   // pixels whose levels are found at a time

template <class T>
void Assign(const std::vector<T>& values, std::vector<double>& bins, double& total)
{
    if (values.size() != kLevels)
        return;
    bins.assign(values.begin(), values.end());
    total = std::accumulate(bins.begin(), bins.end(), 0.0);
}

/// The mask of a picture, from a certain pixel on.
struct Mask {
    const unsigned char* bytes;
    std::ptrdiff_t stride;

    [[nodiscard]] Mask From(std::ptrdiff_t pixel) const { return {bytes + pixel * stride, stride}; }
};

/// Adds weighted levels in the order of the pixels.
void AddWeighted(const unsigned char* levels, std::ptrdiff_t stride, std::ptrdiff_t n, const Mask& mask,
                 CGrayscaleWeightedHistogram& histogram)
{
    const ByteTable& unitOfByte = UnitOfByte();
    for (std::ptrdiff_t k = 0; k < n; ++k) {
        const unsigned char maskByte = mask.bytes[k * mask.stride];
        if (maskByte == 0)
            continue;
        const auto weight = static_cast<double>(unitOfByte[maskByte]);
        histogram.total += weight;
        histogram.bins[levels[k * stride]] += weight;
    }
}

/// Adds levels that weigh 1 each. Where the bins hold whole numbers, adding the counts is adding 1 at a time.
void AddCounts(const ByteCounts& counts, std::vector<double>& bins)
{
    for (std::size_t level = 0; level < kLevels; ++level)
        bins[level] += counts[level];
}

}   // namespace

CGrayscaleWeightedHistogram::CGrayscaleWeightedHistogram(const std::vector<int>& values)
{
    Assign(values, bins, total);
}

CGrayscaleWeightedHistogram::CGrayscaleWeightedHistogram(const std::vector<float>& values)
{
    Assign(values, bins, total);
}

void CGrayscaleWeightedHistogram::Compute(EGrayscaleFrom from, bool isSRGB, CColor::EIlluminant illuminant,
                                          int width, int height, const unsigned char* rgba, int alphaStride,
                                          int alphaOffset, const unsigned char* alpha)
{
    if (from == eFourthChannel) {
        ComputeFromComponent(width, height, 4, 3, rgba, alphaStride, alphaOffset, alpha);
        return;
    }
    bins.resize(kLevels);
    total = 0.0;
    if (from != eLXX && from != eNonlinearY)
        return;

    const int pixels = WrappingMultiply(width, height);
    const GreyLevels levelsOf(from, isSRGB, illuminant);
    std::array<unsigned char, kRow> levels;
    ByteCounts counts;
    for (std::ptrdiff_t first = 0; first < pixels; first += kRow) {
        const int n = static_cast<int>(std::min<std::ptrdiff_t>(kRow, pixels - first));
        levelsOf(rgba + 4 * first, n, levels.data());
        if (alpha != nullptr)
            AddWeighted(levels.data(), 1, n, Mask{alpha + alphaOffset, alphaStride}.From(first), *this);
        else
            counts.Add(levels.data(), 1, n);
    }
    if (alpha == nullptr) {
        AddCounts(counts, bins);
        total = pixels;
    }
}

void CGrayscaleWeightedHistogram::ComputeFromComponent(int width, int height, int stride, int offset,
                                                       const unsigned char* data, int alphaStride,
                                                       int alphaOffset, const unsigned char* alpha)
{
    bins.resize(kLevels);
    total = 0.0;
    const int pixels = WrappingMultiply(width, height);
    if (alpha == nullptr)
        total = pixels;
    if (pixels < 1)
        return;
    if (alpha != nullptr) {
        AddWeighted(data + offset, stride, pixels, Mask{alpha + alphaOffset, alphaStride}, *this);
    } else {
        ByteCounts counts;
        counts.Add(data + offset, stride, pixels);
        AddCounts(counts, bins);
    }
}

CGrayscaleWeightedHistogram CGrayscaleWeightedHistogram::Sum(
    int n, const std::vector<CGrayscaleWeightedHistogram>& histograms)
{
    CGrayscaleWeightedHistogram sum;
    sum.bins.resize(kLevels);
    const std::size_t m = std::min(static_cast<std::size_t>(std::max(n, 0)), histograms.size());
    for (std::size_t k = 0; k < m; ++k) {
        const CGrayscaleWeightedHistogram& histogram = histograms[histograms.size() - 1 - k];
        const std::size_t levels = std::min(kLevels, histogram.bins.size());
        for (std::size_t level = 0; level < levels; ++level)
            sum.bins[level] += histogram.bins[level];
        sum.total += histogram.total;
    }
    return sum;
}

}   // namespace QZ::Foundation
