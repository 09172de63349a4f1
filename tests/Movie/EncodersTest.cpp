// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <ostream>

#include "QZ/Platform/MovieWriter/AudioEncoder.h"
#include "QZ/Platform/MovieWriter/PictureConverter.h"
#include "QZ/Platform/MovieWriter/VideoEncoder.h"

namespace QZ::Platform {

// Tests are named after their parameters.
void PrintTo(VideoCodec codec, std::ostream* out)
{
    *out << (codec == VideoCodec::H264 ? "H264" : codec == VideoCodec::HEVC ? "HEVC" : "ProRes422");
}

}   // namespace QZ::Platform

namespace QZ::Platform::Movie {
namespace {

std::vector<unsigned char> Tone(double sampleRate, std::size_t frames)
{
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = static_cast<float>(
            0.5 * std::sin(2 * std::numbers::pi * 440 * static_cast<double>(i) / sampleRate));
    const auto* bytes = reinterpret_cast<const unsigned char*>(samples.data());
    return {bytes, bytes + frames * sizeof(float)};
}

PCMEntry Floats(double sampleRate, int channels = 1)
{
    return {sampleRate, channels, 32, true, false, true, 4 * channels};
}

class AudioEncoderTest : public ::testing::Test {
protected:
    AudioEncoder encoder;
    std::vector<EncodedSample> samples;
    SampleSink sink = [this](EncodedSample sample) { samples.push_back(std::move(sample)); };
};

TEST_F(AudioEncoderTest, PrimesTheDecoderWithOnePacketBeforeTimeZero)
{
    ASSERT_TRUE(encoder.Open({})) << encoder.Reason();
    ASSERT_TRUE(encoder.Encode(Floats(44100), Tone(44100, 4096), sink)) << encoder.Reason();
    ASSERT_TRUE(encoder.Flush(sink));
    ASSERT_EQ(samples.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(samples[i].presentationTime, (static_cast<std::int64_t>(i) - 1) * 1024);
    EXPECT_EQ(encoder.Position(), 4096);
}

TEST_F(AudioEncoderTest, KeepsTheLengthOfResampledSoundAndOfSilence)
{
    ASSERT_TRUE(encoder.Open({})) << encoder.Reason();
    ASSERT_TRUE(encoder.Encode(Floats(48000), Tone(48000, 48000), sink));
    EXPECT_EQ(encoder.Position(), 44100);
    ASSERT_TRUE(encoder.EncodeSilence(3000, sink));
    EXPECT_EQ(encoder.Position(), 47100);
    ASSERT_TRUE(encoder.Encode(Floats(22050, 2), Tone(22050, 2 * 22050), sink));
    EXPECT_EQ(encoder.Position(), 91200);
    ASSERT_TRUE(encoder.Flush(sink));
    // Every frame is in a packet, behind the priming one.
    EXPECT_GE(samples.back().presentationTime + 1024, 91200);
    EXPECT_LT(samples.back().presentationTime, 91200);
}

TEST_F(AudioEncoderTest, TellsWhatItCannotDo)
{
    EXPECT_FALSE(encoder.Open({.sampleRate = 12345, .channels = 1, .bitRate = 128000}));
    EXPECT_NE(encoder.Reason().find("12345 Hz"), std::string::npos) << encoder.Reason();
}

class VideoEncoderTest : public ::testing::TestWithParam<VideoCodec> {
protected:
    std::vector<EncodedSample> Encode(bool realTime)
    {
        VideoEncoder encoder;
        PictureConverter converter;
        std::vector<EncodedSample> samples;
        const AVPixelFormat format = VideoEncoder::PixelFormat(GetParam());
        EXPECT_TRUE(converter.Open(128, 64, 128, 64, format));
        EXPECT_TRUE(encoder.Open({.codec = GetParam(),
                                  .width = 128,
                                  .height = 64,
                                  .timescale = 600,
                                  .averageBitRate = 400000,
                                  .keyFrameInterval = 10,
                                  .realTime = realTime}))
            << encoder.Reason();
        std::vector<unsigned char> bgra(128 * 64 * 4);
        for (int i = 0; i < 40; ++i) {
            for (std::size_t k = 0; k < bgra.size(); ++k)
                bgra[k] = static_cast<unsigned char>(k / 4 % 128 + static_cast<std::size_t>(3 * i));
            const std::int64_t time = 1000 + i * 20 + i % 3;   // uneven
            EXPECT_TRUE(encoder.Encode(converter.Convert(bgra.data(), 128 * 4), time,
                                       [&](EncodedSample sample) { samples.push_back(std::move(sample)); }));
            // Of H.264 one picture waits for the next one's time, of HEVC up to four are under way as well.
            if (realTime) {
                const std::size_t held = GetParam() == VideoCodec::ProRes422 ? 0
                                         : GetParam() == VideoCodec::H264    ? 1
                                                                             : 5;
                EXPECT_GE(samples.size() + held, static_cast<std::size_t>(i + 1));
            }
        }
        EXPECT_TRUE(
            encoder.Encode(nullptr, 0, [&](EncodedSample sample) { samples.push_back(std::move(sample)); }));
        return samples;
    }
};

TEST_P(VideoEncoderTest, GivesEveryPictureWithItsTimeInRisingOrderOfDecoding)
{
    for (const bool realTime : {false, true}) {
        const std::vector<EncodedSample> samples = Encode(realTime);
        ASSERT_EQ(samples.size(), 40u);
        std::vector<std::int64_t> times;
        for (std::size_t i = 0; i < 40; ++i) {
            times.push_back(samples[i].presentationTime);
            EXPECT_LE(samples[i].decodeTime, samples[i].presentationTime);
            if (i > 0) {
                EXPECT_GT(samples[i].decodeTime, samples[i - 1].decodeTime);
            }
        }
        std::sort(times.begin(), times.end());
        for (std::int64_t i = 0; i < 40; ++i)
            EXPECT_EQ(times[static_cast<std::size_t>(i)], 1000 + i * 20 + i % 3);
    }
}

TEST_P(VideoEncoderTest, GivesAKeyPictureAtLeastEveryInterval)
{
    const std::vector<EncodedSample> samples = Encode(true);
    int since = 0;
    ASSERT_TRUE(samples.at(0).sync);
    for (const EncodedSample& sample : samples) {
        since = sample.sync ? 0 : since + 1;
        EXPECT_LT(since, 10);
    }
}

INSTANTIATE_TEST_SUITE_P(Codecs, VideoEncoderTest,
                         ::testing::Values(VideoCodec::H264, VideoCodec::HEVC, VideoCodec::ProRes422),
                         testing::PrintToStringParamName());

}   // namespace
}   // namespace QZ::Platform::Movie
