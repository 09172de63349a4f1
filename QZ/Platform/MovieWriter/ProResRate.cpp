// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/ProResRate.h"

#include <cstdint>
#include <iterator>

namespace QZ::Platform::Movie {

namespace {
// Bits of a macroblock: 42e6 / 29.97 / (45 x 31), 147e6 / 59.94 / (80 x 45), 147e6 / 29.97 / (120 x 68).
constexpr std::size_t kBitsSmall = 1004, kBitsMiddle = 681, kBitsLarge = 601;
constexpr std::size_t kMostSmall = 1620, kMostMiddle = 3600;   // macroblocks: 720 x 576, 1280 x 720

// Below this part of the target a finer quantiser is worth its bits.
constexpr double kRoom = 0.9;

/// How a picture's size changes, at most, from one quantiser to another.
double Ratio(std::size_t from, std::size_t to)
{
    return static_cast<double>(kProResQuantisers[from]) / kProResQuantisers[to];
}
}   // namespace

std::size_t ProResTargetSize(int width, int height)
{
    const std::size_t macroblocks =
        static_cast<std::size_t>((width + 15) / 16) * static_cast<std::size_t>((height + 15) / 16);
    const std::size_t bits = macroblocks <= kMostSmall    ? kBitsSmall
                             : macroblocks <= kMostMiddle ? kBitsMiddle
                                                          : kBitsLarge;
    return macroblocks * bits / 8;
}

std::size_t NextProResQuantiser(std::size_t index, std::size_t size, std::size_t target)
{
    const std::size_t last = std::size(kProResQuantisers) - 1;
    const auto limit = static_cast<double>(target);
    auto expected = static_cast<double>(size);
    if (index > 0 && expected * Ratio(index, index - 1) <= kRoom * limit)
        return index - 1;
    while (expected > limit && index < last) {
        expected *= Ratio(index, index + 1);
        ++index;
    }
    return index;
}

}   // namespace QZ::Platform::Movie
