// SPDX-License-Identifier: MIT
#include "tools/qz/draw/Coverage.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace QZ::Tool {

namespace {

bool Drawable(const std::vector<Point>& outline)
{
    return outline.size() >= 3 &&
           std::ranges::all_of(outline, [](Point p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

int Limit(float value, int high)
{
    return static_cast<int>(std::clamp(value, 0.0f, static_cast<float>(high)));
}

}   // namespace

Coverage::Coverage(const Path& path, int width, int height)
{
    constexpr float kFar = std::numeric_limits<float>::max();
    Point low = {kFar, kFar};
    Point high = {-kFar, -kFar};
    for (const auto& outline : path.Outlines()) {
        if (!Drawable(outline))
            continue;
        for (const Point p : outline) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    }
    x0 = Limit(std::floor(low.x), width);
    y0 = Limit(std::floor(low.y), height);
    x1 = std::max(x0, Limit(std::ceil(high.x), width));
    y1 = std::max(y0, Limit(std::ceil(high.y), height));
    m_areas.resize(static_cast<std::size_t>(x1 - x0 + 2) * static_cast<std::size_t>(y1 - y0));
    if (x0 == x1)
        return;
    for (const auto& outline : path.Outlines()) {
        if (!Drawable(outline))
            continue;
        for (std::size_t i = 0; i < outline.size(); ++i)
            AddEdge(outline[i], outline[(i + 1) % outline.size()]);
    }
}

void Coverage::AddEdge(Point from, Point to)
{
    const float direction = from.y < to.y ? 1.0f : -1.0f;
    const Point top = from.y < to.y ? from : to;
    const Point bottom = from.y < to.y ? to : from;
    const float slope = (bottom.x - top.x) / (bottom.y - top.y);   // not used when the edge is level
    const int first = std::max(y0, Limit(std::floor(top.y), y1));
    const int end = std::min(y1, Limit(std::ceil(bottom.y), y1));
    for (int y = first; y < end; ++y) {
        const float high = std::max(top.y, static_cast<float>(y));
        const float low = std::min(bottom.y, static_cast<float>(y + 1));
        if (!(low > high))
            continue;
        float* row =
            m_areas.data() + static_cast<std::size_t>(y - y0) * static_cast<std::size_t>(x1 - x0 + 2);
        AddEdgeInRow(row, top.x + (high - top.y) * slope, top.x + (low - top.y) * slope,
                     direction * (low - high));
    }
}

// The edge runs from xa to xb within one row and is `height` of a pixel high, negative for an upward edge.
// Each pixel it crosses gets the area to the right of the edge, all pixels after them the whole height.
void Coverage::AddEdgeInRow(float* row, float xa, float xb, float height) const
{
    const float limit = static_cast<float>(x1 - x0);
    const float left = std::clamp(std::min(xa, xb) - static_cast<float>(x0), 0.0f, limit);
    const float right = std::clamp(std::max(xa, xb) - static_cast<float>(x0), 0.0f, limit);
    const int first = static_cast<int>(left);
    const int last = static_cast<int>(right);
    if (first == last) {
        const float covered = height * (1.0f - (0.5f * (left + right) - static_cast<float>(first)));
        row[first] += covered;
        row[first + 1] += height - covered;
        return;
    }
    // `passed` is the height that the edge has gained by the right side of a pixel.
    const float rise = height / (right - left);
    float passed = 0.0f;
    float before = 0.0f;
    for (int x = first; x <= last; ++x) {
        const float from = std::max(left, static_cast<float>(x));
        const float to = std::min(right, static_cast<float>(x + 1));
        const float gained = rise * (to - from);
        const float area = passed + gained * (static_cast<float>(x + 1) - 0.5f * (from + to));
        row[x] += area - before;
        before = area;
        passed += gained;
    }
    row[last + 1] += height - before;
}

void Coverage::Row(int y, std::vector<float>& shares) const
{
    const auto width = static_cast<std::size_t>(x1 - x0);
    const float* row = m_areas.data() + static_cast<std::size_t>(y - y0) * (width + 2);
    shares.resize(width);
    float sum = 0.0f;
    for (std::size_t x = 0; x < width; ++x) {
        sum += row[x];
        shares[x] = std::min(std::abs(sum), 1.0f);
    }
}

}   // namespace QZ::Tool
