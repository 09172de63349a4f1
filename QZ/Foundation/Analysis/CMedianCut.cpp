// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <limits>

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/MedianCut.h"

namespace QZ::Foundation {

namespace {

/// |2q - P|: the difference between the parts of populations q and P - q.
int Deviation(int part, int population)
{
    const int difference = WrappingSubtract(WrappingMultiply(2, part), population);
    return difference < 0 ? WrappingSubtract(0, difference) : difference;
}

/// A boundary after bin `last`, the bins up to it holding `population`.
struct Boundary {
    int last = 0;
    int population = 0;
    int deviation = std::numeric_limits<int>::max();
};

/// The deviation falls, then rises: the walk ends on the bin that makes it rise.
Boundary MedianOf(const CMedianCut::sSegment& segment, const std::vector<int>& histogram)
{
    Boundary boundary;
    for (int i = segment.start; i <= segment.end; ++i) {
        const int population = WrappingAdd(boundary.population, histogram[static_cast<std::size_t>(i)]);
        if (population == segment.population) {
            const bool isFirst = i == segment.start;
            return {isFirst ? i : i - 1, isFirst ? population : boundary.population, boundary.deviation};
        }
        const int deviation = Deviation(population, segment.population);
        if (deviation > boundary.deviation)
            return {i - 1, boundary.population, boundary.deviation};
        boundary.population = population;
        boundary.deviation = deviation;
    }
    return {0, 0, boundary.deviation};
}

}   // namespace

int CMedianCut::Population(int first, int last, const std::vector<int>& histogram) const
{
    int population = 0;
    const int end = std::min(last, static_cast<int>(histogram.size()) - 1);
    for (int i = std::max(first, 0); i <= end; ++i)
        population = WrappingAdd(population, histogram[static_cast<std::size_t>(i)]);
    return population;
}

int CMedianCut::Cut(const sSegment& segment, sSegment& first, sSegment& second, bool refine,
                    const std::vector<int>& histogram) const
{
    const int end = segment.end;
    const Boundary median = MedianOf(segment, histogram);
    sSegment part{segment.start, median.last, 0, median.population, true};

    if (refine && segment.start <= end && end - segment.start >= 2) {
        sSegment a;
        sSegment b;
        const int rest = WrappingSubtract(segment.population, part.population);
        if (part.end - part.start < end - part.end) {
            Cut({part.end + 1, end, end - part.end, rest, true}, a, b, false, histogram);
            part.end = a.end;
            part.population = WrappingAdd(part.population, a.population);
        } else {
            Cut({part.start, part.end, part.end - part.start + 1, part.population, true}, a, b, false,
                histogram);
            part = a;
        }
    }

    part.numBins = part.end + 1 - part.start;
    const int whole = segment.population;
    first = part;
    second.start = part.end + 1;
    second.end = end;
    second.numBins = end - part.end;
    second.population = WrappingSubtract(whole, part.population);
    return median.deviation;
}

bool CMedianCut::SegmentLargestNumBinsFirstCompare(const sSegment& a, const sSegment& b)
{
    return a.numBins > b.numBins;
}

bool CMedianCut::SegmentLargestNumBinsTimesPopulationFirstCompare(const sSegment& a, const sSegment& b)
{
    return WrappingMultiply(a.population, a.numBins) > WrappingMultiply(b.population, b.numBins);
}

bool CMedianCut::SegmentSmallestStartFirstCompare(const sSegment& a, const sSegment& b)
{
    return a.start < b.start;
}

CMedianCut::Phases CMedianCut::PhasesOf(int numSegments)
{
    const int cuts = numSegments - 1;
    const int half = static_cast<int>(static_cast<float>(cuts) * 0.5f + 0.5f);
    return {half, cuts - half};
}

void CMedianCut::CutForemost(int cuts, Order order, bool refine, const std::vector<int>& histogram)
{
    const auto comesBefore = [order](const sSegment& a, const sSegment& b) {
        return order(a, b) || (!order(b, a) && SegmentSmallestStartFirstCompare(a, b));
    };
    const auto canBeCut = [](const sSegment& s) { return s.cuttable && s.population >= 1 && s.numBins >= 2; };
    for (int i = 0; i < cuts; ++i) {
        sSegment* foremost = nullptr;
        for (sSegment& segment : segments)
            if (canBeCut(segment) && (foremost == nullptr || comesBefore(segment, *foremost)))
                foremost = &segment;
        if (foremost == nullptr)
            return;
        sSegment first;
        sSegment second;
        Cut(*foremost, first, second, refine, histogram);
        *foremost = first;
        segments.push_back(second);
    }
}

void CMedianCut::SortByStart()
{
    std::stable_sort(segments.begin(), segments.end(), SegmentSmallestStartFirstCompare);
}

void CMedianCut::Compute(const std::vector<int>& histogram, int totalPopulation, int numSegments,
                         int lowFixedEnd, int highFixedStart)
{
    if (numSegments < 2)
        return;
    const int n = static_cast<int>(histogram.size());
    const int low = std::min(lowFixedEnd, n);
    const int high = std::max(highFixedStart, 0);
    segments.reserve(segments.size() + static_cast<std::size_t>(std::min(numSegments, n)) + 3);

    const auto append = [&](int first, int last, bool cuttable) {
        const int population = Population(first, last, histogram);
        segments.push_back({first, last, last + 1 - first, population, cuttable});
    };
    const bool hasLow = low >= 1;
    const bool hasHigh = high < n - 1;
    if (hasLow)
        append(0, low - 1, false);
    if (hasLow || hasHigh)
        append(hasLow ? low : 0, (hasHigh ? high : n) - 1, true);
    else
        segments.push_back({0, n - 1, n, totalPopulation, true});
    if (hasHigh)
        append(high, n - 1, false);

    const Phases phases = PhasesOf(numSegments);
    CutForemost(phases.byWidth, SegmentLargestNumBinsFirstCompare, false, histogram);
    CutForemost(phases.byWidthAndPopulation, SegmentLargestNumBinsTimesPopulationFirstCompare, false,
                histogram);
    SortByStart();
}

}   // namespace QZ::Foundation
