// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <utility>
#include <vector>

#include "QZ/Foundation/Color/CColor.h"
#include "tests/Support/Floats.h"

/// \file
/// Colours to convert, and conversions that return their result.

namespace QZ::Math {

/// For the messages of failed expectations.
inline void PrintTo(const CVector3<float>& v, std::ostream* out)
{
    *out << '(' << v.x << ", " << v.y << ", " << v.z << ')';
}

}   // namespace QZ::Math

namespace QZ::Test {

using Color = Foundation::CColor;
using Colour = Math::CVector3<float>;
using Matrix = Math::CMatrix3<float>;

/// An illuminant value that is neither of the two names; it means D65.
inline constexpr auto kOtherIlluminant = static_cast<Color::EIlluminant>(7);
inline constexpr std::array kIlluminants = {Color::eD50, Color::eD65, kOtherIlluminant};
inline constexpr std::array kFlags = {false, true};

/// The colour that a conversion writes through its last argument: Converted(CColor::LabToXYZ, illuminant,
/// lab).
template <class Function, class... Arguments>
[[nodiscard]] Colour Converted(Function&& conversion, const Arguments&... arguments)
{
    Colour out(-77.0f, -77.0f, -77.0f);
    std::forward<Function>(conversion)(arguments..., out);
    return out;
}

/// The number that a conversion writes through its last argument.
template <class Function, class... Arguments>
[[nodiscard]] float Measured(Function&& conversion, const Arguments&... arguments)
{
    float out = -77.0f;
    std::forward<Function>(conversion)(arguments..., out);
    return out;
}

/// n random colours with each component in [low, high), the same in every run.
[[nodiscard]] inline std::vector<Colour> RandomColours(std::size_t n, float low = 0.0f, float high = 1.0f,
                                                       std::uint32_t seed = 1)
{
    const std::vector<float> values = Randoms(3 * n, low, high, seed);
    std::vector<Colour> colours;
    for (std::size_t i = 0; i < values.size(); i += 3)
        colours.emplace_back(values[i], values[i + 1], values[i + 2]);
    return colours;
}

/// n colours of EdgesAndRandoms().
[[nodiscard]] inline std::vector<Colour> EdgeColours(std::size_t n, std::uint32_t seed = 1)
{
    const std::vector<float> values = EdgesAndRandoms(3 * n, seed);
    std::vector<Colour> colours;
    for (std::size_t i = 0; i < values.size(); i += 3)
        colours.emplace_back(values[i], values[i + 1], values[i + 2]);
    return colours;
}

}   // namespace QZ::Test
