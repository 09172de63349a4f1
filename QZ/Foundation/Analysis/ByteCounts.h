// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace QZ::Foundation {

/// Counts the values of bytes.
///
/// Neighbouring pixels are often equal, and a counter that is incremented twice in a row waits for itself;
/// four tables taken in turn hide that.
class ByteCounts {
public:
    /// Counts the n bytes at data, data + stride, ...
    void Add(const unsigned char* data, std::ptrdiff_t stride, std::ptrdiff_t n)
    {
        std::ptrdiff_t k = 0;
        for (; k + 4 <= n; k += 4)
            for (std::size_t lane = 0; lane < 4; ++lane)
                ++m_tables[lane][data[(k + static_cast<std::ptrdiff_t>(lane)) * stride]];
        for (; k < n; ++k)
            ++m_tables[0][data[k * stride]];
    }

    /// How often the byte occurred, modulo 2^32.
    std::uint32_t operator[](std::size_t byte) const
    {
        return m_tables[0][byte] + m_tables[1][byte] + m_tables[2][byte] + m_tables[3][byte];
    }

private:
    std::array<std::array<std::uint32_t, 256>, 4> m_tables{};
};

}   // namespace QZ::Foundation
