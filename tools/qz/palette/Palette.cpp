// SPDX-License-Identifier: MIT
#include "tools/qz/palette/Palette.h"

#include <algorithm>
#include <cmath>
#include <list>

#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Color/CColorRows.h"

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
        constexpr float kPi = 3.14159265f;
        const float bin = (lch.z + kPi) * (kHueBins - 1) / (2.0f * kPi) + 0.5f;
        return static_cast<std::size_t>(m_hues.binCluster[static_cast<std::size_t>(
            std::clamp(bin, 0.0f, static_cast<float>(kHueBins - 1)))]);
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

// The light of the pixels of a group and a tone.
struct Sum {
    double red = 0.0, green = 0.0, blue = 0.0;
    double pixels = 0.0;
};

PaletteColor MeanOf(const Sum& sum, double pixels)
{
    const Math::CVector3<float> mean(static_cast<float>(sum.red / sum.pixels),
                                     static_cast<float>(sum.green / sum.pixels),
                                     static_cast<float>(sum.blue / sum.pixels));
    Math::CVector3<float> srgb;
    CColor::LinearToNonlinearToneCurve(false, false, mean, srgb);
    const auto bytes = CColor::Clamp(srgb, 0.0f, 1.0f) * 255.0f + 0.5f;
    return {{static_cast<unsigned char>(bytes.x), static_cast<unsigned char>(bytes.y),
             static_cast<unsigned char>(bytes.z)},
            sum.pixels / pixels};
}

std::vector<double> LightOfByte()
{
    std::vector<double> light(256);
    for (std::size_t i = 0; i < light.size(); ++i) {
        float linear = 0.0f;
        CColor::NonlinearToLinearToneCurve(false, static_cast<float>(i) / 255.0f, linear);
        light[i] = static_cast<double>(linear);
    }
    return light;
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
    std::vector<Sum> sums(groups.Count() * tones);
    const std::vector<double> light = LightOfByte();
    ForEachLuv(image, options.illuminant, [&](std::size_t pixel, const Math::CVector3<float>& luv) {
        const std::size_t group = groups.Of(luv);
        Sum& sum = sums[group * tones + toneOfLevel[group][LevelOf(luv.x)]];
        const unsigned char* p = image.pixels.data() + 4 * pixel;
        sum.red += light[p[0]];
        sum.green += light[p[1]];
        sum.blue += light[p[2]];
        sum.pixels += 1.0;
    });

    std::vector<PaletteColor> palette;
    for (const Sum& sum : sums)
        if (sum.pixels > 0.0)
            palette.push_back(MeanOf(sum, static_cast<double>(image.Count())));
    std::ranges::stable_sort(palette, std::greater(), &PaletteColor::share);
    palette.resize(std::min(palette.size(), static_cast<std::size_t>(options.count)));
    return palette;
}

}   // namespace QZ::Tool
