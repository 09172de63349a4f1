// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <vector>

#include "QZ/Export.h"
#include "QZ/Foundation/Analysis/Histograms.h"

/// \file
/// Reducing the 256 grey levels of a picture to a few tones. The result is a table from level to tone;
/// pictures and masks are those of Histograms.h. Nothing is thrown but by a failing allocation; one object is
/// for one thread at a time.

namespace QZ::Foundation {

/// Few tones by median cut: each segment of levels takes its mean.
/// \code
///     CGrayscaleHistogramMedianCutQuantization quantizer;
///     quantizer.Compute(0, 1, 1, 0, 1, 4, width, height, 4, 0, 0, rgba);   // four tones of the red channel
///     const unsigned char tone = quantizer.table[rgba[0]];
/// \endcode
class QZ_API CGrayscaleHistogramMedianCutQuantization {
public:
    /// A segment's pixels and tone.
    struct sAverageSegmentGray {
        int population;
        unsigned char gray;
    };

    /// The tone of each of 256 levels after Compute(). With fewer than two segments it is only brought to 256
    /// entries: all 0 in a fresh object.
    std::vector<unsigned char> table;

    /// Cuts the histogram of one byte channel and paints each segment with its mean level, rounded.
    ///
    /// Counts times levels are 32-bit integers: a level of more than 2^31 / 255, about 8 million, pixels
    /// wraps around and its tone is another. Callers rely on the same tones for the same picture; pictures of
    /// that size are best thinned out first.
    ///
    /// The first five arguments are never read; they stand where the tone curve of the hierarchical quantiser
    /// does.
    ///
    /// \param numSegments     how many tones, 2 or more; there are fewer if the picture has fewer levels.
    /// \param stride, offset  the channel, as in CGrayscaleHistogram::Compute().
    /// \param mergeThreshold  0, or: a tone that is lighter than the one before by at most this takes with it
    ///                        their mean, weighted by population, and so a chain of close tones becomes one.
    void Compute(float, float, float, float, float, int numSegments, int width, int height, int stride,
                 int offset, unsigned char mergeThreshold, const unsigned char* data);
};

/// Few tones by merging neighbouring levels, the closest first.
///
/// At first each occupied level is a cluster of its own. The cost of merging two neighbours is the variance
/// of the union times the variance between the two; the cheapest merge is made, of equal ones the darkest,
/// until the wanted number of clusters is left. A tone curve turns the mean of a cluster into its tone.
class QZ_API CGrayscaleHistogramHierarchicalClusterQuantization {
public:
    /// Neighbouring grey levels that share a tone.
    struct QZ_API sCluster {
        double weight;        ///< Share of the histogram's total.
        double mean;          ///< Weighted mean level.
        double distance;      ///< Cost of a merge with the cluster before; at first the largest double.
        int first;            ///< First level.
        int last;             ///< Last level.
        unsigned char gray;   ///< The tone.

        /// A single level.
        sCluster(double weight, int level);

        /// Sets `distance`: of the union with the cluster before, the variance times the variance between the
        /// two. 0 if the union has no level.
        /// \param normalizedBins  the weights of the levels, at least `last` + 1 of them; what is not above 0
        ///                        does not count.
        void Distance(std::list<sCluster>::const_iterator previous,
                      const std::vector<double>& normalizedBins);

        /// Takes in the levels, the weight and the mean of the cluster before; the caller removes that one.
        void CombineWithPrevious(std::list<sCluster>::const_iterator previous);
    };

    std::vector<unsigned char> table;    ///< The tone of each of 256 levels.
    std::vector<unsigned char> levels;   ///< The tones, in the order in which they occur in the table.
    int numLevels = 0;                   ///< Levels of the histogram: 256 after any computation.

    /// Finds the table of a histogram.
    ///
    /// Empty levels between two clusters are shared out in proportion to their weights. Levels that the tone
    /// curve makes black from the dark end on, and white to the light end, stay so. If no level is occupied,
    /// the table has 0 in between.
    ///
    /// \param black, white, gamma, toe, shoulder  the tone curve, as in CGrayscaleToneCurve::Compute().
    /// \param highlightsAmount, highlightsBand    CColor::Highlights() on the tones; 1 or more for none.
    /// \param numClusters  how many tones; as many as there are levels leaves each its own, more merge all into
    ///                     one unless `minMeanGap` ends it, and so do fewer than 1.
    /// \param minMeanGap   above 0, merging goes on past numClusters until the means of neighbours differ by
    ///                     more than this.
    void Compute(float black, float white, float gamma, float toe, float shoulder, float highlightsAmount,
                 float highlightsBand, int numClusters, double minMeanGap,
                 const CGrayscaleWeightedHistogram& histogram);

    /// Finds the table of a picture, through CGrayscaleWeightedHistogram::Compute().
    void Compute(float black, float white, float gamma, float toe, float shoulder, float highlightsAmount,
                 float highlightsBand, int numClusters, double minMeanGap,
                 CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB,
                 CColor::EIlluminant illuminant, int width, int height, const unsigned char* rgba,
                 int alphaStride, int alphaOffset, const unsigned char* alpha);

    /// Replaces the list by the clusters of a histogram, from dark to light.
    ///
    /// \param bins   the levels' weights; `numLevels` of them are used, or 256 in a fresh object.
    /// \param total  their sum.
    void Cluster(int numClusters, double minMeanGap, const std::vector<double>& bins, double total,
                 std::list<sCluster>& clusters);

    /// Finds two thresholds and a tone for a picture in black, one grey and white. Leaves `table` and
    /// `levels` as they are.
    ///
    /// The picture is clustered without a gap rule. Of two clusters the tone is their mean and the boundary
    /// is the low threshold, the high one being 1; of three, the middle one gives the tone and the boundaries
    /// the thresholds; of four or five, the second and third together. Any other number gives the thresholds
    /// 0 and 1 and the mean of the first cluster, or 0 if there is none. Each is a fraction of 255, is raised
    /// to its exponent and goes through the tone curve.
    ///
    /// \param lowThreshold, highThreshold, midTone  in the unit range, multiples of 1/255.
    void ComputeForThreeTone(float black, float white, float gamma, float toe, float shoulder,
                             int numClusters, CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB,
                             CColor::EIlluminant illuminant, int width, int height, const unsigned char* rgba,
                             int alphaStride, int alphaOffset, const unsigned char* alpha,
                             float thresholdExponent, float toneExponent, float& lowThreshold,
                             float& highThreshold, float& midTone);

private:
    void Paint(const std::list<sCluster>& clusters, const std::vector<int>& toneCurve);
};

}   // namespace QZ::Foundation
