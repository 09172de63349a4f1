// SPDX-License-Identifier: MIT
#include "QZ/Platform/Time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace QZ::Platform;

namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int32_t kFinest = std::numeric_limits<std::int32_t>::max();

Time WithFlags(std::uint32_t flags)
{
    return {7, 600, flags, 0};
}

}   // namespace

TEST(MakeTime, IsValidOfEpochZero)
{
    const Time time = MakeTime(-1, 60);
    EXPECT_EQ(time.value, -1);
    EXPECT_EQ(time.timescale, 60);
    EXPECT_EQ(time.flags, 1u);
    EXPECT_EQ(time.epoch, 0);
}

TEST(MakeTime, IsInvalidWithoutAPositiveTimescale)
{
    EXPECT_EQ(MakeTime(1, 0).flags, 0u);
    EXPECT_EQ(MakeTime(1, -30).flags, 0u);
}

TEST(CompareTime, TakesEqualFractionsForEqual)
{
    EXPECT_EQ(CompareTime(MakeTime(1, 2), MakeTime(30, 60)), 0);
    EXPECT_EQ(CompareTime(MakeTime(0, 1), MakeTime(0, 90000)), 0);
    EXPECT_EQ(CompareTime(MakeTime(1001, 30000), MakeTime(2002, 60000)), 0);
}

TEST(CompareTime, OrdersFractionsBySeconds)
{
    EXPECT_EQ(CompareTime(MakeTime(1, 3), MakeTime(1, 2)), -1);
    EXPECT_EQ(CompareTime(MakeTime(1, 2), MakeTime(1, 3)), 1);
    EXPECT_EQ(CompareTime(MakeTime(-1, 60), MakeTime(0, 1)), -1);
    EXPECT_EQ(CompareTime(MakeTime(-1, 2), MakeTime(-1, 3)), -1);
}

// kLargest * kFinest needs 94 bits; in 64 both products wrap, in double precision both round to the same
// number.
TEST(CompareTime, IsExactWhereProductsOverflow)
{
    EXPECT_EQ(CompareTime(MakeTime(kLargest, kFinest), MakeTime(kLargest - 1, kFinest)), 1);
    EXPECT_EQ(CompareTime(MakeTime(kLargest, kFinest), MakeTime(kLargest, kFinest - 1)), -1);
    EXPECT_EQ(CompareTime(MakeTime(kSmallest, 1), MakeTime(kSmallest, kFinest)), -1);
    EXPECT_EQ(CompareTime(MakeTime(kSmallest, 1), MakeTime(kLargest, 1)), -1);
    EXPECT_EQ(CompareTime(MakeTime(kLargest, kFinest), MakeTime(kLargest, kFinest)), 0);
}

TEST(CompareTime, OrdersTheTimesThatAreNoNumbers)
{
    const std::vector<Time> ascending = {WithFlags(kTimeValid | kTimeNegativeInfinity),
                                         MakeTime(kSmallest, 1),
                                         MakeTime(kLargest, 1),
                                         WithFlags(kTimeValid | kTimeIndefinite),
                                         WithFlags(kTimeValid | kTimePositiveInfinity),
                                         Time{}};
    for (std::size_t i = 0; i < ascending.size(); ++i)
        for (std::size_t j = 0; j < ascending.size(); ++j)
            EXPECT_EQ(CompareTime(ascending[i], ascending[j]), (i > j) - (i < j)) << i << " and " << j;
}

TEST(CompareTime, TakesAnyInvalidTimeForAnyOther)
{
    EXPECT_EQ(CompareTime(Time{}, {5, 600, 0, 3}), 0);
    EXPECT_EQ(CompareTime(Time{}, {5, 600, kTimePositiveInfinity, 0}), 0);   // infinite, but not valid
    EXPECT_EQ(CompareTime(Time{}, {5, 0, kTimeValid, 0}), 0);
    EXPECT_EQ(CompareTime(Time{}, {5, -600, kTimeValid, 0}), 0);
}

TEST(CompareTime, IgnoresTheValueOfAnInfiniteTime)
{
    EXPECT_EQ(CompareTime({1, 1, kTimeValid | kTimePositiveInfinity, 0},
                          {2, 1, kTimeValid | kTimePositiveInfinity, 9}),
              0);
}

TEST(CompareTime, IgnoresThatAValueWasRounded)
{
    EXPECT_EQ(CompareTime(WithFlags(kTimeValid | kTimeRounded), WithFlags(kTimeValid)), 0);
}

TEST(CompareTime, PutsALaterEpochBehindEveryNumberOfAnEarlierOne)
{
    EXPECT_EQ(CompareTime({kSmallest, 1, kTimeValid, 1}, MakeTime(kLargest, 1)), 1);
    EXPECT_EQ(CompareTime({0, 1, kTimeValid, -1}, TimeZero), -1);
}

TEST(TimeInSeconds, DividesNumbersAndNamesTheRest)
{
    EXPECT_EQ(TimeInSeconds(MakeTime(3, 2)), 1.5);
    EXPECT_EQ(TimeInSeconds(MakeTime(-1, 60)), -1.0 / 60.0);
    EXPECT_EQ(TimeInSeconds(WithFlags(kTimeValid | kTimePositiveInfinity)), HUGE_VAL);
    EXPECT_EQ(TimeInSeconds(WithFlags(kTimeValid | kTimeNegativeInfinity)), -HUGE_VAL);
    EXPECT_TRUE(std::isnan(TimeInSeconds(WithFlags(kTimeValid | kTimeIndefinite))));
    EXPECT_TRUE(std::isnan(TimeInSeconds(Time{})));
}

TEST(IsNumeric, MeansAValidFiniteNumber)
{
    EXPECT_TRUE(IsNumeric(MakeTime(-1, 60)));
    EXPECT_TRUE(IsNumeric(WithFlags(kTimeValid | kTimeRounded)));
    EXPECT_FALSE(IsNumeric(Time{}));
    EXPECT_FALSE(IsNumeric(MakeTime(1, 0)));
    EXPECT_FALSE(IsNumeric(WithFlags(kTimeValid | kTimeIndefinite)));
    EXPECT_FALSE(IsNumeric(WithFlags(kTimeValid | kTimePositiveInfinity)));
    EXPECT_FALSE(IsNumeric(WithFlags(kTimeValid | kTimeNegativeInfinity)));
}
