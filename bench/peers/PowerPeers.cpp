// SPDX-License-Identifier: MIT
// x^2.4 over an array of floats: nanoseconds a value.
#include <immintrin.h>
#include <sleef.h>

#include <cmath>
#include <random>

#include "QZ/Foundation/Color/CColorRows.h"
#include "bench/peers/Peers.h"

namespace QZ::Bench {

void SleefRowOf512(const float* in, float* out, std::size_t n);   // SleefOf512.cpp

using Foundation::CColorRows;

namespace {

constexpr std::size_t kValues = 3 * 4096;   // stays in the nearest cache

const std::vector<Color>& Values()
{
    static const std::vector<Color> values = [] {
        std::vector<Color> v(kValues / 3);
        std::mt19937 random(1);
        for (Color& c : v)
            for (int i = 0; i < 3; ++i)
                c[i] = static_cast<float>(random() >> 8) * 0x1p-24f;
        return v;
    }();
    return values;
}

std::vector<Color>& Out()
{
    static std::vector<Color> out(kValues / 3);
    return out;
}

void CountValues(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kValues));
}

/// Three loads and stores of colours a power included.
void QZ_Power(benchmark::State& state)
{
    for (auto _ : state) {
        CColorRows::NonlinearToLinearToneCurve(true, false, Values(), Out());
        benchmark::ClobberMemory();
    }
    CountValues(state);
}
void C_Power(benchmark::State& state)
{
    const float* in = &Values()[0].x;
    float* out = &Out()[0].x;
    for (auto _ : state) {
        for (std::size_t i = 0; i < kValues; ++i)
            out[i] = std::pow(in[i], 2.2f);
        benchmark::ClobberMemory();
    }
    CountValues(state);
}
void SleefRowOf256(const float* in, float* out, std::size_t n)
{
    for (std::size_t i = 0; i < n; i += 8)
        _mm256_storeu_ps(out + i, Sleef_powf8_u10avx2(_mm256_loadu_ps(in + i), _mm256_set1_ps(2.2f)));
}
/// By the widest vectors that the processor has, as the library does it.
void Sleef_Power(benchmark::State& state)
{
    const auto row = __builtin_cpu_supports("avx512f") ? SleefRowOf512 : SleefRowOf256;
    for (auto _ : state) {
        row(&Values()[0].x, &Out()[0].x, kValues);
        benchmark::ClobberMemory();
    }
    CountValues(state);
}

BENCHMARK(QZ_Power);
BENCHMARK(C_Power);
BENCHMARK(Sleef_Power);

}   // namespace
}   // namespace QZ::Bench
