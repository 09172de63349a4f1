// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "QZ/Math/CVector3.h"

namespace QZ::Tool::Selftest {

/// Numbers that are the same on every machine (D. E. Knuth's MMIX, a linear congruential generator).
class Numbers {
public:
    explicit Numbers(std::uint64_t seed) : m_state(seed) {}

    /// 32 bits, the better half of the state.
    std::uint32_t Bits()
    {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<std::uint32_t>(m_state >> 32);
    }
    /// 0 to below 1, in steps of 2^-24.
    float Unit() { return static_cast<float>(Bits() >> 8) * 0x1p-24f; }

private:
    std::uint64_t m_state;
};

/// n colours: three quarters from the unit cube, the rest half from [-0.5, 1.5) and half of any bits.
[[nodiscard]] std::vector<Math::CVector3<float>> Colors(std::size_t n);

/// An RGBA picture: 4 bytes a pixel.
struct Picture {
    int width;
    int height;
    std::vector<unsigned char> rgba;
};

/// Noise of all colours, smooth shading of many hues, flat areas of few colours, greys, and a single pixel.
[[nodiscard]] std::vector<Picture> Pictures();

}   // namespace QZ::Tool::Selftest
