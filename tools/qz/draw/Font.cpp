// SPDX-License-Identifier: MIT
#include "tools/qz/draw/Font.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace QZ::Tool {

namespace {

struct Glyph {
    char32_t code;
    int advance;
    std::size_t start;
    std::size_t count;
};

#include "tools/qz/draw/FontOutlines.inc"

constexpr float kUnitsPerEm = 2048.0f;

struct FaceData {
    std::span<const Glyph> glyphs;
    const short* outlines;
};

FaceData DataOf(Face face)
{
    if (face == Face::Bold)
        return {kBoldGlyphs, kBoldOutlines};
    return {kRegularGlyphs, kRegularOutlines};
}

const Glyph& GlyphOf(const FaceData& data, char32_t code)
{
    const auto found = std::ranges::lower_bound(data.glyphs, code, {}, &Glyph::code);
    if (found != data.glyphs.end() && found->code == code)
        return *found;
    return GlyphOf(data, U'?');
}

// The next character of UTF-8 text, which must not be empty; a byte out of place counts as one character.
char32_t TakeCharacter(std::string_view& text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length > text.size() || (lead >= 0x80 && lead < 0xC0)) {
        text.remove_prefix(1);
        return 0xFFFD;
    }
    char32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i)
        code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    text.remove_prefix(length);
    return code;
}

struct OutlinePoint {
    Point at;
    bool onCurve;
};

// TrueType: two control points in a row have a point of the curve midway between them.
void AddContour(std::span<const OutlinePoint> points, Path& path)
{
    const auto middle = [](Point a, Point b) { return Point{(a.x + b.x) / 2.0f, (a.y + b.y) / 2.0f}; };
    const OutlinePoint& last = points.back();
    const bool startsOnCurve = points.front().onCurve;
    const Point start = startsOnCurve  ? points.front().at
                        : last.onCurve ? last.at
                                       : middle(last.at, points.front().at);
    path.MoveTo(start);
    for (std::size_t i = startsOnCurve ? 1 : 0; i < points.size(); ++i) {
        if (points[i].onCurve) {
            path.LineTo(points[i].at);
            continue;
        }
        const Point control = points[i].at;
        if (i + 1 == points.size()) {
            path.CurveTo(control, start);
        } else if (points[i + 1].onCurve) {
            path.CurveTo(control, points[i + 1].at);
            ++i;
        } else {
            path.CurveTo(control, middle(control, points[i + 1].at));
        }
    }
}

void AddGlyph(const FaceData& data, const Glyph& glyph, Point origin, float scale, Path& path)
{
    std::vector<OutlinePoint> points;
    const short* number = data.outlines + glyph.start;
    const short* end = number + glyph.count;
    while (number != end) {
        points.resize(static_cast<std::size_t>(*number++));
        for (OutlinePoint& point : points) {
            const int x = *number++;
            const int y = *number++;
            point.onCurve = (x & 1) != 0;
            point.at = {origin.x + static_cast<float>(x >> 1) * scale,
                        origin.y - static_cast<float>(y) * scale};
        }
        AddContour(points, path);
    }
}

}   // namespace

Path TextOutline(Face face, std::string_view text, Point origin, float size)
{
    const FaceData data = DataOf(face);
    const float scale = size / kUnitsPerEm;
    Path path;
    while (!text.empty()) {
        const Glyph& glyph = GlyphOf(data, TakeCharacter(text));
        AddGlyph(data, glyph, origin, scale, path);
        origin.x += static_cast<float>(glyph.advance) * scale;
    }
    return path;
}

float TextWidth(Face face, std::string_view text, float size)
{
    const FaceData data = DataOf(face);
    int advance = 0;
    while (!text.empty())
        advance += GlyphOf(data, TakeCharacter(text)).advance;
    return static_cast<float>(advance) * size / kUnitsPerEm;
}

}   // namespace QZ::Tool
