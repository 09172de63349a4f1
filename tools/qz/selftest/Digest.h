// SPDX-License-Identifier: MIT
#pragma once

#include <sha2.h>

#include <array>
#include <bit>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "QZ/Math/CVector2.h"
#include "QZ/Math/CVector3.h"

namespace QZ::Tool::Selftest {

/// The SHA-256 of a sequence of numbers, the same on every machine: bytes in little-endian order, one NaN for
/// all.
class Digest {
public:
    Digest() { SHA256Init(&m_state); }

    void Add(unsigned char byte) { AddBits(byte); }
    void Add(int value) { AddBits(static_cast<std::uint32_t>(value)); }
    void Add(unsigned int value) { AddBits(value); }
    void Add(float value)
    {
        AddBits(std::bit_cast<std::uint32_t>(std::isnan(value) ? std::numeric_limits<float>::quiet_NaN()
                                                               : value));
    }
    void Add(double value)
    {
        AddBits(std::bit_cast<std::uint64_t>(std::isnan(value) ? std::numeric_limits<double>::quiet_NaN()
                                                               : value));
    }
    template <class T>
    void Add(const Math::CVector2<T>& v)
    {
        Add(v.x);
        Add(v.y);
    }
    template <class T>
    void Add(const Math::CVector3<T>& v)
    {
        Add(v.x);
        Add(v.y);
        Add(v.z);
    }

    /// Each of a range, in order.
    template <class Range>
    requires requires(const Range& range) { range.begin(); }
    void Add(const Range& range)
    {
        for (const auto& value : range)
            Add(value);
    }

    /// 64 hexadecimal digits. Nothing may be added afterwards.
    [[nodiscard]] std::string Finish()
    {
        Flush();
        char text[SHA256_DIGEST_STRING_LENGTH];
        return SHA256End(&m_state, text);
    }

private:
    template <std::unsigned_integral U>
    void AddBits(U bits)
    {
        if (m_buffer.size() - m_used < sizeof(U))
            Flush();
        for (std::size_t i = 0; i < sizeof(U); ++i)
            m_buffer[m_used++] = static_cast<unsigned char>(bits >> (8 * i));
    }

    void Flush()
    {
        SHA256Update(&m_state, m_buffer.data(), m_used);
        m_used = 0;
    }

    SHA2_CTX m_state;
    std::array<unsigned char, 4096> m_buffer;   ///< What the hash has not seen yet.
    std::size_t m_used = 0;
};

}   // namespace QZ::Tool::Selftest
