// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"

namespace {

using QZ::Foundation::CColor;
using QZ::Foundation::CLUVMaximumChromaMap;
using Color = QZ::Math::CVector3<float>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// Entry i of the precomputed table: the even one of a word in its low half.
std::uint16_t HalfBits(int i)
{
    const unsigned int word = CLUVMaximumChromaMap::PreComputedHalfFloatsAsUnsignedInts()[i / 2];
    return static_cast<std::uint16_t>(i % 2 == 0 ? word : word >> 16);
}
float Half(int i)
{
    return static_cast<float>(std::bit_cast<_Float16>(HalfBits(i)));
}

/// binary16 of a value from 0 to 2, worked from its definition: a multiple of the step of its binade, halves
/// to even.
std::uint16_t NearestHalf(float value)
{
    if (value == 0.0f)
        return 0;
    int exponent = 0;
    std::frexp(value, &exponent);
    exponent = std::max(exponent, -13);
    const double step = std::ldexp(1.0, exponent - 11);
    const auto steps = static_cast<int>(std::nearbyint(value / step));
    const int biased = exponent + 13;   // less 1: the first of the steps above 1024 is the implicit bit
    return static_cast<std::uint16_t>((biased << 10) + steps);
}

}   // namespace

TEST(MaximumChroma, HasThePublishedSamples)
{
    constexpr struct {
        int row;
        float values[5];
    } samples[] = {{0, {0, 0, 0, 0, 0}},
                   {1, {0.0031f, 0.0141f, 0.0109f, 0.0044f, 0.0031f}},
                   {128, {0.3979f, 1.2324f, 1.3945f, 0.5576f, 0.3992f}},
                   {255, {0, 0, 0, 0, 0}}};
    constexpr int columns[] = {0, 64, 128, 192, 255};
    for (const auto& [row, values] : samples)
        for (int k = 0; k < 5; ++k)
            EXPECT_NEAR(Half(row * 256 + columns[k]), values[k], 0.00005f);   // given to four decimals
}

TEST(MaximumChroma, IsTheComputedTableRoundedToHalfFloats)
{
    const std::vector<float> table = CLUVMaximumChromaMap::Compute(256, 256);
    ASSERT_EQ(table.size(), 65536u);
    for (int i = 0; i < 65536; ++i)
        ASSERT_EQ(HalfBits(i), NearestHalf(table[static_cast<std::size_t>(i)])) << i;
}

TEST(MaximumChroma, HasNoChromaInTheFirstAndTheLastRow)
{
    const std::vector<float> table = CLUVMaximumChromaMap::Compute(256, 256);
    for (int j = 0; j < 256; ++j) {
        EXPECT_EQ(HalfBits(j), 0);
        EXPECT_EQ(HalfBits(255 * 256 + j), 0);
        EXPECT_EQ(table[static_cast<std::size_t>(j)], 0.0f);
    }
}

// The gamut's edge found by bisection on the RGB cube in 50 digits. The hue is a float: 3e-5 degrees at most.
TEST(MaximumChroma, IsTheEdgeOfTheGamut)
{
    constexpr struct {
        Color luv;
        double chroma;
    } cases[] = {
        {{0.5f, 0.0f, 0.0f}, 1.376188452},    {{0.5f, -0.1f, 0.0f}, 0.3970811637},
        {{0.25f, 0.3f, 0.4f}, 0.3176472703},  {{0.75f, -0.2f, -0.9f}, 0.6500815517},
        {{0.9f, -0.5f, 0.1f}, 0.7475386585},  {{0.04f, 1.0f, -1.0f}, 0.0887588708},
        {{0.99f, 0.1f, 0.1f}, 0.02953072215}, {{0.6f, -0.3f, -0.01f}, 0.474789136},
    };
    for (const auto& [luv, chroma] : cases)
        EXPECT_NEAR(CLUVMaximumChromaMap::MaxChromaForLH(luv), chroma, 2e-6) << luv.x << ' ' << luv.y;
}

TEST(MaximumChroma, TakesTheHueOfGreyForZero)
{
    EXPECT_EQ(CLUVMaximumChromaMap::MaxChromaForLH({0.5f, 0.0f, 0.0f}),
              CLUVMaximumChromaMap::MaxChromaForLH({0.5f, 3.0f, 0.0f}));
}

TEST(MaximumChroma, HasNoEdgeForNaN)
{
    EXPECT_EQ(CLUVMaximumChromaMap::MaxChromaForLH({kNaN, 1.0f, 0.0f}),
              std::numeric_limits<float>::infinity());
    EXPECT_EQ(CLUVMaximumChromaMap::MaxChromaForLH({0.5f, kNaN, 0.0f}),
              std::numeric_limits<float>::infinity());
}

// Columns are centred on equal sectors from -180 degrees on; the middle row of three is L = 0.5.
TEST(MaximumChromaTable, HasLightnessesForRowsAndHuesForColumns)
{
    const std::vector<float> table = CLUVMaximumChromaMap::Compute(4, 3);
    ASSERT_EQ(table.size(), 12u);
    constexpr Color hues[] = {
        {0.5f, -1.0f, -1.0f}, {0.5f, 1.0f, -1.0f}, {0.5f, 1.0f, 1.0f}, {0.5f, -1.0f, 1.0f}};
    for (std::size_t j = 0; j < 4; ++j)
        EXPECT_NEAR(table[4 + j], CLUVMaximumChromaMap::MaxChromaForLH(hues[j]), 1e-6f);   // a float hue
}

TEST(MaximumChromaTable, GivesItsOnlyRowTheLightnessOfWhite)
{
    for (const float chroma : CLUVMaximumChromaMap::Compute(7, 1))
        EXPECT_NEAR(chroma, 0.0f, 1e-8f);   // white is grey to within the digits of the matrix
}

TEST(MaximumChromaTable, TakesAnyCount)
{
    EXPECT_TRUE(CLUVMaximumChromaMap::Compute(0, 5).empty());
    EXPECT_TRUE(CLUVMaximumChromaMap::Compute(5, 0).empty());
    EXPECT_EQ(CLUVMaximumChromaMap::Compute(-2, -3), std::vector<float>(6));
    EXPECT_THROW(static_cast<void>(CLUVMaximumChromaMap::Compute(-2, 3)), std::length_error);
    EXPECT_THROW(static_cast<void>(CLUVMaximumChromaMap::Compute(2, -3)), std::length_error);
}

TEST(LimitLuvChroma, LeavesAColorWithinTheGamutAsItIs)
{
    for (const Color& luv : {Color(0.5f, 0.1f, -0.2f), Color(0.5f, 0.0f, 0.0f), Color(0.0f, 0.0f, -0.0f)}) {
        Color limited = luv;
        CColor::LimitLuvChroma(limited);
        EXPECT_EQ(std::memcmp(&limited, &luv, sizeof luv), 0);
    }
}

TEST(LimitLuvChroma, LeavesNaNAlone)
{
    Color limited(kNaN, 3.0f, 4.0f);
    CColor::LimitLuvChroma(limited);
    EXPECT_EQ(limited.y, 3.0f);
    EXPECT_EQ(limited.z, 4.0f);
}

TEST(LimitLuvChroma, BringsAColorToTheEdgeOfTheGamutAtItsHue)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> lightness(0.02f, 0.98f), component(-2.0f, 2.0f);
    int scaled = 0;
    for (int i = 0; i < 2000; ++i) {
        const Color luv(lightness(random), component(random), component(random));
        Color limited = luv;
        CColor::LimitLuvChroma(limited);
        EXPECT_EQ(limited.x, luv.x);
        if (limited.y == luv.y)
            continue;
        ++scaled;
        const float maximum = CLUVMaximumChromaMap::MaxChromaForLH(luv);
        // A root, a quotient and two products in single precision: four roundings.
        EXPECT_NEAR(std::hypot(limited.y, limited.z), maximum, 3e-7f * maximum);
        EXPECT_NEAR(std::atan2(limited.z, limited.y), std::atan2(luv.z, luv.y), 1e-6f);
        EXPECT_GE(limited.y * luv.y, 0.0f);
    }
    EXPECT_GT(scaled, 1000);
}
