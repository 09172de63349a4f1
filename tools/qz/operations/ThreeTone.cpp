// SPDX-License-Identifier: MIT
#include "tools/qz/operations/ThreeTone.h"

#include <algorithm>
#include <cmath>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"

namespace QZ::Tool {

using Foundation::CGrayscaleHistogramHierarchicalClusterQuantization;
using Foundation::CGrayscaleToneCurve;

ThreeTone ReduceToThreeTones(const ThreeToneOptions& options, Image& image)
{
    const std::vector<unsigned char> plane = GreyPlane(image, options.grey);
    const int levels = OccupiedLevels(GreyHistogram(plane, image, options.grey));
    const ToneCurve& curve = options.curve;
    float low = 0.0f;
    float high = 0.0f;
    float mid = 0.0f;
    CGrayscaleHistogramHierarchicalClusterQuantization quantizer;
    quantizer.ComputeForThreeTone(curve.black, curve.white, curve.gamma, curve.toe, curve.shoulder,
                                  std::min(options.clusters, levels), options.grey.from, true,
                                  options.grey.illuminant, image.width, image.height, image.pixels.data(),
                                  kMaskStride, kMaskOffset, options.grey.Mask(image),
                                  options.thresholdExponent, options.toneExponent, low, high, mid);
    const auto level = [](float value) { return static_cast<int>(std::lround(value * 255.0f)); };
    const ThreeTone result = {level(low), level(high), level(mid)};

    // The thresholds went through the tone curve, so the levels that they part do too.
    CGrayscaleToneCurve toneCurve;
    toneCurve.Compute(curve.black, curve.white, curve.gamma, curve.toe, curve.shoulder);
    std::vector<unsigned char> table(256);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const int toned = toneCurve.lookupTable[i];
        table[i] = static_cast<unsigned char>(toned >= result.high ? 255
                                              : toned < result.low ? 0
                                                                   : result.mid);
    }
    PaintGrey(plane, table, options.grey, image);
    return result;
}

}   // namespace QZ::Tool
