// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"
#include "tests/Support/Colours.h"
#include "tests/Support/Floats.h"
#include "tests/Support/Pictures.h"

namespace {

using QZ::Foundation::CColor;
using Quantization = QZ::Foundation::CHueAndGrayscaleQuantizationTest;
using Grey = QZ::Foundation::CGrayscaleHistogramHierarchicalClusterQuantization;
using GreyHistogram = QZ::Foundation::CGrayscaleWeightedHistogram;
using QZ::Test::Colour;
using QZ::Test::Converted;
using QZ::Test::Photograph;
using QZ::Test::Picture;
using QZ::Test::RowOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kHues = 4;
constexpr int kTones = 3;

Quantization Computed(const Picture& picture, float threshold, bool isSRGB = true,
                      GreyHistogram::EGrayscaleFrom from = GreyHistogram::eLXX)
{
    Quantization quantization;
    quantization.Compute(0.0f, 1.0f, 0.8f, 0.0f, 1.0f, kHues, 0.0, kTones, 0.0, threshold, from, isSRGB,
                         CColor::eD65, picture.width, picture.height, picture.rgba.data());
    return quantization;
}

std::vector<unsigned char> Quantized(const Quantization& quantization, const Picture& picture,
                                     bool isSRGB = true)
{
    std::vector<unsigned char> out(2 * static_cast<std::size_t>(picture.Pixels()) + 1, 77);
    quantization.Quantize(isSRGB, CColor::eD65, picture.width, picture.height, picture.rgba.data(),
                          out.data());
    EXPECT_EQ(out.back(), 77) << "two bytes a pixel";
    out.pop_back();
    return out;
}

/// The tone bytes alone, of an output whose second bytes are 0.
std::vector<int> Tones(const std::vector<unsigned char>& out)
{
    std::vector<int> tones;
    for (std::size_t i = 0; i < out.size(); i += 2) {
        tones.push_back(out[i]);
        EXPECT_EQ(out[i + 1], 0);
    }
    return tones;
}

Colour LuvOf(const Picture& picture, std::size_t k, bool isSRGB)
{
    const auto unit = [&](std::size_t i) {
        return static_cast<float>(picture.rgba[4 * k + i]) * 0.003921569f;
    };
    const Colour rgb(unit(0), unit(1), unit(2));
    return isSRGB ? Converted(CColor::SRGBToLuv, false, false, CColor::eD65, rgb)
                  : Converted(CColor::LinearRGBToLuv, CColor::eD65, rgb);
}

/// The group of a pixel, a step at a time.
std::size_t GroupOf(const Quantization& quantization, const Colour& luv)
{
    const float c = std::sqrt(luv.y * luv.y + luv.z * luv.z);
    const float sum = c * c + luv.x * luv.x;
    const float saturation = sum > 0.0f ? c / std::sqrt(sum) : 0.0f;
    if (!(saturation >= quantization.saturationThreshold))
        return quantization.hueQuantizer.clusterColours.size();
    const float t = std::min(1.0f, std::atan2(luv.z, luv.y) * 0.159155f + 0.5f);
    return static_cast<std::size_t>(
        quantization.hueQuantizer.binCluster[static_cast<std::size_t>(t * 255.0f + 0.5f)]);
}

}   // namespace

TEST(HueAndGrayscaleQuantization, QuantisesTheGreysOfEachGroup)
{
    const Picture picture = Photograph(48, 36);
    const auto count = static_cast<std::size_t>(picture.Pixels());
    for (const bool isSRGB : QZ::Test::kFlags) {
        const Quantization quantization = Computed(picture, 0.4f, isSRGB);
        const std::size_t numGroups = quantization.hueQuantizer.clusterColours.size() + 1;
        ASSERT_EQ(numGroups, kHues + 1u);
        ASSERT_EQ(quantization.greyQuantizers.size(), numGroups);

        std::vector<std::vector<unsigned char>> masks(numGroups, std::vector<unsigned char>(count, 0));
        std::vector<int> tones;
        for (std::size_t k = 0; k < count; ++k) {
            const Colour luv = LuvOf(picture, k, isSRGB);
            const std::size_t group = GroupOf(quantization, luv);
            masks[group][k] = 255;
            tones.push_back(
                quantization.greyQuantizers[group].table[static_cast<std::size_t>(luv.x * 255.0f + 0.5f)]);
        }
        for (std::size_t group = 0; group < numGroups; ++group) {
            Grey grey;   // the bytes count as sRGB whatever the caller says
            grey.Compute(0.0f, 1.0f, 0.8f, 0.0f, 1.0f, 1.0f, 0.85f, kTones, 0.0, GreyHistogram::eLXX, true,
                         CColor::eD65, picture.width, picture.height, picture.rgba.data(), 1, 0,
                         masks[group].data());
            EXPECT_EQ(quantization.greyQuantizers[group].table, grey.table);
            EXPECT_EQ(quantization.greyQuantizers[group].levels, grey.levels);
        }
        EXPECT_EQ(Tones(Quantized(quantization, picture, isSRGB)), tones);
    }
}

TEST(HueAndGrayscaleQuantization, ListsEachToneOnceInItsPalette)
{
    const Picture picture = Photograph(48, 36);
    const Quantization quantization = Computed(picture, 0.4f);
    std::set<unsigned char> tones;
    for (const Grey& grey : quantization.greyQuantizers)
        tones.insert(grey.levels.begin(), grey.levels.end());
    EXPECT_EQ(quantization.palette, std::vector<unsigned char>(tones.begin(), tones.end()));
    ASSERT_EQ(quantization.greyPresent.size(), 256u);
    for (int g = 0; g < 256; ++g)
        EXPECT_EQ(quantization.greyPresent[static_cast<std::size_t>(g)],
                  tones.count(static_cast<unsigned char>(g)) != 0 ? g : -1);
    for (const int tone : Tones(Quantized(quantization, picture)))
        EXPECT_EQ(tones.count(static_cast<unsigned char>(tone)), 1u);
}

TEST(HueAndGrayscaleQuantization, HasOneGroupAboveEverySaturation)
{
    const Picture picture = Photograph(32, 24);
    Grey whole;
    whole.Compute(0.0f, 1.0f, 0.8f, 0.0f, 1.0f, 1.0f, 0.85f, kTones, 0.0, GreyHistogram::eLXX, true,
                  CColor::eD65, picture.width, picture.height, picture.rgba.data(), 1, 0, nullptr);
    for (const float threshold : {1.5f, QZ::Test::kInfinity, QZ::Test::kNaN}) {
        const Quantization quantization = Computed(picture, threshold);
        ASSERT_EQ(quantization.greyQuantizers.size(), kHues + 1u);
        for (std::size_t group = 0; group < kHues; ++group) {
            EXPECT_THAT(quantization.greyQuantizers[group].table, IsEmpty());
            EXPECT_THAT(quantization.greyQuantizers[group].levels, IsEmpty());
            EXPECT_EQ(quantization.greyQuantizers[group].numLevels, 0);
        }
        EXPECT_EQ(quantization.greyQuantizers.back().table, whole.table);
        const std::set<int> expected(whole.levels.begin(), whole.levels.end());
        for (const int tone : Tones(Quantized(quantization, picture)))
            EXPECT_EQ(expected.count(tone), 1u);
    }
}

TEST(HueAndGrayscaleQuantization, HasNoGroupOfLowSaturationAtZero)
{
    for (const float threshold : {0.0f, -1.0f, -QZ::Test::kInfinity}) {
        const Quantization quantization = Computed(Photograph(32, 24), threshold);
        EXPECT_THAT(quantization.greyQuantizers.back().table, IsEmpty());
        EXPECT_EQ(quantization.saturationThreshold, threshold);
    }
}

// Black has no hue: the arc tangent of (0, 0) is 0, the middle of the circle.
TEST(HueAndGrayscaleQuantization, PutsBlackIntoTheMiddleBin)
{
    const Picture picture = RowOf({{220, 40, 30}, {40, 70, 210}, {50, 180, 60}, {0, 0, 0}});
    const Quantization quantization = Computed(picture, 0.0f);
    const auto group = static_cast<std::size_t>(quantization.hueQuantizer.binCluster[128]);
    EXPECT_EQ(Tones(Quantized(quantization, picture)).back(), quantization.greyQuantizers[group].table[0]);
    EXPECT_GT(quantization.greyQuantizers[group].numLevels, 0);
}

TEST(HueAndGrayscaleQuantization, WritesBlackForAGroupWithoutPixels)
{
    const Quantization greys = Computed(RowOf({{220, 40, 30}, {40, 70, 210}}), 1.5f);
    Quantization colored = greys;
    colored.saturationThreshold = 0.0f;   // asks for the hue groups, which have no table
    EXPECT_THAT(Tones(Quantized(colored, RowOf({{220, 40, 30}, {40, 70, 210}, {255, 255, 255}}))), Each(0));

    const Quantization colors = Computed(RowOf({{220, 40, 30}, {40, 70, 210}}), 0.5f);
    EXPECT_THAT(Tones(Quantized(colors, RowOf({{128, 128, 128}, {255, 255, 255}}))), ElementsAre(0, 0));
}

TEST(HueAndGrayscaleQuantization, OfNothingWritesBlack)
{
    const Picture picture = Photograph(20, 10);
    EXPECT_THAT(Tones(Quantized(Quantization(), picture)), Each(0));

    Quantization quantization = Computed(picture, 0.4f);
    quantization.Compute(0.0f, 1.0f, 1.0f, 0.0f, 1.0f, kHues, 0.0, kTones, 0.0, 0.4f, GreyHistogram::eLXX,
                         true, CColor::eD65, 0, 10, nullptr);
    EXPECT_THAT(quantization.hueQuantizer.binCluster, IsEmpty());
    ASSERT_EQ(quantization.greyQuantizers.size(), 1u);
    EXPECT_THAT(quantization.greyQuantizers[0].table, IsEmpty());
    EXPECT_THAT(quantization.greyPresent, testing::AllOf(testing::SizeIs(256), Each(-1)));
    EXPECT_THAT(quantization.palette, IsEmpty());
    EXPECT_THAT(Tones(Quantized(quantization, picture)), Each(0));
}

// Black weighs nothing for the hues, or a rounding error of either sign.
TEST(HueAndGrayscaleQuantization, TakesAPictureWithoutHues)
{
    for (const int level : {0, 1, 128, 255}) {
        const Picture picture = RowOf(std::vector<std::vector<int>>(9, {level, level, level}));
        for (const float threshold : {0.0f, 0.5f}) {
            const Quantization quantization = Computed(picture, threshold);
            EXPECT_THAT(quantization.palette, testing::Not(IsEmpty()));
            const std::vector<int> tones = Tones(Quantized(quantization, picture));
            EXPECT_THAT(tones, Each(tones.front()));
        }
    }
}

TEST(HueAndGrayscaleQuantization, WritesNothingForAPictureWithoutPixels)
{
    const Quantization quantization = Computed(Photograph(20, 10), 0.4f);
    unsigned char out = 77;
    quantization.Quantize(true, CColor::eD65, 0, 3, nullptr, &out);
    quantization.Quantize(true, CColor::eD65, -3, 3, nullptr, &out);
    EXPECT_EQ(out, 77);
}

TEST(HueAndGrayscaleQuantization, TakesEverySourceOfGrey)
{
    const Picture picture = Photograph(32, 24);
    std::set<std::vector<unsigned char>> palettes;
    for (const auto from : {GreyHistogram::eFourthChannel, GreyHistogram::eLXX, GreyHistogram::eNonlinearY}) {
        const Quantization quantization = Computed(picture, 0.4f, true, from);
        palettes.insert(quantization.palette);
    }
    EXPECT_EQ(palettes.size(), 3u);
    const auto none = static_cast<GreyHistogram::EGrayscaleFrom>(9);
    const Quantization quantization = Computed(picture, 0.4f, true, none);
    EXPECT_EQ(Quantized(quantization, picture).size(), 2u * 32 * 24);
}
