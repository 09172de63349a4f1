// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <cmath>
#include <limits>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "tests/Support/Pictures.h"

using QZ::Foundation::CColor;
using Quantizer = QZ::Foundation::CGrayscaleHistogramHierarchicalClusterQuantization;
using Histogram = QZ::Foundation::CGrayscaleWeightedHistogram;

namespace {

/// In 255ths, rounded; the thresholds and the tone are multiples of that.
struct ThreeTone {
    int low, high, tone;

    friend bool operator==(const ThreeTone&, const ThreeTone&) = default;
};

void PrintTo(const ThreeTone& t, std::ostream* out)
{
    *out << t.low << ", " << t.high << ", " << t.tone;
}

/// Of a picture whose fourth bytes are the levels.
ThreeTone Of(int numClusters, const std::vector<int>& levels, float thresholdExponent = 1.0f,
             float toneExponent = 1.0f, float black = 0.0f, float white = 1.0f)
{
    std::vector<std::vector<int>> pixels;
    for (const int level : levels)
        pixels.push_back({0, 0, 0, level});
    const auto picture = QZ::Test::RowOf(pixels);
    Quantizer quantizer;
    quantizer.table = {1, 2, 3};
    quantizer.levels = {4};
    float low = -1.0f;
    float high = -1.0f;
    float tone = -1.0f;
    quantizer.ComputeForThreeTone(black, white, 1, 0, 1, numClusters, Histogram::eFourthChannel, true,
                                  CColor::eD65, picture.width, 1, picture.rgba.data(), 0, 0, nullptr,
                                  thresholdExponent, toneExponent, low, high, tone);
    EXPECT_EQ(quantizer.table.size(), 3u);
    EXPECT_EQ(quantizer.levels.size(), 1u);
    EXPECT_EQ(quantizer.numLevels, 256);
    const auto in255ths = [](float unit) {
        const int level = static_cast<int>(std::lround(unit * 255.0f));
        EXPECT_EQ(unit, static_cast<float>(level) * 0.003921569f);
        return level;
    };
    return {in255ths(low), in255ths(high), in255ths(tone)};
}

}   // namespace

// Boundary (40 + 201) / 2 = 120.5, rounded up; the tone is the mean of all, (3 * 40 + 201) / 4 = 80.25.
TEST(ThreeTone, TakesTheMeanOfTwoClusters)
{
    EXPECT_EQ(Of(2, {40, 40, 40, 201}), (ThreeTone{121, 255, 80}));
}

TEST(ThreeTone, TakesTheMiddleOfThreeClusters)
{
    EXPECT_EQ(Of(3, {20, 100, 200}), (ThreeTone{60, 150, 100}));
}

// Second and third together: (2 * 100 + 130) / 3 = 110.
TEST(ThreeTone, JoinsTheMiddlePairOfFour)
{
    EXPECT_EQ(Of(4, {20, 100, 100, 130, 230}), (ThreeTone{60, 180, 110}));
}

TEST(ThreeTone, IgnoresTheFifth)
{
    EXPECT_EQ(Of(5, {20, 100, 130, 160, 250}), (ThreeTone{60, 145, 115}));
}

TEST(ThreeTone, HasNoThresholdsForOtherNumbersOfClusters)
{
    EXPECT_EQ(Of(6, {10, 60, 110, 160, 210, 250}), (ThreeTone{0, 255, 10}));
    EXPECT_EQ(Of(1, {40, 50}), (ThreeTone{0, 255, 45}));
    EXPECT_EQ(Of(3, {}), (ThreeTone{0, 255, 0}));
}

// sqrt(60 / 255) = 0.48507 or 123.7; (150 / 255)^2 would be the other way round for the tone: (100 / 255)^2
// = 39.2.
TEST(ThreeTone, RaisesThresholdsAndToneToTheirExponents)
{
    EXPECT_EQ(Of(3, {20, 100, 200}, 0.5f, 2.0f), (ThreeTone{124, 196, 39}));
}

TEST(ThreeTone, KeepsNoThresholdNoThresholdUnderAnyExponent)
{
    EXPECT_EQ(Of(6, {10, 60, 110, 160, 210, 250}, 0.0f), (ThreeTone{0, 255, 10}));
    EXPECT_EQ(Of(6, {10, 60, 110, 160, 210, 250}, -1.0f), (ThreeTone{0, 255, 10}));
}

// Black 0.2, white 0.8: (60 - 51) / 0.6 = 15, (150 - 51) / 0.6 = 165, (100 - 51) / 0.6 = 81.67.
TEST(ThreeTone, GoesThroughTheToneCurve)
{
    EXPECT_EQ(Of(3, {20, 100, 200}, 1.0f, 1.0f, 0.2f, 0.8f), (ThreeTone{15, 165, 82}));
}

TEST(ThreeTone, StaysInTheUnitRangeForAnyExponent)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Of(3, {20, 100, 200}, nan, nan), (ThreeTone{0, 0, 0}));
    EXPECT_EQ(Of(3, {0, 0, 0}, -1.0f, -1.0f), (ThreeTone{0, 255, 255}));   // 0^-1 is infinite
}
