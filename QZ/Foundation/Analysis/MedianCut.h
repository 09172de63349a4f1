// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"

namespace QZ::Foundation {

/// Divides a histogram into runs of bins at the medians of its population.
///
/// P. Heckbert, "Color Image Quantization for Frame Buffer Display", SIGGRAPH 1982, in one dimension. The
/// first half of the cuts goes to the widest segments, so that empty stretches are set apart; the second half
/// to those of the greatest product of width and population.
///
/// Counts are ints and their sums and products wrap around at 32 bits. Segments that are equal in what they
/// are ordered by are taken in the order of their starts. Nothing is thrown but by a failing allocation.
/// \code
///     CMedianCut cut;
///     cut.Compute(histogram.bins, histogram.count, 4, 0, 255);   // four segments over all 256 levels
/// \endcode
class QZ_API CMedianCut {
public:
    /// A run of bins.
    struct sSegment {
        int start = 0;          ///< First bin.
        int end = 0;            ///< Last bin.
        int numBins = 0;        ///< end - start + 1.
        int population = 0;     ///< Sum of the counts of its bins.
        bool cuttable = true;   ///< Whether it may be cut.
    };

    std::vector<sSegment> segments;   ///< The result, in the order of the bins.

    /// Appends the segments; the object is expected to be a fresh one.
    ///
    /// \param totalPopulation  the sum of the counts. It is taken at its word when no end is fixed: with more
    ///                         than the bins hold, the cuts are of no use.
    /// \param numSegments      how many to make of what lies between the fixed ends; fewer come out when no
    ///                         segment of two bins with a population is left, and below 2 none at all.
    /// \param lowFixedEnd      the bins below it form a segment of their own that is not cut; below 1 for
    /// none,
    ///                         at most the number of bins.
    /// \param highFixedStart   the bins from it on likewise; the last bin or above for none, at least 0.
    void Compute(const std::vector<int>& histogram, int totalPopulation, int numSegments, int lowFixedEnd,
                 int highFixedStart);

    /// Sum of the counts of the bins first to last; 0 when first > last. Bins that do not exist hold nothing.
    [[nodiscard]] int Population(int first, int last, const std::vector<int>& histogram) const;

    /// Cuts a segment in two at its median, at the later boundary if two are equally good.
    ///
    /// A bin that completes the population starts the second part, unless it is the first of all. A segment
    /// that claims more than its bins hold is cut after bin 0, wherever it starts.
    ///
    /// \param second  its `cuttable` is left as it is.
    /// \param refine  true to cut the part of more bins once more, the second if both are equal, and to move
    /// the
    ///                boundary to its median; a segment of two bins or fewer is not refined.
    /// \return  how uneven the cut is, |population of the first - population of the second|, before
    /// refinement;
    ///          2147483647 when the first bin holds all or the segment has no bin.
    int Cut(const sSegment& segment, sSegment& first, sSegment& second, bool refine,
            const std::vector<int>& histogram) const;

    /// \name Orders for sorting
    /// \{
    [[nodiscard]] static bool SegmentLargestNumBinsFirstCompare(const sSegment& a, const sSegment& b);
    [[nodiscard]] static bool SegmentLargestNumBinsTimesPopulationFirstCompare(const sSegment& a,
                                                                               const sSegment& b);
    [[nodiscard]] static bool SegmentSmallestStartFirstCompare(const sSegment& a, const sSegment& b);
    /// \}

protected:
    using Order = bool (*)(const sSegment&, const sSegment&);

    /// How many cuts make numSegments of one, and how many of them go by width.
    struct Phases {
        int byWidth;
        int byWidthAndPopulation;
    };
    static Phases PhasesOf(int numSegments);

    /// Up to `cuts` times, replaces the foremost cuttable segment by its first part and appends its second.
    void CutForemost(int cuts, Order order, bool refine, const std::vector<int>& histogram);

    void SortByStart();
};

/// Divides a histogram whose ends meet, such as one of hue angles.
class QZ_API CCircularMedianCut : public CMedianCut {
public:
    /// Whether the two pieces of a segment across the seam count as one. Compute() never sets it: the pieces
    /// stay apart unless the caller says otherwise.
    bool wrapJoined = false;

    /// Appends the segments; the object is expected to be a fresh one. The result covers all bins; a segment
    /// across the seam comes as two, one from bin 0 and one to the last bin, numSegments + 1 in all.
    ///
    /// \param totalPopulation  the sum of the counts.
    /// \param numSegments      below 2 makes none, and so does an empty histogram.
    void Compute(const std::vector<int>& histogram, int totalPopulation, int numSegments);

    /// Opens the circle where a cut leaves its two parts most even in population, then most even in bins,
    /// then at the lowest start. Takes time in the square of the number of bins.
    ///
    /// \param numBins           of the histogram itself.
    /// \param first, second     the two parts, as bins of the doubled histogram; left alone if numBins is 0.
    /// \param doubledHistogram  the histogram twice over.
    void FirstCut(int totalPopulation, int numBins, sSegment& first, sSegment& second,
                  const std::vector<int>& doubledHistogram) const;

private:
    void FoldBack(int numBins, const std::vector<int>& doubledHistogram);
};

}   // namespace QZ::Foundation
