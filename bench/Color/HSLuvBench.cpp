// SPDX-License-Identifier: MIT

/// \file
/// HSLuv, one colour at a time, and the maximum chroma, directly and as a table.

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"
#include "QZ/Foundation/Color/HSLuv.h"

namespace {

using QZ::Foundation::CColor;
using QZ::Foundation::CLUVMaximumChromaMap;

constexpr std::size_t kColors = 1024;

/// Numbers from 0 to 1, evenly spread and in no order.
double Number(std::size_t i)
{
    const double turns = 0.6180339887498949 * static_cast<double>(i + 1);
    return turns - std::floor(turns);
}

using Conversion = void (*)(double, double, double, double*, double*, double*);
void Convert(benchmark::State& state, Conversion conversion, double first, double others)
{
    double a = 0.0, b = 0.0, c = 0.0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < kColors; ++i) {
            conversion(first * Number(i), others * Number(2 * i), others * Number(3 * i), &a, &b, &c);
            benchmark::DoNotOptimize(a);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kColors));
}
BENCHMARK_CAPTURE(Convert, rgbToHusl, &rgbToHusl, 1.0, 1.0);
BENCHMARK_CAPTURE(Convert, rgbToHuslp, &rgbToHuslp, 1.0, 1.0);
BENCHMARK_CAPTURE(Convert, huslToRgb, &huslToRgb, 360.0, 100.0);
BENCHMARK_CAPTURE(Convert, huslpToRgb, &huslpToRgb, 360.0, 100.0);

void LimitLuvChroma(benchmark::State& state)
{
    for (auto _ : state) {
        for (std::size_t i = 0; i < kColors; ++i) {
            QZ::Math::CVector3<float> luv(static_cast<float>(Number(i)),
                                          static_cast<float>(2.0 * Number(2 * i) - 1.0),
                                          static_cast<float>(2.0 * Number(3 * i) - 1.0));
            CColor::LimitLuvChroma(luv);
            benchmark::DoNotOptimize(luv);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kColors));
}
BENCHMARK(LimitLuvChroma);

void ComputeMaximumChromaMap(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(CLUVMaximumChromaMap::Compute(256, 256));
    state.SetItemsProcessed(state.iterations() * 65536);
}
BENCHMARK(ComputeMaximumChromaMap)->Unit(benchmark::kMillisecond);

}   // namespace
