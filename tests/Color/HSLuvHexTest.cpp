// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <random>
#include <stdexcept>

#include "QZ/Foundation/Color/HSLuv.h"

namespace {

using testing::ElementsAre;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// The three bytes of the text, or none.
std::vector<double> Bytes(const std::string& text)
{
    double r = -7.0, g = -7.0, b = -7.0;
    if (hexToRgb(text, &r, &g, &b))
        return {r * 255.0, g * 255.0, b * 255.0};
    EXPECT_TRUE(r == -7.0 && g == -7.0 && b == -7.0) << "a failure writes nothing";
    return {};
}

std::optional<std::uint32_t> Number(const std::string& text)
{
    std::uint32_t value = 77;
    if (hexToInt(text, &value))
        return value;
    EXPECT_EQ(value, 77u) << "a failure writes nothing";
    return std::nullopt;
}

std::string MessageOf(double channel)
{
    try {
        static_cast<void>(roundTo6decimals(channel));
    } catch (const std::out_of_range& error) {
        return error.what();
    }
    return "";
}

}   // namespace

TEST(RoundTo6Decimals, RoundsHalvesAwayFromZero)
{
    EXPECT_EQ(roundTo6decimals(0.1234565), 0.123457);   // 123456.5 exactly, once multiplied
    EXPECT_EQ(roundTo6decimals(0.1234564), 0.123456);
    EXPECT_EQ(roundTo6decimals(1.0000004), 1.0);
    EXPECT_EQ(roundTo6decimals(-0.0000004), 0.0);
    EXPECT_TRUE(std::isnan(roundTo6decimals(kNaN)));
}

TEST(RoundTo6Decimals, RefusesWhatIsOutsideTheRangeOnceRounded)
{
    EXPECT_EQ(MessageOf(1.1), "Illegal rgb value: 1.1");
    EXPECT_EQ(MessageOf(1.0000006), "Illegal rgb value: 1.000001");
    EXPECT_EQ(MessageOf(-0.25), "Illegal rgb value: -0.25");
    EXPECT_EQ(MessageOf(std::numeric_limits<double>::infinity()), "Illegal rgb value: inf");
    EXPECT_EQ(MessageOf(1.0000004), "");
}

TEST(RGBToHex, WritesTwoUpperCaseDigitsAChannel)
{
    EXPECT_EQ(rgbToHex(1, 0.5, 0), "#FF8000");   // 127.5 rounds upwards
    EXPECT_EQ(rgbToHex(0, 0, 0), "#000000");
    EXPECT_EQ(rgbToHex(171.0 / 255, 205.0 / 255, 239.0 / 255), "#ABCDEF");
    EXPECT_EQ(rgbToHex(-0.0000004, 1.0000004, 10.0 / 255), "#00FF0A");
    EXPECT_EQ(rgbToHex(kNaN, 0, 1), "#0000FF");
}

TEST(RGBToHex, RefusesAChannelOutsideTheRange)
{
    EXPECT_THROW(static_cast<void>(rgbToHex(1.1, 0, 0)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(rgbToHex(0, -0.1, 0)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(rgbToHex(0, 0, 2)), std::out_of_range);
}

TEST(HexToRGB, ReadsThreePairs)
{
    EXPECT_THAT(Bytes("#FF8000"), ElementsAre(255, 128, 0));
    EXPECT_THAT(Bytes("#abCDef"), ElementsAre(171, 205, 239));
}

TEST(HexToRGB, AsksForSevenCharactersWithOrWithoutTheSign)
{
    EXPECT_THAT(Bytes("FF8000"), ElementsAre());
    EXPECT_THAT(Bytes("#FF800"), ElementsAre());
    EXPECT_THAT(Bytes(""), ElementsAre());
    EXPECT_THAT(Bytes("FF8000Z"), ElementsAre(255, 128, 0));
    EXPECT_THAT(Bytes("#FF8000 and more"), ElementsAre(255, 128, 0));
}

TEST(HexToRGB, ReadsEachPairAsANumberOfItsOwn)
{
    EXPECT_THAT(Bytes("# F8 7Z"), ElementsAre(15, 8, 7));
    EXPECT_THAT(Bytes("#GG0000"), ElementsAre());
    EXPECT_THAT(Bytes("#00G000"), ElementsAre());
    EXPECT_THAT(Bytes("#0000G0"), ElementsAre());
    EXPECT_THAT(Bytes("#  0000"), ElementsAre());
    EXPECT_THAT(Bytes("#0x0000"), ElementsAre()) << "a prefix without a digit";
    EXPECT_THAT(Bytes("##FF8000"), ElementsAre()) << "only one sign is dropped";
}

TEST(HexToInt, ReadsUpToTheFirstOtherCharacter)
{
    EXPECT_EQ(Number("1aZ"), 26u);
    EXPECT_EQ(Number("FFFFFFFF"), 0xFFFFFFFFu);
    EXPECT_EQ(Number("00000000000000000001"), 1u);
    EXPECT_EQ(Number("12 34"), 0x12u);
}

TEST(HexToInt, SkipsWhiteSpaceAndAPrefix)
{
    EXPECT_EQ(Number(" \t\n\v\f\r0xFF"), 255u);
    EXPECT_EQ(Number("0Xff"), 255u);
    EXPECT_EQ(Number("0"), 0u);
    EXPECT_EQ(Number("00x1"), 0u);
}

TEST(HexToInt, RefusesTextWithoutADigit)
{
    for (const char* text : {"", " ", "0x", "0xG", "0x 1", "x1", "-1", "+1", "#1", "G"})
        EXPECT_EQ(Number(text), std::nullopt) << text;
}

TEST(HexToInt, SaturatesPast32Bits)
{
    EXPECT_EQ(Number("100000000"), 0xFFFFFFFFu);
    EXPECT_EQ(Number("0x123456789ABCDEF0123456789"), 0xFFFFFFFFu);
    EXPECT_EQ(Number("0FFFFFFFE"), 0xFFFFFFFEu);
}

TEST(HexToRGB, ReadsWhatRGBToHexWrote)
{
    std::mt19937 random(5);
    for (int i = 0; i < 1000; ++i) {
        const auto byte = [&] { return static_cast<double>(random() % 256); };
        const double r = byte(), g = byte(), b = byte();
        EXPECT_THAT(Bytes(rgbToHex(r / 255, g / 255, b / 255)), ElementsAre(r, g, b));
    }
}
