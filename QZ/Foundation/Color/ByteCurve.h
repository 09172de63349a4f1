// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "QZ/Foundation/Color/ByteEstimate.h"

namespace QZ::Foundation {

/// A nondecreasing function from 0 up to 2 to a byte, by its thresholds: the byte of a curve without its
/// power.
///
/// The floats fall into cells by their exponent and seven bits of their mantissa, which are narrow enough for
/// one threshold each. A cell holds the byte at its start in the upper half; in the lower half, what brings
/// the lower half of a float's bits to an overflow from the threshold on.
class ByteCurve {
public:
    /// What greater arguments count as: the last float before 2.
    static constexpr float kMost = 0x1.fffffep+0f;

    enum class Rounding {
        eNearest,   ///< halves up
        eDown,
    };

    /// \param unitOf  a nondecreasing curve, which is clamped to 0 to 1, taken 255 times and rounded. It gives
    ///                0 for 0 and 1 before 2 is reached; its steps lie no closer than a 1/128 of their place.
    ByteCurve(float (*unitOf)(float), Rounding rounding);

    /// The byte of x brought between 0 and 2; NaN counts as 0.
    unsigned char operator()(float x) const
    {
        const float inRange = x > Lowest() ? (x < kMost ? x : kMost) : Lowest();
        const auto bits = std::bit_cast<std::uint32_t>(inRange);
        return static_cast<unsigned char>((m_cells[(bits >> 16) - m_first] + (bits & 0xffffu)) >> 16);
    }

    /// The start of the first cell, whose byte is 0.
    [[nodiscard]] float Lowest() const { return std::bit_cast<float>(m_first << 16); }
    /// The upper half of the bits of Lowest().
    [[nodiscard]] std::uint32_t FirstCell() const { return m_first; }
    [[nodiscard]] const std::uint32_t* Cells() const { return m_cells.data(); }
    /// The same byte for less, mostly.
    [[nodiscard]] const ByteEstimate& Estimate() const { return m_estimate; }

private:
    std::uint32_t m_first = 0;
    std::vector<std::uint32_t> m_cells;
    ByteEstimate m_estimate;
};

/// \name Curves of the library, built once
/// \{

/// Linear light encoded as LinearToNonlinearToneCurve() does it, times 255 and rounded, halves up.
const ByteCurve& EncodedByte(bool useGamma22);
/// The same by the sRGB curve, but truncated.
const ByteCurve& TruncatedSRGBByte();
/// CIE lightness of a luminance, times 255 and rounded, halves up.
const ByteCurve& LightnessByte();
/// Times 255 and rounded, halves up.
const ByteCurve& UnitByte();
/// Times 255 and truncated.
const ByteCurve& TruncatedUnitByte();
/// \}

}   // namespace QZ::Foundation
