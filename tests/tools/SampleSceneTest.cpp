// SPDX-License-Identifier: MIT
#include "tools/qz/scene/SampleScene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>
#include <vector>

#include "QZ/Foundation/Color/CColor.h"

namespace {

using QZ::Tool::Image;
using QZ::Tool::RenderSampleScene;

const Image& Small()
{
    static const Image image = RenderSampleScene(120, 80);
    return image;
}

int GreyOf(const unsigned char* p)
{
    return (299 * p[0] + 587 * p[1] + 114 * p[2]) / 1000;
}

TEST(SampleScene, IsTheSameBytesEachTime)
{
    EXPECT_EQ(Small().pixels, RenderSampleScene(120, 80).pixels);
}

TEST(SampleScene, FillsAnySizeWithOpaquePixels)
{
    for (const auto& [width, height] : {std::pair(1, 1), std::pair(7, 3), std::pair(3, 7)}) {
        const Image image = RenderSampleScene(width, height);
        ASSERT_EQ(image.width, width);
        ASSERT_EQ(image.height, height);
        ASSERT_EQ(image.pixels.size(), 4 * image.Count());
        for (std::size_t i = 3; i < image.pixels.size(); i += 4)
            EXPECT_EQ(image.pixels[i], 255);
    }
}

TEST(SampleScene, HasAboutAsManyColoursAsPixels)
{
    std::set<std::array<unsigned char, 3>> colours;
    for (std::size_t i = 0; i < Small().Count(); ++i) {
        const unsigned char* p = Small().pixels.data() + 4 * i;
        colours.insert({p[0], p[1], p[2]});
    }
    EXPECT_GT(colours.size(), Small().Count() * 8 / 10);
}

TEST(SampleScene, ReachesFromDeepShadowsToHighlights)
{
    std::vector<int> greys;
    for (std::size_t i = 0; i < Small().Count(); ++i)
        greys.push_back(GreyOf(Small().pixels.data() + 4 * i));
    std::ranges::sort(greys);
    EXPECT_LT(greys[greys.size() / 50], 32) << "one pixel in fifty is dark";
    EXPECT_GT(greys[greys.size() - greys.size() / 50], 170) << "and one in fifty is bright";
    EXPECT_GT(greys.back(), 230);
    EXPECT_LT(greys.front(), 16);
}

TEST(SampleScene, HasSaturatedColoursAllAroundTheHueCircleAndMutedOnes)
{
    std::array<int, 6> sextants{};
    int muted = 0;
    for (std::size_t i = 0; i < Small().Count(); ++i) {
        const unsigned char* p = Small().pixels.data() + 4 * i;
        QZ::Math::CVector3<float> hsv;
        QZ::Foundation::CColor::RGBToHSV({p[0] / 255.0f, p[1] / 255.0f, p[2] / 255.0f}, hsv);
        if (hsv.y > 0.45f && hsv.z > 0.25f)
            ++sextants[static_cast<std::size_t>(hsv.x * 6.0f) % 6];
        else if (hsv.y < 0.25f)
            ++muted;
    }
    EXPECT_GE(std::ranges::count_if(sextants, [](int count) { return count >= 10; }), 4)
        << "red to yellow, yellow to green, cyan and blue at the least";
    EXPECT_GT(muted, static_cast<int>(Small().Count()) / 10);
}

TEST(SampleScene, HasAWarmCast)
{
    double red = 0.0, blue = 0.0;
    for (std::size_t i = 0; i < Small().Count(); ++i) {
        red += Small().pixels[4 * i];
        blue += Small().pixels[4 * i + 2];
    }
    EXPECT_GT(red, 1.25 * blue);
}

TEST(SampleScene, HasNoiseOrTextureEverywhere)
{
    int equal = 0;
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x + 1 < 120; ++x)
            equal += std::equal(Small().At(x, y), Small().At(x, y) + 3, Small().At(x + 1, y)) ? 1 : 0;
    EXPECT_LT(equal, 80 * 119 / 50);
}

}   // namespace
