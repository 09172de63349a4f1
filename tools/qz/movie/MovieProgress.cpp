// SPDX-License-Identifier: MIT
#include "tools/qz/movie/MovieProgress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace QZ::Tool {

namespace {
constexpr auto kInterval = std::chrono::milliseconds(200);
constexpr int kBar = 24;
}   // namespace

std::string ProgressLine(const std::string& doing, double share, double rate, double seconds)
{
    char text[96];
    std::string line = doing;
    if (share >= 0.0) {
        const double done = std::min(share, 1.0);
        const auto filled = static_cast<std::size_t>(done * kBar);
        std::snprintf(text, sizeof text, "]  %3.0f %%", std::floor(100 * done));
        line += "  [" + std::string(filled, '#') + std::string(kBar - filled, ' ') + text;
    }
    if (rate > 0.0 && std::isfinite(rate)) {
        std::snprintf(text, sizeof text, "  %.1f pictures a second", rate);
        line += text;
    }
    // An estimate from the first moments would jump about.
    if (share > 0.02 && seconds > 1.0) {
        const auto left = static_cast<int>(std::min(seconds / share - seconds, 359999.0) + 0.5);
        std::snprintf(text, sizeof text, ", %d:%02d left", std::max(left, 0) / 60, std::max(left, 0) % 60);
        line += text;
    }
    return line;
}

double MovieProgress::Seconds() const
{
    return std::chrono::duration<double>(Clock::now() - m_begin).count();
}

void MovieProgress::Show(double share)
{
    const Clock::time_point now = Clock::now();
    if (now - m_shown < kInterval)
        return;
    m_shown = now;
    m_context.Progress(ProgressLine(m_doing, share, m_meter.Rate(), Seconds()));
}

}   // namespace QZ::Tool
