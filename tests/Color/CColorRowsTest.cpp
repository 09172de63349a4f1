// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/CColorRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "tests/Support/Floats.h"
#include "tests/Support/Targets.h"
#include "tools/qz/selftest/ConversionList.h"

using namespace QZ::Tool::Selftest;
using QZ::Test::SameBits;
using Colors = std::vector<Color>;
using Pixels = std::vector<unsigned char>;

namespace {

/// Colours whose components walk through the edges at different paces, so that each meets each.
Colors EdgeColors(std::size_t n)
{
    const std::vector<float> values = QZ::Test::EdgesAndRandoms(3 * n + 64);
    Colors colors(n);
    for (std::size_t i = 0; i < n; ++i)
        colors[i] = {values[i], values[(2 * i + 1) % values.size()], values[(3 * i + 2) % values.size()]};
    return colors;
}

Pixels EveryByte(std::size_t n)
{
    Pixels pixels(4 * n);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<unsigned char>(i * 37 + i / 256);
    return pixels;
}

Color OfPixel(const Pixels& pixels, std::size_t i)
{
    return 0.003921569f * Color(pixels[4 * i], pixels[4 * i + 1], pixels[4 * i + 2]);
}

unsigned char ToByte(float encoded)
{
    const float clamped = encoded > 0.0f ? std::min(encoded, 1.0f) : 0.0f;
    return static_cast<unsigned char>(clamped * 255.0f + 0.5f);
}

class ColorRows : public QZ::Test::TargetTest {};
QZ_INSTANTIATE_TARGETS(ColorRows);

constexpr std::size_t kMost = 67;   // past four vectors of the widest lane and a rest
constexpr std::size_t kSeveralBlocks = 2 * 512 + 67;

}   // namespace

TEST_P(ColorRows, GiveTheBitsOfTheSingleConversionAtEveryLength)
{
    const Colors in = EdgeColors(kMost);
    for (const auto& conversion : ColorConversions())
        for (const Settings& settings : AllSettings())
            for (std::size_t count = 0; count <= kMost; ++count) {
                Colors out(count + 1, Color(7, 8, 9));
                conversion.row(settings, {in.data(), count}, {out.data(), count});
                for (std::size_t i = 0; i < count; ++i)
                    ASSERT_TRUE(SameBits(out[i], conversion.single(settings, in[i])))
                        << conversion.name << " at " << i << " of " << count;
                ASSERT_TRUE(SameBits(out[count], Color(7, 8, 9))) << conversion.name << " wrote past its row";
            }
}

TEST_P(ColorRows, GiveTheBitsOfTheSingleConversionAtEveryAlignmentAndInPlace)
{
    const Colors in = EdgeColors(kMost + 16);
    const Settings settings = {{false, true}, CColor::eD65};
    for (const auto& conversion : ColorConversions())
        for (std::size_t start = 0; start < 16; ++start) {
            Colors colors = in;
            conversion.row(settings, {colors.data() + start, kMost}, {colors.data() + start, kMost});
            for (std::size_t i = 0; i < kMost; ++i)
                ASSERT_TRUE(SameBits(colors[start + i], conversion.single(settings, in[start + i])))
                    << conversion.name << " at " << i << " from " << start;
        }
}

TEST_P(ColorRows, GiveTheBitsOfTheSingleConversionOverSeveralBlocksInPlace)
{
    const Colors in = EdgeColors(kSeveralBlocks);
    for (const auto& conversion : ColorConversions())
        for (const Settings& settings : AllSettings()) {
            Colors colors = in;
            conversion.row(settings, colors, colors);
            for (std::size_t i = 0; i < in.size(); ++i)
                ASSERT_TRUE(SameBits(colors[i], conversion.single(settings, in[i])))
                    << conversion.name << " at " << i;
        }
}

TEST_P(ColorRows, ReadPixelsAsBytesTimesTheReciprocalOf255)
{
    for (const std::size_t count : {std::size_t(0), std::size_t(1), std::size_t(15), kMost, kSeveralBlocks}) {
        const Pixels in = EveryByte(count);
        for (const auto& conversion : FromPixelConversions())
            for (const Settings& settings : AllSettings()) {
                Colors out(count);
                conversion.row(settings, in, out);
                for (std::size_t i = 0; i < count; ++i)
                    ASSERT_TRUE(SameBits(out[i], conversion.single(settings, OfPixel(in, i))))
                        << conversion.name << " at " << i << " of " << count;
            }
    }
}

// From 4 MiB on, colours that are only looked up are written past the caches, vectors where a vector may
// begin.
TEST_P(ColorRows, GiveTheSameColorsInALargeRowAtEveryAlignment)
{
    constexpr std::size_t kMany = (std::size_t(4) << 20) / sizeof(Color) + 7;
    const Pixels in = EveryByte(kMany);
    Colors parts(kMany);
    for (std::size_t first = 0; first < kMany; first += 1000) {
        const std::size_t n = std::min<std::size_t>(1000, kMany - first);
        QZ::Foundation::CColorRows::NonlinearToLinearToneCurve(
            false, false, std::span(in).subspan(4 * first, 4 * n), {parts.data() + first, n});
    }
    Colors whole(kMany + 17);
    for (std::size_t start = 0; start < 16; ++start) {
        std::fill(whole.begin(), whole.end(), Color(7, 8, 9));
        QZ::Foundation::CColorRows::NonlinearToLinearToneCurve(false, false, std::span(in),
                                                               {whole.data() + start, kMany});
        for (std::size_t i = 0; i < kMany; ++i)
            ASSERT_TRUE(SameBits(whole[start + i], parts[i])) << i << " from " << start;
        ASSERT_TRUE(SameBits(whole[start + kMany], Color(7, 8, 9)));
        ASSERT_TRUE(start == 0 || SameBits(whole[start - 1], Color(7, 8, 9)));
    }
}

TEST_P(ColorRows, WritePixelsRoundedToTheNearestByteWithAFourthByteOf255)
{
    for (const std::size_t count : {std::size_t(0), std::size_t(1), std::size_t(15), kMost, kSeveralBlocks}) {
        const Colors in = EdgeColors(count);
        for (const auto& conversion : ToPixelConversions())
            for (const Settings& settings : AllSettings()) {
                Pixels out(4 * count + 4, 77);
                conversion.row(settings, in, {out.data(), 4 * count});
                for (std::size_t i = 0; i < count; ++i) {
                    const Color expected = conversion.single(settings, in[i]);
                    for (int c = 0; c < 3; ++c)
                        ASSERT_EQ(out[4 * i + static_cast<std::size_t>(c)], ToByte(expected[c]))
                            << conversion.name << " at " << i << " of " << count;
                    ASSERT_EQ(out[4 * i + 3], 255);
                }
                ASSERT_EQ(out[4 * count], 77) << conversion.name << " wrote past its row";
            }
    }
}
