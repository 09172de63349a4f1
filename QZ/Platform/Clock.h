// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "QZ/Export.h"

namespace QZ::Platform {

/// The time that passes, and the time of day.
class QZ_API Clock {
public:
    /// How long a tick lasts: numerator / denominator nanoseconds.
    struct Timebase {
        std::uint32_t numerator;
        std::uint32_t denominator;
    };

    /// Ticks of a clock that never goes back, from an unspecified start.
    [[nodiscard]] static std::uint64_t Ticks() noexcept;
    [[nodiscard]] static Timebase TicksToNanoseconds() noexcept;

    /// Seconds since the reference date, 2001-01-01 00:00 UTC, leap seconds not counted.
    [[nodiscard]] static double SecondsSinceReferenceDate() noexcept;

    /// Takes the ticks from `source` instead, for a host that replays a session or a test that sets the time;
    /// null goes back to the system's clock. The timebase stays.
    static void SetTickSource(std::uint64_t (*source)()) noexcept;
};

}   // namespace QZ::Platform
