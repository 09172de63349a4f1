// SPDX-License-Identifier: MIT
#include "tools/qz/plots/Histograms.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/qz/operations/GreyPlane.h"

namespace QZ::Tool {

namespace {

using nlohmann::ordered_json;
using namespace Foundation;

template <class T>
std::vector<double> Doubles(const std::vector<T>& values)
{
    return {values.begin(), values.end()};
}

std::string Thousands(long long number)
{
    std::string text = std::to_string(number);
    for (int i = static_cast<int>(text.size()) - 3; i > 0; i -= 3)
        text.insert(static_cast<std::size_t>(i), " ");
    return text;
}

const char* NameOf(CGrayscaleWeightedHistogram::EGrayscaleFrom from)
{
    switch (from) {
        case CGrayscaleWeightedHistogram::eFourthChannel:
            return "alpha";
        case CGrayscaleWeightedHistogram::eLXX:
            return "lightness";
        case CGrayscaleWeightedHistogram::eNonlinearY:
            return "luminance";
    }
    return "";
}

const std::vector<double> kGreyTicks = {0, 32, 64, 96, 128, 160, 192, 224, 255};

// The axes of a plot over the 256 levels, with a strip of the levels themselves below.
Axes GreyAxes(Area area, double top, const std::string& title, const std::string& remark,
              const std::string& upright, const char* from, Canvas& canvas)
{
    const Axes axes(canvas, area, {-0.5, 255.5}, {0.0, top});
    axes.DrawTitle(title, remark);
    axes.DrawUpright(upright);
    constexpr float kStrip = 14.0f;
    axes.DrawLevel(kGreyTicks, std::string("grey level (") + from + ")", kStrip);
    for (int level = 0; level < 256; ++level) {
        const auto grey = static_cast<unsigned char>(level);
        // To the end of the strip: the next level covers the rest, and no seam shows.
        const Point left = axes.At(level - 0.5, 0.0);
        canvas.Rectangle({left.x, left.y + 3.0f}, area.x + area.width - left.x, kStrip, {grey, grey, grey});
    }
    return axes;
}

void DrawBars(const Axes& axes, const std::vector<double>& bins, double top, Ink ink, Canvas& canvas)
{
    // One path, so that no seam shows between neighbours.
    Path bars;
    for (std::size_t level = 0; level < bins.size(); ++level) {
        if (!(bins[level] > 0.0))
            continue;
        const auto x = static_cast<double>(level);
        const Point corner = axes.At(x - 0.5, std::min(bins[level], top));
        const Point end = axes.At(x + 0.5, 0.0);
        bars.Append(Path::Rectangle(corner, end.x - corner.x, end.y - corner.y));
    }
    canvas.Fill(bars, ink);
    // A bar cut off says so.
    int notes = 0;
    for (std::size_t level = 0; level < bins.size() && notes < 3; ++level) {
        if (bins[level] <= top)
            continue;
        const auto x = static_cast<double>(level);
        const Point tip = axes.At(x, top);
        const bool left = level < 128;
        const std::string note = std::to_string(level) + ": " + AxisLabel(std::round(bins[level]));
        canvas.Fill(Path::Polygon(
                        {{tip.x - 7.0f, tip.y + 2.0f}, {tip.x, tip.y - 10.0f}, {tip.x + 7.0f, tip.y + 2.0f}}),
                    inks::kVermilion);
        canvas.Text(note, {tip.x + (left ? 14.0f : -14.0f), tip.y + 8.0f + 26.0f * static_cast<float>(notes)},
                    {.size = 20.0f,
                     .ink = inks::kVermilion,
                     .align = left ? Align::Left : Align::Right,
                     .rest = Rest::Middle});
        ++notes;
    }
}

ordered_json BinsAsJson(double total, const std::vector<double>& bins)
{
    return {{"total", total}, {"bins", bins}};
}

}   // namespace

PictureHistograms MeasureHistograms(const Image& image, const HistogramOptions& options)
{
    PictureHistograms result;
    result.options = options;
    const auto greys = GreyPlane(image, {.from = options.from, .illuminant = options.illuminant});
    result.grey.Compute(image.width, image.height, 1, 0, greys.data());
    result.density.Compute(image.width, image.height, 0.0, 1, 0, greys.data());
    result.weighted.Compute(options.from, true, options.illuminant, image.width, image.height,
                            image.pixels.data(), 4, 3, image.pixels.data());
    result.hue.Compute(options.hueBins, options.space, true, options.illuminant, image.width * image.height,
                       image.pixels.data());
    return result;
}

ordered_json HistogramsAsJson(const PictureHistograms& histograms)
{
    ordered_json document;
    document["pixels"] = histograms.grey.count;
    document["from"] = NameOf(histograms.options.from);
    document["space"] = HueSpaceName(histograms.options.space);
    document["grey"] = BinsAsJson(histograms.grey.count, Doubles(histograms.grey.bins));
    document["weighted"] = BinsAsJson(histograms.weighted.total, histograms.weighted.bins);
    document["density"] = BinsAsJson(histograms.density.total, Doubles(histograms.density.bins));
    document["hue"] = BinsAsJson(histograms.hue.total, histograms.hue.weights);
    return document;
}

double TopOfBars(const std::vector<double>& bins)
{
    std::vector<double> sorted = bins;
    std::ranges::sort(sorted, std::greater());
    if (sorted.empty() || !(sorted[0] > 1.0))
        return 1.0;
    // Up to three bars may be cut off, and only where the fourth is far below.
    constexpr std::size_t kCut = 3;
    const bool dwarfed = sorted.size() > kCut && sorted[kCut] > 0.0 && sorted[0] > 3.0 * sorted[kCut];
    return (dwarfed ? sorted[kCut] : sorted[0]) * 1.08;
}

void DrawGreyPlot(const PictureHistograms& histograms, Area area, Canvas& canvas)
{
    const auto bins = Doubles(histograms.grey.bins);
    const double top = TopOfBars(bins);
    const Axes axes = GreyAxes(area, top, "Grey levels", Thousands(histograms.grey.count) + " pixels",
                               "pixels", NameOf(histograms.options.from), canvas);
    DrawBars(axes, bins, top, inks::kBar, canvas);
}

void DrawWeightedPlot(const PictureHistograms& histograms, Area area, Canvas& canvas)
{
    const double top = TopOfBars(histograms.weighted.bins);
    const Axes axes = GreyAxes(area, top, "Weighted by alpha",
                               "weight " + Thousands(std::llround(histograms.weighted.total)), "weight",
                               NameOf(histograms.options.from), canvas);
    DrawBars(axes, histograms.weighted.bins, top, inks::kBlue, canvas);
}

void DrawDensityPlot(const PictureHistograms& histograms, Area area, Canvas& canvas)
{
    const auto bins = Doubles(histograms.grey.bins);
    const double top = TopOfBars(bins);
    const Axes axes = GreyAxes(area, top, "Kernel density", "Silverman's bandwidth", "pixels",
                               NameOf(histograms.options.from), canvas);
    DrawBars(axes, bins, top, {206, 209, 214}, canvas);
    std::vector<Point> curve;
    for (std::size_t level = 0; level < histograms.density.bins.size(); ++level)
        curve.push_back(
            axes.At(static_cast<double>(level), std::min<double>(histograms.density.bins[level], top)));
    canvas.Polyline(curve, 4.0f, inks::kVermilion);
}

Image HistogramSheet(const PictureHistograms& histograms, const std::string& title)
{
    Canvas canvas(1800, 1240, inks::kPaper);
    canvas.Text(title, {110.0f, 62.0f}, {.size = 34.0f, .ink = inks::kText, .face = Face::Bold});
    DrawGreyPlot(histograms, {140.0f, 150.0f, 730.0f, 370.0f}, canvas);
    DrawDensityPlot(histograms, {1030.0f, 150.0f, 730.0f, 370.0f}, canvas);
    DrawWeightedPlot(histograms, {140.0f, 740.0f, 730.0f, 370.0f}, canvas);
    DrawHuePlot(histograms, {1030.0f, 740.0f, 730.0f, 470.0f}, canvas);
    return canvas.Result();
}

}   // namespace QZ::Tool
