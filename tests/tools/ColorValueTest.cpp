// SPDX-License-Identifier: MIT
#include "tools/qz/color/ColorValue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

#include "QZ/Foundation/Color/HSLuv.h"
#include "tools/qz/Failure.h"

namespace {

using QZ::Foundation::CColor;
using namespace QZ::Tool;
using testing::HasSubstr;

Triple In(std::string_view space, CColor::EIlluminant white, const Triple& linear)
{
    return FindSpace(space)->from(white, linear);
}

void ExpectNear(const Triple& value, const Triple& expected, float tolerance)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(value[i], expected[i], tolerance) << "component " << i;
}

std::string RefusalOf(std::string_view text)
{
    try {
        static_cast<void>(ParseColor(text, CColor::eD65));
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status, Status::Usage) << text;
        return failure.what();
    }
    ADD_FAILURE() << "taken: " << text;
    return {};
}

TEST(ParseColor, ReadsHexWithAndWithoutItsSignInEitherCase)
{
    const Triple linear = ParseColor("#c86432", CColor::eD65);
    // IEC 61966-2-1 of 200, 100 and 50 over 255, worked in double precision; two float roundings and a power.
    ExpectNear(linear, {0.5775804f, 0.1274377f, 0.0318960f}, 1e-6f);
    EXPECT_EQ(HexOf(SRGBBytes(linear).data()), "#c86432");
    for (const char* text : {"c86432", "#C86432", " #c86432\n"})
        EXPECT_EQ(HexOf(SRGBBytes(ParseColor(text, CColor::eD65)).data()), "#c86432") << text;
}

TEST(ParseColor, ReadsEachSpaceBackToTheColourItWasPrintedFrom)
{
    for (const char* hex : {"#c86432", "#123456", "#40a0f0", "#f0f0f0"}) {
        const Triple linear = ParseColor(hex, CColor::eD65);
        for (const Space& space : Spaces()) {
            if (space.Size() != 3)
                continue;
            for (const auto white : {CColor::eD50, CColor::eD65}) {
                const Triple value = space.from(white, linear);
                const auto text = std::string(space.name) + "(" + std::to_string(value.x) + ", " +
                                  std::to_string(value.y) + ", " + std::to_string(value.z) + ")";
                // The text has six decimals, and some matrices of the library are rounded to three.
                ExpectNear(ParseColor(text, white), linear, 3e-3f);
                EXPECT_EQ(HexOf(SRGBBytes(ParseColor(text, white)).data()), hex) << text;
            }
        }
    }
}

TEST(ParseColor, TakesTheIlluminantThatAValueRefersTo)
{
    const Triple white = ParseColor("xyz(0.9642 1 0.8249)", CColor::eD50);   // ICC.1:2022, 7.2.16
    EXPECT_EQ(HexOf(SRGBBytes(white).data()), "#ffffff");
    EXPECT_EQ(HexOf(SRGBBytes(ParseColor("xyz(0.9505, 1, 1.0891)", CColor::eD65)).data()), "#ffffff");
    EXPECT_NE(HexOf(SRGBBytes(ParseColor("xyz(0.9642 1 0.8249)", CColor::eD65)).data()), "#ffffff");
}

TEST(ParseColor, ReadsALightnessAsAGrey)
{
    const Triple grey = ParseColor("lxx(0.5)", CColor::eD65);
    EXPECT_EQ(HexOf(SRGBBytes(grey).data()), "#777777");   // L* = 50 is sRGB 118.9
}

TEST(ParseColor, DoesNotMindCapitalsHyphensAndBlanks)
{
    const Triple expected = ParseColor("linear-display-p3(0.1, 0.2, 0.3)", CColor::eD65);
    for (const char* text : {"LinearDisplayP3(0.1,0.2,0.3)", " linear_display_p3 ( 0.1  0.2 , 0.3 ) "})
        ExpectNear(ParseColor(text, CColor::eD65), expected, 0.0f);
}

TEST(ParseColor, SaysWhatIsWrongAndWhatToTry)
{
    EXPECT_THAT(RefusalOf(""), HasSubstr("not a colour"));
    EXPECT_THAT(RefusalOf("red"), HasSubstr("not a colour"));
    EXPECT_THAT(RefusalOf("#12345"), HasSubstr("#rrggbb"));
    EXPECT_THAT(RefusalOf("#12345g"), HasSubstr("#rrggbb"));
    EXPECT_THAT(RefusalOf("#1234567"), HasSubstr("#rrggbb"));
    EXPECT_THAT(RefusalOf("#lab(1, 2, 3)"), HasSubstr("#rrggbb"));
    EXPECT_THAT(RefusalOf("cmyk(0, 1, 0)"), HasSubstr("no colour space 'cmyk'; there are srgb, linear-rgb"));
    EXPECT_THAT(RefusalOf("lab(0.1, 0.2)"), HasSubstr("found 2 numbers; lab takes 3 (L a b)"));
    EXPECT_THAT(RefusalOf("lab(0.1, 0.2, 0.3, 0.4)"), HasSubstr("found 4 numbers"));
    EXPECT_THAT(RefusalOf("lab()"), HasSubstr("found 0 numbers"));
    EXPECT_THAT(RefusalOf("lxx(0.1, 0.2, 0.3)"), HasSubstr("lxx takes 1 (L)"));
    EXPECT_THAT(RefusalOf("lab(0.1, 0.2, 0.3"), HasSubstr("parenthesis"));
    EXPECT_THAT(RefusalOf("lab(0.1, 0.2,)"), HasSubstr("last comma"));
    EXPECT_THAT(RefusalOf("lab(0.1,, 0.2)"), HasSubstr("not a number"));
    for (const char* number : {"x", "nan", "inf", "1e99", "0x10", "1.2.3", "--1"})
        EXPECT_THAT(RefusalOf(std::string("lab(0, 0, ") + number + ")"), HasSubstr("is not a number"));
}

TEST(Spaces, GiveThePublishedValuesOfSRGBRed)
{
    const Triple red(1.0f, 0.0f, 0.0f);
    ExpectNear(In("xyz", CColor::eD65, red), {0.4124f, 0.2126f, 0.0193f}, 1e-4f);   // IEC 61966-2-1, 5.2
    ExpectNear(In("yxy", CColor::eD65, red), {0.2126f, 0.64f, 0.33f}, 2e-4f);       // the red primary
    // CIE 15 in double precision from the above: the library's constants are rounded.
    ExpectNear(In("lab", CColor::eD65, red), {0.5324f, 0.8009f, 0.6720f}, 3e-4f);
    ExpectNear(In("luv", CColor::eD65, red), {0.5324f, 1.7501f, 0.3776f}, 1e-3f);
    ExpectNear(In("hsv", CColor::eD65, red), {0.0f, 1.0f, 1.0f}, 1e-7f);          // 1.055 - 0.055 in float
    ExpectNear(In("ycbcr", CColor::eD65, red), {0.299f, -0.169f, 0.5f}, 1e-7f);   // one rounding
    // "#ff0000" of the published snapshot, revision 4; to the precision of a float near 100.
    ExpectNear(In("hsluv", CColor::eD65, red), {12.177051f, 100.0f, 53.237116f}, 1e-4f);
    ExpectNear(In("display-p3", CColor::eD65, red), {0.9175f, 0.2003f, 0.1386f}, 1e-3f);   // CSS Color 4
}

TEST(Spaces, GiveTheValuesOfTheLibraryForAnEncodedColour)
{
    const Triple srgb(0.25f, 0.5f, 0.75f);
    Triple linear;
    CColor::NonlinearToLinearToneCurve(false, false, srgb, linear);
    for (const auto white : {CColor::eD50, CColor::eD65}) {
        Triple expected;
        CColor::SRGBToXYZ(false, false, white, srgb, expected);
        ExpectNear(In("xyz", white, linear), expected, 0.0f);
        CColor::SRGBToLab(false, false, white, srgb, expected);
        ExpectNear(In("lab", white, linear), expected, 0.0f);
        CColor::SRGBToLuv(false, false, white, srgb, expected);
        ExpectNear(In("luv", white, linear), expected, 0.0f);
        CColor::SRGBToIPT(false, false, white, srgb, expected);
        ExpectNear(In("ipt", white, linear), expected, 0.0f);
        CColor::SRGBToLMS(false, false, white, srgb, expected);
        ExpectNear(In("lms", white, linear), expected, 0.0f);
        CColor::SRGBToDisplayP3(false, false, white, srgb, expected);
        ExpectNear(In("display-p3", white, linear), expected, 1e-5f);   // that one clamps on its way
    }
    double h = 0.0, s = 0.0, l = 0.0;
    rgbToHusl(0.25, 0.5, 0.75, &h, &s, &l);
    // qz goes through the float curve there and back.
    ExpectNear(In("hsluv", CColor::eD65, linear),
               {static_cast<float>(h), static_cast<float>(s), static_cast<float>(l)}, 1e-3f);
}

TEST(InSRGB, AllowsHalfALevelAndNoMore)
{
    EXPECT_TRUE(InSRGB({0.0f, 0.5f, 1.0f}));
    EXPECT_TRUE(InSRGB({-0.0001f, 0.5f, 1.004f}));   // 12.92 * 0.0001 and about 0.0018, below 0.00196
    EXPECT_FALSE(InSRGB({-0.0002f, 0.5f, 1.0f}));
    EXPECT_FALSE(InSRGB({0.0f, 0.5f, 1.006f}));
    EXPECT_FALSE(InSRGB({0.0f, std::numeric_limits<float>::quiet_NaN(), 0.0f}));
}

TEST(DescribeColor, NamesEverySpaceAndSaysWhatIsOutsideTheGamut)
{
    const std::string inside = DescribeColor(ParseColor("#804020", CColor::eD65));
    EXPECT_TRUE(inside.starts_with("#804020\n"));
    for (const Space& space : Spaces())
        EXPECT_THAT(inside, HasSubstr("\n" + std::string(space.name) + " "));
    EXPECT_THAT(DescribeColor(ParseColor("display-p3(0, 1, 0)", CColor::eD65)), HasSubstr("outside sRGB"));
}

TEST(ColorAsJson, HoldsTheValuesInBothIlluminantsAsTheShortestDecimals)
{
    const auto document =
        nlohmann::json::parse(ColorAsJson(ParseColor("lab(0.5, 0, 0)", CColor::eD65)).dump());
    EXPECT_EQ(document["hex"], "#777777");
    EXPECT_EQ(document["inSRGB"], true);
    for (const Space& space : Spaces()) {
        const std::string name(space.name);
        if (space.HasWhite()) {
            EXPECT_EQ(document["D50"][name].size(), 3u) << name;
            EXPECT_EQ(document["D65"][name].size(), 3u) << name;
        } else {
            EXPECT_EQ(document["spaces"][name].size(), static_cast<std::size_t>(space.Size())) << name;
        }
    }
    const auto exact = ColorAsJson(Triple(0.2f, 0.1f, 0.7f));
    EXPECT_EQ(exact["spaces"]["linear-rgb"].dump(), "[0.2,0.1,0.7]");
}

TEST(ColorAsJson, WritesNullForWhatIsNoNumber)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const std::string text = ColorAsJson(Triple(infinity, 0.0f, 0.0f)).dump();
    EXPECT_THAT(text, HasSubstr("null"));
    EXPECT_TRUE(nlohmann::json::accept(text));
}

}   // namespace
