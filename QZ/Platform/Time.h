// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "QZ/Export.h"

namespace QZ::Platform {

/// A rational time: `value` / `timescale` seconds, in one of several timelines (`epoch`).
///
/// The value is meant only when `flags` says so; the zero-initialised Time is an invalid one.
struct Time {
    std::int64_t value;
    std::int32_t timescale;   ///< ticks a second, positive
    std::uint32_t flags;      ///< a sum of TimeFlags
    std::int64_t epoch;       ///< 0 but for media that loop or restart
};

/// What `Time::flags` is made of.
enum TimeFlags : std::uint32_t {
    kTimeValid = 1,              ///< without it the time is invalid, whatever the rest says
    kTimeRounded = 2,            ///< some operation rounded the value; it compares like any other
    kTimePositiveInfinity = 4,   ///< later than every number
    kTimeNegativeInfinity = 8,   ///< earlier than every number
    kTimeIndefinite = 16,        ///< unknown, such as the duration of a live broadcast
};

/// Zero seconds: 0 / 1, valid.
inline constexpr Time TimeZero = {0, 1, kTimeValid, 0};

/// The time `value` / `timescale` seconds of epoch 0.
/// \param timescale  ticks a second; a time made with zero or less is invalid.
[[nodiscard]] QZ_API Time MakeTime(std::int64_t value, std::int32_t timescale) noexcept;

/// Whether a time is a number of seconds: valid, finite, not indefinite, of a positive timescale.
[[nodiscard]] QZ_API bool IsNumeric(const Time& time) noexcept;

/// The number of seconds of a numeric time, rounded once to double precision but for values beyond 2^53;
/// infinities give infinities, invalid and indefinite times NaN.
[[nodiscard]] QZ_API double TimeInSeconds(const Time& time) noexcept;

/// Compares exactly, with 128-bit products: no timescale and no value overflows or rounds.
///
/// This is a total order, so that times can be sorted:
/// negative infinity < every number < indefinite < positive infinity < invalid,
/// each of the four equal to itself. A number of a larger epoch is greater than any of a smaller one. A time
/// whose timescale is not positive counts as invalid.
/// \return -1 when a < b, 0 when they are equal (1/2 equals 30/60), 1 when a > b.
[[nodiscard]] QZ_API int CompareTime(const Time& a, const Time& b) noexcept;

}   // namespace QZ::Platform
