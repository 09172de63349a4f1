// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/HueBins.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Foundation/Color/Formulas/Lab.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;
using Color = formula::Vec3<float>;

namespace {

constexpr std::size_t kRow = 256;   // pixels at a time: their products first, then the bins

/// 1 / (1 + e^(10 x)): falls from 1 to 0 about x = 0.
float LogisticFall(float x)
{
    return 1.0f / (formula::Exp(x * 10.0f) + 1.0f);
}

/// 0 for saturation 0, a half at 0.5, 1 for 1.
float SaturationWeight(float saturation)
{
    return (LogisticFall(0.5f - saturation) - 0.006692851f) * 1.0135672f;
}

/// 1 for lightness 0.5, a half about 0.25 and 0.75, 0 for 0 and 1.
float LightnessWeight(float lightness)
{
    const float distance = lightness <= 0.5f ? 0.25f - lightness : lightness - 0.75f;
    return (LogisticFall(distance) - 0.075858176f) * 1.178851f;
}

/// What a row of pixels adds, and to which bins.
struct Row {
    std::array<int, kRow> bin;
    std::array<float, kRow> weight;
    std::array<float, kRow> second;   ///< Weight times the second component.
    std::array<float, kRow> third;    ///< Weight times the third.
    std::array<float, kRow> grey;     ///< Weight times the linear luminance.
};

/// \param toSpace  linear RGB to (lightness, second, third).
/// \param hue      the angle of such a colour.
template <class ToSpace, class Hue>
void Weigh(const ByteTable& linear, CColor::EIlluminant illuminant, const HueBins& binOf,
           const unsigned char* rgba, std::size_t n, Row& row, ToSpace&& toSpace, Hue&& hue)
{
    for (std::size_t i = 0; i < n; ++i) {
        const Color rgb(ColorOfPixel(linear, rgba + 4 * i));
        const Color color = toSpace(rgb);
        const float saturation = formula::Saturation(color.x, formula::Hypotenuse(color.y, color.z));
        const float weight = SaturationWeight(saturation) * LightnessWeight(color.x);
        row.bin[i] = binOf(hue(color));
        row.weight[i] = weight;
        row.second[i] = weight * color.y;
        row.third[i] = weight * color.z;
        row.grey[i] = weight * formula::LinearRGBToLinearY(false, illuminant, rgb);
    }
}

void Add(const Row& row, std::size_t n, CHueWeightedHistogram& histogram)
{
    for (std::size_t i = 0; i < n; ++i) {
        const auto bin = static_cast<std::size_t>(row.bin[i]);
        histogram.weights[bin] += row.weight[i];
        histogram.sums[bin] += Math::CVector2<double>(row.second[i], row.third[i]);
        histogram.greySums[bin] += row.grey[i];
    }
}

/// The angle from the second axis towards the third.
float SecondAxisHue(const Color& color)
{
    return formula::Atan2(color.z, color.y);
}

}   // namespace

void CHueWeightedHistogram::Compute(int numBins, EHueColorSpace space, bool isSRGB,
                                    CColor::EIlluminant illuminant, int numPixels, const unsigned char* rgba)
{
    weights.resize(static_cast<std::size_t>(std::max(numBins, 0)));
    sums.resize(weights.size());
    greySums.resize(weights.size());

    const auto addPicture = [&](auto&& toSpace, auto&& hue) {
        const HueBins binOf(numBins);
        const ByteTable& linear = LinearOfByte(isSRGB);
        const auto pixels = static_cast<std::size_t>(std::max(numPixels, 0));
        Row row;
        for (std::size_t first = 0; first < pixels; first += kRow) {
            const std::size_t n = std::min(kRow, pixels - first);
            Weigh(linear, illuminant, binOf, rgba + 4 * first, n, row, toSpace, hue);
            Add(row, n, *this);
        }
    };
    if (numBins >= 1) {
        switch (space) {
            case eLab:
                addPicture([=](const Color& rgb) { return formula::LinearRGBToLab(illuminant, rgb); },
                           SecondAxisHue);
                break;
            case eLuv:
                addPicture([=](const Color& rgb) { return formula::LinearRGBToLuv(illuminant, rgb); },
                           SecondAxisHue);
                break;
            case eIPT:
                addPicture([=](const Color& rgb) { return formula::LinearRGBToIPT(illuminant, rgb); },
                           [](const Color& ipt) { return formula::IPTHue(ipt); });
                break;
        }
    }
    total = std::accumulate(weights.begin(), weights.end(), 0.0);
}

}   // namespace QZ::Foundation
