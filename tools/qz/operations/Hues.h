// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "tools/qz/Image.h"
#include "tools/qz/palette/Palette.h"

namespace QZ::Tool {

using HueSpace = Foundation::CHueWeightedHistogram::EHueColorSpace;
using HueMode = Foundation::CHueWeightedHistogramHierarchicalClusterQuantization::EHueMode;
using HueQuantizer = Foundation::CHueWeightedHistogramHierarchicalClusterQuantization;

/// What `qz hues` is asked for.
struct HuesOptions {
    enum class Method {
        Clusters,    ///< Neighbouring hues join, saturated ones weighing most.
        MedianCut,   ///< The hue circle is cut where the pixels are halved, in IPT.
    };

    Method method = Method::Clusters;
    int count = 4;           ///< Hues at most; median cut makes at least two.
    double minAngle = 0.0;   ///< Degrees; clusters closer than this join. Of clusters only.
    /// Where hues are measured and turned. Of clusters only.
    HueSpace space = Foundation::CHueWeightedHistogram::eIPT;
    /// What the chroma of a pixel is multiplied by: eDirection keeps it, eMeanPair takes the mean chroma of
    /// its hue, eRelativeChroma its share of the largest chroma (in Luv; elsewhere as eMeanPair). Of clusters
    /// only.
    HueMode mode = HueQuantizer::eDirection;
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;
};

/// The hues of a picture.
struct Hues {
    /// Each hue as the mean light of its repainted pixels, the more saturated counting more, with its share
    /// of all pixels; the largest first. Hues without pixels are left out.
    std::vector<PaletteColor> colors;
    double greyShare = 0.0;   ///< Share of the pixels of so little chroma that no hue is seen in them.
};

/// Repaints a picture in a few hues; lightness and alpha stay. A picture without any hue stays as it is.
/// Throws Failure (Status::Usage) when median cut is asked for what only clusters have.
Hues ReduceToHues(const HuesOptions& options, Image& image);

}   // namespace QZ::Tool
