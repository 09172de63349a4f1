// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <optional>

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/MedianCut.h"

namespace QZ::Foundation {

void CCircularMedianCut::FirstCut(int totalPopulation, int numBins, sSegment& first, sSegment& second,
                                  const std::vector<int>& doubledHistogram) const
{
    int bestDeviation = std::numeric_limits<int>::max();
    int bestBalance = std::numeric_limits<int>::max();
    for (int start = 0; start < numBins; ++start) {
        sSegment a;
        sSegment b;
        const int deviation =
            Cut({start, start + numBins - 1, numBins, totalPopulation, true}, a, b, false, doubledHistogram);
        const int balance = std::abs(b.numBins - a.numBins);
        if (deviation < bestDeviation || (deviation == bestDeviation && balance < bestBalance)) {
            bestDeviation = deviation;
            bestBalance = balance;
            first = a;
            second = b;
        }
    }
}

void CCircularMedianCut::FoldBack(int numBins, const std::vector<int>& doubledHistogram)
{
    std::optional<sSegment> beforeSeam;
    for (sSegment& segment : segments) {
        if (segment.end < numBins)
            continue;
        if (segment.start >= numBins) {
            segment.start %= numBins;
            segment.end %= numBins;
            continue;
        }
        const int population = Population(segment.start, numBins - 1, doubledHistogram);
        beforeSeam = {segment.start, numBins - 1, numBins - segment.start, population, true};
        const int end = segment.end % numBins;
        segment = {0, end, end + 1, WrappingSubtract(segment.population, population), segment.cuttable};
    }
    if (beforeSeam)
        segments.push_back(*beforeSeam);
}

void CCircularMedianCut::Compute(const std::vector<int>& histogram, int totalPopulation, int numSegments)
{
    const int n = static_cast<int>(histogram.size());
    if (numSegments < 2 || n == 0)
        return;
    std::vector<int> doubled(histogram);
    doubled.insert(doubled.end(), histogram.begin(), histogram.end());
    segments.reserve(segments.size() + static_cast<std::size_t>(std::min(numSegments, n)) + 2);

    sSegment first;
    sSegment second;
    FirstCut(totalPopulation, n, first, second, doubled);
    segments.push_back(first);
    segments.push_back(second);

    const Phases phases = PhasesOf(numSegments);
    CutForemost(phases.byWidth - 1, SegmentLargestNumBinsFirstCompare, true, doubled);
    CutForemost(phases.byWidthAndPopulation, SegmentLargestNumBinsTimesPopulationFirstCompare, true, doubled);
    FoldBack(n, doubled);
    SortByStart();
}

}   // namespace QZ::Foundation
