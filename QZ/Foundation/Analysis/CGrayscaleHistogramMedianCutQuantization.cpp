// SPDX-License-Identifier: MIT
#include <cstddef>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/MedianCut.h"

namespace QZ::Foundation {

namespace {

using Record = CGrayscaleHistogramMedianCutQuantization::sAverageSegmentGray;

/// A mean level, rounded; the low byte of what wrapped around.
unsigned char RoundedGray(double mean)
{
    return static_cast<unsigned char>(TruncateToInt(mean + 0.5));
}

Record Average(const CMedianCut::sSegment& segment, const std::vector<int>& bins)
{
    if (segment.population <= 0)
        return {segment.population, 0};
    double moment = 0.0;
    for (int level = segment.start; level <= segment.end; ++level)
        moment += WrappingMultiply(bins[static_cast<std::size_t>(level)], level);
    return {segment.population, RoundedGray(moment / segment.population)};
}

/// A tone that is close above the one before becomes one with it and with those that were merged into that.
void MergeCloseTones(std::vector<Record>& records, unsigned char threshold)
{
    for (std::size_t j = 0; j + 1 < records.size(); ++j) {
        const Record lower = records[j];
        const Record upper = records[j + 1];
        if (upper.gray <= lower.gray || upper.gray - lower.gray > threshold)
            continue;
        const int population = WrappingAdd(lower.population, upper.population);
        const int moment = WrappingAdd(WrappingMultiply(upper.population, upper.gray),
                                       WrappingMultiply(lower.population, lower.gray));
        const Record merged{population, RoundedGray(static_cast<double>(moment) / population)};
        for (std::size_t k = j; k > 0 && records[k - 1].gray == lower.gray; --k)
            records[k - 1] = merged;
        records[j] = merged;
        records[j + 1] = merged;
    }
}

}   // namespace

void CGrayscaleHistogramMedianCutQuantization::Compute(float, float, float, float, float, int numSegments,
                                                       int width, int height, int stride, int offset,
                                                       unsigned char mergeThreshold,
                                                       const unsigned char* data)
{
    CGrayscaleHistogram histogram;
    histogram.Compute(width, height, stride, offset, data);
    CMedianCut cut;
    cut.Compute(histogram.bins, histogram.count, numSegments, 0, 255);

    std::vector<Record> records;
    records.reserve(cut.segments.size());
    for (const CMedianCut::sSegment& segment : cut.segments)
        records.push_back(Average(segment, histogram.bins));
    if (mergeThreshold != 0)
        MergeCloseTones(records, mergeThreshold);

    table.resize(256);
    for (std::size_t i = 0; i < records.size(); ++i)
        for (int level = cut.segments[i].start; level <= cut.segments[i].end; ++level)
            table[static_cast<std::size_t>(level)] = records[i].gray;
}

}   // namespace QZ::Foundation
