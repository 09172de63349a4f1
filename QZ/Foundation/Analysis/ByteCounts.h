// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace QZ::Foundation {

/// Counts the values of bytes.
///
/// Neighbouring pixels are often equal, and a counter that is incremented twice in a row waits for itself;
/// four tables taken in turn hide that. Many bytes in a row are counted by pairs, which halves the
/// increments, and from two places far apart in turn, whose pairs are seldom the same.
class ByteCounts {
public:
    /// Counts the n bytes at data, data + stride, ...
    void Add(const unsigned char* data, std::ptrdiff_t stride, std::ptrdiff_t n)
    {
        std::ptrdiff_t k = stride == 1 && n >= kMany ? AddPairs(data, n) : 0;
        for (; k + 4 <= n; k += 4) {
            const unsigned char* four = data + k * stride;
            ++m_tables[0][four[0]];
            ++m_tables[1][four[stride]];
            ++m_tables[2][four[2 * stride]];
            ++m_tables[3][four[3 * stride]];
        }
        for (; k < n; ++k)
            ++m_tables[0][data[k * stride]];
    }

    /// How often the byte occurred, modulo 2^32.
    std::uint32_t operator[](std::size_t byte) const
    {
        return m_tables[0][byte] + m_tables[1][byte] + m_tables[2][byte] + m_tables[3][byte];
    }

private:
    static constexpr std::ptrdiff_t kMany = 1 << 19;   // far more than there are different pairs

    /// Counts the next pair of each, and moves on.
    static void CountPair(std::uint64_t& first, std::uint64_t& second, std::uint32_t* pairs)
    {
        ++pairs[first & 0xffff];
        ++pairs[second & 0xffff];
        first >>= 16;
        second >>= 16;
    }

    /// Counts the bytes but up to 15 at the end; returns how many.
    std::ptrdiff_t AddPairs(const unsigned char* data, std::ptrdiff_t n)
    {
        std::vector<std::uint32_t> pairs(0x10000);
        const std::ptrdiff_t half = n / 16 * 8;
        for (std::ptrdiff_t k = 0; k < half; k += 8) {
            std::uint64_t first = 0;
            std::uint64_t second = 0;
            std::memcpy(&first, data + k, 8);
            std::memcpy(&second, data + half + k, 8);
            // Written out, as compilers leave a loop within the loop.
            CountPair(first, second, pairs.data());
            CountPair(first, second, pairs.data());
            CountPair(first, second, pairs.data());
            CountPair(first, second, pairs.data());
        }
        for (std::size_t pair = 0; pair < pairs.size(); ++pair) {
            m_tables[0][pair & 0xff] += pairs[pair];
            m_tables[1][pair >> 8] += pairs[pair];
        }
        return 2 * half;
    }

    std::array<std::array<std::uint32_t, 256>, 4> m_tables{};
};

}   // namespace QZ::Foundation
