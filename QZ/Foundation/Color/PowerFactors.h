// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

#include "QZ/Foundation/Color/ElementaryTables.h"
#include "QZ/Foundation/Color/Exponent.h"

namespace QZ::Foundation {

/// Sixteen doubles to look up.
struct LookupTable {
    double entries[16];
    std::uint32_t lowWords[16];   ///< the halves of the entries, for what permutes words alone
    std::uint32_t highWords[16];

    constexpr explicit LookupTable(const double (&numbers)[16], double factor = 1.0)
        : entries(), lowWords(), highWords()
    {
        for (int i = 0; i < 16; ++i) {
            entries[i] = numbers[i] * factor;
            const auto bits = std::bit_cast<std::uint64_t>(entries[i]);
            lowWords[i] = static_cast<std::uint32_t>(bits);
            highWords[i] = static_cast<std::uint32_t>(bits >> 32);
        }
    }
};

/// The factors of a fixed power that depend on a number's interval and exponent.
template <Exponent exponent>
struct PowerFactors {
    static constexpr const ElementaryTables::Power& power =
        ElementaryTables::kPowers[static_cast<int>(exponent)];
    static constexpr LookupTable intervals{power.intervals};
    static constexpr LookupTable unitIntervals{power.intervals, power.binaryHigh[7]};   ///< from 2^-15 to 2
    static constexpr LookupTable binaryLow{power.binaryLow};
    static constexpr LookupTable binaryHigh{power.binaryHigh};
};

}   // namespace QZ::Foundation
