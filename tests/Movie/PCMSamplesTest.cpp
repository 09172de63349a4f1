// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/PCMSamples.h"

#include <gtest/gtest.h>

#include <cmath>

namespace QZ::Platform::Movie {
namespace {

using Bytes = std::vector<unsigned char>;
using Floats = std::vector<float>;

PCMEntry Format(int bits, bool isFloat, bool isBigEndian, bool isSigned = true)
{
    return {44100, 1, bits, isFloat, isBigEndian, isSigned, bits / 8};
}

TEST(ReadPCM, ReadsIntegersInBothOrdersOfBytes)
{
    EXPECT_EQ(ReadPCM(Format(16, false, false), Bytes{0x00, 0x40, 0x00, 0x80, 0xFF, 0x7F}),
              (Floats{0.5f, -1.0f, 32767.0f / 32768.0f}));
    EXPECT_EQ(ReadPCM(Format(16, false, true), Bytes{0x40, 0x00, 0x80, 0x00}), (Floats{0.5f, -1.0f}));
    EXPECT_EQ(ReadPCM(Format(24, false, false), Bytes{0, 0, 0xC0}), (Floats{-0.5f}));
    EXPECT_EQ(ReadPCM(Format(32, false, true), Bytes{0x80, 0, 0, 0}), (Floats{-1.0f}));
}

TEST(ReadPCM, CountsUnsignedIntegersFromTheMiddle)
{
    EXPECT_EQ(ReadPCM(Format(8, false, false, false), Bytes{0, 128, 192}), (Floats{-1.0f, 0.0f, 0.5f}));
}

TEST(ReadPCM, ReadsFloatingPointAndSilencesWhatIsNoNumber)
{
    // IEEE 754 binary32: 0.25 is 3E800000, NaN 7FC00000; binary64: -2 is C000000000000000.
    EXPECT_EQ(ReadPCM(Format(32, true, true), Bytes{0x3E, 0x80, 0, 0, 0x7F, 0xC0, 0, 0}),
              (Floats{0.25f, 0.0f}));
    EXPECT_EQ(ReadPCM(Format(64, true, false), Bytes{0, 0, 0, 0, 0, 0, 0, 0xC0}), (Floats{-2.0f}));
}

TEST(ReadPCM, LeavesOutARestThatIsNoFrame)
{
    PCMEntry stereo = Format(16, false, false);
    stereo.channels = 2;
    stereo.bytesPerFrame = 4;
    EXPECT_EQ(ReadPCM(stereo, Bytes{0, 0, 0, 0x40, 0, 0}), (Floats{0.0f, 0.5f}));
}

TEST(IsReadable, RefusesFormatsThatReadPCMDoesNotKnow)
{
    EXPECT_TRUE(IsReadable(Format(16, false, false)));
    EXPECT_FALSE(IsReadable(Format(12, false, false)));
    EXPECT_FALSE(IsReadable(Format(16, true, false)));
    PCMEntry gaps = Format(16, false, false);
    gaps.bytesPerFrame = 4;
    EXPECT_FALSE(IsReadable(gaps));
    PCMEntry rate = Format(16, false, false);
    rate.sampleRate = std::nan("");
    EXPECT_FALSE(IsReadable(rate));
}

}   // namespace
}   // namespace QZ::Platform::Movie
