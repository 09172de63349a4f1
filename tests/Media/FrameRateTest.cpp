// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/FrameRate.h"

#include <gtest/gtest.h>

#include <limits>

#include "QZ/Platform/Clock.h"

using QZ::Foundation::FrameRate;
using QZ::Platform::Clock;

namespace {

std::uint64_t now;   // in ticks, which last a nanosecond on this platform

/// The clock shows `now`.
class FrameRateTest : public testing::Test {
protected:
    FrameRateTest()
    {
        now = 5'000'000'000;
        Clock::SetTickSource([] { return now; });
    }
    ~FrameRateTest() override { Clock::SetTickSource(nullptr); }

    static void UpdateAfter(FrameRate& meter, std::uint64_t ticks)
    {
        now += ticks;
        meter.Update();
    }
};

}   // namespace

TEST_F(FrameRateTest, IsZeroBelowTwoTimeStamps)
{
    FrameRate meter;
    EXPECT_EQ(meter.Rate(), 0.0);
    EXPECT_EQ(meter.LatestTime(), 0u);
    EXPECT_EQ(meter.LatestTimeInSec(), 0.0);
    meter.Update();
    EXPECT_EQ(meter.Rate(), 0.0);
    EXPECT_EQ(meter.LatestTime(), 5'000'000'000u);
    EXPECT_DOUBLE_EQ(meter.LatestTimeInSec(), 5.0);   // 1e-9 is not exact
}

TEST_F(FrameRateTest, OfTwoTimeStampsIsTheInverseOfTheirDistance)
{
    FrameRate meter;
    meter.Update();
    UpdateAfter(meter, 40'000'000);
    EXPECT_DOUBLE_EQ(meter.Rate(), 25.0);   // 1e-9 is not exact
}

TEST_F(FrameRateTest, CountsTheIntervalsThatItHolds)
{
    FrameRate meter(4);
    meter.Update();
    UpdateAfter(meter, 1'000'000'000);
    UpdateAfter(meter, 2'000'000'000);
    EXPECT_DOUBLE_EQ(meter.Rate(), 2.0 / 3.0);
    UpdateAfter(meter, 3'000'000'000);   // full, the latest in the last slot
    EXPECT_DOUBLE_EQ(meter.Rate(), 3.0 / 6.0);
    UpdateAfter(meter, 4'000'000'000);   // the first time stamp goes
    EXPECT_EQ(meter.latestIndex, 0u);
    EXPECT_DOUBLE_EQ(meter.Rate(), 3.0 / 9.0);
    UpdateAfter(meter, 5'000'000'000);
    EXPECT_EQ(meter.latestIndex, 1u);
    EXPECT_DOUBLE_EQ(meter.Rate(), 3.0 / 12.0);
    UpdateAfter(meter, 6'000'000'000);
    UpdateAfter(meter, 7'000'000'000);
    EXPECT_EQ(meter.latestIndex, 3u);
    EXPECT_DOUBLE_EQ(meter.Rate(), 3.0 / 18.0);
}

TEST_F(FrameRateTest, OverwritesSlotZeroWithTheThirtyThirdTimeStamp)
{
    FrameRate meter;
    for (int i = 0; i < 32; ++i)
        UpdateAfter(meter, 10);
    EXPECT_EQ(meter.latestIndex, 31u);
    UpdateAfter(meter, 10);
    EXPECT_EQ(meter.latestIndex, 0u);
    EXPECT_EQ(meter.timeStamps.size(), 32u);
    EXPECT_EQ(meter.timeStamps[0], now);
    EXPECT_EQ(meter.timeStamps[1], now - 31 * 10);   // the oldest
    EXPECT_DOUBLE_EQ(meter.Rate(), 1e8);
    EXPECT_EQ(meter.frameCount, 33u);
}

TEST_F(FrameRateTest, IsInfiniteWithinOneTick)
{
    FrameRate meter;
    meter.Update();
    meter.Update();
    EXPECT_EQ(meter.Rate(), std::numeric_limits<double>::infinity());
}

TEST_F(FrameRateTest, ResetKeepsTheCapacity)
{
    FrameRate meter(3);
    for (int i = 0; i < 5; ++i)
        UpdateAfter(meter, 10);
    meter.Reset();
    EXPECT_EQ(meter.capacity, 3u);
    EXPECT_EQ(meter.frameCount, 0u);
    EXPECT_EQ(meter.latestIndex, 0u);
    EXPECT_TRUE(meter.timeStamps.empty());
    EXPECT_EQ(meter.Rate(), 0.0);
}

TEST_F(FrameRateTest, TakesACapacityOfZeroForOne)
{
    FrameRate meter(0);
    EXPECT_EQ(meter.capacity, 1u);
    for (int i = 0; i < 3; ++i)
        UpdateAfter(meter, 10);
    EXPECT_EQ(meter.LatestTime(), now);
    EXPECT_EQ(meter.Rate(), 0.0);
    meter.Initialize(0);
    EXPECT_EQ(meter.capacity, 1u);
}

TEST(FrameRate, KeepsThirtyTwoTimeStampsByDefault)
{
    EXPECT_EQ(FrameRate().capacity, 32u);
}

TEST(FrameRate, MeasuresTheSystemsClock)
{
    FrameRate meter;
    meter.Update();
    const std::uint64_t first = meter.LatestTime();
    while (Clock::Ticks() == first) {
    }
    meter.Update();
    const auto span = static_cast<double>(meter.LatestTime() - first);
    EXPECT_DOUBLE_EQ(meter.Rate(), 1.0 / (span * meter.secondsPerTick));
}
