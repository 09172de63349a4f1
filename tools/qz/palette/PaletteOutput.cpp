// SPDX-License-Identifier: MIT
#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/qz/color/ColorValue.h"
#include "tools/qz/color/Swatch.h"
#include "tools/qz/palette/Palette.h"
#include "tools/qz/plots/Plot.h"

namespace QZ::Tool {

namespace {

std::string Percent(double share)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %%", share * 100.0);
    return text;
}

Ink InkOf(const PaletteColor& color)
{
    return {color.rgb[0], color.rgb[1], color.rgb[2]};
}

// A hair line keeps a swatch in sight on the paper, whatever its colour.
void Patch(Canvas& canvas, Point corner, float width, float height, Ink ink)
{
    canvas.Fill(Path::RoundedRectangle(corner, width, height, 14.0f), inks::kGrid);
    canvas.Fill(
        Path::RoundedRectangle({corner.x + 1.5f, corner.y + 1.5f}, width - 3.0f, height - 3.0f, 12.5f), ink);
}

}   // namespace

std::string PaletteText(const std::vector<PaletteColor>& palette, const Context& context)
{
    std::string text;
    for (const PaletteColor& color : palette) {
        const std::string patch = Swatch(context, color.rgb.data(), 6);
        char share[32];
        std::snprintf(share, sizeof share, "%7.2f %%\n", color.share * 100.0);
        text += patch + (patch.empty() ? "" : "  ") + HexOf(color.rgb.data()) + share;
    }
    return text;
}

nlohmann::ordered_json PaletteAsJson(const std::vector<PaletteColor>& palette)
{
    nlohmann::ordered_json colors = nlohmann::ordered_json::array();
    for (const PaletteColor& color : palette)
        colors.push_back({{"hex", HexOf(color.rgb.data())}, {"rgb", color.rgb}, {"share", color.share}});
    return {{"colors", colors}};
}

Image PaletteSheet(const std::vector<PaletteColor>& palette, const std::string& title)
{
    constexpr int kColumns = 4;
    constexpr float kLeft = 80.0f, kCell = 370.0f, kPatch = 330.0f, kPatchHeight = 200.0f, kRow = 310.0f;
    const int rows = (static_cast<int>(palette.size()) + kColumns - 1) / kColumns;
    Canvas canvas(1600, 300 + rows * static_cast<int>(kRow), inks::kPaper);
    canvas.Text(title, {kLeft, 80.0f}, {.size = 34.0f, .ink = inks::kText, .face = Face::Bold});

    double shown = 0.0;
    for (const PaletteColor& color : palette)
        shown += color.share;
    constexpr float kStrip = kCell * (kColumns - 1) + kPatch;
    float x = kLeft;
    for (const PaletteColor& color : palette) {
        // To the end of the strip: the next colour covers the rest, and no seam shows.
        canvas.Rectangle({x, 120.0f}, kLeft + kStrip - x, 70.0f, InkOf(color));
        x += static_cast<float>(color.share / shown) * kStrip;
    }
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const auto column = static_cast<float>(i % kColumns);
        const auto row = static_cast<float>(i / kColumns);
        const Point corner = {kLeft + column * kCell, 240.0f + row * kRow};
        Patch(canvas, corner, kPatch, kPatchHeight, InkOf(palette[i]));
        const float base = corner.y + kPatchHeight + 42.0f;
        canvas.Text(HexOf(palette[i].rgb.data()), {corner.x + 4.0f, base},
                    {.size = 30.0f, .ink = inks::kText, .face = Face::Bold});
        canvas.Text(Percent(palette[i].share), {corner.x + kPatch - 4.0f, base},
                    {.size = 28.0f, .ink = inks::kQuiet, .align = Align::Right});
    }
    return canvas.Result();
}

}   // namespace QZ::Tool
