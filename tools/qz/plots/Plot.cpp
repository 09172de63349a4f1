// SPDX-License-Identifier: MIT
#include "tools/qz/plots/Plot.h"

#include <cmath>
#include <cstdio>

namespace QZ::Tool {

namespace {

constexpr float kLabelSize = 21.0f;
constexpr float kTitleSize = 27.0f;

}   // namespace

std::vector<double> RoundNumbers(Range range, int most)
{
    const double span = range.high - range.low;
    if (!(span > 0.0) || !std::isfinite(span))
        return {range.low};
    double step = std::pow(10.0, std::floor(std::log10(span / most)));
    for (const double factor : {1.0, 2.0, 5.0, 10.0})
        if (span / (step * factor) <= most - 1) {
            step *= factor;
            break;
        }
    std::vector<double> numbers;
    const double first = std::ceil(range.low / step - 1e-9);
    for (double i = first; i * step <= range.high + 1e-9 * span; i += 1.0)
        numbers.push_back(i * step);
    return numbers;
}

std::string AxisLabel(double value)
{
    const double magnitude = std::abs(value);
    if (magnitude == 0.0)
        return "0";
    char text[40];
    if (magnitude >= 1e6)
        std::snprintf(text, sizeof text, "%.4gM", value / 1e6);
    else if (magnitude >= 1e4)
        std::snprintf(text, sizeof text, "%.4gk", value / 1e3);
    else
        std::snprintf(text, sizeof text, "%.4g", value);
    // A proper minus sign, as wide as the digits.
    const std::string label = text;
    return label.starts_with('-') ? "\xE2\x88\x92" + label.substr(1) : label;
}

Point Axes::At(double x, double y) const
{
    const double across = (x - m_across.low) / (m_across.high - m_across.low);
    const double up = (y - m_up.low) / (m_up.high - m_up.low);
    return {m_area.x + static_cast<float>(across) * m_area.width,
            m_area.y + static_cast<float>(1.0 - up) * m_area.height};
}

void Axes::DrawUpright(const std::string& title) const
{
    float widest = 0.0f;
    for (const double number : RoundNumbers(m_up, 6)) {
        const Point left = At(m_across.low, number);
        const std::string label = AxisLabel(number);
        widest = std::max(widest, TextWidth(Face::Regular, label, kLabelSize));
        m_canvas.Line(left, {m_area.x + m_area.width, left.y}, 1.5f, inks::kGrid);
        m_canvas.Text(label, {left.x - 12.0f, left.y},
                      {.size = kLabelSize, .ink = inks::kQuiet, .align = Align::Right, .rest = Rest::Middle});
    }
    m_canvas.TextUpwards(title, {m_area.x - widest - 26.0f, m_area.y + m_area.height / 2.0f},
                         {.size = kLabelSize, .ink = inks::kText, .align = Align::Centre});
}

void Axes::DrawLevel(const std::vector<double>& numbers, const std::string& title, float drop) const
{
    const float bottom = m_area.y + m_area.height;
    m_canvas.Line({m_area.x, bottom}, {m_area.x + m_area.width, bottom}, 2.0f, inks::kAxis);
    for (const double number : numbers) {
        const Point tick = At(number, m_up.low);
        m_canvas.Line(tick, {tick.x, tick.y + 7.0f + drop}, 2.0f, inks::kAxis);
        m_canvas.Text(AxisLabel(number), {tick.x, tick.y + 14.0f + drop},
                      {.size = kLabelSize, .ink = inks::kQuiet, .align = Align::Centre, .rest = Rest::Top});
    }
    m_canvas.Text(title, {m_area.x + m_area.width / 2.0f, bottom + 44.0f + drop},
                  {.size = kLabelSize, .ink = inks::kText, .align = Align::Centre, .rest = Rest::Top});
}

void Axes::DrawTitle(const std::string& title, const std::string& remark) const
{
    const float base = m_area.y - 20.0f;
    m_canvas.Text(title, {m_area.x, base}, {.size = kTitleSize, .ink = inks::kText, .face = Face::Bold});
    m_canvas.Text(remark, {m_area.x + m_area.width, base},
                  {.size = kLabelSize, .ink = inks::kQuiet, .align = Align::Right});
}

}   // namespace QZ::Tool
