// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace QZ::Platform::Movie {

/// A growing run of bytes, most significant byte first, as every number of a movie file is written.
class ByteWriter {
public:
    void U8(std::uint32_t value) { m_bytes.push_back(static_cast<unsigned char>(value)); }
    void U16(std::uint32_t value)
    {
        U8(value >> 8);
        U8(value);
    }
    void U24(std::uint32_t value)
    {
        U8(value >> 16);
        U16(value);
    }
    void U32(std::uint32_t value)
    {
        U16(value >> 16);
        U16(value);
    }
    void U64(std::uint64_t value)
    {
        U32(static_cast<std::uint32_t>(value >> 32));
        U32(static_cast<std::uint32_t>(value));
    }
    void I32(std::int32_t value) { U32(static_cast<std::uint32_t>(value)); }
    void I64(std::int64_t value) { U64(static_cast<std::uint64_t>(value)); }

    /// 64 bits in a box of version 1, 32 bits in one of version 0.
    void Sized(unsigned version, std::int64_t value)
    {
        if (version == 1) {
            I64(value);
        } else {
            U32(static_cast<std::uint32_t>(value));
        }
    }

    void Text(std::string_view text) { m_bytes.insert(m_bytes.end(), text.begin(), text.end()); }
    void Append(std::span<const unsigned char> bytes)
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }
    void Zeros(std::size_t count) { m_bytes.resize(m_bytes.size() + count); }

    /// Overwrites the 32-bit number at a position that was written before.
    void PatchU32(std::size_t position, std::uint32_t value)
    {
        for (std::size_t i = 0; i < 4; ++i)
            m_bytes[position + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
    }

    [[nodiscard]] std::size_t Position() const { return m_bytes.size(); }
    [[nodiscard]] const std::vector<unsigned char>& Bytes() const { return m_bytes; }

private:
    std::vector<unsigned char> m_bytes;
};

/// A number in the place of a box's type.
[[nodiscard]] inline std::string FourBytes(std::uint32_t number)
{
    std::string bytes;
    for (const int shift : {24, 16, 8, 0})
        bytes.push_back(static_cast<char>(number >> shift & 0xFF));
    return bytes;
}

/// A box (ISO/IEC 14496-12, 4.2; "atom" in the QuickTime File Format): what is written in its scope is its
/// content, and its size is filled in at the end of the scope.
class Box {
public:
    Box(ByteWriter& out, std::string_view type) : m_out(out), m_start(out.Position())
    {
        m_out.U32(0);
        m_out.Text(type);
    }
    ~Box() { m_out.PatchU32(m_start, static_cast<std::uint32_t>(m_out.Position() - m_start)); }
    Box(const Box&) = delete;
    Box& operator=(const Box&) = delete;

protected:
    ByteWriter& m_out;

private:
    std::size_t m_start;
};

/// A box with a version and flags (ISO/IEC 14496-12, 4.2, FullBox).
class FullBox : public Box {
public:
    FullBox(ByteWriter& out, std::string_view type, unsigned version, std::uint32_t flags) : Box(out, type)
    {
        m_out.U8(version);
        m_out.U24(flags);
    }
};

}   // namespace QZ::Platform::Movie
