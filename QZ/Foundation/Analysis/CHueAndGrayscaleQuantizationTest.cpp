// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "QZ/Foundation/Analysis/GreyLevels.h"
#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/CColorRows.h"

namespace QZ::Foundation {

using Color = Math::CVector3<float>;
using ToneTable = std::array<unsigned char, 256>;

namespace {

/// f(first, row) for each row of pixels, row holding their lightness, chroma and hue in Luv.
template <class Function>
void ForEachRowOfLCh(bool isSRGB, CColor::EIlluminant illuminant, int width, int height,
                     const unsigned char* rgba, Function&& f)
{
    const auto pixels = static_cast<std::size_t>(std::max(WrappingMultiply(width, height), 0));
    const ByteTable& linear = LinearOfByte(isSRGB);
    std::array<Color, kRowOfPixels> colors;
    ForEachRow(pixels, [&](std::size_t first, std::size_t n) {
        const std::span<Color> row(colors.data(), n);
        LinearRow(linear, rgba + 4 * first, n, row.data());
        CColorRows::LinearRGBToLuv(illuminant, row, row);
        CColorRows::LuvToLChuv(row, row);
        f(first, row);
    });
}

/// The grey levels of a row of pixels, as CGrayscaleWeightedHistogram finds them in sRGB.
/// \return  false for a source that is none of the three, which counts nothing.
bool GreysOf(CGrayscaleWeightedHistogram::EGrayscaleFrom from, CColor::EIlluminant illuminant,
             const unsigned char* rgba, std::size_t count, std::array<unsigned char, kRowOfPixels>& levels)
{
    switch (from) {
        case CGrayscaleWeightedHistogram::eFourthChannel:
            for (std::size_t i = 0; i < count; ++i)
                levels[i] = rgba[4 * i + 3];
            return true;
        case CGrayscaleWeightedHistogram::eLXX:
        case CGrayscaleWeightedHistogram::eNonlinearY:
            GreyLevels(from, true, illuminant)(rgba, static_cast<int>(count), levels.data());
            return true;
    }
    return false;
}

/// One group of pixels.
struct Group {
    bool isUsed = false;
    CGrayscaleWeightedHistogram histogram{std::vector<int>(256)};
};

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

    // Every group is a mask of ones over the picture; one pass finds the histograms under all of them.
    std::vector<Group> groups(hueQuantizer.clusterColours.size() + 1);
    std::array<unsigned char, kRowOfPixels> levels{};
    ForEachRowOfLCh(
        isSRGB, illuminant, width, height, rgba, [&](std::size_t first, std::span<const Color> row) {
            const bool hasLevels = GreysOf(from, illuminant, rgba + 4 * first, row.size(), levels);
            for (std::size_t i = 0; i < row.size(); ++i) {
                Group& group = groups[GroupOf(row[i])];
                group.isUsed = true;
                if (hasLevels) {
                    group.histogram.bins[levels[i]] += 1.0;
                    group.histogram.total += 1.0;
                }
            }
        });

    greyQuantizers.assign(groups.size(), {});
    greyPresent.assign(256, -1);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (!groups[i].isUsed)
            continue;
        // The amount of 1 leaves the highlights alone.
        greyQuantizers[i].Compute(black, white, gamma, toe, shoulder, 1.0f, 0.85f, numGreyClusters,
                                  minMeanGap, groups[i].histogram);
        for (const unsigned char level : greyQuantizers[i].levels)
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
    ForEachRowOfLCh(isSRGB, illuminant, width, height, rgba, [&](std::size_t, std::span<const Color> row) {
        for (const Color& lch : row) {
            const int level = TruncateToRange(lch.x * 255.0f + 0.5f, 0, 255);
            *out++ = tones[GroupOf(lch)][static_cast<std::size_t>(level)];
            *out++ = 0;
        }
    });
}

}   // namespace QZ::Foundation
