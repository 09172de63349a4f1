// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "QZ/Foundation/Color/CConvert.h"

using QZ::Foundation::CConvert;

namespace {

std::uint16_t BitsOf(_Float16 half)
{
    return std::bit_cast<std::uint16_t>(half);
}

std::uint16_t Half(float value)
{
    _Float16 half;
    EXPECT_TRUE(CConvert::FloatToHalfFloat(&value, &half, 1));
    return BitsOf(half);
}

/// The value of a half that is not NaN, as IEEE 754-2008, 3.4, reads its fields; 0x7C00 reads as 65536, where
/// the next number would be.
double ValueOf(std::uint16_t bits)
{
    const int exponent = (bits >> 10) & 31;
    const int significand = bits & 1023;
    const double magnitude =
        exponent == 0 ? std::ldexp(significand, -24) : std::ldexp(1024 + significand, exponent - 25);
    return bits & 0x8000 ? -magnitude : magnitude;
}

constexpr float kInfinity = std::numeric_limits<float>::infinity();

}   // namespace

TEST(FloatToHalfFloat, GivesKnownHalves)
{
    EXPECT_EQ(Half(1.0f), 0x3C00);
    EXPECT_EQ(Half(-2.0f), 0xC000);
    EXPECT_EQ(Half(65504.0f), 0x7BFF);
    EXPECT_EQ(Half(70000.0f), 0x7C00);
    EXPECT_EQ(Half(1e-8f), 0x0000);
    EXPECT_EQ(Half(0.333333333f), 0x3555);
    EXPECT_EQ(Half(0.0f), 0x0000);
    EXPECT_EQ(Half(-0.0f), 0x8000);
    EXPECT_EQ(Half(kInfinity), 0x7C00);
    EXPECT_EQ(Half(-kInfinity), 0xFC00);
    EXPECT_EQ(Half(std::numeric_limits<float>::max()), 0x7C00);
    EXPECT_EQ(Half(-std::numeric_limits<float>::denorm_min()), 0x8000);
}

TEST(FloatToHalfFloat, KeepsNaNWithItsSignAndUpperPayload)
{
    EXPECT_EQ(Half(std::bit_cast<float>(0x7FC00000u)), 0x7E00);
    EXPECT_EQ(Half(std::bit_cast<float>(0xFFC02000u)), 0xFE01);
    EXPECT_EQ(Half(std::bit_cast<float>(0x7FFFFFFFu)), 0x7FFF);
    EXPECT_EQ(Half(std::bit_cast<float>(0x7F800001u)), 0x7E00);   // signalling, its payload below the half's
}

TEST(FloatToHalfFloat, GivesEveryHalfBack)
{
    for (std::uint32_t bits = 0; bits < 0x10000; ++bits) {
        const auto half = static_cast<std::uint16_t>(bits);
        const bool isFinite = (half & 0x7C00) != 0x7C00;
        const bool isInfinite = (half & 0x7FFF) == 0x7C00;
        if (isFinite)
            EXPECT_EQ(Half(static_cast<float>(ValueOf(half))), half);
        else if (isInfinite)
            EXPECT_EQ(Half(half & 0x8000 ? -kInfinity : kInfinity), half);
        else   // a quiet NaN widens to the same payload
            EXPECT_EQ(Half(std::bit_cast<float>((bits & 0x8000) << 16 | 0x7F800000u | (bits & 0x3FF) << 13)),
                      half | 0x0200);
    }
}

// The midpoint between two neighbours goes to the even one, a float ulp to either side of it to the nearer;
// after the largest half comes infinity.
TEST(FloatToHalfFloat, RoundsAtEveryBoundaryToNearestEven)
{
    for (std::uint16_t below = 0; below < 0x7C00; ++below) {
        const auto above = static_cast<std::uint16_t>(below + 1);
        const auto middle = static_cast<float>((ValueOf(below) + ValueOf(above)) / 2);
        const std::uint16_t even = below % 2 == 0 ? below : above;
        EXPECT_EQ(Half(middle), even);
        EXPECT_EQ(Half(std::nextafter(middle, 0.0f)), below);
        EXPECT_EQ(Half(std::nextafter(middle, kInfinity)), above);
        EXPECT_EQ(Half(-middle), even | 0x8000);
        EXPECT_EQ(Half(std::nextafter(-middle, 0.0f)), below | 0x8000);
        EXPECT_EQ(Half(std::nextafter(-middle, -kInfinity)), above | 0x8000);
    }
}

TEST(FloatToHalfFloat, DoesNotDependOnTheRoundingMode)
{
    const int mode = std::fegetround();
    for (const int other : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::fesetround(other);
        EXPECT_EQ(Half(0.333333333f), 0x3555);
        EXPECT_EQ(Half(1e-6f), 0x0011);   // 16.78 of 2^-24
        EXPECT_EQ(Half(65519.0f), 0x7BFF);
    }
    std::fesetround(mode);
}

TEST(FloatToHalfFloat, ConvertsAnArrayOfAnyLength)
{
    for (const std::size_t count : {0u, 1u, 255u, 256u, 257u, 1000u}) {
        std::vector<float> floats(count + 1);
        for (std::size_t i = 0; i <= count; ++i)
            floats[i] = static_cast<float>(i) - 300.0f;
        std::vector<_Float16> halves(count + 1, _Float16(-7));
        EXPECT_TRUE(CConvert::FloatToHalfFloat(floats.data(), halves.data(), count));
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_EQ(static_cast<float>(halves[i]), floats[i]);   // whole numbers to 2048 are halves
        EXPECT_EQ(static_cast<float>(halves[count]), -7.0f);
    }
}

TEST(FloatToHalfFloat, ConvertsInPlace)
{
    for (const std::size_t count : {0u, 1u, 2u, 255u, 256u, 257u, 1000u}) {
        std::vector<float> buffer(count + 1, 99.0f);
        for (std::size_t i = 0; i < count; ++i)
            buffer[i] = static_cast<float>(i) - 300.0f;
        EXPECT_TRUE(CConvert::FloatToHalfFloat(buffer.data(), count));
        for (std::size_t i = 0; i < count; ++i) {
            std::uint16_t bits;
            std::memcpy(&bits, reinterpret_cast<const unsigned char*>(buffer.data()) + 2 * i, sizeof bits);
            EXPECT_EQ(ValueOf(bits), static_cast<double>(i) - 300.0);
        }
        EXPECT_EQ(buffer[count], 99.0f);
    }
}

TEST(FloatToHalfFloat, RefusesNullUnlessThereIsNothingToDo)
{
    float value = 1.0f;
    _Float16 half;
    EXPECT_FALSE(CConvert::FloatToHalfFloat(nullptr, &half, 1));
    EXPECT_FALSE(CConvert::FloatToHalfFloat(&value, nullptr, 1));
    EXPECT_FALSE(CConvert::FloatToHalfFloat(nullptr, 1));
    EXPECT_TRUE(CConvert::FloatToHalfFloat(nullptr, nullptr, 0));
    EXPECT_TRUE(CConvert::FloatToHalfFloat(nullptr, 0));
}
