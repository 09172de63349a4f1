// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"

using QZ::Foundation::CGrayscaleToneCurve;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

std::vector<int> Table(float black, float white, float gamma, float toe, float shoulder)
{
    CGrayscaleToneCurve curve;
    curve.lookupTable.assign(7, -1);
    curve.Compute(black, white, gamma, toe, shoulder);
    EXPECT_EQ(curve.lookupTable.size(), 256u);
    return curve.lookupTable;
}

/// Every fifteenth entry, 0 to 255.
std::vector<int> Sampled(const std::vector<int>& table)
{
    std::vector<int> samples;
    for (std::size_t i = 0; i < table.size(); i += 15)
        samples.push_back(table[i]);
    return samples;
}

const std::vector<int> identity = [] {
    std::vector<int> levels(256);
    std::iota(levels.begin(), levels.end(), 0);
    return levels;
}();

}   // namespace

TEST(GrayscaleToneCurve, IsTheIdentityWithoutAnything)
{
    EXPECT_EQ(Table(0, 1, 1, 0, 1), identity);
}

TEST(GrayscaleToneCurve, TakesToeAndShoulderOutsideTheirRangesForNone)
{
    for (const float toe : {0.0f, -0.5f, std::nextafter(1.0f, 2.0f), kNaN})
        for (const float shoulder : {1.0f, 2.0f, -1e-9f, kNaN})
            EXPECT_EQ(Table(0, 1, 1, toe, shoulder), identity);
}

// All tables below are worked with 40 digits; no sample lies within 0.003 of a rounding boundary.
TEST(GrayscaleToneCurve, RaisesToGamma)
{
    EXPECT_EQ(Table(0, 1, 2, 0, 1)[128], 64);   // (128 / 255)^2 * 255 = 64.25
    EXPECT_EQ(Sampled(Table(0, 1, 2, 0, 1)),
              (std::vector<int>{0, 1, 4, 8, 14, 22, 32, 43, 56, 71, 88, 107, 127, 149, 173, 199, 226, 255}));
    EXPECT_EQ(Sampled(Table(0, 1, 0.45f, 0, 1)),
              (std::vector<int>{0, 71, 97, 117, 133, 147, 160, 171, 182, 192, 201, 210, 218, 226, 234, 241,
                                248, 255}));
}

TEST(GrayscaleToneCurve, DarkensShadowsByAToe)
{
    const std::vector<int> table = Table(0, 1, 1, 1, 2);
    EXPECT_EQ(Sampled(table),
              (std::vector<int>{0, 0, 1, 4, 8, 16, 26, 39, 55, 73, 95, 118, 142, 168, 193, 216, 238, 255}));
    EXPECT_EQ(table[255], 255);
}

TEST(GrayscaleToneCurve, LiftsHighlightsByAShoulder)
{
    EXPECT_EQ(Sampled(Table(0, 1, 1, 0, 0)), (std::vector<int>{0, 17, 39, 62, 87, 113, 137, 160, 182, 200,
                                                               216, 229, 239, 247, 251, 254, 255, 255}));
}

TEST(GrayscaleToneCurve, BlendsToeAndShoulder)
{
    EXPECT_EQ(
        Sampled(Table(0, 1, 1, 0.6f, 0.7f)),
        (std::vector<int>{0, 0, 3, 9, 20, 36, 57, 80, 106, 130, 150, 165, 180, 202, 227, 245, 253, 255}));
}

TEST(GrayscaleToneCurve, RescalesBetweenBlackAndWhite)
{
    const std::vector<int> table = Table(0.2f, 0.8f, 1, 0, 1);
    EXPECT_EQ(Sampled(table), (std::vector<int>{0, 0, 0, 0, 15, 40, 65, 90, 115, 140, 165, 190, 215, 240, 255,
                                                255, 255, 255}));
    EXPECT_EQ(table[51], 0);
    EXPECT_EQ(table[204], 255);
}

TEST(GrayscaleToneCurve, DoesAllOfItInThatOrder)
{
    EXPECT_EQ(Sampled(Table(0.1f, 0.9f, 2.2f, 0.5f, 0.75f)),
              (std::vector<int>{0, 0, 0, 0, 0, 0, 1, 5, 14, 33, 65, 104, 138, 170, 211, 254, 255, 255}));
}

TEST(GrayscaleToneCurve, RescalesByBlackOrWhiteAlone)
{
    EXPECT_EQ(Table(0.5f, 1, 1, 0, 1)[127], 0);
    EXPECT_EQ(Table(0.5f, 1, 1, 0, 1)[255], 255);
    EXPECT_EQ(Table(0, 0.5f, 1, 0, 1)[64], 128);
    EXPECT_EQ(Table(0, 0.5f, 1, 0, 1)[128], 255);
    EXPECT_EQ(Table(-1, 2, 1, 0, 1), identity);   // neither moves inwards
}

// An infinite scale sends each level to an end of the curve, and what is not a number to the lower one.
TEST(GrayscaleToneCurve, EndsInTheLevelsWhenBlackIsWhite)
{
    EXPECT_THAT(Table(0.5f, 0.5f, 1, 0, 1), testing::Each(0));   // infinity less infinity
    EXPECT_THAT(Table(0, 0, 1, 0, 1), testing::Each(0));         // 0 times infinity
    EXPECT_THAT(Table(kNaN, 0.5f, 1, 0, 1), testing::Each(0));
    const std::vector<int> table = Table(-0.5f, -0.5f, 1, 0, 1);
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[1], 255);
    EXPECT_EQ(table[255], 255);
}

TEST(GrayscaleToneCurve, InvertsWhenBlackIsAboveWhite)
{
    std::vector<int> inverse = identity;
    std::reverse(inverse.begin(), inverse.end());
    EXPECT_EQ(Table(1, 0, 1, 0, 1), inverse);
}

// 0^-1 is infinite; 1 / x beyond 1 gives levels above 255, which stay as they are.
TEST(GrayscaleToneCurve, LeavesTheLevelsOfANegativeGammaUnclamped)
{
    const std::vector<int> table = Table(0, 1, -1, 0, 1);
    EXPECT_EQ(table[0], 255);
    EXPECT_EQ(table[100], 650);   // 255 * 2.55
    EXPECT_EQ(table[255], 255);
    EXPECT_EQ(Table(0, 1, -30, 0, 1)[1], 255);   // 255^30 is beyond an int
}

TEST(GrayscaleToneCurve, MakesBlackOfANaNGamma)
{
    const std::vector<int> table = Table(0, 1, kNaN, 0, 1);
    EXPECT_THAT(std::vector<int>(table.begin(), table.end() - 1), testing::Each(0));
    EXPECT_EQ(table[255], 255);   // 1 to any power
}

TEST(GrayscaleToneCurve, WeighsToeAndShoulderByTheSmoothstep)
{
    CGrayscaleToneCurve curve;
    curve.Compute(0, 1, 1, 0.5f, 0.5f);
    EXPECT_EQ(curve.ToeSmoothstep(0.0f), 0.0f);
    EXPECT_EQ(curve.ToeSmoothstep(0.25f), 0.5f);
    EXPECT_EQ(curve.ToeSmoothstep(0.125f), 0.15625f);   // 3/16 - 2/64
    EXPECT_EQ(curve.ToeSmoothstep(0.5f), 1.0f);
    EXPECT_EQ(curve.ToeSmoothstep(9.0f), 1.0f);
    EXPECT_EQ(curve.ShoulderSmoothstep(0.5f), 0.0f);
    EXPECT_EQ(curve.ShoulderSmoothstep(0.75f), 0.5f);
    EXPECT_EQ(curve.ShoulderSmoothstep(1.0f), 1.0f);
    EXPECT_EQ(curve.ShoulderSmoothstep(-kInfinity), 0.0f);
    EXPECT_EQ(curve.ToeSmoothstep(kNaN), 0.0f);
    EXPECT_EQ(curve.ShoulderSmoothstep(kNaN), 0.0f);
}

TEST(GrayscaleToneCurve, KeepsTheParametersThatItDoesNotUse)
{
    CGrayscaleToneCurve curve;
    curve.Compute(0, 1, 1, 0.25f, 0.5f);
    EXPECT_EQ(curve.toeScale, 4.0f);
    EXPECT_EQ(curve.shoulderStart, 0.5f);
    EXPECT_EQ(curve.shoulderScale, 2.0f);
    curve.Compute(0, 1, 1, 0.5f, 1);
    EXPECT_EQ(curve.toeScale, 2.0f);
    EXPECT_EQ(curve.shoulderStart, 0.5f);
    curve.Compute(0, 1, 1, 0, 0.75f);
    EXPECT_EQ(curve.toeScale, 2.0f);
    EXPECT_EQ(curve.shoulderStart, 0.75f);
    EXPECT_EQ(curve.shoulderScale, 4.0f);
}

// 1 / (1 - 0.15f) is 1.17647060; the float 1 - 0.15f is rounded up, which the single-precision quotient
// shows.
TEST(GrayscaleToneCurve, ScalesTheShoulderInDoubleOnlyWithAToe)
{
    const float shoulder = 0.15f;
    CGrayscaleToneCurve with;
    with.Compute(0, 1, 1, 1, shoulder);
    CGrayscaleToneCurve without;
    without.Compute(0, 1, 1, 0, shoulder);
    EXPECT_EQ(with.shoulderScale, 1.1764706373214722f);
    EXPECT_EQ(without.shoulderScale, 1.1764705181121826f);
}
