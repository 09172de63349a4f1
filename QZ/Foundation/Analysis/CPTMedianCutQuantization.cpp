// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>

#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/HueSegments.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/Recolor.h"

namespace QZ::Foundation {

std::vector<Math::CVector2<float>> SegmentColors(const CCircularMedianCut& cut, const CPTHistogram& histogram)
{
    std::vector<Math::CVector2<float>> colors;
    for (const CMedianCut::sSegment& segment : cut.segments) {
        Math::CVector2<double> mean;
        for (int bin = segment.start; bin <= segment.end; ++bin)
            mean += histogram.sums[static_cast<std::size_t>(bin)];
        if (segment.population > 0)
            mean /= static_cast<double>(segment.population);
        mean.Normalize();
        colors.emplace_back(static_cast<float>(mean.x), static_cast<float>(mean.y));
    }
    if (cut.wrapJoined && !colors.empty()) {
        const auto first = static_cast<float>(cut.segments.front().population);
        const auto last = static_cast<float>(cut.segments.back().population);
        const float share = first + last > 0.0f ? first / (first + last) : 0.5f;
        colors.front() = colors.back() = share * colors.front() + (1.0f - share) * colors.back();
    }
    return colors;
}

void CPTMedianCutQuantization::Compute(int numBins, int numColours, int width, int height,
                                       CColor::EIlluminant illuminant, const unsigned char* rgba)
{
    const int pixels = WrappingMultiply(width, height);
    CPTHistogram histogram;
    histogram.Compute(numBins, illuminant, pixels, rgba);
    CCircularMedianCut cut;
    cut.Compute(histogram.counts, pixels, numColours);
    const std::vector<Math::CVector2<float>> colors = SegmentColors(cut, histogram);

    binColours.resize(histogram.counts.size());
    for (std::size_t i = 0; i < colors.size(); ++i)
        std::fill(binColours.begin() + cut.segments[i].start, binColours.begin() + cut.segments[i].end + 1,
                  colors[i]);
}

void CPTMedianCutQuantization::Recolor(int width, int height, CColor::EIlluminant illuminant,
                                       unsigned char* rgba) const
{
    RecolorPicture(binColours, width, height, illuminant, false, rgba);
}

}   // namespace QZ::Foundation
