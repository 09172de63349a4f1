// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/PictureConverter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>

namespace QZ::Platform::Movie {
namespace {

using Colour = std::array<unsigned char, 3>;   // R, G, B

std::vector<unsigned char> Paint(int width, int height, const std::function<Colour(int x, int y)>& colour)
{
    std::vector<unsigned char> bgra;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Colour c = colour(x, y);
            bgra.insert(bgra.end(), {c[2], c[1], c[0], 77});
        }
    }
    return bgra;
}

int At(const AVFrame& picture, int plane, int x, int y)
{
    return picture.data[plane][std::ptrdiff_t{y} * picture.linesize[plane] + x];
}

int At10(const AVFrame& picture, int plane, int x, int y)
{
    const unsigned char* sample = picture.data[plane] + std::ptrdiff_t{y} * picture.linesize[plane] + 2 * x;
    return sample[0] | sample[1] << 8;
}

// ITU-R BT.709, 3.2 to 3.4, in 8 bits: Y = 16 + 219 (0.2126 R + 0.7152 G + 0.0722 B), Cb = 128 + 224 (B - Y')
// / 1.8556, Cr = 128 + 224 (R - Y') / 1.5748, Y' being the luma from 0 to 1.
struct Expectation {
    Colour colour;
    int luma, blue, red;
};
constexpr Expectation kExpectations[] = {
    {{255, 255, 255}, 235, 128, 128}, {{0, 0, 0}, 16, 128, 128},   {{255, 0, 0}, 63, 102, 240},
    {{0, 255, 0}, 173, 42, 26},       {{0, 0, 255}, 32, 240, 118}, {{128, 128, 128}, 126, 128, 128},
};

TEST(PictureConverter, GivesBT709OfLimitedRange)
{
    for (const Expectation& expected : kExpectations) {
        PictureConverter converter;
        ASSERT_TRUE(converter.Open(32, 16, 32, 16, AV_PIX_FMT_YUV420P));
        const auto bgra = Paint(32, 16, [&](int, int) { return expected.colour; });
        const AVFrame* picture = converter.Convert(bgra.data(), 32 * 4);
        ASSERT_NE(picture, nullptr);
        for (int y = 0; y < 16; y += 5) {
            for (int x = 0; x < 32; x += 7) {
                // The library's fixed-point matrix may round a value near a half the other way.
                EXPECT_NEAR(At(*picture, 0, x, y), expected.luma, 1);
                EXPECT_NEAR(At(*picture, 1, x / 2, y / 2), expected.blue, 1);
                EXPECT_NEAR(At(*picture, 2, x / 2, y / 2), expected.red, 1);
            }
        }
    }
}

TEST(PictureConverter, GivesTenBitsForProRes)
{
    PictureConverter converter;
    ASSERT_TRUE(converter.Open(32, 16, 32, 16, AV_PIX_FMT_YUV422P10LE));
    const auto bgra = Paint(32, 16, [](int, int) { return Colour{255, 0, 0}; });
    const AVFrame* picture = converter.Convert(bgra.data(), 32 * 4);
    ASSERT_NE(picture, nullptr);
    // Four times the 8-bit values before rounding: 250.2, 409.3, 960; one step is the fixed-point matrix's.
    EXPECT_NEAR(At10(*picture, 0, 9, 9), 250, 1);
    EXPECT_NEAR(At10(*picture, 1, 9, 9), 409, 1);
    EXPECT_NEAR(At10(*picture, 2, 9, 9), 960, 1);
}

TEST(PictureConverter, SitesChromaOnTheLeftPixelOfEachPair)
{
    PictureConverter converter;
    ASSERT_TRUE(converter.Open(64, 16, 64, 16, AV_PIX_FMT_YUV420P));
    // Blue rises by 4 a pixel, so the chroma sample k, sited on pixel 2k, sees blue 8k; half a pixel to the
    // right, it would see 2 more, which is 0.88 in Cb.
    const auto bgra = Paint(64, 16, [](int x, int) {
        return Colour{0, 0, static_cast<unsigned char>(4 * x)};
    });
    const AVFrame* picture = converter.Convert(bgra.data(), 64 * 4);
    ASSERT_NE(picture, nullptr);
    double difference = 0;
    for (int k = 4; k < 28; ++k)
        difference += At(*picture, 1, k, 4) - (128 + 224 * (1 - 0.0722) / 1.8556 * 8 * k / 255);
    // The mean of 24 roundings to integers, each off by half at most.
    EXPECT_NEAR(difference / 24, 0, 0.25);
}

TEST(PictureConverter, FillsAWiderOutputAndCropsAboveAndBelow)
{
    PictureConverter converter;
    ASSERT_TRUE(converter.Open(64, 64, 64, 32, AV_PIX_FMT_YUV420P));
    const auto bgra = Paint(64, 64, [](int, int y) {
        return y < 16 || y >= 48 ? Colour{0, 0, 0} : Colour{255, 255, 255};
    });
    const AVFrame* picture = converter.Convert(bgra.data(), 64 * 4);
    ASSERT_NE(picture, nullptr);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_EQ(At(*picture, 0, x, y), 235) << x << " " << y;
}

TEST(PictureConverter, FillsATallerOutputAndCropsOnBothSides)
{
    PictureConverter converter;
    ASSERT_TRUE(converter.Open(96, 32, 64, 64, AV_PIX_FMT_YUV420P));
    const auto bgra = Paint(96, 32, [](int x, int) {
        return x < 32 || x >= 64 ? Colour{0, 0, 0} : Colour{255, 255, 255};
    });
    const AVFrame* picture = converter.Convert(bgra.data(), 96 * 4);
    ASSERT_NE(picture, nullptr);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_EQ(At(*picture, 0, x, y), 235) << x << " " << y;
}

TEST(PictureConverter, RepeatsTheLastColumnAndRowOfAnOddSize)
{
    PictureConverter converter;
    ASSERT_TRUE(converter.Open(33, 17, 33, 17, AV_PIX_FMT_YUV420P));
    EXPECT_EQ(converter.CodedWidth(), 34);
    EXPECT_EQ(converter.CodedHeight(), 18);
    const auto bgra = Paint(33, 17, [](int x, int y) {
        const auto grey = static_cast<unsigned char>(7 * x + y);
        return Colour{grey, grey, grey};
    });
    const AVFrame* picture = converter.Convert(bgra.data(), 33 * 4);
    ASSERT_NE(picture, nullptr);
    for (int y = 0; y < 17; ++y) {
        for (int x = 0; x < 33; ++x)
            EXPECT_NEAR(At(*picture, 0, x, y), 16 + 219.0 * (7 * x + y) / 255, 1);   // rounding
        EXPECT_EQ(At(*picture, 0, 33, y), At(*picture, 0, 32, y));
    }
    for (int x = 0; x < 34; ++x)
        EXPECT_EQ(At(*picture, 0, x, 17), At(*picture, 0, x, 16));
}

TEST(PictureConverter, ScalesToAnOddSizeOnePixelWide)
{
    PictureConverter converter;
    ASSERT_TRUE(converter.Open(64, 64, 1, 1, AV_PIX_FMT_YUV420P));
    const auto bgra = Paint(64, 64, [](int, int) { return Colour{255, 255, 255}; });
    const AVFrame* picture = converter.Convert(bgra.data(), 64 * 4);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(At(*picture, 0, 0, 0), 235);
    EXPECT_EQ(At(*picture, 0, 1, 1), 235);
}

TEST(PictureConverter, UsesAPictureAgainOnlyWhenNobodyRefersToIt)
{
    PictureConverter converter;
    ASSERT_TRUE(converter.Open(32, 16, 32, 16, AV_PIX_FMT_YUV420P));
    const auto bgra = Paint(32, 16, [](int, int) { return Colour{9, 9, 9}; });
    AVFrame* first = converter.Convert(bgra.data(), 32 * 4);
    EXPECT_EQ(converter.Convert(bgra.data(), 32 * 4), first);
    const Owned<AVFrame> reference(av_frame_clone(first));
    EXPECT_NE(converter.Convert(bgra.data(), 32 * 4), first);
}

}   // namespace
}   // namespace QZ::Platform::Movie
