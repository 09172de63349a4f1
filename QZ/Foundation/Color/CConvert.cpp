// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/CConvert.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace QZ::Foundation {

namespace {

static_assert(sizeof(_Float16) == sizeof(std::uint16_t));

/// The upper bits of `value` without its lowest `shift`, rounded to nearest, ties to even.
constexpr std::uint32_t RoundedShift(std::uint32_t value, std::uint32_t shift)
{
    const std::uint32_t isOdd = (value >> shift) & 1u;
    return (value + (1u << (shift - 1u)) - 1u + isOdd) >> shift;
}

/// In integers: a cast goes through the rounding mode, and on machines without half floats through a routine
/// of the compiler's own library.
constexpr std::uint16_t HalfBits(std::uint32_t bits)
{
    constexpr std::uint32_t kInfinity = 0x7F800000;
    constexpr std::uint32_t kAboveLargestHalf = 0x47800000;     // 2^16
    constexpr std::uint32_t kSmallestNormalHalf = 0x38800000;   // 2^-14
    constexpr std::uint32_t kHalfOfSmallest = 0x33000000;       // 2^-25
    constexpr std::uint32_t kHalfInfinity = 0x7C00;
    constexpr std::uint32_t kQuiet = 0x0200;

    const std::uint32_t sign = (bits >> 16) & 0x8000u;
    const std::uint32_t magnitude = bits & 0x7FFFFFFFu;
    std::uint32_t half = 0;
    if (magnitude > kInfinity) {
        half = kHalfInfinity | kQuiet | ((magnitude >> 13) & 0x3FFu);
    } else if (magnitude >= kAboveLargestHalf) {
        half = kHalfInfinity;
    } else if (magnitude >= kSmallestNormalHalf) {
        half = RoundedShift(magnitude - (112u << 23), 13);   // a carry goes into the exponent, up to infinity
    } else if (magnitude > kHalfOfSmallest) {
        const std::uint32_t significand = (magnitude & 0x7FFFFFu) | 0x800000u;
        half = RoundedShift(significand, 126u - (magnitude >> 23));
    }
    return static_cast<std::uint16_t>(sign | half);
}

/// A block is read before its halves are written, which lie at or before the floats that they come from. So
/// source and destination may start at the same place.
bool Convert(const void* source, void* destination, unsigned long count)
{
    if (count == 0)
        return true;
    if (source == nullptr || destination == nullptr)
        return false;
    constexpr unsigned long kBlock = 256;
    std::array<std::uint32_t, kBlock> floats;
    std::array<std::uint16_t, kBlock> halves;
    const auto* from = static_cast<const unsigned char*>(source);
    auto* to = static_cast<unsigned char*>(destination);
    for (unsigned long first = 0; first < count; first += kBlock) {
        const unsigned long n = std::min(kBlock, count - first);
        std::memcpy(floats.data(), from + first * sizeof(float), n * sizeof(float));
        std::transform(floats.begin(), floats.begin() + n, halves.begin(), HalfBits);
        std::memcpy(to + first * sizeof(_Float16), halves.data(), n * sizeof(_Float16));
    }
    return true;
}

}   // namespace

bool CConvert::FloatToHalfFloat(const float* source, _Float16* destination, unsigned long count)
{
    return Convert(source, destination, count);
}

bool CConvert::FloatToHalfFloat(float* buffer, unsigned long count)
{
    return Convert(buffer, buffer, count);
}

}   // namespace QZ::Foundation
