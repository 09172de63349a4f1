// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tests/Color/ElementaryLaneTest.cpp"
#include <hwy/foreach_target.h>

#include "QZ/Foundation/Color/Elementary.h"
#include "tests/Support/Floats.h"
#include "tests/Support/Targets.h"

// The functions of Elementary.h on whole vectors, against those on single floats.

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// Every function, one result after the other.
constexpr std::size_t kFunctionCount = 16;

template <class F>
HWY_INLINE void EveryFunction(F x, F y, F (&results)[kFunctionCount])
{
    results[0] = Pow<Exponent::k2_4>(x);
    results[1] = Pow<Exponent::k0_41666666>(x);
    results[2] = Pow<Exponent::k2_2>(x);
    results[3] = Pow<Exponent::k0_45454544>(x);
    results[4] = Pow<Exponent::k0_33333334>(x);
    results[5] = Pow<Exponent::k3>(x);
    results[6] = Pow<Exponent::k0_43>(x);
    results[7] = Pow<Exponent::k2_325581>(x);
    results[8] = Pow<Exponent::k2_2222223>(x);
    results[9] = Pow<Exponent::k0_45>(x);
    results[10] = Pow<Exponent::k1_961>(x);
    results[11] = Pow<Exponent::k0_5099439>(x);
    results[12] = Exp(x);
    results[13] = SinCos(x).sine;
    results[14] = SinCos(x).cosine;
    results[15] = Atan2(y, x);
}

/// out[kFunctionCount * i + f] is function f of x[i] and y[i]; n is a multiple of the vector's size.
void EveryFunctionOfRow(const float* x, const float* y, std::size_t n, float* out)
{
    std::vector<float> values(Lane::Size());
    for (std::size_t i = 0; i < n; i += Lane::Size()) {
        Lane results[kFunctionCount];
        EveryFunction(Lane(hn::LoadU(Lane::Tag(), x + i)), Lane(hn::LoadU(Lane::Tag(), y + i)), results);
        for (std::size_t f = 0; f < kFunctionCount; ++f) {
            hn::StoreU(results[f].vector, Lane::Tag(), values.data());
            for (std::size_t j = 0; j < Lane::Size(); ++j)
                out[kFunctionCount * (i + j) + f] = values[j];
        }
    }
}

void ExpOfRow(const float* x, std::size_t n, float* out)
{
    for (std::size_t i = 0; i < n; i += Lane::Size())
        hn::StoreU(Exp(Lane(hn::LoadU(Lane::Tag(), x + i))).vector, Lane::Tag(), out + i);
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace QZ::Foundation {
namespace {

HWY_EXPORT(EveryFunctionOfRow);
HWY_EXPORT(ExpOfRow);

class ElementaryOfLane : public Test::TargetTest {};
QZ_INSTANTIATE_TARGETS(ElementaryOfLane);

TEST_P(ElementaryOfLane, HasTheBitsOfSingleFloats)
{
    constexpr std::size_t n = 1 << 17;
    constexpr std::size_t kFunctionCount = QZ_TARGET::kFunctionCount;
    const std::vector<float> x = QZ::Test::EdgesAndRandoms(n, 21);
    const std::vector<float> y = QZ::Test::EdgesAndRandoms(n, 22);
    std::vector<float> row(kFunctionCount * n);
    HWY_DYNAMIC_DISPATCH(EveryFunctionOfRow)(x.data(), y.data(), n, row.data());
    for (std::size_t i = 0; i < n; ++i) {
        float single[kFunctionCount];
        QZ_TARGET::EveryFunction(x[i], y[i], single);
        for (std::size_t f = 0; f < kFunctionCount; ++f)
            ASSERT_TRUE(QZ::Test::SameBits(single[f], row[kFunctionCount * i + f]))
                << "function " << f << " of " << x[i] << ", " << y[i];
    }
}

// One exponential in a thousand lies so near a midpoint that vectors work it as single floats are.
TEST_P(ElementaryOfLane, HasTheExponentialsOfSingleFloatsCloseTogether)
{
    constexpr int n = 1 << 21;
    std::vector<float> x;
    for (int i = 0; i < n; ++i)
        x.push_back(static_cast<float>(i - n / 2) * 0x1.07p-17f);   // past 8 on either side
    std::vector<float> row(x.size());
    HWY_DYNAMIC_DISPATCH(ExpOfRow)(x.data(), x.size(), row.data());
    for (std::size_t i = 0; i < x.size(); ++i)
        ASSERT_TRUE(QZ::Test::SameBits(QZ_TARGET::Exp(x[i]), row[i])) << x[i];
}

}   // namespace
}   // namespace QZ::Foundation
#endif
