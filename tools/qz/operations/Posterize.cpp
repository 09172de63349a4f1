// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Posterize.h"

#include <algorithm>
#include <array>

#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"

namespace QZ::Tool {

Posterized Posterize(const PosterizeOptions& options, Image& image)
{
    const ToneCurve& curve = options.curve;
    Foundation::CHueAndGrayscaleQuantizationTest quantizer;
    quantizer.Compute(curve.black, curve.white, curve.gamma, curve.toe, curve.shoulder, options.hues,
                      options.minAngle, options.greys, options.minGap, options.saturation, GreyFrom::eLXX,
                      true, options.illuminant, image.width, image.height, image.pixels.data());
    std::vector<unsigned char> greys(2 * image.Count());
    quantizer.Quantize(true, options.illuminant, image.width, image.height, image.pixels.data(),
                       greys.data());

    std::array<double, 256> counts{};
    for (std::size_t i = 0; i < image.Count(); ++i) {
        const unsigned char grey = greys[2 * i];
        std::fill_n(image.pixels.begin() + static_cast<std::ptrdiff_t>(4 * i), 3, grey);
        counts[grey] += 1.0;
    }
    Posterized result;
    for (std::size_t level = 0; level < counts.size(); ++level) {
        const auto grey = static_cast<unsigned char>(level);
        if (counts[level] > 0.0)
            result.tones.push_back({{grey, grey, grey}, counts[level] / static_cast<double>(image.Count())});
    }
    result.groups = static_cast<int>(std::ranges::count_if(
        quantizer.greyQuantizers, [](const auto& group) { return !group.table.empty(); }));
    return result;
}

}   // namespace QZ::Tool
