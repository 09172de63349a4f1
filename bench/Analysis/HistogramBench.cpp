// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "bench/Support/Photograph.h"

using namespace QZ::Foundation;

namespace {

const QZ::Bench::Photograph& Picture()
{
    static const QZ::Bench::Photograph picture = QZ::Bench::MakePhotograph();
    return picture;
}

/// Megapixels a second.
void CountPixels(benchmark::State& state)
{
    state.counters["MP/s"] = benchmark::Counter(static_cast<double>(Picture().Pixels()) * 1e-6,
                                                benchmark::Counter::kIsIterationInvariantRate);
}

void ByteHistogram(benchmark::State& state, int stride)
{
    const auto& picture = Picture();
    for (auto _ : state) {
        CGrayscaleHistogram histogram;
        histogram.Compute(picture.width, picture.height, stride, 0, picture.rgba.data());
        benchmark::DoNotOptimize(histogram.bins.data());
    }
    CountPixels(state);
}

void WeightedHistogram(benchmark::State& state, CGrayscaleWeightedHistogram::EGrayscaleFrom from,
                       bool hasMask)
{
    const auto& picture = Picture();
    for (auto _ : state) {
        CGrayscaleWeightedHistogram histogram;
        histogram.Compute(from, true, CColor::eD65, picture.width, picture.height, picture.rgba.data(), 4, 3,
                          hasMask ? picture.rgba.data() : nullptr);
        benchmark::DoNotOptimize(histogram.bins.data());
    }
    CountPixels(state);
}

void KDEHistogram(benchmark::State& state)
{
    const auto& picture = Picture();
    for (auto _ : state) {
        CGrayscaleKDEHistogram histogram;
        histogram.Compute(picture.width, picture.height, 0.0, 4, 1, picture.rgba.data());
        benchmark::DoNotOptimize(histogram.bins.data());
    }
    CountPixels(state);
}

void PTHistogram(benchmark::State& state)
{
    const auto& picture = Picture();
    for (auto _ : state) {
        CPTHistogram histogram;
        histogram.Compute(360, CColor::eD65, picture.Pixels(), picture.rgba.data());
        benchmark::DoNotOptimize(histogram.counts.data());
    }
    CountPixels(state);
}

void HueHistogram(benchmark::State& state, CHueWeightedHistogram::EHueColorSpace space)
{
    const auto& picture = Picture();
    for (auto _ : state) {
        CHueWeightedHistogram histogram;
        histogram.Compute(360, space, true, CColor::eD65, picture.Pixels(), picture.rgba.data());
        benchmark::DoNotOptimize(histogram.weights.data());
    }
    CountPixels(state);
}

}   // namespace

BENCHMARK_CAPTURE(ByteHistogram, stride1, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ByteHistogram, stride4, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WeightedHistogram, lightness, CGrayscaleWeightedHistogram::eLXX, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WeightedHistogram, lightness_masked, CGrayscaleWeightedHistogram::eLXX, true)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WeightedHistogram, luminance, CGrayscaleWeightedHistogram::eNonlinearY, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WeightedHistogram, fourth, CGrayscaleWeightedHistogram::eFourthChannel, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(KDEHistogram)->Unit(benchmark::kMillisecond);
BENCHMARK(PTHistogram)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(HueHistogram, Lab, CHueWeightedHistogram::eLab)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(HueHistogram, Luv, CHueWeightedHistogram::eLuv)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(HueHistogram, IPT, CHueWeightedHistogram::eIPT)->Unit(benchmark::kMillisecond);
