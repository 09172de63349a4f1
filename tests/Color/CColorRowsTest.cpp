// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/CColorRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "QZ/Foundation/Color/CColor.h"
#include "tests/Support/Floats.h"
#include "tests/Support/Targets.h"

using QZ::Foundation::CColor;
using QZ::Foundation::CColorRows;
using QZ::Test::SameBits;
using Color = QZ::Math::CVector3<float>;
using Colors = std::vector<Color>;
using Pixels = std::vector<unsigned char>;
using White = CColor::EIlluminant;

namespace {

/// A conversion's leading arguments: its flags in order, and its illuminant.
struct Settings {
    bool flags[2];
    White white;
};

std::vector<Settings> AllSettings()
{
    std::vector<Settings> all;
    for (const bool first : {false, true})
        for (const bool second : {false, true})
            for (const White white : {CColor::eD50, CColor::eD65})
                all.push_back({{first, second}, white});
    return all;
}

/// A conversion of one colour and its row, with the leading arguments taken from Settings.
template <class In, class Out>
struct Conversion {
    std::string name;
    std::function<Color(const Settings&, const Color&)> single;
    std::function<void(const Settings&, In, Out)> row;
};

template <class... Arguments>
auto Bound([[maybe_unused]] const Settings& settings)
{
    [[maybe_unused]] int flag = 0;
    [[maybe_unused]] const auto value = [&](auto type) {
        if constexpr (std::is_same_v<decltype(type), bool>)
            return settings.flags[flag++];
        else
            return settings.white;
    };
    return std::tuple<Arguments...>{value(Arguments())...};
}

/// The pair of functions of one name, out of all overloads those with these leading arguments.
template <class In, class Out, class... Arguments>
struct Pair {
    static Conversion<In, Out> Named(const char* name, void (*single)(Arguments..., const Color&, Color&),
                                     void (*row)(Arguments..., In, Out))
    {
        return {name,
                [single](const Settings& s, const Color& in) {
                    Color out;
                    std::apply([&](auto... a) { single(a..., in, out); }, Bound<Arguments...>(s));
                    return out;
                },
                [row](const Settings& s, In in, Out out) {
                    std::apply([&](auto... a) { row(a..., in, out); }, Bound<Arguments...>(s));
                }};
    }
};

#define QZ_ROW(name, ...) \
    Pair<In, Out __VA_OPT__(, ) __VA_ARGS__>::Named(#name, &CColor::name, &CColorRows::name)

auto ColorConversions()
{
    using In = CColorRows::Colors;
    using Out = CColorRows::ColorsOut;
    return std::vector<Conversion<In, Out>>{
        QZ_ROW(NonlinearToLinearToneCurve, bool, bool),
        QZ_ROW(LinearToNonlinearToneCurve, bool, bool),
        QZ_ROW(NonlinearToLinear709ToneCurve),
        QZ_ROW(LinearToNonlinear709ToneCurve),
        QZ_ROW(NonlinearToLinearApple709ToneCurve),
        QZ_ROW(LinearToNonlinearApple709ToneCurve),
        QZ_ROW(SRGBToRGB709),
        QZ_ROW(LinearRGBToXYZ, White),
        QZ_ROW(XYZToLinearRGB, bool, White),
        QZ_ROW(SRGBToXYZ, bool, bool, White),
        QZ_ROW(XYZToSRGB, bool, bool, White),
        QZ_ROW(SRGBToYCbCr),
        QZ_ROW(YCbCrToSRGB),
        QZ_ROW(RGBToYIQ),
        QZ_ROW(YIQToRGB),
        QZ_ROW(XYZtoLab, White),
        QZ_ROW(LabToXYZ, White),
        QZ_ROW(LinearRGBToLab, White),
        QZ_ROW(LabToLinearRGB, bool, White),
        QZ_ROW(SRGBToLab, bool, bool, White),
        QZ_ROW(LabToSRGB, bool, bool, White),
        QZ_ROW(ExtendedRangeSRGBToLab, bool, White),
        QZ_ROW(LabToExtendedRangeSRGB, bool, White),
        QZ_ROW(LabToLCh),
        QZ_ROW(XYZtoLuv, White),
        QZ_ROW(LuvToXYZ, White),
        QZ_ROW(LinearRGBToLuv, White),
        QZ_ROW(LuvToLinearRGB, bool, White),
        QZ_ROW(SRGBToLuv, bool, bool, White),
        QZ_ROW(LuvToSRGB, bool, bool, White),
        QZ_ROW(LuvToLChuv),
        QZ_ROW(XYZToYxy),
        QZ_ROW(YxyToXYZ),
        QZ_ROW(LinearRGBToYxy, White),
        QZ_ROW(YxyToLinearRGB, bool, White),
        QZ_ROW(RGBToHSV),
        QZ_ROW(HSVToRGB),
        QZ_ROW(XYZToIPT, White),
        QZ_ROW(IPTToXYZ, White),
        QZ_ROW(LinearRGBToIPT, White),
        QZ_ROW(IPTToLinearRGB, bool, White),
        QZ_ROW(SRGBToIPT, bool, bool, White),
        QZ_ROW(IPTToSRGB, bool, bool, White),
        QZ_ROW(IPTToICH),
        QZ_ROW(ICHToIPT),
        QZ_ROW(LinearRGBToICH, White),
        QZ_ROW(ICHToLinearRGB, bool, White),
        QZ_ROW(SRGBToLMS, bool, bool, White),
        QZ_ROW(LinearDisplayP3ToXYZ, White),
        QZ_ROW(XYZToLinearDisplayP3, White),
        QZ_ROW(DisplayP3ToXYZ, bool, White),
        QZ_ROW(XYZToDisplayP3, bool, White),
        QZ_ROW(LinearDisplayP3ToDisplayP3, bool),
        QZ_ROW(DisplayP3ToSRGB, bool, bool, White),
        QZ_ROW(SRGBToDisplayP3, bool, bool, White),
        QZ_ROW(DisplayP3ToLab, bool, White),
        QZ_ROW(LabToDisplayP3, bool, White),
        QZ_ROW(DisplayP3ToIPT, bool, White),
        QZ_ROW(IPTToDisplayP3, bool, White),
        QZ_ROW(LinearDisplayP3ToIPT, White),
        QZ_ROW(IPTToLinearDisplayP3, White),
    };
}

auto FromPixelConversions()
{
    using In = CColorRows::Pixels;
    using Out = CColorRows::ColorsOut;
    return std::vector<Conversion<In, Out>>{
        QZ_ROW(NonlinearToLinearToneCurve, bool, bool),
        QZ_ROW(SRGBToRGB709),
        QZ_ROW(SRGBToXYZ, bool, bool, White),
        QZ_ROW(SRGBToLab, bool, bool, White),
        QZ_ROW(ExtendedRangeSRGBToLab, bool, White),
        QZ_ROW(SRGBToLuv, bool, bool, White),
        QZ_ROW(SRGBToIPT, bool, bool, White),
        QZ_ROW(SRGBToLMS, bool, bool, White),
        QZ_ROW(DisplayP3ToXYZ, bool, White),
        QZ_ROW(DisplayP3ToSRGB, bool, bool, White),
        QZ_ROW(SRGBToDisplayP3, bool, bool, White),
        QZ_ROW(DisplayP3ToLab, bool, White),
        QZ_ROW(DisplayP3ToIPT, bool, White),
    };
}

auto ToPixelConversions()
{
    using In = CColorRows::Colors;
    using Out = CColorRows::PixelsOut;
    return std::vector<Conversion<In, Out>>{
        QZ_ROW(LinearToNonlinearToneCurve, bool, bool),
        QZ_ROW(XYZToSRGB, bool, bool, White),
        QZ_ROW(LabToSRGB, bool, bool, White),
        QZ_ROW(LabToExtendedRangeSRGB, bool, White),
        QZ_ROW(LuvToSRGB, bool, bool, White),
        QZ_ROW(IPTToSRGB, bool, bool, White),
        QZ_ROW(XYZToDisplayP3, bool, White),
        QZ_ROW(LinearDisplayP3ToDisplayP3, bool),
        QZ_ROW(DisplayP3ToSRGB, bool, bool, White),
        QZ_ROW(SRGBToDisplayP3, bool, bool, White),
        QZ_ROW(LabToDisplayP3, bool, White),
        QZ_ROW(IPTToDisplayP3, bool, White),
    };
}

#undef QZ_ROW

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

TEST_P(ColorRows, ReadPixelsAsBytesTimesTheReciprocalOf255)
{
    for (const std::size_t count :
         {std::size_t(0), std::size_t(1), std::size_t(15), kMost, std::size_t(1024)}) {
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

TEST_P(ColorRows, WritePixelsRoundedToTheNearestByteWithAFourthByteOf255)
{
    for (const std::size_t count :
         {std::size_t(0), std::size_t(1), std::size_t(15), kMost, std::size_t(1024)}) {
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
