// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "tools/qz/draw/Canvas.h"

namespace QZ::Tool {

/// The inks of the plots: dark on white. Where a colour tells things apart it is one of M. Okabe and K. Ito,
/// "Color Universal Design", 2008, which readers with any colour vision keep apart.
namespace inks {
inline constexpr Ink kPaper = {255, 255, 255};
inline constexpr Ink kText = {34, 34, 38};
inline constexpr Ink kQuiet = {96, 96, 104};
inline constexpr Ink kAxis = {120, 120, 128};
inline constexpr Ink kGrid = {228, 229, 232};
inline constexpr Ink kBar = {86, 92, 104};
inline constexpr Ink kBlue = {0, 114, 178};
inline constexpr Ink kVermilion = {213, 94, 0};
}   // namespace inks

/// The part of a canvas that a plot fills.
struct Area {
    float x = 0.0f, y = 0.0f, width = 0.0f, height = 0.0f;
};

/// Numbers from low to high on an axis.
struct Range {
    double low = 0.0;
    double high = 1.0;
};

/// Round numbers within a range, in steps of 1, 2 or 5 times a power of ten.
/// \param most  not more of them than this, at least 2.
[[nodiscard]] std::vector<double> RoundNumbers(Range range, int most);

/// A number for the side of an axis: 0.25, 40, 1200, 15k, 2.5M.
[[nodiscard]] std::string AxisLabel(double value);

/// A plot's axes: what is drawn on them is placed by At().
class Axes {
public:
    /// \param area  the plotting area itself; labels lie outside of it.
    Axes(Canvas& canvas, Area area, Range across, Range up)
        : m_canvas(canvas), m_area(area), m_across(across), m_up(up)
    {}

    [[nodiscard]] Point At(double x, double y) const;
    [[nodiscard]] const Area& Where() const { return m_area; }

    /// Grid lines and labels at round numbers of the upright axis, and what it measures.
    void DrawUpright(const std::string& title) const;
    /// Ticks and labels at given numbers of the level axis, and what it measures.
    /// \param drop  pixels between the axis and its labels, for what lies between.
    void DrawLevel(const std::vector<double>& numbers, const std::string& title, float drop) const;
    /// What the plot shows, above it.
    void DrawTitle(const std::string& title, const std::string& remark) const;

private:
    Canvas& m_canvas;
    Area m_area;
    Range m_across, m_up;
};

}   // namespace QZ::Tool
