// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tools/qz/draw/Path.h"

namespace QZ::Tool {

/// How much of each pixel a path covers, by exact areas: each edge adds the signed area to its right.
class Coverage {
public:
    /// Of the part of the path on a canvas of width x height pixels. Outlines with a NaN or infinite point
    /// are left out.
    Coverage(const Path& path, int width, int height);

    /// The rectangle that the path touches; x1 and y1 lie outside. Empty when it touches nothing.
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;

    /// Row y (y0 <= y < y1) as x1 - x0 shares from 0 to 1.
    void Row(int y, std::vector<float>& shares) const;

private:
    void AddEdge(Point from, Point to);
    void AddEdgeInRow(float* row, float xa, float xb, float height) const;

    std::vector<float> m_areas;   // (x1 - x0 + 2) a row, each the difference to the pixel before
};

}   // namespace QZ::Tool
