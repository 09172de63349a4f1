// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "QZ/Export.h"
#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Math/CVector3.h"

namespace QZ::Foundation {

/// A picture in grey tones, a few for each of its hues.
///
/// The pixels are divided into groups: one for each hue cluster in Luv, and one for all pixels of low
/// saturation. The grey levels of each group are quantised by themselves, so that neighbouring hues of equal
/// lightness can come out as different tones.
///
/// Pictures are 8-bit RGBA, four bytes a pixel, rows without gaps; one of no pixels, or of a negative size,
/// is none. Nothing is thrown but by a failing allocation. One object is for one thread at a time; Quantize()
/// of a finished one may be called from any thread.
/// \code
///     CHueAndGrayscaleQuantizationTest quantization;
///     quantization.Compute(0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 6, 0.0, 4, 0.0, 0.3f,
///                          CGrayscaleWeightedHistogram::eLXX, true, CColor::eD65, width, height, rgba);
///     std::vector<unsigned char> greys(2 * width * height);
///     quantization.Quantize(true, CColor::eD65, width, height, rgba, greys.data());
/// \endcode
class QZ_API CHueAndGrayscaleQuantizationTest {
public:
    CHueWeightedHistogramHierarchicalClusterQuantization hueQuantizer;   ///< 256 bins; the hue groups.
    /// One for each hue group, then the one of low saturation; empty for a group without pixels.
    std::vector<CGrayscaleHistogramHierarchicalClusterQuantization> greyQuantizers;
    std::vector<int> greyPresent;         ///< 256 entries: g if some group has the tone g, else -1.
    std::vector<unsigned char> palette;   ///< Every tone in use, ascending.
    float saturationThreshold = 0.0f;     ///< As given.

    /// Assigns all fields.
    ///
    /// \param black, white, gamma, toe, shoulder  the tone curve, as in CGrayscaleToneCurve::Compute().
    /// \param numHueClusters, minAngleDegrees     as in the hue quantiser's Compute().
    /// \param numGreyClusters, minMeanGap         as in the grey quantiser's Compute(), in each group.
    /// \param threshold  the saturation C / sqrt(L^2 + C^2) from which a pixel belongs to its hue. Above 1 no
    ///                   pixel does, at 0 every pixel; NaN is above everything. Without any hue cluster every
    ///                   pixel counts as one of low saturation.
    /// \param isSRGB     false if the bytes are linear RGB, for the hues; the grey levels are taken from sRGB
    ///                   whatever it says, which callers rely on.
    void Compute(float black, float white, float gamma, float toe, float shoulder, int numHueClusters,
                 double minAngleDegrees, int numGreyClusters, double minMeanGap, float threshold,
                 CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB,
                 CColor::EIlluminant illuminant, int width, int height, const unsigned char* rgba);

    /// The tone of every pixel, by its group and its lightness.
    /// \param rgba  the picture of Compute(). In another one, a pixel whose group had no pixels is black.
    /// \param out   2 * width * height bytes: the tone, then 0.
    void Quantize(bool isSRGB, CColor::EIlluminant illuminant, int width, int height,
                  const unsigned char* rgba, unsigned char* out) const;

private:
    [[nodiscard]] std::size_t GroupOf(const Math::CVector3<float>& lch) const;
};

}   // namespace QZ::Foundation
