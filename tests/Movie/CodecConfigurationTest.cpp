// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/CodecConfiguration.h"

#include <gtest/gtest.h>

namespace QZ::Platform::Movie {
namespace {

using Bytes = std::vector<unsigned char>;

TEST(SizedUnits, PutsASizeInPlaceOfEachStartCode)
{
    const Bytes stream = {0, 0, 0, 1, 0x67, 1, 2, 0, 0, 1, 0x68, 3, 0, 0, 0, 1, 0x65};
    EXPECT_EQ(SizedUnits(stream), (Bytes{0, 0, 0, 3, 0x67, 1, 2, 0, 0, 0, 2, 0x68, 3, 0, 0, 0, 1, 0x65}));
}

TEST(SizedUnits, KeepsZerosInsideAUnitAndDropsThoseBetweenUnits)
{
    const Bytes stream = {0, 0, 1, 0x65, 0, 0, 3, 1, 9, 0, 0, 0, 0, 0, 1, 0x41, 7};
    EXPECT_EQ(SizedUnits(stream), (Bytes{0, 0, 0, 6, 0x65, 0, 0, 3, 1, 9, 0, 0, 0, 2, 0x41, 7}));
}

TEST(SizedUnits, IsEmptyWithoutAStartCode)
{
    EXPECT_TRUE(SizedUnits(Bytes{}).empty());
    EXPECT_TRUE(SizedUnits(Bytes{0, 0}).empty());
    EXPECT_TRUE(SizedUnits(Bytes{0, 0, 1}).empty());
    EXPECT_TRUE(SizedUnits(Bytes{1, 2, 3, 4}).empty());
}

// ISO/IEC 14496-15, 5.3.3.1.2, laid out by hand.
TEST(AVCConfiguration, HoldsTheParameterSetsAndTheProfile)
{
    const Bytes main = {0, 0, 0, 1, 0x67, 77, 0x40, 31, 0xAA, 0, 0, 0, 1, 0x68, 0xBB};
    EXPECT_EQ(AVCConfiguration(main),
              (Bytes{1, 77, 0x40, 31, 0xFF, 0xE1, 0, 5, 0x67, 77, 0x40, 31, 0xAA, 1, 0, 2, 0x68, 0xBB}));
}

TEST(AVCConfiguration, TellsChromaAndDepthFromTheHighProfileOn)
{
    const Bytes high = {0, 0, 1, 0x67, 100, 0, 40, 0xAA, 0, 0, 1, 0x68, 0xBB};
    EXPECT_EQ(AVCConfiguration(high), (Bytes{1,  100,  0, 40, 0xFF, 0xE1, 0,    5,    0x67, 100,  0,
                                             40, 0xAA, 1, 0,  2,    0x68, 0xBB, 0xFD, 0xF8, 0xF8, 0}));
}

TEST(AVCConfiguration, IsEmptyWhenAParameterSetIsMissing)
{
    EXPECT_TRUE(AVCConfiguration(Bytes{0, 0, 1, 0x67, 100, 0, 40, 1}).empty());
    EXPECT_TRUE(AVCConfiguration(Bytes{0, 0, 1, 0x68, 1}).empty());
    EXPECT_TRUE(AVCConfiguration(Bytes{0, 0, 1, 0x67, 0, 0, 1, 0x68, 1}).empty());
    EXPECT_TRUE(AVCConfiguration(Bytes{}).empty());
}

// A sequence parameter set with one layer, nesting, Main profile, level 93: its constraint bytes 00 00 00
// hold an emulation prevention byte in the stream, which is no part of the profile. ISO/IEC
// 14496-15, 8.3.3.1.2.
TEST(HEVCConfiguration, TakesProfileTierAndLevelWithoutEmulationPrevention)
{
    const Bytes video = {0x40, 1, 0x0C};
    const Bytes sequence = {0x42, 1, 0x01, 0x01, 0x60, 0, 0, 3, 0, 0x90, 0, 0, 3, 0, 0, 3, 0, 93, 0xA0};
    const Bytes picture = {0x44, 1, 0xC1};
    Bytes stream;
    for (const Bytes& unit : {video, sequence, picture}) {
        stream.insert(stream.end(), {0, 0, 0, 1});
        stream.insert(stream.end(), unit.begin(), unit.end());
    }
    Bytes expected = {1,    0x01, 0x60, 0,    0,    0,    0x90, 0, 0,    0,
                      0,    0,    93,   // profile to level: twelve bytes
                      0xF0, 0,    0xFC, 0xFD, 0xF8, 0xF8, 0,    0, 0x0F, 3};
    const auto append = [&expected](unsigned char type, const Bytes& unit) {
        expected.insert(expected.end(), {static_cast<unsigned char>(0x80 | type), 0, 1, 0,
                                         static_cast<unsigned char>(unit.size())});
        expected.insert(expected.end(), unit.begin(), unit.end());
    };
    append(32, video);
    append(33, sequence);
    append(34, picture);
    EXPECT_EQ(HEVCConfiguration(stream), expected);
}

TEST(HEVCConfiguration, IsEmptyWhenAParameterSetIsMissingOrTooShort)
{
    EXPECT_TRUE(HEVCConfiguration(Bytes{0, 0, 1, 0x40, 1, 2, 0, 0, 1, 0x42, 1, 1}).empty());
    EXPECT_TRUE(HEVCConfiguration(Bytes{0, 0, 1, 0x40, 1, 2, 0, 0, 1, 0x42, 1, 1, 0, 0, 1, 0x44, 1}).empty());
}

}   // namespace
}   // namespace QZ::Platform::Movie
