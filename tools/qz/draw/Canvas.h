// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tools/qz/Image.h"
#include "tools/qz/draw/Font.h"
#include "tools/qz/draw/Path.h"

namespace QZ::Tool {

/// An encoded sRGB colour to draw with.
struct Ink {
    unsigned char red = 0, green = 0, blue = 0;
    float opacity = 1.0f;   ///< 0 to 1.
};

/// The same colour, thinner.
[[nodiscard]] constexpr Ink Faded(Ink ink, float opacity)
{
    return {ink.red, ink.green, ink.blue, ink.opacity * opacity};
}

/// Where a text's origin lies: at its left end, middle or right end...
enum class Align { Left, Centre, Right };
/// ... and on its base line, at half the height of its capitals, or at their top.
enum class Rest { Base, Middle, Top };

struct TextStyle {
    float size = 24.0f;   ///< Pixels an em.
    Ink ink;
    Align align = Align::Left;
    Rest rest = Rest::Base;
    Face face = Face::Regular;
};

/// Draws anti-aliased shapes on an opaque picture; what lies outside is cut off. Blending is on encoded
/// values, as browsers do it.
class Canvas {
public:
    Canvas(int width, int height, Ink background);

    [[nodiscard]] int Width() const { return m_image.width; }
    [[nodiscard]] int Height() const { return m_image.height; }

    void Fill(const Path& path, Ink ink);
    void Rectangle(Point corner, float width, float height, Ink ink)
    {
        Fill(Path::Rectangle(corner, width, height), ink);
    }
    void Disc(Point centre, float radius, Ink ink) { Fill(Path::Disc(centre, radius), ink); }
    void Line(Point from, Point to, float width, Ink ink) { Fill(Path::Stroke({from, to}, width), ink); }
    void Polyline(const std::vector<Point>& points, float width, Ink ink)
    {
        Fill(Path::Stroke(points, width), ink);
    }
    void Text(std::string_view text, Point at, const TextStyle& style);
    /// Text that reads upwards, for the title of a vertical axis.
    void TextUpwards(std::string_view text, Point at, const TextStyle& style);
    /// Sets one pixel; one outside is passed over.
    void Pixel(int x, int y, Ink ink);
    /// Lays a picture with its upper left corner on a pixel, by its alpha.
    void Picture(const Image& picture, int x, int y);

    /// The picture drawn.
    [[nodiscard]] const Image& Result() const { return m_image; }

private:
    void Blend(int x, int y, Ink ink, float share);

    Image m_image;
};

}   // namespace QZ::Tool
