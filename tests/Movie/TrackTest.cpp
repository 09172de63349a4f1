// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/Track.h"

#include <gtest/gtest.h>

#include <limits>

#include "QZ/Platform/MovieWriter/Layout.h"

namespace QZ::Platform::Movie {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(Scale, RoundsToTheNearestAndHalvesAwayFromZero)
{
    EXPECT_EQ(Scale(1, 600, 44100), 0);   // 0.0136
    EXPECT_EQ(Scale(7350, 600, 44100), 100);
    EXPECT_EQ(Scale(1, 1, 2), 1);
    EXPECT_EQ(Scale(-1, 1, 2), -1);
    EXPECT_EQ(Scale(-3, 1, 2), -2);
    EXPECT_EQ(Scale(4, 1, 9), 0);
    EXPECT_EQ(Scale(5, 1, 9), 1);
}

TEST(Scale, KeepsProductsThatNeedMoreThan64Bits)
{
    // 2^62 * 44100 / 44100
    EXPECT_EQ(Scale(std::int64_t{1} << 62, 44100, 44100), std::int64_t{1} << 62);
    EXPECT_EQ(Scale(kMost, 2, 1), kMost);
    EXPECT_EQ(Scale(-kMost, 2, 1), std::numeric_limits<std::int64_t>::min());
}

TEST(CommonTimescale, IsTheLeastCommonMultiple)
{
    EXPECT_EQ(CommonTimescale(600, 44100), 88200);
    EXPECT_EQ(CommonTimescale(30000, 24000), 120000);
    EXPECT_EQ(CommonTimescale(600, 600), 600);
}

TEST(CommonTimescale, IsAbsentBeyond31Bits)
{
    EXPECT_EQ(CommonTimescale(1000000000, 44100), std::nullopt);   // 441 * 10^9
    EXPECT_EQ(CommonTimescale(2147483647, 1), 2147483647);
    EXPECT_EQ(CommonTimescale(2147483647, 2), std::nullopt);
}

TEST(Track, KeepsEveryTimeWhenItsTimescaleIsRefined)
{
    Track track;
    track.timescale = 600;
    track.samples = {{.decodeTime = -20, .presentationTime = 0}, {.decodeTime = 0, .presentationTime = 20}};
    track.contentStart = 0;
    track.contentEnd = 40;
    track.lastDuration = 20;
    ASSERT_TRUE(track.Refine(88200));
    EXPECT_EQ(track.timescale, 88200);
    EXPECT_EQ(track.samples[0].decodeTime, -2940);   // -20 * 147
    EXPECT_EQ(track.samples[1].presentationTime, 2940);
    EXPECT_EQ(track.contentEnd, 5880);
    EXPECT_EQ(track.lastDuration, 2940);
}

TEST(Track, RefusesATimescaleInWhichItsTimesDoNotFit)
{
    Track track;
    track.timescale = 1;
    track.contentEnd = kMost / 8;
    EXPECT_FALSE(track.Refine(3));
    EXPECT_EQ(track.timescale, 1);
    EXPECT_EQ(track.contentEnd, kMost / 8);
}

TEST(Movie, CountsInATimescaleThatAllItsClocksShare)
{
    Movie movie;
    movie.sessionStart = {0, 90};
    movie.tracks.resize(2);
    movie.tracks[0].timescale = 600;
    movie.tracks[1].timescale = 44100;
    EXPECT_EQ(movie.Timescale(), 88200);
    movie.tracks[0].timescale = 1000000000;
    EXPECT_EQ(movie.Timescale(), 1000000000);
}

TEST(Interleave, LaysHalfASecondOfEachTrackInTurn)
{
    Movie movie;
    movie.tracks.resize(2);
    for (Track& track : movie.tracks)
        track.timescale = 10;
    for (std::int64_t time = 0; time < 20; ++time)
        movie.tracks[0].samples.push_back({.decodeTime = time, .presentationTime = time, .size = 100});
    movie.tracks[1].samples = {{.decodeTime = 0, .presentationTime = 0, .size = 7},
                               {.decodeTime = 11, .presentationTime = 11, .size = 9}};
    const std::vector<Chunk> chunks = Interleave(movie);
    std::uint64_t offset = 0;
    std::int64_t last = -1;
    std::size_t seen[2] = {0, 0};
    for (const Chunk& chunk : chunks) {
        EXPECT_EQ(chunk.offset, offset);
        EXPECT_EQ(chunk.first, seen[chunk.track]);
        const Track& track = movie.tracks[chunk.track];
        // A chunk reaches no further than half a second, and none begins before its predecessor's window.
        const std::int64_t begin = track.samples[chunk.first].decodeTime;
        EXPECT_LT(track.samples[chunk.first + chunk.count - 1].decodeTime - begin, 5);
        EXPECT_GE(begin, last - 5);
        last = begin;
        offset += chunk.size;
        seen[chunk.track] += chunk.count;
    }
    EXPECT_EQ(seen[0], 20u);
    EXPECT_EQ(seen[1], 2u);
    EXPECT_EQ(offset, 20u * 100 + 7 + 9);
}

}   // namespace
}   // namespace QZ::Platform::Movie
