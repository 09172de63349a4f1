// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ByteCurve.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "QZ/Foundation/Color/CColor.h"
#include "tests/Support/Floats.h"

namespace QZ::Foundation {
namespace {

using namespace QZ::Test;

unsigned Rounded(float unit)
{
    return static_cast<unsigned>(std::min(unit, 1.0f) * 255.0f + 0.5f);
}
unsigned Truncated(float unit)
{
    return static_cast<unsigned>(std::min(unit, 1.0f) * 255.0f);
}

float Encoded(bool useGamma22, float linear)
{
    float encoded = 0.0f;
    CColor::LinearToNonlinearToneCurve(useGamma22, linear, encoded);
    return encoded;
}

/// On every 251st float from 0 to 2, and at every step and the float before it.
template <class Function>
void ExpectSame(const ByteCurve& curve, Function&& byteOf)
{
    std::uint32_t below = 0;
    unsigned last = 0;
    for (std::uint32_t bits = 0; bits < 0x40000000; bits += 251) {
        const unsigned byte = byteOf(std::bit_cast<float>(bits));
        ASSERT_EQ(curve(std::bit_cast<float>(bits)), byte) << std::bit_cast<float>(bits);
        for (std::uint32_t near = below; byte != last && near <= bits; ++near)
            ASSERT_EQ(curve(std::bit_cast<float>(near)), byteOf(std::bit_cast<float>(near)))
                << std::bit_cast<float>(near);
        last = byte;
        below = bits;
    }
    EXPECT_EQ(curve(1.0f), byteOf(1.0f));
    EXPECT_EQ(curve(1.9f), 255);
    EXPECT_EQ(curve(kInfinity), 255);
    EXPECT_EQ(curve(-0.0f), 0);
    EXPECT_EQ(curve(-1.0f), 0);
    EXPECT_EQ(curve(-kInfinity), 0);
    EXPECT_EQ(curve(kNaN), 0);
}

TEST(ByteCurve, IsTheEncodedValueRounded)
{
    for (const bool useGamma22 : {false, true})
        ExpectSame(EncodedByte(useGamma22), [&](float c) { return Rounded(Encoded(useGamma22, c)); });
}

TEST(ByteCurve, IsTheEncodedValueTruncated)
{
    EXPECT_EQ(TruncatedSRGBByte()(1.0f), 254);   // 1.055f - 0.055f is the float before 1
    ExpectSame(TruncatedSRGBByte(), [](float c) { return Truncated(Encoded(false, c)); });
}

TEST(ByteCurve, IsTheLightnessRounded)
{
    ExpectSame(LightnessByte(), [](float Y) {
        float L = 0.0f;
        CColor::LinearYToLXX(Y, L);
        return Rounded(L);
    });
}

TEST(ByteCurve, IsTheValueItselfRoundedOrTruncated)
{
    ExpectSame(UnitByte(), Rounded);
    ExpectSame(TruncatedUnitByte(), Truncated);
}

}   // namespace
}   // namespace QZ::Foundation
