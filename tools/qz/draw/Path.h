// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace QZ::Tool {

/// A place on a canvas, in pixels from its upper left corner; the middle of the first pixel is (0.5, 0.5).
struct Point {
    float x = 0.0f;
    float y = 0.0f;
};

/// Closed outlines. What lies inside is found by winding: outlines that run the same way join where they
/// overlap, and one that runs the other way cuts a hole.
class Path {
public:
    Path& MoveTo(Point to);
    Path& LineTo(Point to);
    /// A parabola to a point, flattened to chords within about a twentieth of a pixel.
    Path& CurveTo(Point control, Point to);

    /// The ready-made shapes run clockwise; a circle's angle grows clockwise from the right.
    static Path Polygon(std::vector<Point> corners);
    static Path Rectangle(Point corner, float width, float height);
    static Path RoundedRectangle(Point corner, float width, float height, float radius);
    static Path Disc(Point centre, float radius);
    /// What lies between two circles and two angles (radians, `from` before `to`).
    static Path Sector(Point centre, float innerRadius, float outerRadius, float from, float to);
    /// A line of a width through points, with round joins and ends.
    static Path Stroke(const std::vector<Point>& points, float width);

    /// Adds the outlines of another path.
    void Append(const Path& other);

    [[nodiscard]] const std::vector<std::vector<Point>>& Outlines() const { return m_outlines; }

private:
    void ArcTo(Point centre, float radius, float from, float to);

    std::vector<std::vector<Point>> m_outlines;
};

}   // namespace QZ::Tool
