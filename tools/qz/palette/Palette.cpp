// SPDX-License-Identifier: MIT
#include "tools/qz/palette/Palette.h"

#include <algorithm>
#include <cmath>
#include <list>

#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Color/CColorRows.h"
#include "tools/qz/color/HueBin.h"
#include "tools/qz/color/MeanLight.h"

namespace QZ::Tool {

namespace {

using namespace Foundation;
using Tones = CGrayscaleHistogramHierarchicalClusterQuantization;

constexpr int kHueBins = 256;
constexpr double kMinToneGap = 20.0;   // levels; closer tones look alike

// Calls visit(pixel index, Luv) for every pixel of a picture.
template <class Visit>
void ForEachLuv(const Image& image, CColor::EIlluminant illuminant, Visit visit)
{
    const auto width = static_cast<std::size_t>(image.width);
    std::vector<Math::CVector3<float>> row(width);
    for (int y = 0; y < image.height; ++y) {
        const std::size_t first = static_cast<std::size_t>(y) * width;
        CColorRows::SRGBToLuv(false, false, illuminant, std::span(image.pixels).subspan(4 * first, 4 * width),
                              row);
        for (std::size_t x = 0; x < width; ++x)
            visit(first + x, row[x]);
    }
}

// The hue group of a colour; the greys are the last group.
class Groups {
public:
    Groups(const Image& image, const PaletteOptions& options) : m_saturation(options.saturation)
    {
        m_hues.Compute(kHueBins, options.hues, options.minAngle, CHueWeightedHistogram::eLuv, true,
                       options.illuminant, CHueWeightedHistogramHierarchicalClusterQuantization::eMeanPair,
                       image.width, image.height, image.pixels.data());
    }

    [[nodiscard]] std::size_t Count() const { return m_hues.clusterColours.size() + 1; }

    [[nodiscard]] std::size_t Of(const Math::CVector3<float>& luv) const
    {
        Math::CVector3<float> lch;
        CColor::LuvToLChuv(luv, lch);
        if (m_hues.binCluster.empty() || CColor::LChuvSaturation(lch) < m_saturation)
            return Count() - 1;
        return static_cast<std::size_t>(m_hues.binCluster[HueBin(lch.z, kHueBins)]);
    }

private:
    CHueWeightedHistogramHierarchicalClusterQuantization m_hues;
    float m_saturation;
};

std::size_t LevelOf(float lightness)
{
    return static_cast<std::size_t>(std::clamp(lightness * 255.0f + 0.5f, 0.0f, 255.0f));
}

// For each level of a group's histogram the number of its tone.
std::vector<std::size_t> ToneOfLevel(const std::vector<double>& bins, int tones)
{
    double total = 0.0;
    std::ptrdiff_t occupied = 0;
    for (const double bin : bins) {
        total += bin;
        occupied += bin > 0.0 ? 1 : 0;
    }
    std::vector<std::size_t> numbers(256, 0);
    if (occupied == 0)
        return numbers;
    std::list<Tones::sCluster> clusters;
    const int wanted = static_cast<int>(std::min<std::ptrdiff_t>(tones, occupied));
    Tones().Cluster(wanted, kMinToneGap, bins, total, clusters);
    std::size_t number = 0;
    for (const auto& cluster : clusters) {
        for (int level = cluster.first; level <= cluster.last; ++level)
            numbers[static_cast<std::size_t>(level)] = number;
        ++number;
    }
    return numbers;
}

}   // namespace

std::vector<PaletteColor> PaletteOf(const Image& image, const PaletteOptions& options)
{
    const Groups groups(image, options);
    std::vector<std::vector<double>> bins(groups.Count(), std::vector<double>(256));
    ForEachLuv(image, options.illuminant, [&](std::size_t, const Math::CVector3<float>& luv) {
        bins[groups.Of(luv)][LevelOf(luv.x)] += 1.0;
    });
    std::vector<std::vector<std::size_t>> toneOfLevel;
    for (const auto& histogram : bins)
        toneOfLevel.push_back(ToneOfLevel(histogram, options.tones));

    const auto tones = static_cast<std::size_t>(options.tones);
    std::vector<MeanLight> means(groups.Count() * tones);
    ForEachLuv(image, options.illuminant, [&](std::size_t pixel, const Math::CVector3<float>& luv) {
        const std::size_t group = groups.Of(luv);
        means[group * tones + toneOfLevel[group][LevelOf(luv.x)]].Add(image.pixels.data() + 4 * pixel, 1.0);
    });

    std::vector<PaletteColor> palette;
    for (const MeanLight& mean : means)
        if (mean.Weight() > 0.0)
            palette.push_back({mean.Bytes(), mean.Weight() / static_cast<double>(image.Count())});
    std::ranges::stable_sort(palette, std::greater(), &PaletteColor::share);
    palette.resize(std::min(palette.size(), static_cast<std::size_t>(options.count)));
    return palette;
}

}   // namespace QZ::Tool
