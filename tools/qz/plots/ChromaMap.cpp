// SPDX-License-Identifier: MIT
#include "tools/qz/plots/ChromaMap.h"

#include <algorithm>
#include <cmath>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"
#include "tools/qz/plots/Plot.h"

namespace QZ::Tool {

namespace {

using Foundation::CColor;

constexpr int kCount = 256;
constexpr float kTopOfScale = 1.8f;   // the table reaches 1.79, in the reds

Ink InkOf(const Math::CVector3<float>& srgb)
{
    const auto bytes = CColor::Clamp(srgb, 0.0f, 1.0f) * 255.0f + 0.5f;
    return {static_cast<unsigned char>(bytes.x), static_cast<unsigned char>(bytes.y),
            static_cast<unsigned char>(bytes.z)};
}

// The colour at a place of the table, as far from grey as the gamut goes.
Ink EdgeOfGamut(float lightness, float degrees, float chroma)
{
    const float angle = degrees * 3.14159265f / 180.0f;
    Math::CVector3<float> srgb;
    CColor::LuvToSRGB(false, false, CColor::eD65,
                      {lightness, chroma * std::cos(angle), chroma * std::sin(angle)}, srgb);
    return InkOf(srgb);
}

// The table between its entries. Across, it wraps around; columns are centred on their sectors.
float Between(const std::vector<float>& table, float column, float row)
{
    const float x = column - 0.5f + kCount;
    const float y = std::clamp(row, 0.0f, kCount - 1.0f);
    const int i = static_cast<int>(x);
    const int j = std::min(static_cast<int>(y), kCount - 2);
    const float fx = x - static_cast<float>(i);
    const float fy = y - static_cast<float>(j);
    const auto at = [&](int di, int dj) {
        return table[static_cast<std::size_t>((j + dj) * kCount + (i + di) % kCount)];
    };
    return (at(0, 0) * (1.0f - fx) + at(1, 0) * fx) * (1.0f - fy) +
           (at(0, 1) * (1.0f - fx) + at(1, 1) * fx) * fy;
}

// Calls draw(x, y, column, row) for every pixel of an area with its place in the table.
template <class Draw>
void OverTable(const Area& area, Draw draw)
{
    for (int y = 0; y < static_cast<int>(area.height); ++y)
        for (int x = 0; x < static_cast<int>(area.width); ++x)
            draw(static_cast<int>(area.x) + x, static_cast<int>(area.y) + y,
                 (static_cast<float>(x) + 0.5f) / area.width * kCount,
                 (1.0f - (static_cast<float>(y) + 0.5f) / area.height) * (kCount - 1));
}

void DrawAxes(const Area& area, const std::string& title, const std::string& remark, Canvas& canvas)
{
    const Axes axes(canvas, area, {-180.0, 180.0}, {0.0, 100.0});
    axes.DrawTitle(title, remark);
    axes.DrawUpright("lightness L*");
    axes.DrawLevel({-180, -120, -60, 0, 60, 120, 180}, "hue angle in Luv, degrees", 0.0f);
}

// How much of a pixel a line of equal chroma covers: its distance in pixels, from the slope of the table.
float Contour(const std::vector<float>& table, float column, float row, float pixelsPerEntry)
{
    constexpr float kStep = 0.25f;
    constexpr float kHalfWidth = 0.9f;   // of a line, in pixels
    const float here = Between(table, column, row);
    const float nearest = std::round(here / kStep) * kStep;
    const float slope = std::hypot(Between(table, column + 0.5f, row) - Between(table, column - 0.5f, row),
                                   Between(table, column, row + 0.5f) - Between(table, column, row - 0.5f));
    if (nearest == 0.0f || !(slope > 0.0f))
        return 0.0f;
    const float distance = std::abs(here - nearest) / slope * pixelsPerEntry;
    return std::clamp(kHalfWidth + 0.5f - distance, 0.0f, 1.0f);
}

void DrawScale(const Area& area, Canvas& canvas)
{
    const Axes axes(canvas, area, {0.0, 1.0}, {0.0, kTopOfScale});
    for (int y = 0; y < static_cast<int>(area.height); ++y) {
        const float t = 1.0f - (static_cast<float>(y) + 0.5f) / area.height;
        canvas.Rectangle({area.x, area.y + static_cast<float>(y)}, area.width, 1.0f, ScaleInk(t));
    }
    for (const double value : {0.0, 0.25, 0.5, 0.75, 1.0, 1.25, 1.5, 1.75}) {
        const Point at = axes.At(1.0, value);
        canvas.Line(at, {at.x + 6.0f, at.y}, 2.0f, inks::kAxis);
        canvas.Text(AxisLabel(value), {at.x + 12.0f, at.y},
                    {.size = 20.0f, .ink = inks::kQuiet, .rest = Rest::Middle});
    }
}

}   // namespace

Ink ScaleInk(float t)
{
    constexpr unsigned char kStops[][3] = {{68, 1, 84},    {71, 45, 123},  {59, 82, 139},
                                           {44, 114, 142}, {33, 145, 140}, {40, 174, 128},
                                           {94, 201, 98},  {173, 220, 48}, {253, 231, 37}};
    constexpr int kLast = static_cast<int>(std::size(kStops)) - 1;
    const float place = t > 0.0f ? std::min(t, 1.0f) * kLast : 0.0f;
    const int i = std::min(static_cast<int>(place), kLast - 1);
    const float f = place - static_cast<float>(i);
    const auto mix = [&](int c) {
        return static_cast<unsigned char>(static_cast<float>(kStops[i][c]) * (1.0f - f) +
                                          static_cast<float>(kStops[i + 1][c]) * f + 0.5f);
    };
    return {mix(0), mix(1), mix(2)};
}

Image ChromaMapSheet()
{
    const auto table = Foundation::CLUVMaximumChromaMap::Compute(kCount, kCount);
    Canvas canvas(1800, 1000, inks::kPaper);
    canvas.Text("The largest chroma within sRGB", {110.0f, 66.0f},
                {.size = 34.0f, .ink = inks::kText, .face = Face::Bold});

    const Area values = {120.0f, 160.0f, 690.0f, 690.0f};
    DrawAxes(values, "Chroma", "lines every 0.25", canvas);
    OverTable(values, [&](int x, int y, float column, float row) {
        canvas.Pixel(x, y, ScaleInk(Between(table, column, row) / kTopOfScale));
        canvas.Pixel(x, y, Faded(inks::kPaper, Contour(table, column, row, values.width / kCount)));
    });
    DrawScale({826.0f, 160.0f, 26.0f, 690.0f}, canvas);

    const Area colours = {1060.0f, 160.0f, 690.0f, 690.0f};
    DrawAxes(colours, "The colours there", "", canvas);
    OverTable(colours, [&](int x, int y, float column, float row) {
        canvas.Pixel(
            x, y,
            EdgeOfGamut(row / (kCount - 1), column * 360.0f / kCount - 180.0f, Between(table, column, row)));
    });
    return canvas.Result();
}

}   // namespace QZ::Tool
