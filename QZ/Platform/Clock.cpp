// SPDX-License-Identifier: MIT
#include "QZ/Platform/Clock.h"

#include <atomic>
#include <chrono>

namespace QZ::Platform {

namespace {

std::atomic<std::uint64_t (*)()> tickSource = nullptr;

}   // namespace

std::uint64_t Clock::Ticks() noexcept
{
    if (auto* source = tickSource.load())
        return source();
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::nanoseconds(sinceStart).count());
}

Clock::Timebase Clock::TicksToNanoseconds() noexcept
{
    return {1, 1};
}

double Clock::SecondsSinceReferenceDate() noexcept
{
    constexpr double kReferenceDate = 978307200.0;   // 2001-01-01 00:00 UTC in POSIX time
    const auto sincePosixEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sincePosixEpoch).count() - kReferenceDate;
}

void Clock::SetTickSource(std::uint64_t (*source)()) noexcept
{
    tickSource = source;
}

}   // namespace QZ::Platform
