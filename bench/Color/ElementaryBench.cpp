// SPDX-License-Identifier: MIT
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "bench/Color/ElementaryBench.cpp"
#include <hwy/foreach_target.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "QZ/Foundation/Color/Elementary.h"

// Nanoseconds a value of the elementary functions: by the C library, one float at a time, and by the vectors
// of each instruction set.

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <auto function>
HWY_FLATTEN void LanesOf(const std::vector<float>& in, std::vector<float>& out)
{
    const Lane::Tag tag;
    for (std::size_t i = 0; i < in.size(); i += Lane::Size())
        hn::StoreU(function(Lane(hn::LoadU(tag, &in[i]))).vector, tag, &out[i]);
}

template <auto function>
void SinglesOf(const std::vector<float>& in, std::vector<float>& out)
{
    for (std::size_t i = 0; i < in.size(); ++i)
        out[i] = function(in[i]);
}

template <class Row>
void Register(const std::string& name, Row* row)
{
    benchmark::RegisterBenchmark(name.c_str(), [row](benchmark::State& state) {
        std::mt19937 random(1);
        std::vector<float> in(4096);   // stays in the nearest cache
        for (float& x : in)
            x = static_cast<float>(random() >> 8) * 0x1p-24f;
        std::vector<float> out(in.size());
        for (auto _ : state) {
            row(in, out);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
    });
}

bool RegisterLanes()
{
    if ((HWY_TARGET & hwy::SupportedTargets()) == 0)
        return false;
    const std::string target = std::string("/") + hwy::TargetName(HWY_TARGET);
    Register("Pow2.4" + target, LanesOf<[](Lane x) { return Pow<Exponent::k2_4>(x); }>);
    Register("Pow0.41666666" + target, LanesOf<[](Lane x) { return Pow<Exponent::k0_41666666>(x); }>);
    Register("Cube" + target, LanesOf<[](Lane x) { return Pow<Exponent::k3>(x); }>);
    Register("Exp" + target, LanesOf<[](Lane x) { return Exp(x); }>);
    Register("SinCos" + target, LanesOf<[](Lane x) {
                 const auto [sine, cosine] = SinCos(x * 3.0f);
                 return sine + cosine;
             }>);
    Register("Atan2" + target, LanesOf<[](Lane x) { return Atan2(x, Lane(0.3f)); }>);
    return true;
}

[[maybe_unused]] static const bool kLanes = RegisterLanes();

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QZ::Foundation::QZ_TARGET {

[[maybe_unused]] static const bool kSingles = [] {
    Register("Pow2.4/single", SinglesOf<[](float x) { return Pow<Exponent::k2_4>(x); }>);
    Register("Pow2.4/C", SinglesOf<[](float x) { return std::pow(x, 2.4f); }>);
    Register("Pow0.41666666/single", SinglesOf<[](float x) { return Pow<Exponent::k0_41666666>(x); }>);
    Register("Pow0.41666666/C", SinglesOf<[](float x) { return std::pow(x, 0.41666666f); }>);
    Register("Cube/single", SinglesOf<[](float x) { return Pow<Exponent::k3>(x); }>);
    Register("Cube/C", SinglesOf<[](float x) { return std::pow(x, 3.0f); }>);
    Register("Exp/single", SinglesOf<[](float x) { return Exp(x); }>);
    Register("Exp/C", SinglesOf<[](float x) { return std::exp(x); }>);
    Register("SinCos/single", SinglesOf<[](float x) {
                 const auto [sine, cosine] = SinCos(x * 3.0f);
                 return sine + cosine;
             }>);
    Register("SinCos/C", SinglesOf<[](float x) { return std::sin(x * 3.0f) + std::cos(x * 3.0f); }>);
    Register("Atan2/single", SinglesOf<[](float x) { return Atan2(x, 0.3f); }>);
    Register("Atan2/C", SinglesOf<[](float x) { return std::atan2(x, 0.3f); }>);
    return true;
}();

}   // namespace QZ::Foundation::QZ_TARGET
#endif
