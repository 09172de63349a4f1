// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>
#include <cstddef>

#include "QZ/Foundation/Analysis/COtsuMethod.h"
#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/MedianCut.h"
#include "QZ/Foundation/Color/CConvert.h"
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"
#include "bench/Support/Photograph.h"

using namespace QZ::Foundation;

namespace {

const QZ::Bench::Photograph& Picture()
{
    static const QZ::Bench::Photograph picture = QZ::Bench::MakePhotograph();
    return picture;
}

/// The grey levels of the picture.
const CGrayscaleWeightedHistogram& Levels()
{
    static const CGrayscaleWeightedHistogram histogram = [] {
        CGrayscaleWeightedHistogram h;
        h.Compute(CGrayscaleWeightedHistogram::eLXX, true, CColor::eD65, Picture().width, Picture().height,
                  Picture().rgba.data(), 0, 0, nullptr);
        return h;
    }();
    return histogram;
}

const std::vector<int>& Counts()
{
    static const std::vector<int> counts(Levels().bins.begin(), Levels().bins.end());
    return counts;
}

/// From picture to table.
void EightGreysByClusters(benchmark::State& state)
{
    const auto& picture = Picture();
    for (auto _ : state) {
        CGrayscaleHistogramHierarchicalClusterQuantization quantizer;
        quantizer.Compute(0, 1, 1, 0, 1, 1, 0, 8, 0.0, CGrayscaleWeightedHistogram::eLXX, true, CColor::eD65,
                          picture.width, picture.height, picture.rgba.data(), 0, 0, nullptr);
        benchmark::DoNotOptimize(quantizer.table.data());
    }
}

void EightGreysByMedianCut(benchmark::State& state)
{
    const auto& picture = Picture();
    for (auto _ : state) {
        CGrayscaleHistogramMedianCutQuantization quantizer;
        quantizer.Compute(0, 1, 1, 0, 1, 8, picture.width, picture.height, 4, 1, 0, picture.rgba.data());
        benchmark::DoNotOptimize(quantizer.table.data());
    }
}

/// From histogram to table.
void ClusterLevels(benchmark::State& state)
{
    for (auto _ : state) {
        CGrayscaleHistogramHierarchicalClusterQuantization quantizer;
        quantizer.Compute(0, 1, 1, 0, 1, 1, 0, 8, 0.0, Levels());
        benchmark::DoNotOptimize(quantizer.table.data());
    }
}

void CutLevels(benchmark::State& state)
{
    for (auto _ : state) {
        CMedianCut cut;
        cut.Compute(Counts(), Picture().Pixels(), 8, 0, 255);
        benchmark::DoNotOptimize(cut.segments.data());
    }
}

void CutCircle(benchmark::State& state)
{
    for (auto _ : state) {
        CCircularMedianCut cut;
        cut.Compute(Counts(), Picture().Pixels(), 8);
        benchmark::DoNotOptimize(cut.segments.data());
    }
}

void Otsu(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(COtsuMethod<double, int>::Solution(Picture().Pixels(), Counts()));
}

void ToneCurve(benchmark::State& state)
{
    CGrayscaleToneCurve curve;
    for (auto _ : state) {
        curve.Compute(0.1f, 0.9f, 2.2f, 0.5f, 0.75f);
        benchmark::DoNotOptimize(curve.lookupTable.data());
    }
}

/// A million floats; the counter is in floats a second.
void FloatToHalfFloat(benchmark::State& state)
{
    constexpr std::size_t kFloats = 1 << 20;
    std::vector<float> floats(kFloats);
    for (std::size_t i = 0; i < kFloats; ++i)
        floats[i] = static_cast<float>(i) * 1e-5f;
    std::vector<_Float16> halves(kFloats);
    for (auto _ : state) {
        CConvert::FloatToHalfFloat(floats.data(), halves.data(), kFloats);
        benchmark::DoNotOptimize(halves.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kFloats));
}

}   // namespace

BENCHMARK(EightGreysByClusters)->Unit(benchmark::kMillisecond);
BENCHMARK(EightGreysByMedianCut)->Unit(benchmark::kMillisecond);
BENCHMARK(ClusterLevels)->Unit(benchmark::kMicrosecond);
BENCHMARK(CutLevels)->Unit(benchmark::kMicrosecond);
BENCHMARK(CutCircle)->Unit(benchmark::kMicrosecond);
BENCHMARK(Otsu)->Unit(benchmark::kMicrosecond);
BENCHMARK(ToneCurve)->Unit(benchmark::kMicrosecond);
BENCHMARK(FloatToHalfFloat);
