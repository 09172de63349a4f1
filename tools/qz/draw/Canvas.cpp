// SPDX-License-Identifier: MIT
#include "tools/qz/draw/Canvas.h"

#include <algorithm>

#include "tools/qz/draw/Coverage.h"

namespace QZ::Tool {

namespace {

unsigned char Mix(unsigned char below, unsigned char above, float share)
{
    const float value =
        static_cast<float>(below) + (static_cast<float>(above) - static_cast<float>(below)) * share;
    return static_cast<unsigned char>(std::clamp(value + 0.5f, 0.0f, 255.0f));
}

// From the origin that a style means to the left end of the base line.
Point LeftOfBaseLine(std::string_view text, Point at, const TextStyle& style)
{
    const float width = TextWidth(style.face, text, style.size);
    const float height = kCapitalHeight * style.size;
    if (style.align != Align::Left)
        at.x -= style.align == Align::Centre ? width / 2.0f : width;
    if (style.rest != Rest::Base)
        at.y += style.rest == Rest::Middle ? height / 2.0f : height;
    return at;
}

}   // namespace

Canvas::Canvas(int width, int height, Ink background) : m_image(width, height)
{
    background.opacity = 1.0f;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            Blend(x, y, background, 1.0f);
}

void Canvas::Blend(int x, int y, Ink ink, float share)
{
    unsigned char* pixel = m_image.At(x, y);
    const float amount = std::clamp(share * ink.opacity, 0.0f, 1.0f);
    pixel[0] = Mix(pixel[0], ink.red, amount);
    pixel[1] = Mix(pixel[1], ink.green, amount);
    pixel[2] = Mix(pixel[2], ink.blue, amount);
}

void Canvas::Fill(const Path& path, Ink ink)
{
    const Coverage coverage(path, Width(), Height());
    std::vector<float> shares;
    for (int y = coverage.y0; y < coverage.y1; ++y) {
        coverage.Row(y, shares);
        for (int x = coverage.x0; x < coverage.x1; ++x)
            if (const float share = shares[static_cast<std::size_t>(x - coverage.x0)]; share > 0.0f)
                Blend(x, y, ink, share);
    }
}

void Canvas::Text(std::string_view text, Point at, const TextStyle& style)
{
    Fill(TextOutline(style.face, text, LeftOfBaseLine(text, at, style), style.size), style.ink);
}

void Canvas::TextUpwards(std::string_view text, Point at, const TextStyle& style)
{
    const Point start = LeftOfBaseLine(text, {0.0f, 0.0f}, style);
    const Path level = TextOutline(style.face, text, start, style.size);
    Path turned;
    for (const auto& outline : level.Outlines()) {
        std::vector<Point> points;
        points.reserve(outline.size());
        for (const Point p : outline)
            points.push_back({at.x + p.y, at.y - p.x});
        turned.Append(Path::Polygon(std::move(points)));
    }
    Fill(turned, style.ink);
}

void Canvas::Pixel(int x, int y, Ink ink)
{
    if (x >= 0 && y >= 0 && x < Width() && y < Height())
        Blend(x, y, ink, 1.0f);
}

void Canvas::Picture(const Image& picture, int x, int y)
{
    for (int row = 0; row < picture.height; ++row)
        for (int column = 0; column < picture.width; ++column) {
            const unsigned char* p = picture.At(column, row);
            Pixel(x + column, y + row, {p[0], p[1], p[2], static_cast<float>(p[3]) / 255.0f});
        }
}

}   // namespace QZ::Tool
