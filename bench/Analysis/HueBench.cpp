// SPDX-License-Identifier: MIT

/// \file
/// Hues and white balance of one megapixel: the time of an iteration is the time per megapixel.

#include <benchmark/benchmark.h>

#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"
#include "bench/Support/Photograph.h"

namespace {

using namespace QZ::Foundation;
using Hues = CHueWeightedHistogramHierarchicalClusterQuantization;

constexpr int kSide = 1000;

const QZ::Bench::Photograph& Picture()
{
    static const QZ::Bench::Photograph picture = QZ::Bench::MakePhotograph(kSide, kSide);
    return picture;
}

const std::vector<QZ::Math::CVector3<float>>& Linear()
{
    static const auto linear = [] {
        std::vector<QZ::Math::CVector3<float>> out;
        CWhiteBalance::UCharToCVector3fBuffer(true, kSide, kSide, Picture().rgba.data(), out);
        return out;
    }();
    return linear;
}

void PTMedianCut(benchmark::State& state)
{
    for (auto _ : state) {
        CPTMedianCutQuantization quantization;
        quantization.Compute(256, 6, kSide, kSide, CColor::eD65, Picture().rgba.data());
        benchmark::DoNotOptimize(quantization.binColours.data());
    }
}
BENCHMARK(PTMedianCut)->Unit(benchmark::kMillisecond);

void HueClusters(benchmark::State& state)
{
    const auto space = static_cast<CHueWeightedHistogram::EHueColorSpace>(state.range(0));
    for (auto _ : state) {
        Hues hues;
        hues.Compute(256, 6, 0.0, space, true, CColor::eD65, Hues::eDirection, kSide, kSide,
                     Picture().rgba.data());
        benchmark::DoNotOptimize(hues.binColours.data());
    }
}
BENCHMARK(HueClusters)->ArgName("space")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void PTRecolor(benchmark::State& state)
{
    CPTMedianCutQuantization quantization;
    quantization.Compute(256, 6, kSide, kSide, CColor::eD65, Picture().rgba.data());
    std::vector<unsigned char> rgba = Picture().rgba;
    for (auto _ : state)
        quantization.Recolor(kSide, kSide, CColor::eD65, rgba.data());
}
BENCHMARK(PTRecolor)->Unit(benchmark::kMillisecond);

void HueRecolor(benchmark::State& state)
{
    Hues hues;
    hues.Compute(256, 6, 0.0, CHueWeightedHistogram::eIPT, true, CColor::eD65, Hues::eDirection, kSide, kSide,
                 Picture().rgba.data());
    std::vector<unsigned char> rgba = Picture().rgba;
    for (auto _ : state)
        hues.Recolor(kSide, kSide, CColor::eD65, rgba.data());
}
BENCHMARK(HueRecolor)->Unit(benchmark::kMillisecond);

CHueAndGrayscaleQuantizationTest Posterised()
{
    CHueAndGrayscaleQuantizationTest quantization;
    quantization.Compute(0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 6, 0.0, 4, 0.0, 0.3f,
                         CGrayscaleWeightedHistogram::eLXX, true, CColor::eD65, kSide, kSide,
                         Picture().rgba.data());
    return quantization;
}

void HueAndGrayscaleCompute(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Posterised().palette.data());
}
BENCHMARK(HueAndGrayscaleCompute)->Unit(benchmark::kMillisecond);

void HueAndGrayscaleQuantize(benchmark::State& state)
{
    const CHueAndGrayscaleQuantizationTest quantization = Posterised();
    std::vector<unsigned char> out(2 * kSide * kSide);
    for (auto _ : state)
        quantization.Quantize(true, CColor::eD65, kSide, kSide, Picture().rgba.data(), out.data());
}
BENCHMARK(HueAndGrayscaleQuantize)->Unit(benchmark::kMillisecond);

void WhiteBalanceDecode(benchmark::State& state)
{
    std::vector<QZ::Math::CVector3<float>> linear;
    for (auto _ : state)
        CWhiteBalance::UCharToCVector3fBuffer(true, kSide, kSide, Picture().rgba.data(), linear);
}
BENCHMARK(WhiteBalanceDecode)->Unit(benchmark::kMillisecond);

using Estimator = void (*)(CColor::EIlluminant, bool, bool, int, int,
                           const std::vector<QZ::Math::CVector3<float>>&, QZ::Math::CMatrix3<float>&);
void Estimate(benchmark::State& state, Estimator estimator)
{
    QZ::Math::CMatrix3<float> matrix;
    for (auto _ : state) {
        estimator(CColor::eD65, true, false, kSide, kSide, Linear(), matrix);
        benchmark::DoNotOptimize(matrix);
    }
}
BENCHMARK_CAPTURE(Estimate, GrayWorld, &CWhiteBalance::GrayWorld)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Estimate, MaxGray, &CWhiteBalance::MaxGray)->Unit(benchmark::kMillisecond);

void EstimateLSRS(benchmark::State& state)
{
    QZ::Math::CMatrix3<float> matrix;
    for (auto _ : state) {
        CWhiteBalance::LSRS(CColor::eD65, true, false, state.range(0) != 0, kSide, kSide, Linear(), matrix);
        benchmark::DoNotOptimize(matrix);
    }
}
BENCHMARK(EstimateLSRS)->ArgName("largeTiles")->DenseRange(0, 1)->Unit(benchmark::kMillisecond);

void Balance(benchmark::State& state)
{
    std::vector<unsigned char> rgba(4 * kSide * kSide);
    for (auto _ : state)
        CWhiteBalance::Balance(CColor::eD65, state.range(0) != 0, state.range(1) != 0, {1.1f, 1.0f, 0.6f},
                               kSide, kSide, Linear(), rgba.data());
}
BENCHMARK(Balance)
    ->ArgNames({"nonlinear", "displayP3"})
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

}   // namespace
