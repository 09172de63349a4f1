// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Hues.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>

#include "QZ/Foundation/Color/CColorRows.h"
#include "tools/qz/Failure.h"
#include "tools/qz/color/HueBin.h"
#include "tools/qz/color/MeanLight.h"
#include "tools/qz/operations/Alpha.h"

namespace QZ::Tool {

using namespace Foundation;

namespace {

constexpr int kBins = 360;
constexpr int kNoHue = -1;
constexpr float kSeenChroma = 0.02f;   // two units of CIE Lab; less looks grey

using Row = std::vector<Math::CVector3<float>>;

// What both methods come to: a colour and a hue for each bin of the circle.
struct Circle {
    HueQuantizer quantizer;
    std::vector<int> hueOfBin;   // kNoHue where no pixel made one; empty for a picture without hues
    int hues = 0;
};

Circle Clusters(const HuesOptions& options, const Image& image)
{
    Circle circle;
    circle.quantizer.Compute(kBins, options.count, options.minAngle, options.space, true, options.illuminant,
                             options.mode, image.width, image.height, image.pixels.data());
    circle.hueOfBin = circle.quantizer.binCluster;
    circle.hues = static_cast<int>(circle.quantizer.clusterColours.size());
    return circle;
}

// It reads linear RGB; its colours serve the other quantiser, which repaints encoded RGB.
Circle MedianCut(const HuesOptions& options, const Image& image)
{
    std::vector<unsigned char> linear(image.pixels.size());
    std::ranges::transform(image.pixels, linear.begin(), [](unsigned char byte) {
        return static_cast<unsigned char>(LightOfByte(byte) * 255.0 + 0.5);
    });
    CPTMedianCutQuantization cut;
    cut.Compute(kBins, options.count, image.width, image.height, options.illuminant, linear.data());

    Circle circle;
    circle.quantizer.binColours = cut.binColours;
    const auto same = [&](std::size_t a, std::size_t b) {
        return cut.binColours[a].x == cut.binColours[b].x && cut.binColours[a].y == cut.binColours[b].y;
    };
    for (std::size_t bin = 0; bin < cut.binColours.size(); ++bin) {
        if (cut.binColours[bin].x == 0.0f && cut.binColours[bin].y == 0.0f) {
            circle.hueOfBin.push_back(kNoHue);
        } else {
            const bool goesOn = bin > 0 && same(bin - 1, bin);
            circle.hueOfBin.push_back(goesOn ? circle.hueOfBin.back() : circle.hues++);
        }
    }
    return circle;
}

// IPT is decoded by gamma 2.2, as the library's repainting does.
void ToSpace(const HuesOptions& options, std::span<const unsigned char> pixels, Row& row)
{
    if (options.space == CHueWeightedHistogram::eLab)
        CColorRows::SRGBToLab(false, false, options.illuminant, pixels, row);
    else if (options.space == CHueWeightedHistogram::eLuv)
        CColorRows::SRGBToLuv(false, false, options.illuminant, pixels, row);
    else
        CColorRows::SRGBToIPT(true, false, options.illuminant, pixels, row);
}

std::size_t BinOf(const HuesOptions& options, const Math::CVector3<float>& color)
{
    const bool isIPT = options.space == CHueWeightedHistogram::eIPT;
    return HueBin(isIPT ? std::atan2(color.y, color.z) : std::atan2(color.z, color.y), kBins);
}

// Calls visit(index of the first pixel, its row in the space).
template <class Visit>
void ForEachRow(const HuesOptions& options, const Image& image, Visit visit)
{
    const auto width = static_cast<std::size_t>(image.width);
    Row row(width);
    for (std::size_t first = 0; first < image.Count(); first += width) {
        ToSpace(options, std::span(image.pixels).subspan(4 * first, 4 * width), row);
        visit(first, row);
    }
}

// The hue of each pixel; kNoHue where none is seen.
std::vector<int> HuesOfPixels(const HuesOptions& options, const Circle& circle, const Image& image)
{
    std::vector<int> hues(image.Count());
    ForEachRow(options, image, [&](std::size_t first, const Row& row) {
        for (std::size_t x = 0; x < row.size(); ++x) {
            const bool isSeen = std::hypot(row[x].y, row[x].z) >= kSeenChroma;
            hues[first + x] = isSeen ? circle.hueOfBin[BinOf(options, row[x])] : kNoHue;
        }
    });
    return hues;
}

// The library repaints by hues of IPT; those of Lab and Luv are turned in their own space.
void Repaint(const HuesOptions& options, const Circle& circle, Image& image)
{
    if (options.space == CHueWeightedHistogram::eIPT) {
        circle.quantizer.Recolor(image.width, image.height, options.illuminant, image.pixels.data());
        return;
    }
    ForEachRow(options, image, [&](std::size_t first, Row& row) {
        for (Math::CVector3<float>& color : row) {
            const Math::CVector2<float>& hue = circle.quantizer.binColours[BinOf(options, color)];
            const float chroma = std::hypot(color.y, color.z);
            color = {color.x, hue.x * chroma, hue.y * chroma};
        }
        const auto pixels = std::span(image.pixels).subspan(4 * first, 4 * row.size());
        if (options.space == CHueWeightedHistogram::eLab)
            CColorRows::LabToSRGB(false, false, options.illuminant, row, pixels);
        else
            CColorRows::LuvToSRGB(false, false, options.illuminant, row, pixels);
    });
}

Hues Summary(const std::vector<int>& hueOfPixel, int hues, const Image& image)
{
    std::vector<MeanLight> means(static_cast<std::size_t>(hues));
    std::vector<double> counts(means.size());
    for (std::size_t i = 0; i < hueOfPixel.size(); ++i) {
        if (hueOfPixel[i] == kNoHue)
            continue;
        const unsigned char* p = image.pixels.data() + 4 * i;
        const auto hue = static_cast<std::size_t>(hueOfPixel[i]);
        // One more than the range: a hue whose pixels all came out grey still has a colour.
        means[hue].Add(p, 1.0 + std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]}));
        counts[hue] += 1.0;
    }
    Hues result;
    const auto pixels = static_cast<double>(image.Count());
    double grey = pixels;
    for (std::size_t hue = 0; hue < means.size(); ++hue) {
        if (counts[hue] > 0.0)
            result.colors.push_back({means[hue].Bytes(), counts[hue] / pixels});
        grey -= counts[hue];
    }
    result.greyShare = grey / pixels;
    std::ranges::stable_sort(result.colors, std::greater(), &PaletteColor::share);
    return result;
}

}   // namespace

Hues ReduceToHues(const HuesOptions& options, Image& image)
{
    const bool isCut = options.method == HuesOptions::Method::MedianCut;
    if (isCut && (options.space != CHueWeightedHistogram::eIPT || options.mode != HueQuantizer::eDirection ||
                  options.minAngle > 0.0))
        throw Failure(Status::Usage, "--method median-cut", "it knows no --space, --mode and --min-angle",
                      "leave them out, or use --method clusters");
    if (isCut && options.count < 2)
        throw Failure(Status::Usage, "--method median-cut", "it cuts at least once", "use --count 2 or more");
    const Circle circle = isCut ? MedianCut(options, image) : Clusters(options, image);
    if (circle.hues == 0)
        return {{}, 1.0};
    const std::vector<int> hueOfPixel = HuesOfPixels(options, circle, image);
    const std::vector<unsigned char> alpha = AlphaOf(image);
    Repaint(options, circle, image);
    SetAlpha(alpha, image);
    return Summary(hueOfPixel, circle.hues, image);
}

}   // namespace QZ::Tool
