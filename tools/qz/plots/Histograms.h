// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "tools/qz/Image.h"
#include "tools/qz/draw/Canvas.h"
#include "tools/qz/plots/Plot.h"

namespace QZ::Tool {

/// What `qz histogram` measures and draws.
struct HistogramOptions {
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;
    Foundation::CGrayscaleWeightedHistogram::EGrayscaleFrom from =
        Foundation::CGrayscaleWeightedHistogram::eNonlinearY;
    Foundation::CHueWeightedHistogram::EHueColorSpace space = Foundation::CHueWeightedHistogram::eLuv;
    int hueBins = 121;   ///< Of three degrees each; at least 3.
};

/// The histograms of a picture.
struct PictureHistograms {
    /// Greys without a mask, greys weighted by alpha, the greys' density, hues.
    Foundation::CGrayscaleHistogram grey;
    Foundation::CGrayscaleWeightedHistogram weighted;
    Foundation::CGrayscaleKDEHistogram density;
    Foundation::CHueWeightedHistogram hue;
    HistogramOptions options;
};

[[nodiscard]] PictureHistograms MeasureHistograms(const Image& image, const HistogramOptions& options);

/// {"pixels", "grey": {...}, "weighted": {...}, "density": {...}, "hue": {...}}, each with its bins.
[[nodiscard]] nlohmann::ordered_json HistogramsAsJson(const PictureHistograms& histograms);

/// "Lab", "Luv" or "IPT".
[[nodiscard]] const char* HueSpaceName(Foundation::CHueWeightedHistogram::EHueColorSpace space);

/// \name The plots, each into an area of a canvas, with its labels
/// \{
void DrawGreyPlot(const PictureHistograms& histograms, Area area, Canvas& canvas);
void DrawWeightedPlot(const PictureHistograms& histograms, Area area, Canvas& canvas);
void DrawDensityPlot(const PictureHistograms& histograms, Area area, Canvas& canvas);
/// The hues on a circle, red at the right, each bin a ray as long as the root of its weight.
void DrawHuePlot(const PictureHistograms& histograms, Area area, Canvas& canvas);
/// \}

/// Where bars of a grey plot end: the tallest bar, or less when a few levels (clipped highlights, say) would
/// dwarf all others. At least 1.
[[nodiscard]] double TopOfBars(const std::vector<double>& bins);

/// All four on one sheet of 1800 x 1240 pixels.
[[nodiscard]] Image HistogramSheet(const PictureHistograms& histograms, const std::string& title);

}   // namespace QZ::Tool
