// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// The table of maximum chromas. The program that writes the precomputed copy and the library share it.

#include <cstddef>
#include <vector>

#include "QZ/Foundation/Color/Formulas/HSLuv.h"

namespace QZ::Foundation::MaximumChroma {

/// Hues and lightnesses of the precomputed table.
inline constexpr int precomputedCount = 256;

/// See CLUVMaximumChromaMap::PreComputedHalfFloatsAsUnsignedInts(). Defined by a generated source.
extern const unsigned int precomputed[precomputedCount * precomputedCount / 2];

/// See CLUVMaximumChromaMap::Compute().
inline std::vector<float> Table(int hueCount, int lightnessCount)
{
    std::vector<float> table(static_cast<std::size_t>(static_cast<long long>(hueCount) * lightnessCount));
    if (lightnessCount <= 0 || hueCount <= 0)
        return table;
    const float stepL = 100.0f / static_cast<float>(lightnessCount - 1);
    const float stepH = 360.0f / static_cast<float>(hueCount);
    const float offset = 0.5f * stepH + -180.0f;
    auto entry = table.begin();
    for (int i = 0; i < lightnessCount; ++i) {
        const double L = i == lightnessCount - 1 ? 100.0 : double{static_cast<float>(i) * stepL};
        for (int j = 0; j < hueCount; ++j) {
            const float h = static_cast<float>(j) * stepH + offset;
            const double c = HSLuv::MaxChromaForLH(L, double{h < 0.0f ? h + 360.0f : h});
            const float value = static_cast<float>(c) * 0.01f;
            *entry++ = value > 0.0f ? value : 0.0f;
        }
    }
    return table;
}

}   // namespace QZ::Foundation::MaximumChroma
