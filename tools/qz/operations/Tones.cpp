// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Tones.h"

#include <algorithm>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"
#include "tools/qz/Failure.h"

namespace QZ::Tool {

using Foundation::CGrayscaleHistogramHierarchicalClusterQuantization;
using Foundation::CGrayscaleHistogramMedianCutQuantization;
using Foundation::CGrayscaleToneCurve;
using Foundation::CGrayscaleWeightedHistogram;

namespace {

using Table = std::vector<unsigned char>;

Table HierarchicalTable(const TonesOptions& options, const CGrayscaleWeightedHistogram& histogram, int count)
{
    const ToneCurve& curve = options.curve;
    CGrayscaleHistogramHierarchicalClusterQuantization quantizer;
    quantizer.Compute(curve.black, curve.white, curve.gamma, curve.toe, curve.shoulder, options.highlights,
                      options.highlightsBand, count, options.minGap, histogram);
    return quantizer.table;
}

// The quantiser multiplies counts and levels in 32 bits: a larger picture is thinned out to what that holds.
Table MedianCutTable(const Table& plane, int count, double minGap)
{
    constexpr std::size_t kMostPixels = 0x7FFF'FFFF / 255;
    const std::size_t step = (plane.size() + kMostPixels - 1) / kMostPixels;
    const auto pixels = static_cast<int>(plane.size() / step);
    // It cuts at least once; merging whatever it cut leaves one tone.
    const double gap = count < 2 ? 255.0 : minGap;
    CGrayscaleHistogramMedianCutQuantization quantizer;
    quantizer.Compute(0.0f, 1.0f, 1.0f, 0.0f, 1.0f, std::max(count, 2), pixels, 1, static_cast<int>(step), 0,
                      static_cast<unsigned char>(std::min(gap, 255.0)), plane.data());
    return quantizer.table;
}

// Median cut knows no tone curve: its tones go through it afterwards.
void ApplyCurve(const TonesOptions& options, Table& table)
{
    CGrayscaleToneCurve curve;
    curve.Compute(options.curve.black, options.curve.white, options.curve.gamma, options.curve.toe,
                  options.curve.shoulder);
    for (unsigned char& tone : table)
        tone = static_cast<unsigned char>(std::clamp(curve.lookupTable[tone], 0, 255));
    if (options.highlights >= 1.0f)
        return;
    Table highlights;
    Foundation::CColor::Highlights(options.highlights, options.highlightsBand, highlights);
    for (unsigned char& tone : table)
        tone = highlights[tone];
}

std::vector<Tone> List(const Table& table, const CGrayscaleWeightedHistogram& histogram)
{
    std::vector<Tone> tones;
    for (int level = 0; level < 256; ++level) {
        const auto index = static_cast<std::size_t>(level);
        const double share = histogram.bins[index] / histogram.total;
        if (!(share > 0.0))
            continue;
        if (tones.empty() || tones.back().grey != table[index])
            tones.push_back({table[index], 0.0, level, level});
        tones.back().share += share;
        tones.back().last = level;
    }
    return tones;
}

}   // namespace

Tones ReduceToTones(const TonesOptions& options, Image& image)
{
    const bool medianCut = options.method == TonesOptions::Method::MedianCut;
    if (medianCut && options.grey.maskFromAlpha)
        throw Failure(Status::Usage, "--mask-alpha", "median cut knows no mask", "use --method hierarchical");
    const Table plane = GreyPlane(image, options.grey);
    const CGrayscaleWeightedHistogram histogram = GreyHistogram(plane, image, options.grey);
    Tones result;
    result.levels = OccupiedLevels(histogram);
    const int count = std::min(options.count, result.levels);
    if (medianCut) {
        result.table = MedianCutTable(plane, count, options.minGap);
        ApplyCurve(options, result.table);
    } else {
        result.table = HierarchicalTable(options, histogram, count);
    }
    result.tones = List(result.table, histogram);
    PaintGrey(plane, result.table, options.grey, image);
    return result;
}

}   // namespace QZ::Tool
