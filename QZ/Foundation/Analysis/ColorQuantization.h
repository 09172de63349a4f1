// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <list>
#include <vector>

#include "QZ/Export.h"
#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Math/CVector2.h"

/// \file
/// Pictures in a few hues.
///
/// Pictures are 8-bit RGBA, four bytes a pixel, rows without gaps. A picture of no pixels, or of a negative
/// size, is none; width * height is a 32-bit integer. Hues fall into the bins of CPTHistogram.
///
/// **Recolouring.** `Recolor` keeps each pixel's intensity I and the length of its (P, T) and turns that pair
/// to the colour of its hue's bin; nothing happens without bins. A grey stays as it is. The fourth byte
/// becomes the Rec. 601 luma of the new R, G and B, rounded, which callers read.
///
/// Nothing is thrown but by a failing allocation. One object is for one thread at a time; `Recolor` of a
/// finished one may be called from any thread.

namespace QZ::Foundation {

/// Hues by the circular median cut of the P/T histogram.
/// \code
///     CPTMedianCutQuantization quantization;
///     quantization.Compute(256, 5, width, height, CColor::eD65, rgba);
///     quantization.Recolor(width, height, CColor::eD65, rgba);
/// \endcode
class QZ_API CPTMedianCutQuantization {
public:
    /// For each bin the mean direction of its segment in the P/T plane, of unit length, or (0, 0) if no pixel
    /// fell into the segment.
    std::vector<Math::CVector2<float>> binColours;

    /// \param numBins     below 1 leaves no bins.
    /// \param numColours  how many segments CCircularMedianCut makes; the two pieces of one across the seam
    ///                    have each their own colour. Below 2 there are none: the bins are sized, new ones
    ///                    (0, 0).
    /// \param rgba        taken as linear RGB.
    void Compute(int numBins, int numColours, int width, int height, CColor::EIlluminant illuminant,
                 const unsigned char* rgba);

    /// Repaints a picture of linear RGB in place.
    void Recolor(int width, int height, CColor::EIlluminant illuminant, unsigned char* rgba) const;
};

/// Hues by bottom-up clustering of a hue histogram, in which saturated colours of medium lightness weigh
/// most (CHueWeightedHistogram).
///
/// The clusters are runs of bins on the hue circle. The two neighbours that cost least are merged, the first
/// in the list among equals: the cost is the angular variance of the merged cluster times the angular
/// variance between the two.
/// \code
///     CHueWeightedHistogramHierarchicalClusterQuantization hues;
///     using Histogram = CHueWeightedHistogram;
///     hues.Compute(256, 6, 0.0, Histogram::eIPT, true, CColor::eD65, hues.eDirection, width, height, rgba);
///     hues.Recolor(width, height, CColor::eD65, rgba);
/// \endcode
class QZ_API CHueWeightedHistogramHierarchicalClusterQuantization {
public:
    /// What a cluster's colour is.
    enum EHueMode : int {
        eMeanPair = 0,    ///< Its weighted mean chromatic pair.
        eDirection = 1,   ///< That pair, of unit length.
        /// In Luv, that direction times the share of the largest chroma that the mean has at its lightness,
        /// at most 1 (CLUVMaximumChromaMap). In the other spaces as eMeanPair.
        eRelativeChroma = 2,
    };

    /// A run of bins on the circle.
    struct QZ_API sCluster {
        double weight;                      ///< Its share of the histogram's total.
        Math::CVector2<double> direction;   ///< Weighted mean of its bins' unit directions, of any length.
        /// What merging it with its predecessor costs. NaN never counts as less than another.
        double distance = std::numeric_limits<double>::max();
        int first;   ///< First bin.
        int last;    ///< Last bin; first > last lies across the seam: first to the end, then 0 to last.

        sCluster(double weight_, const Math::CVector2<double>& direction_, int bin)
            : weight(weight_), direction(direction_), first(bin), last(bin)
        {}

        /// Sets `distance`. An arc cosine of a product that rounding has pushed above 1 is NaN, and so is the
        /// distance then; two clusters without weight cost 0.
        /// \param normalisedWeights  of each bin; only those above 0 count.
        /// \param binDirections      the unit direction of each bin.
        void Distance(std::list<sCluster>::const_iterator previous,
                      const std::vector<double>& normalisedWeights,
                      const std::vector<Math::CVector2<double>>& binDirections);
        /// Takes in the cluster before it.
        void CombineWithPrevious(std::list<sCluster>::const_iterator previous);
    };

    std::vector<Math::CVector2<float>> binColours;       ///< Of each bin, the colour of its cluster.
    std::vector<Math::CVector2<float>> clusterColours;   ///< Of each cluster.
    std::vector<int> binCluster;                         ///< Of each bin, its cluster.
    CHueWeightedHistogram::EHueColorSpace space = CHueWeightedHistogram::eLab;   ///< As given.
    int numBins = 0;                                                             ///< As given.

    /// Assigns all fields. A picture without weight, such as one of greys, has no cluster: `binColours` then
    /// holds numBins times (0, 0), and the other vectors are empty.
    ///
    /// Empty bins between two clusters are shared between them in proportion to their weights.
    ///
    /// \param bins              how many; below 1 leaves none.
    /// \param numClusters       how many to end with, at most; there are no more than bins with weight.
    /// \param minAngleDegrees   if above 0, merging goes on while two neighbours are as close as that.
    /// \param hueSpace          where hues are measured.
    /// \param isSRGB            false if the bytes are linear RGB.
    void Compute(int bins, int numClusters, double minAngleDegrees,
                 CHueWeightedHistogram::EHueColorSpace hueSpace, bool isSRGB, CColor::EIlluminant illuminant,
                 EHueMode mode, int width, int height, const unsigned char* rgba);

    /// Repaints a picture of encoded RGB (gamma 2.2) in place, by the bins of the IPT hue whatever space the
    /// clusters were made in.
    void Recolor(int width, int height, CColor::EIlluminant illuminant, unsigned char* rgba) const;
};

}   // namespace QZ::Foundation
