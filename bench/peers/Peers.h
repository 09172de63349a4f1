// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <vector>

#include "QZ/Math/CVector3.h"
#include "bench/Support/Photograph.h"

namespace QZ::Bench {

using Color = Math::CVector3<float>;

/// The picture that everything here works on.
inline const Photograph& Picture()
{
    static const Photograph picture = MakePhotograph();
    return picture;
}

/// Counts the pixels of a whole picture, so that the report shows pixels a second.
inline void CountPixels(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * Picture().Pixels());
}

/// Registers a benchmark of a whole picture: the processor's time in all threads counts.
#define QZ_PEER(function) BENCHMARK(function)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()

/// A float colour for each pixel of the picture, written once so that no benchmark pays for fresh pages.
inline std::vector<Color>& Scratch()
{
    static std::vector<Color> colors(static_cast<std::size_t>(Picture().Pixels()));
    return colors;
}

}   // namespace QZ::Bench
