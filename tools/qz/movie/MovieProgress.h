// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

#include "QZ/Foundation/Media/FrameRate.h"
#include "tools/qz/Context.h"

namespace QZ::Tool {

/// What goes on while a movie is made: a bar, the pictures a second of just now, and the time that is left.
class MovieProgress {
public:
    MovieProgress(const Context& context, std::string doing) : m_context(context), m_doing(std::move(doing))
    {}

    /// One picture more is done.
    void Picture() { m_meter.Update(); }
    /// Shows it, a few times a second at most. \param share  of the work that is done, 0 to 1; negative when
    /// it is not known
    void Show(double share);

    [[nodiscard]] std::uint64_t Pictures() const { return m_meter.frameCount; }
    /// Since the beginning.
    [[nodiscard]] double Seconds() const;

private:
    using Clock = std::chrono::steady_clock;

    const Context& m_context;
    const std::string m_doing;
    Foundation::FrameRate m_meter;
    const Clock::time_point m_begin = Clock::now();
    Clock::time_point m_shown = {};
};

/// The line that is shown: "tones  [#####     ]  50 %  31.2 pictures a second, 0:12 left".
[[nodiscard]] std::string ProgressLine(const std::string& doing, double share, double rate, double seconds);

}   // namespace QZ::Tool
