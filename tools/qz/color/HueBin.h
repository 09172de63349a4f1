// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <numbers>

namespace QZ::Tool {

/// The bin of an angle in radians, from -pi to pi, where the library's hue histograms count it.
/// \param bins  at least 1.
[[nodiscard]] inline std::size_t HueBin(float angle, std::size_t bins)
{
    constexpr float kPi = std::numbers::pi_v<float>;
    const auto last = static_cast<float>(bins - 1);
    return static_cast<std::size_t>(std::clamp((angle + kPi) * last / (2.0f * kPi) + 0.5f, 0.0f, last));
}

}   // namespace QZ::Tool
