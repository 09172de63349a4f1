// SPDX-License-Identifier: MIT

/// \file
/// The elementary functions in double precision beside those of the C library.

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Math/Detail/Elementary.h"

namespace {

namespace Double = QZ::Foundation::Double;

/// Of one double at a time from 0 to 1.
template <class Function>
void InDouble(benchmark::State& state, Function&& function)
{
    std::mt19937_64 random(1);
    std::vector<double> in(4096);
    for (double& x : in)
        x = static_cast<double>(random() >> 11) * 0x1p-53;
    for (auto _ : state)
        for (const double x : in)
            benchmark::DoNotOptimize(function(x));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}

template <class Function>
void Register(const std::string& name, Function function)
{
    benchmark::RegisterBenchmark(("InDouble/" + name).c_str(),
                                 [function](benchmark::State& state) { InDouble(state, function); });
}

[[maybe_unused]] const bool kRegistered = [] {
    Register("Pow2.4", [](double x) { return Double::Pow(x, 2.4); });
    Register("Pow2.4/C", [](double x) { return std::pow(x, 2.4); });
    Register("Pow2.4/InPairs", [](double x) { return Double::InPairs::Pow(x, 2.4); });
    Register("Exp", [](double x) { return QZ::Math::Detail::Exp(x); });
    Register("Exp/C", [](double x) { return std::exp(x); });
    Register("Sin", [](double x) { return Double::Sin(6.0 * x); });
    Register("Sin/C", [](double x) { return std::sin(6.0 * x); });
    Register("Cos", [](double x) { return Double::Cos(6.0 * x); });
    Register("Cos/C", [](double x) { return std::cos(6.0 * x); });
    Register("Atan2", [](double x) { return Double::Atan2(x - 0.5, 0.25 - x * x); });
    Register("Atan2/C", [](double x) { return std::atan2(x - 0.5, 0.25 - x * x); });
    Register("Acos", [](double x) { return Double::Acos(x); });
    Register("Acos/C", [](double x) { return std::acos(x); });
    Register("Cube", [](double x) { return Double::Cube(x); });
    return true;
}();

}   // namespace
