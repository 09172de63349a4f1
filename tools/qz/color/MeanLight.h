// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace QZ::Tool {

/// The linear light of an encoded sRGB byte, 0 to 1.
[[nodiscard]] double LightOfByte(unsigned char byte);

/// The weighted mean light of pixels.
class MeanLight {
public:
    void Add(const unsigned char* rgb, double weight);
    [[nodiscard]] double Weight() const { return m_weight; }
    /// As 8-bit sRGB; Weight() must be above 0.
    [[nodiscard]] std::array<unsigned char, 3> Bytes() const;

private:
    std::array<double, 3> m_sum{};
    double m_weight = 0.0;
};

}   // namespace QZ::Tool
