// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/FrameRate.h"

#include <algorithm>

#include "QZ/Platform/Clock.h"

namespace QZ::Foundation {

FrameRate::FrameRate() : FrameRate(32)
{}

FrameRate::FrameRate(unsigned long timeStampCount)
{
    Initialize(timeStampCount);
}

void FrameRate::Initialize(unsigned long timeStampCount)
{
    latestIndex = 0;
    capacity = std::max(timeStampCount, 1ul);
    timeStamps.clear();
    timeStamps.reserve(capacity);
    const Platform::Clock::Timebase timebase = Platform::Clock::TicksToNanoseconds();
    secondsPerTick = timebase.numerator * 1e-9 / timebase.denominator;
    frameCount = 0;
}

void FrameRate::Reset()
{
    Initialize(capacity);
}

void FrameRate::Update()
{
    const std::uint64_t now = Platform::Clock::Ticks();
    const std::uint64_t stored = timeStamps.size();
    if (stored != capacity) {
        timeStamps.push_back(now);
        latestIndex = stored;
    } else {
        latestIndex = latestIndex == stored - 1 ? 0 : latestIndex + 1;
        timeStamps[latestIndex] = now;
    }
    ++frameCount;
}

double FrameRate::Rate() const
{
    const std::uint64_t stored = timeStamps.size();
    if (stored < 2)
        return 0.0;
    const bool wrapped = stored == capacity && latestIndex != stored - 1;
    const std::uint64_t oldest = wrapped ? latestIndex + 1 : 0;
    const std::uint64_t span = timeStamps[latestIndex] - timeStamps[oldest];
    return static_cast<double>(stored - 1) / (static_cast<double>(span) * secondsPerTick);
}

std::uint64_t FrameRate::LatestTime() const
{
    return timeStamps.empty() ? 0 : timeStamps[latestIndex];
}

double FrameRate::LatestTimeInSec() const
{
    return static_cast<double>(LatestTime()) * secondsPerTick;
}

}   // namespace QZ::Foundation
