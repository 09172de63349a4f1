// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <random>

#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "tools/qz/Failure.h"
#include "tools/qz/operations/Adjust.h"
#include "tools/qz/operations/ThreeTone.h"
#include "tools/qz/operations/Threshold.h"
#include "tools/qz/operations/Tones.h"

namespace {

using namespace QZ::Tool;
using QZ::Foundation::CColor;
using QZ::Foundation::CGrayscaleHistogramHierarchicalClusterQuantization;
using QZ::Foundation::CGrayscaleWeightedHistogram;
using testing::ElementsAre;

Image RandomPicture(int width, int height)
{
    Image image(width, height);
    std::mt19937 random(7);
    for (unsigned char& byte : image.pixels)
        byte = static_cast<unsigned char>(random() & 0xFF);
    return image;
}

Image GreyPicture(const std::vector<int>& levels)
{
    Image image(static_cast<int>(levels.size()), 1);
    for (std::size_t i = 0; i < levels.size(); ++i)
        for (std::size_t c = 0; c < 3; ++c)
            image.pixels[4 * i + c] = static_cast<unsigned char>(levels[i]);
    return image;
}

std::vector<int> Reds(const Image& image)
{
    std::vector<int> reds;
    for (std::size_t i = 0; i < image.pixels.size(); i += 4)
        reds.push_back(image.pixels[i]);
    return reds;
}

// Encoded luminance leaves the level of a grey as it is.
GreyChoice ByLuminance()
{
    GreyChoice choice;
    choice.from = GreyFrom::eNonlinearY;
    return choice;
}

TEST(GreyPlane, HoldsTheLevelsThatTheLibraryCounts)
{
    const Image image = RandomPicture(400, 300);
    for (const GreyFrom from : {GreyFrom::eFourthChannel, GreyFrom::eLXX, GreyFrom::eNonlinearY})
        for (const CColor::EIlluminant illuminant : {CColor::eD50, CColor::eD65})
            for (const bool masked : {false, true}) {
                const GreyChoice choice = {from, illuminant, masked};
                CGrayscaleWeightedHistogram expected;
                expected.Compute(from, true, illuminant, image.width, image.height, image.pixels.data(), 4, 3,
                                 choice.Mask(image));
                const CGrayscaleWeightedHistogram found =
                    GreyHistogram(GreyPlane(image, choice), image, choice);
                EXPECT_EQ(found.bins, expected.bins);
                EXPECT_EQ(found.total, expected.total);
            }
}

TEST(ReduceToTones, GivesTheTableOfTheLibrary)
{
    Image image = RandomPicture(100, 100);
    CGrayscaleHistogramHierarchicalClusterQuantization expected;
    expected.Compute(0.1f, 0.9f, 1.2f, 0.3f, 0.8f, 0.5f, 0.4f, 5, 10.0, GreyFrom::eLXX, true, CColor::eD65,
                     100, 100, image.pixels.data(), 4, 3, nullptr);
    TonesOptions options;
    options.count = 5;
    options.minGap = 10.0;
    options.curve = {0.1f, 0.9f, 1.2f, 0.3f, 0.8f};
    options.highlights = 0.5f;
    options.highlightsBand = 0.4f;
    EXPECT_EQ(ReduceToTones(options, image).table, expected.table);
}

TEST(ReduceToTones, PaintsEachPixelByItsLevelAndKeepsAlpha)
{
    Image image = GreyPicture({10, 200, 12, 198, 10});
    image.pixels[3] = 77;
    TonesOptions options;
    options.grey = ByLuminance();
    options.count = 2;
    const Tones result = ReduceToTones(options, image);
    // The means: (10 + 10 + 12) / 3 = 10.67 and (200 + 198) / 2, rounded.
    EXPECT_THAT(Reds(image), ElementsAre(11, 199, 11, 199, 11));
    EXPECT_EQ(image.pixels[3], 77);
    ASSERT_EQ(result.tones.size(), 2u);
    EXPECT_DOUBLE_EQ(result.tones[0].share, 0.6);
    EXPECT_EQ(result.tones[0].first, 10);
    EXPECT_EQ(result.tones[0].last, 12);
    EXPECT_EQ(result.levels, 4);
}

TEST(ReduceToTones, GivesThePicturesLevelsWhenAskedForMoreTones)
{
    for (const auto method : {TonesOptions::Method::Hierarchical, TonesOptions::Method::MedianCut})
        for (const int count : {3, 4, 5, 256}) {
            Image image = GreyPicture({0, 0, 90, 90, 255, 255});
            TonesOptions options;
            options.grey = ByLuminance();
            options.method = method;
            options.count = count;
            EXPECT_EQ(ReduceToTones(options, image).tones.size(), 3u);
            EXPECT_THAT(Reds(image), ElementsAre(0, 0, 90, 90, 255, 255)) << count;
        }
}

TEST(ReduceToTones, GivesOneToneWhenAskedForOne)
{
    for (const auto method : {TonesOptions::Method::Hierarchical, TonesOptions::Method::MedianCut}) {
        Image image = GreyPicture({100, 100, 200, 200});
        TonesOptions options;
        options.grey = ByLuminance();
        options.method = method;
        options.count = 1;
        ReduceToTones(options, image);
        EXPECT_THAT(Reds(image), ElementsAre(150, 150, 150, 150));
    }
}

// A level of more pixels than 32 bits hold times 255 must still come out as itself.
TEST(ReduceToTones, CutsALargeFlatPictureRight)
{
    Image image(4096, 2200);
    for (std::size_t i = 0; i < image.pixels.size(); i += 4)
        image.pixels[i] = image.pixels[i + 1] = image.pixels[i + 2] = i < 4096 ? 10 : 250;
    TonesOptions options;
    options.grey = ByLuminance();
    options.method = TonesOptions::Method::MedianCut;
    options.count = 2;
    const Tones result = ReduceToTones(options, image);
    EXPECT_EQ(result.table[250], 250);
    EXPECT_EQ(result.table[10], 10);
}

TEST(ReduceToTones, LetsTransparentPixelsCountForNothingWithAMask)
{
    Image image = GreyPicture({10, 100, 200});
    image.pixels[4 + 3] = 0;
    TonesOptions options;
    options.grey = ByLuminance();
    options.grey.maskFromAlpha = true;
    EXPECT_EQ(ReduceToTones(options, image).levels, 2);
    for (std::size_t i = 3; i < image.pixels.size(); i += 4)
        image.pixels[i] = 0;
    EXPECT_THROW(ReduceToTones(options, image), Failure);
}

TEST(ReduceToTones, TakesItsTonesFromAlphaAndMakesThemOpaque)
{
    Image image = GreyPicture({0, 0, 0, 0});
    for (const std::size_t i : {0u, 1u, 2u, 3u})
        image.pixels[4 * i + 3] = i < 2 ? 40 : 240;
    TonesOptions options;
    options.grey.from = GreyFrom::eFourthChannel;
    options.count = 2;
    ReduceToTones(options, image);
    EXPECT_THAT(Reds(image), ElementsAre(40, 40, 240, 240));
    EXPECT_EQ(image.pixels[3], 255);
}

TEST(ApplyThreshold, PartsDarkFromLight)
{
    Image image = GreyPicture({10, 12, 14, 200, 210, 10});
    ThresholdOptions options;
    options.grey = ByLuminance();
    const Threshold threshold = ApplyThreshold(options, image);
    EXPECT_EQ(threshold.level, 14);
    EXPECT_DOUBLE_EQ(threshold.darkShare, 4.0 / 6.0);
    EXPECT_THAT(Reds(image), ElementsAre(0, 0, 0, 255, 255, 0));

    image = GreyPicture({10, 12, 14, 200, 210, 10});
    options.invert = true;
    ApplyThreshold(options, image);
    EXPECT_THAT(Reds(image), ElementsAre(255, 255, 255, 0, 0, 255));
}

TEST(ApplyThreshold, IgnoresMaskedPixels)
{
    Image image = GreyPicture({0, 100, 110, 200});
    image.pixels[3] = 0;   // without the black, the split lies between 110 and 200
    ThresholdOptions options;
    options.grey = ByLuminance();
    options.grey.maskFromAlpha = true;
    EXPECT_EQ(ApplyThreshold(options, image).level, 110);
}

TEST(ReduceToThreeTones, MakesBlackGreyAndWhite)
{
    Image image = GreyPicture({10, 12, 120, 124, 240, 250});
    ThreeToneOptions options;
    options.grey = ByLuminance();
    options.clusters = 3;
    const ThreeTone result = ReduceToThreeTones(options, image);
    // Boundaries half way: (12 + 120) / 2 and (124 + 240) / 2; the tone is the mean of the middle.
    EXPECT_EQ(result.low, 66);
    EXPECT_EQ(result.high, 182);
    EXPECT_EQ(result.mid, 122);
    EXPECT_THAT(Reds(image), ElementsAre(0, 0, 122, 122, 255, 255));
}

TEST(ReduceToThreeTones, TakesAPictureOfTwoLevelsForShadowAndTone)
{
    Image image = GreyPicture({20, 20, 180, 180});
    ThreeToneOptions options;
    options.grey = ByLuminance();
    const ThreeTone result = ReduceToThreeTones(options, image);
    EXPECT_EQ(result.low, 100);
    EXPECT_EQ(result.high, 255);
    EXPECT_THAT(Reds(image), ElementsAre(0, 0, 100, 100));
}

TEST(Adjust, ByDefaultChangesNothing)
{
    Image image = RandomPicture(50, 40);
    const std::vector<unsigned char> before = image.pixels;
    Adjust({}, image);
    EXPECT_EQ(image.pixels, before);
}

TEST(Adjust, ToNoSaturationLeavesTheLumaAsGrey)
{
    Image image = RandomPicture(50, 40);
    const Image before = image;
    Adjustments adjustments;
    adjustments.saturation = 0.0f;
    Adjust(adjustments, image);
    for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
        const unsigned char* p = before.pixels.data() + i;
        const double luma = 0.299 * p[0] + 0.587 * p[1] + 0.114 * p[2];   // ITU-R BT.601-7, 2.5.1
        ASSERT_NEAR(image.pixels[i], luma, 0.5001);   // rounded to a level in single precision
        ASSERT_EQ(image.pixels[i], image.pixels[i + 2]);
        ASSERT_EQ(image.pixels[i + 3], p[3]);
    }
}

TEST(Adjust, TurnsRedToCyanAsTheComplement)
{
    Image image(1, 1);
    image.pixels = {255, 0, 0, 9};
    Adjustments adjustments;
    adjustments.complementary = true;
    Adjust(adjustments, image);
    EXPECT_THAT(image.pixels, ElementsAre(0, 255, 255, 9));
}

TEST(Adjust, RotatesAboutTheGreyAxisByAThirdOfATurn)
{
    Image image(1, 1);
    image.pixels = {200, 100, 50, 255};
    Adjustments adjustments;
    adjustments.hueDegrees = 120.0f;
    adjustments.rotation = Adjustments::HueRotation::Axis;
    Adjust(adjustments, image);
    EXPECT_THAT(image.pixels, ElementsAre(50, 200, 100, 255));
}

TEST(Adjust, KeepsTheLuminanceInALinearHueRotation)
{
    Image image(1, 1);
    image.pixels = {140, 120, 130, 255};
    const auto luminance = [&] {
        float Y = 0.0f;
        CColor::SRGBToLinearY(
            false, false, CColor::eD65,
            QZ::Math::CVector3<float>(image.pixels[0], image.pixels[1], image.pixels[2]) * (1.0f / 255.0f),
            Y);
        return Y;
    };
    const float before = luminance();
    Adjustments adjustments;
    adjustments.linear = true;
    adjustments.hueDegrees = 90.0f;
    adjustments.rotation = Adjustments::HueRotation::Luminance;
    Adjust(adjustments, image);
    EXPECT_NEAR(luminance(), before, 0.004f);   // half a level of each channel
    EXPECT_NE(image.pixels[0], 140);
}

TEST(Adjust, EqualizesTheLumaAndKeepsGreysGrey)
{
    Image image = GreyPicture({100, 100, 110, 120});
    Adjustments adjustments;
    adjustments.equalize = true;
    Adjust(adjustments, image);
    // The cumulative shares 1/2, 3/4 and 1 of 255, rounded.
    EXPECT_THAT(Reds(image), ElementsAre(128, 128, 191, 255));
    EXPECT_EQ(image.pixels[0], image.pixels[2]);
}

TEST(Adjust, EqualizesEachChannel)
{
    Image image(2, 1);
    image.pixels = {10, 50, 90, 1, 20, 50, 80, 2};
    Adjustments adjustments;
    adjustments.equalizeChannels = true;
    Adjust(adjustments, image);
    EXPECT_THAT(image.pixels, ElementsAre(128, 255, 255, 1, 255, 255, 128, 2));
}

TEST(Adjust, RunsAFilmicCurveOnLinearLight)
{
    Image image(1, 1);
    image.pixels = {255, 128, 0, 255};
    Adjustments adjustments;
    adjustments.hable = {0.0f, 1.0f, 0.0f, 2.0f};   // x / 2
    Adjust(adjustments, image);
    // Half of linear 1 and of 0.2158605, encoded: 187.5 and 92.3 (IEC 61966-2-1).
    EXPECT_THAT(image.pixels, ElementsAre(188, 92, 0, 255));
}

TEST(Adjust, UndoesTheInsomniacGamesCurveByItsInverse)
{
    Image image = GreyPicture({0, 30, 80, 128, 200, 255});
    Adjustments adjustments;
    adjustments.insomniac = {0.0f, 0.3f, 0.2f, 0.4f, 1.0f};
    Adjust(adjustments, image);
    EXPECT_NE(Reds(image)[2], 80);
    adjustments.inverse = true;
    Adjust(adjustments, image);
    const std::vector<int> back = Reds(image);
    const std::vector<int> expected = {0, 30, 80, 128, 200, 255};
    for (std::size_t i = 0; i < back.size(); ++i)
        EXPECT_NEAR(back[i], expected[i], 1);   // the level in between is rounded
}

}   // namespace
