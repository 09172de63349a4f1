// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/CColorRows.h"

namespace QZ::Foundation {

using Color = Math::CVector3<float>;
using ToneTable = std::array<unsigned char, 256>;

namespace {

std::size_t PixelCount(int width, int height)
{
    return static_cast<std::size_t>(std::max(WrappingMultiply(width, height), 0));
}

/// f(lch) for each pixel in turn, lch being its lightness, chroma and hue in Luv.
template <class Function>
void ForEachPixel(bool isSRGB, CColor::EIlluminant illuminant, std::size_t count, const unsigned char* rgba,
                  Function&& f)
{
    const ByteTable& linear = LinearOfByte(isSRGB);
    std::array<Color, 256> colors;
    for (std::size_t first = 0; first < count; first += colors.size()) {
        const std::span<Color> row(colors.data(), std::min(colors.size(), count - first));
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = ColorOfPixel(linear, rgba + 4 * (first + i));
        CColorRows::LinearRGBToLuv(illuminant, row, row);
        CColorRows::LuvToLChuv(row, row);
        for (const Color& lch : row)
            f(lch);
    }
}

}   // namespace

std::size_t CHueAndGrayscaleQuantizationTest::GroupOf(const Color& lch) const
{
    const std::vector<int>& groupOfBin = hueQuantizer.binCluster;
    const std::size_t lowSaturation = hueQuantizer.clusterColours.size();
    if (!(CColor::LChuvSaturation(lch) >= saturationThreshold) || groupOfBin.empty())
        return lowSaturation;
    const auto last = static_cast<int>(groupOfBin.size()) - 1;
    const float turn = std::min(1.0f, lch.z * 0.159155f + 0.5f);
    const int bin = TruncateToRange(turn * static_cast<float>(last) + 0.5f, 0, last);
    return static_cast<std::size_t>(groupOfBin[static_cast<std::size_t>(bin)]);
}

void CHueAndGrayscaleQuantizationTest::Compute(float black, float white, float gamma, float toe,
                                               float shoulder, int numHueClusters, double minAngleDegrees,
                                               int numGreyClusters, double minMeanGap, float threshold,
                                               CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB,
                                               CColor::EIlluminant illuminant, int width, int height,
                                               const unsigned char* rgba)
{
    saturationThreshold = threshold;
    hueQuantizer.Compute(256, numHueClusters, minAngleDegrees, CHueWeightedHistogram::eLuv, isSRGB,
                         illuminant, decltype(hueQuantizer)::eMeanPair, width, height, rgba);

    const std::size_t count = PixelCount(width, height);
    const std::size_t numGroups = hueQuantizer.clusterColours.size() + 1;
    std::vector<std::uint16_t> groups;   // of each pixel; at most 256 hues and the one of low saturation
    groups.reserve(count);
    std::vector<bool> isUsed(numGroups, false);
    ForEachPixel(isSRGB, illuminant, count, rgba, [&](const Color& lch) {
        const std::size_t group = GroupOf(lch);
        groups.push_back(static_cast<std::uint16_t>(group));
        isUsed[group] = true;
    });

    greyQuantizers.assign(numGroups, {});
    greyPresent.assign(256, -1);
    std::vector<unsigned char> mask(count);
    for (std::size_t group = 0; group < numGroups; ++group) {
        if (!isUsed[group])
            continue;
        std::transform(groups.begin(), groups.end(), mask.begin(), [=](std::uint16_t of) {
            return of == group ? static_cast<unsigned char>(255) : static_cast<unsigned char>(0);
        });
        // The amount of 1 leaves the highlights alone.
        greyQuantizers[group].Compute(black, white, gamma, toe, shoulder, 1.0f, 0.85f, numGreyClusters,
                                      minMeanGap, from, true, illuminant, width, height, rgba, 1, 0,
                                      mask.data());
        for (const unsigned char level : greyQuantizers[group].levels)
            greyPresent[level] = level;
    }

    palette.clear();
    for (const int grey : greyPresent)
        if (grey >= 0)
            palette.push_back(static_cast<unsigned char>(grey));
}

void CHueAndGrayscaleQuantizationTest::Quantize(bool isSRGB, CColor::EIlluminant illuminant, int width,
                                                int height, const unsigned char* rgba,
                                                unsigned char* out) const
{
    std::vector<ToneTable> tones(std::max(greyQuantizers.size(), hueQuantizer.clusterColours.size() + 1));
    for (std::size_t group = 0; group < greyQuantizers.size(); ++group) {
        const std::vector<unsigned char>& table = greyQuantizers[group].table;
        std::transform(table.begin(), table.end(), tones[group].begin(),
                       [&](unsigned char level) { return static_cast<unsigned char>(greyPresent[level]); });
    }
    ForEachPixel(isSRGB, illuminant, PixelCount(width, height), rgba, [&](const Color& lch) {
        const int level = TruncateToRange(lch.x * 255.0f + 0.5f, 0, 255);
        *out++ = tones[GroupOf(lch)][static_cast<std::size_t>(level)];
        *out++ = 0;
    });
}

}   // namespace QZ::Foundation
