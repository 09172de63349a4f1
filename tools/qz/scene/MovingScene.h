// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "tools/qz/draw/Path.h"

namespace QZ::Tool {

/// The moving test scene: all hues drift past, a ball bounces once a second, a strip shows eleven greys, and
/// a clock tells the time of the picture. A function of its size, the rate and the picture's number alone.
class MovingScene {
public:
    /// \param width, height  at least 16.
    /// \param rate           pictures a second.
    MovingScene(int width, int height, int rate);

    /// Paints a picture as BGRA.
    void Paint(int number, unsigned char* base, std::uint64_t bytesPerRow) const;

private:
    struct Target;
    void PaintHues(const Target& target, double seconds) const;
    void PaintGreys(const Target& target) const;
    void PaintBall(const Target& target, double seconds) const;
    void PaintClock(const Target& target, int number) const;

    int m_width, m_height, m_rate;
    std::vector<std::uint32_t> m_colours;   ///< a row of hues for each lightness
    std::vector<int> m_across, m_down;      ///< hue offset of each column and each row
};

}   // namespace QZ::Tool
