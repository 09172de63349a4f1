// SPDX-License-Identifier: MIT

/// \file
/// What the elementary functions work in: a double for a float. WideLane.h says the same of a Lane.

#if defined(QZ_FOUNDATION_COLOR_WIDE) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_WIDE
#undef QZ_FOUNDATION_COLOR_WIDE
#else
#define QZ_FOUNDATION_COLOR_WIDE
#endif

#include <bit>
#include <cstdint>

#include "QZ/Foundation/Color/Lane.h"
#include "QZ/Foundation/Color/PowerFactors.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <int bits>
HWY_INLINE std::uint64_t ShiftRight(std::uint64_t x)
{
    return x >> bits;
}

HWY_INLINE double Widen(float x)
{
    return static_cast<double>(x);
}

/// Rounds to nearest, subnormal results too; too large becomes infinite.
HWY_INLINE float Narrow(double x)
{
    return static_cast<float>(x);
}

/// The bits of the exponent and the first four of the mantissa.
HWY_INLINE std::uint32_t CellOf(float x)
{
    return std::bit_cast<std::uint32_t>(x) >> 19;
}
HWY_INLINE std::uint64_t Widen(std::uint32_t cell)
{
    return cell;
}

/// The mantissa of a normal float: its magnitude over a power of 2, from 1 to 2.
HWY_INLINE float Mantissa(float x)
{
    return std::bit_cast<float>((std::bit_cast<std::uint32_t>(x) & 0x007fffffu) | 0x3f800000u);
}

/// The entry at the low four bits of an index.
HWY_INLINE double Lookup(const LookupTable& table, std::uint64_t index)
{
    return table.entries[index & 15];
}

/// x * table[cell & 15] - 1 for what makes it a float.
HWY_INLINE double TimesEntryLess1(float x, const float (&table)[16], std::uint32_t cell)
{
    return Widen(x) * Widen(table[cell & 15]) - 1.0;
}

/// Whether the middle between two floats lies less than 2^-43 of its power of 2 away. Where none does, all
/// doubles within that distance round to the same float. For magnitudes of normal floats.
HWY_INLINE bool AreNearMidpoint(double x)
{
    // Of the 29 bits that a float has not, the middle sets the first alone.
    constexpr std::uint64_t kMiddle = 0x10000000;
    constexpr std::uint64_t kReach = 0x200;
    return ((std::bit_cast<std::uint64_t>(x) + (kReach - kMiddle)) & (2 * kMiddle - 2 * kReach)) == 0;
}

/// a b + c with one rounding or two: only for what is tested for its rounding afterwards.
HWY_INLINE double MulAdd(double a, double b, double c)
{
    return a * b + c;
}

/// An integer of at most 2^51 in magnitude, in two forms.
template <class W>
struct Rounded {
    W shifted;   ///< the integer in the low bits
    W value;
};

/// The nearest integer, ties to even.
template <class W>
HWY_INLINE Rounded<W> RoundToInteger(W x)
{
    const W shift(6755399441055744.0);   // 1.5 2^52
    const W shifted = x + shift;
    return {shifted, shifted - shift};
}

/// 2^n for n from -1022 to 1023.
HWY_INLINE double PowerOf2(Rounded<double> n)
{
    return std::bit_cast<double>((std::bit_cast<std::uint64_t>(n.shifted) + 1023u) << 52);
}

/// a where the integer is odd, b elsewhere.
HWY_INLINE double SelectOdd(Rounded<double> n, double a, double b)
{
    return (std::bit_cast<std::uint64_t>(n.shifted) & 1) != 0 ? a : b;
}

/// x, its sign changed where that bit of the integer is set.
template <int bit>
HWY_INLINE double NegateWhere(Rounded<double> n, double x)
{
    const std::uint64_t sign = (std::bit_cast<std::uint64_t>(n.shifted) >> bit) << 63;
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) ^ sign);
}

/// The mask of floats for a selection of doubles.
HWY_INLINE bool WidenMask(bool mask)
{
    return mask;
}

HWY_INLINE double Select(bool mask, double a, double b)
{
    return mask ? a : b;
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
