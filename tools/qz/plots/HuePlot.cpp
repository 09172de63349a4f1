// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "tools/qz/plots/Histograms.h"

namespace QZ::Tool {

namespace {

using namespace Foundation;

// The colour of a hue of a space, as saturated as a screen shows it at a medium lightness.
Ink InkOfHue(CHueWeightedHistogram::EHueColorSpace space, float angle)
{
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    Math::CVector3<float> srgb;
    // The largest chroma that the gamut holds, by halving.
    float low = 0.0f, high = 2.0f;
    Math::CVector3<float> best(0.5f, 0.5f, 0.5f);
    for (int i = 0; i < 12; ++i) {
        const float chroma = 0.5f * (low + high);
        if (space == CHueWeightedHistogram::eLab)
            CColor::LabToLinearRGB(true, CColor::eD65, {0.62f, chroma * c, chroma * s}, srgb);
        else if (space == CHueWeightedHistogram::eLuv)
            CColor::LuvToLinearRGB(true, CColor::eD65, {0.62f, chroma * c, chroma * s}, srgb);
        else
            CColor::IPTToLinearRGB(true, CColor::eD65, {0.58f, chroma * s, chroma * c}, srgb);
        const bool inside =
            std::min({srgb.x, srgb.y, srgb.z}) >= 0.0f && std::max({srgb.x, srgb.y, srgb.z}) <= 1.0f;
        if (inside)
            best = srgb;
        (inside ? low : high) = chroma;
    }
    CColor::LinearToNonlinearToneCurve(false, false, best, srgb);
    const auto bytes = CColor::Clamp(srgb, 0.0f, 1.0f) * 255.0f + 0.5f;
    return {static_cast<unsigned char>(bytes.x), static_cast<unsigned char>(bytes.y),
            static_cast<unsigned char>(bytes.z)};
}

}   // namespace

const char* HueSpaceName(CHueWeightedHistogram::EHueColorSpace space)
{
    switch (space) {
        case CHueWeightedHistogram::eLab:
            return "Lab";
        case CHueWeightedHistogram::eLuv:
            return "Luv";
        case CHueWeightedHistogram::eIPT:
            return "IPT";
    }
    return "";
}

void DrawHuePlot(const PictureHistograms& histograms, Area area, Canvas& canvas)
{
    constexpr float kPi = 3.14159265f;
    const float side = std::min(area.width, area.height);
    const Point centre = {area.x + area.width / 2.0f, area.y + area.height / 2.0f + 10.0f};
    const float inner = side * 0.17f;
    const float outer = side * 0.43f;
    const auto& weights = histograms.hue.weights;
    const auto space = histograms.options.space;

    const Axes title(canvas, area, {}, {});
    title.DrawTitle("Hue", std::string("hue angle in ") + HueSpaceName(space) + ", root of the weight");

    const double tallest = weights.empty() ? 0.0 : *std::ranges::max_element(weights);
    for (const float share : {0.5f, 1.0f}) {
        const float radius = inner + share * (outer - inner);
        canvas.Fill(Path::Sector(centre, radius - 0.9f, radius + 0.9f, 0.0f, 2.0f * kPi), inks::kGrid);
    }
    for (int degrees = 0; degrees < 360; degrees += 30) {
        const float angle = static_cast<float>(degrees) * kPi / 180.0f;
        const auto on = [&](float radius) {
            return Point{centre.x + radius * std::cos(angle), centre.y - radius * std::sin(angle)};
        };
        canvas.Line(on(inner), on(outer), 1.5f, inks::kGrid);
        const int shown = degrees > 180 ? degrees - 360 : degrees;
        canvas.Text(AxisLabel(shown) + "\xC2\xB0", on(outer + 34.0f),
                    {.size = 20.0f, .ink = inks::kQuiet, .align = Align::Centre, .rest = Rest::Middle});
    }
    constexpr int kRing = 180;
    for (int i = 0; i < kRing; ++i) {
        const float from = static_cast<float>(i) * 2.0f * kPi / kRing;
        const float to = from + 2.0f * kPi / kRing;
        // Angles on a canvas grow clockwise, hues the other way.
        canvas.Fill(Path::Sector(centre, inner - 22.0f, inner - 4.0f, -to - 0.02f, -from),
                    InkOfHue(space, 0.5f * (from + to)));
    }
    if (weights.size() < 2 || !(tallest > 0.0))
        return;
    // Bin b is centred on -pi + b step; the two at the seam are half as wide.
    const float step = 2.0f * kPi / static_cast<float>(weights.size() - 1);
    for (std::size_t b = 0; b < weights.size(); ++b) {
        if (!(weights[b] > 0.0))
            continue;
        const float angle = -kPi + static_cast<float>(b) * step;
        const float from = b == 0 ? angle : angle - 0.5f * step;
        const float to = b + 1 == weights.size() ? angle : angle + 0.5f * step;
        const float length = std::sqrt(static_cast<float>(weights[b] / tallest)) * (outer - inner);
        canvas.Fill(Path::Sector(centre, inner, inner + length, -to, -from), InkOfHue(space, angle));
    }
}

}   // namespace QZ::Tool
