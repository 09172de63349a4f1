// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>

#include "QZ/Foundation/Color/CColor.h"

/// \file
/// The time that one call takes for one colour. The colours are random, so that no branch can be foreseen.

namespace QZ::Bench {

using Color = Foundation::CColor;
using Colour = Math::CVector3<float>;
inline constexpr Color::EIlluminant eD65 = Color::eD65;

inline constexpr std::size_t kColours = 4096;

/// Components in [0, 1), the same in every run.
inline const std::array<Colour, kColours>& RandomColours()
{
    static const auto colours = [] {
        std::mt19937 generator(1);
        const auto unit = [&generator] { return static_cast<float>(generator() >> 8) * 0x1p-24f; };
        std::array<Colour, kColours> values;
        for (Colour& colour : values) {
            colour.x = unit();
            colour.y = unit();
            colour.z = unit();
        }
        return values;
    }();
    return colours;
}

/// Registers a conversion, called as convert(const Colour& in) with a result of any type. The figure to read
/// is "per colour".
template <class Convert>
bool PerColour(const std::string& name, Convert convert)
{
    benchmark::RegisterBenchmark(name.c_str(), [convert](benchmark::State& state) {
        for (auto _ : state)
            for (const Colour& colour : RandomColours()) {
                auto out = convert(colour);
                benchmark::DoNotOptimize(out);
            }
        state.counters["per colour"] = benchmark::Counter(
            kColours, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    });
    return true;
}

/// The colour that a conversion writes through its last argument.
template <class Conversion, class... Arguments>
Colour Out(Conversion conversion, const Arguments&... arguments)
{
    Colour out;
    conversion(arguments..., out);
    return out;
}
/// The number that a conversion writes through its last argument.
template <class Conversion, class... Arguments>
float Number(Conversion conversion, const Arguments&... arguments)
{
    float out;
    conversion(arguments..., out);
    return out;
}

}   // namespace QZ::Bench
