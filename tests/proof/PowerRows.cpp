// SPDX-License-Identifier: MIT
#include "tests/proof/PowerRows.h"

#include <type_traits>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tests/proof/PowerRows.cpp"
#include <hwy/foreach_target.h>

#include "QZ/Foundation/Color/Elementary.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

template <Exponent exponent>
HWY_FLATTEN void LaneRow(const float* x, std::size_t n, float* out)
{
    const Lane::Tag tag;
    for (std::size_t i = 0; i < n; i += Lane::Size())
        hn::StoreU(Pow<exponent>(Lane(hn::LoadU(tag, x + i))).vector, tag, out + i);
}

template <Exponent exponent>
void SingleRow(const float* x, std::size_t n, float* out)
{
    for (std::size_t i = 0; i < n; ++i)
        out[i] = Pow<exponent>(x[i]);
}

/// Calls f with the exponent as a constant.
template <class Function>
void WithConstant(Exponent exponent, const Function& f)
{
    const auto tryEach = [&]<int... i>(std::integer_sequence<int, i...>)
    {
        ((static_cast<int>(exponent) == i ? f(std::integral_constant<Exponent, Exponent{i}>()) : void()),
         ...);
    };
    tryEach(std::make_integer_sequence<int, static_cast<int>(Exponent::k3) + 1>());
}

void Lanes(Exponent exponent, const float* x, std::size_t n, float* out)
{
    WithConstant(exponent, [&](auto e) { LaneRow<e()>(x, n, out); });
}

[[maybe_unused]] const auto& kEntry = AllPowersOfLanes().emplace_back(PowersOfLanes{HWY_TARGET, Lanes});

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QZ::Foundation {

void PowersOfSingles(Exponent exponent, const float* x, std::size_t n, float* out)
{
    QZ_TARGET::WithConstant(exponent, [&](auto e) { QZ_TARGET::SingleRow<e()>(x, n, out); });
}

std::vector<PowersOfLanes>& AllPowersOfLanes()
{
    static std::vector<PowersOfLanes> all;
    return all;
}

}   // namespace QZ::Foundation
#endif
