// SPDX-License-Identifier: MIT
#include "tools/qz/draw/Path.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace QZ::Tool {

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

Point Between(Point a, Point b, float t)
{
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

Point OnCircle(Point centre, float radius, float angle)
{
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

// At least one chord, at most `most`; no number asks for one.
int Chords(float wanted, float most)
{
    return wanted > 1.0f ? static_cast<int>(std::ceil(std::min(wanted, most))) : 1;
}

// Chords of an arc whose sagitta stays below a hundredth of a pixel.
int ArcChords(float radius, float angle)
{
    const float step = radius > 0.1f ? 2.0f * std::acos(1.0f - std::min(0.01f / radius, 0.5f)) : kPi;
    return Chords(std::abs(angle) / step, 2000.0f);
}

}   // namespace

Path& Path::MoveTo(Point to)
{
    m_outlines.push_back({to});
    return *this;
}

Path& Path::LineTo(Point to)
{
    m_outlines.back().push_back(to);
    return *this;
}

Path& Path::CurveTo(Point control, Point to)
{
    const Point from = m_outlines.back().back();
    // A chord of 1 / n of the parabola strays from it by |from - 2 control + to| / (4 n^2).
    const float bend = std::hypot(from.x - 2.0f * control.x + to.x, from.y - 2.0f * control.y + to.y);
    const int chords = Chords(std::sqrt(bend * 5.0f), 64.0f);
    for (int i = 1; i <= chords; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(chords);
        LineTo(Between(Between(from, control, t), Between(control, to, t), t));
    }
    return *this;
}

void Path::ArcTo(Point centre, float radius, float from, float to)
{
    const int chords = ArcChords(radius, to - from);
    for (int i = 0; i <= chords; ++i)
        LineTo(OnCircle(centre, radius,
                        from + (to - from) * static_cast<float>(i) / static_cast<float>(chords)));
}

Path Path::Polygon(std::vector<Point> corners)
{
    Path path;
    path.m_outlines.push_back(std::move(corners));
    return path;
}

Path Path::Rectangle(Point corner, float width, float height)
{
    const float right = corner.x + width;
    const float bottom = corner.y + height;
    return Polygon({corner, {right, corner.y}, {right, bottom}, {corner.x, bottom}});
}

Path Path::RoundedRectangle(Point corner, float width, float height, float radius)
{
    const float r = std::min({radius, width / 2.0f, height / 2.0f});
    const float left = corner.x + r;
    const float right = corner.x + width - r;
    const float top = corner.y + r;
    const float bottom = corner.y + height - r;
    Path path;
    path.m_outlines.emplace_back();
    path.ArcTo({left, top}, r, kPi, 1.5f * kPi);
    path.ArcTo({right, top}, r, 1.5f * kPi, 2.0f * kPi);
    path.ArcTo({right, bottom}, r, 0.0f, 0.5f * kPi);
    path.ArcTo({left, bottom}, r, 0.5f * kPi, kPi);
    return path;
}

Path Path::Disc(Point centre, float radius)
{
    Path path;
    path.m_outlines.emplace_back();
    path.ArcTo(centre, radius, 0.0f, 2.0f * kPi);
    return path;
}

Path Path::Sector(Point centre, float innerRadius, float outerRadius, float from, float to)
{
    Path path;
    path.m_outlines.emplace_back();
    path.ArcTo(centre, outerRadius, from, to);
    path.ArcTo(centre, innerRadius, to, from);
    return path;
}

Path Path::Stroke(const std::vector<Point>& points, float width)
{
    Path path;
    const float half = width / 2.0f;
    for (std::size_t i = 0; i < points.size(); ++i) {
        path.Append(Disc(points[i], half));
        if (i == 0)
            continue;
        const Point a = points[i - 1];
        const Point b = points[i];
        const float length = std::hypot(b.x - a.x, b.y - a.y);
        if (!(length > 0.0f))
            continue;
        const Point side = {(a.y - b.y) / length * half, (b.x - a.x) / length * half};
        path.Append(Polygon({{a.x - side.x, a.y - side.y},
                             {b.x - side.x, b.y - side.y},
                             {b.x + side.x, b.y + side.y},
                             {a.x + side.x, a.y + side.y}}));
    }
    return path;
}

void Path::Append(const Path& other)
{
    m_outlines.insert(m_outlines.end(), other.m_outlines.begin(), other.m_outlines.end());
}

}   // namespace QZ::Tool
