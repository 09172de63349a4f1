// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/PixelKernels.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/Constants.h"
#include "tests/Support/Floats.h"
#include "tests/Support/Targets.h"

// Every kernel on every instruction set, against CColor on one pixel after the other.

namespace QZ::Foundation {
namespace {

using QZ::Test::SameBits;
using Color = Math::CVector3<float>;
using Pixels = std::vector<unsigned char>;

class PixelKernels : public QZ::Test::TargetTest {};
QZ_INSTANTIATE_TARGETS(PixelKernels);

constexpr CColor::EIlluminant kIlluminants[] = {CColor::eD50, CColor::eD65};

/// Random pixels; every eighth is grey, black and white among them.
Pixels SomePixels(std::size_t n, std::uint32_t seed = 1)
{
    std::mt19937 generator(seed);
    Pixels rgba(4 * n);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t c = 0; c < 4; ++c)
            rgba[4 * i + c] = static_cast<unsigned char>(generator() >> 24);
        if (i % 8 == 0)
            rgba[4 * i] = rgba[4 * i + 1] = rgba[4 * i + 2] =
                static_cast<unsigned char>(i % 24 == 0 ? 0 : 255);
    }
    return rgba;
}

Color UnitColor(const unsigned char* pixel)
{
    return {static_cast<float>(pixel[0]) * 0.003921569f, static_cast<float>(pixel[1]) * 0.003921569f,
            static_cast<float>(pixel[2]) * 0.003921569f};
}

Color LinearColor(bool isSRGB, const unsigned char* pixel)
{
    Color linear = UnitColor(pixel);
    if (isSRGB)
        CColor::NonlinearToLinearToneCurve(false, false, UnitColor(pixel), linear);
    return linear;
}

/// Lengths that cross every tail of every vector, and a whole row.
std::vector<std::size_t> Lengths()
{
    std::vector<std::size_t> lengths = {kRowOfPixels - 1, kRowOfPixels};
    for (std::size_t n = 0; n <= 67; ++n)
        lengths.push_back(n);
    return lengths;
}

TEST_P(PixelKernels, LinearRowLooksEachByteUp)
{
    const Pixels rgba = SomePixels(1000);
    for (const std::size_t n : Lengths()) {
        std::vector<Color> row(n);
        LinearRow(LinearOfSRGBByte(), rgba.data(), n, row.data());
        for (std::size_t i = 0; i < n; ++i)
            ASSERT_TRUE(SameBits(row[i], LinearColor(true, &rgba[4 * i])));
    }
    for (unsigned byte = 0; byte < 256; ++byte) {
        const Pixels pixel(64, static_cast<unsigned char>(byte));
        std::vector<Color> row(16);
        LinearRow(UnitOfByte(), pixel.data(), 16, row.data());
        ASSERT_TRUE(SameBits(row[15], UnitColor(pixel.data()))) << byte;
    }
}

TEST_P(PixelKernels, GreyRowGivesTheRoundedLightness)
{
    const Pixels rgba = SomePixels(1000);
    for (const std::size_t n : Lengths()) {
        Pixels levels(n + 1, 7);
        GreyRow({LinearOfSRGBByte(), Constants::linearRGBLuminanceD65, LightnessByte()}, rgba.data(), n,
                levels.data());
        for (std::size_t i = 0; i < n; ++i) {
            float L = 0.0f;
            CColor::SRGBToLXX(false, false, UnitColor(&rgba[4 * i]), L);
            ASSERT_EQ(levels[i], static_cast<int>(L * 255.0f + 0.5f));
        }
        EXPECT_EQ(levels[n], 7) << "written past the end";
    }
}

TEST_P(PixelKernels, GreyRowGivesTheRoundedEncodedLuminance)
{
    const Pixels rgba = SomePixels(kRowOfPixels, 2);
    for (const CColor::EIlluminant illuminant : kIlluminants) {
        Pixels levels(kRowOfPixels);
        GreyRow({UnitOfByte(), Constants::LinearRGBLuminance(illuminant), EncodedByte(false)}, rgba.data(),
                kRowOfPixels, levels.data());
        for (std::size_t i = 0; i < kRowOfPixels; ++i) {
            float y = 0.0f;
            CColor::LinearRGBToNonlinearY(false, false, illuminant, UnitColor(&rgba[4 * i]), y);
            ASSERT_EQ(levels[i], static_cast<int>(y * 255.0f + 0.5f));
        }
    }
}

/// The library's only exponential is checked where it stands; here the kernel's use of it.
float LogisticFall(float x)
{
    return 1.0f / (static_cast<float>(std::exp(static_cast<double>(x * 10.0f))) + 1.0f);
}

void ToSpace(HueSpace space, CColor::EIlluminant illuminant, const Color& rgb, Color& out)
{
    if (space == HueSpace::Lab)
        CColor::LinearRGBToLab(illuminant, rgb, out);
    else if (space == HueSpace::Luv)
        CColor::LinearRGBToLuv(illuminant, rgb, out);
    else
        CColor::LinearRGBToIPT(illuminant, rgb, out);
}

float HueOf(HueSpace space, const Color& color)
{
    Color polar;
    if (space == HueSpace::IPT)
        CColor::IPTToICH(color, polar);
    else
        CColor::LabToLCh(color, polar);
    return polar.z;
}

/// What a pixel adds to its hue's bin, by single conversions.
struct Sample {
    float hue;
    std::array<float, 4> of;
};
Sample SampleOf(HueSpace space, CColor::EIlluminant illuminant, const unsigned char* pixel)
{
    const Color rgb = LinearColor(true, pixel);
    Color color;
    ToSpace(space, illuminant, rgb, color);
    const float chroma = std::sqrt(color.y * color.y + color.z * color.z);
    const float saturation = CColor::LChSaturation({color.x, chroma, 0.0f});
    const float distance = color.x <= 0.5f ? 0.25f - color.x : color.x - 0.75f;
    const float weight = (LogisticFall(0.5f - saturation) - 0.006692851f) * 1.0135672f *
                         ((LogisticFall(distance) - 0.075858176f) * 1.178851f);
    float Y = 0.0f;
    CColor::LinearRGBToLinearY(false, illuminant, rgb, Y);
    return {HueOf(space, color), {weight, weight * color.y, weight * color.z, weight * Y}};
}

void Add(const Sample& sample, const HueBins& binOf, std::vector<HueSums>& sums)
{
    HueSums& sum = sums[static_cast<std::size_t>(binOf(sample.hue))];
    for (std::size_t k = 0; k < 4; ++k)
        sum.of[k] += static_cast<double>(sample.of[k]);
}

void ExpectEqual(const std::vector<HueSums>& sums, const std::vector<HueSums>& expected)
{
    for (std::size_t bin = 0; bin < expected.size(); ++bin)
        for (std::size_t k = 0; k < 4; ++k)
            ASSERT_EQ(sums[bin].of[k], expected[bin].of[k]) << "sum " << k << " of bin " << bin;
}

TEST_P(PixelKernels, WeighHuesAddsEachPixelToItsBinInTheOrderOfThePixels)
{
    const Pixels rgba = SomePixels(kRowOfPixels, 3);
    const HueBins binOf(36);   // several pixels for many of them
    for (const HueSpace space : {HueSpace::Lab, HueSpace::Luv, HueSpace::IPT})
        for (const CColor::EIlluminant illuminant : kIlluminants)
            for (const std::size_t n : Lengths()) {
                std::vector<HueSums> sums(36, HueSums{{0.5, -1.0, 3.0, 1e9}});
                std::vector<HueSums> expected = sums;
                for (std::size_t i = 0; i < n; ++i)
                    Add(SampleOf(space, illuminant, &rgba[4 * i]), binOf, expected);
                WeighHues({space, illuminant, LinearOfSRGBByte(), binOf}, rgba.data(), n, sums.data());
                ExpectEqual(sums, expected);
            }
}

/// 32 levels of each channel, greys and black among them.
Pixels ManyColors()
{
    Pixels rgba;
    for (int r = 0; r < 32; ++r)
        for (int g = 0; g < 32; ++g)
            for (int b = 0; b < 32; ++b)
                for (const int level : {255 * r / 31, 255 * g / 31, 255 * b / 31, 255})
                    rgba.push_back(static_cast<unsigned char>(level));
    return rgba;
}

TEST_P(PixelKernels, FindTheBinsOfTheExactAngleWhereARoughOneCouldMiss)
{
    const Pixels rgba = ManyColors();
    for (const HueSpace space : {HueSpace::Lab, HueSpace::Luv, HueSpace::IPT}) {
        std::vector<Sample> samples;
        for (std::size_t i = 0; i < rgba.size(); i += 4)
            samples.push_back(SampleOf(space, CColor::eD65, &rgba[i]));
        for (const int bins : {1, 2, 7, 256, 3600, 65536}) {
            const HueBins binOf(bins);
            std::vector<HueSums> sums(static_cast<std::size_t>(bins));
            std::vector<HueSums> expected(static_cast<std::size_t>(bins));
            for (const Sample& sample : samples)
                Add(sample, binOf, expected);
            ForEachRow(samples.size(), [&](std::size_t first, std::size_t n) {
                WeighHues({space, CColor::eD65, LinearOfSRGBByte(), binOf}, &rgba[4 * first], n, sums.data());
            });
            ExpectEqual(sums, expected);
        }
    }
}

TEST_P(PixelKernels, FindPTGivesTheBinAndBothComponents)
{
    const Pixels rgba = SomePixels(kRowOfPixels, 4);
    for (const int bins : {1, 2, 256, 100000000})
        for (const std::size_t n : Lengths()) {
            PTRow row;
            const HueBins binOf(bins);
            FindPT({HueSpace::IPT, CColor::eD65, UnitOfByte(), binOf}, rgba.data(), n, row);
            for (std::size_t i = 0; i < n; ++i) {
                Color ipt;
                CColor::LinearRGBToIPT(CColor::eD65, UnitColor(&rgba[4 * i]), ipt);
                ASSERT_EQ(row.bin[i], binOf(HueOf(HueSpace::IPT, ipt)));
                ASSERT_TRUE(SameBits(row.P[i], ipt.y));
                ASSERT_TRUE(SameBits(row.T[i], ipt.z));
            }
        }
}

TEST_P(PixelKernels, RecolorRowKeepsIntensityAndChroma)
{
    const Pixels before = SomePixels(kRowOfPixels, 5);
    std::vector<Math::CVector2<float>> colours;
    for (int bin = 0; bin < 50; ++bin)
        colours.emplace_back(std::sin(static_cast<float>(bin)), std::cos(static_cast<float>(bin)));
    const HueBins binOf(50);
    for (const std::size_t n : Lengths()) {
        Pixels rgba = before;
        RecolorRow({CColor::eD50, UnitOfByte(), EncodedByte(true), binOf, colours.data()}, rgba.data(), n);
        for (std::size_t i = 0; i < n; ++i) {
            Color ipt;
            CColor::LinearRGBToIPT(CColor::eD50, UnitColor(&before[4 * i]), ipt);
            const auto& colour = colours[static_cast<std::size_t>(binOf(HueOf(HueSpace::IPT, ipt)))];
            const float magnitude = std::sqrt(ipt.y * ipt.y + ipt.z * ipt.z);
            Color rgb;
            CColor::IPTToSRGB(true, false, CColor::eD50, {ipt.x, colour.x * magnitude, colour.y * magnitude},
                              rgb);
            ASSERT_EQ(rgba[4 * i], static_cast<int>(rgb.x * 255.0f + 0.5f));
            ASSERT_EQ(rgba[4 * i + 1], static_cast<int>(rgb.y * 255.0f + 0.5f));
            ASSERT_EQ(rgba[4 * i + 2], static_cast<int>(rgb.z * 255.0f + 0.5f));
            const float luma = 0.114f * static_cast<float>(rgba[4 * i + 2]) +
                               0.587f * static_cast<float>(rgba[4 * i + 1]) +
                               0.299f * static_cast<float>(rgba[4 * i]);
            ASSERT_EQ(rgba[4 * i + 3], static_cast<int>(luma + 0.5f));
        }
        for (std::size_t i = 4 * n; i < rgba.size(); ++i)
            ASSERT_EQ(rgba[i], before[i]) << "written past the end";
    }
}

TEST_P(PixelKernels, BalanceRowTruncatesTheAdaptedColour)
{
    std::vector<Color> linear;
    const std::vector<float> floats = QZ::Test::EdgesAndRandoms(3 * kRowOfPixels, 6);
    for (std::size_t i = 0; i < kRowOfPixels; ++i)
        linear.emplace_back(floats[3 * i], floats[3 * i + 1], floats[3 * i + 2]);
    const Math::CMatrix3<float> adaptation(1.1f, -0.1f, 0.02f, 0.05f, 0.9f, 0.01f, -0.02f, 0.03f, 0.8f);
    for (const bool isP3 : {false, true})
        for (const std::size_t n : Lengths()) {
            Pixels rgba(4 * n + 1, 9);
            const auto& toRGB = isP3 ? CColor::XYZToLinearDisplayP3Matrix(CColor::eD65)
                                     : CColor::XYZToLinearRGBMatrix(CColor::eD65);
            BalanceRow(
                {Constants::LinearRGBToXYZ(CColor::eD65), adaptation, toRGB, TruncatedSRGBByte(), !isP3},
                linear.data(), n, rgba.data());
            for (std::size_t i = 0; i < n; ++i) {
                Color xyz;
                CColor::LinearRGBToXYZ(CColor::eD65, linear[i], xyz);
                Color rgb;
                if (isP3)
                    CColor::XYZToDisplayP3(false, CColor::eD65, adaptation * xyz, rgb);
                else
                    CColor::XYZToSRGB(false, false, CColor::eD65, adaptation * xyz, rgb);
                for (int c = 0; c < 3; ++c)
                    ASSERT_EQ(rgba[4 * i + static_cast<std::size_t>(c)],
                              TruncateToRange(rgb[c] * 255.0f, 0, 255));
                ASSERT_EQ(rgba[4 * i + 3], 255);
            }
            EXPECT_EQ(rgba[4 * n], 9) << "written past the end";
        }
}

}   // namespace
}   // namespace QZ::Foundation
