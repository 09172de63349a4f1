// SPDX-License-Identifier: MIT
#include "QZ/Platform/Time.h"

#include <limits>

namespace QZ::Platform {

namespace {

/// The places of the order that CompareTime documents.
enum Rank { kNegativeInfinity, kNumber, kIndefinite, kPositiveInfinity, kInvalid };

Rank RankOf(const Time& time) noexcept
{
    if (!(time.flags & kTimeValid))
        return kInvalid;
    if (time.flags & kTimePositiveInfinity)
        return kPositiveInfinity;
    if (time.flags & kTimeNegativeInfinity)
        return kNegativeInfinity;
    if (time.flags & kTimeIndefinite)
        return kIndefinite;
    return time.timescale > 0 ? kNumber : kInvalid;
}

template <class T>
int Compare(T a, T b) noexcept
{
    return (a > b) - (a < b);
}

__extension__ typedef __int128 Int128;   // 64 by 32 bits need 95 and a sign

}   // namespace

Time MakeTime(std::int64_t value, std::int32_t timescale) noexcept
{
    return {value, timescale, timescale > 0 ? kTimeValid : 0u, 0};
}

bool IsNumeric(const Time& time) noexcept
{
    return RankOf(time) == kNumber;
}

double TimeInSeconds(const Time& time) noexcept
{
    switch (RankOf(time)) {
        case kNumber:
            return static_cast<double>(time.value) / time.timescale;
        case kPositiveInfinity:
            return std::numeric_limits<double>::infinity();
        case kNegativeInfinity:
            return -std::numeric_limits<double>::infinity();
        default:
            return std::numeric_limits<double>::quiet_NaN();
    }
}

int CompareTime(const Time& a, const Time& b) noexcept
{
    const Rank rankA = RankOf(a), rankB = RankOf(b);
    if (rankA != rankB || rankA != kNumber)
        return Compare<int>(rankA, rankB);
    if (a.epoch != b.epoch)
        return Compare(a.epoch, b.epoch);
    return Compare(Int128{a.value} * b.timescale, Int128{b.value} * a.timescale);
}

}   // namespace QZ::Platform
