// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "QZ/Export.h"

namespace QZ::Foundation {

/// The frame rate of the latest frames: the number of intervals between the kept time stamps over the seconds
/// that they span. For one thread.
/// \code
///     FrameRate meter;          // the last 31 intervals
///     while (ShowFrame()) {
///         meter.Update();
///         Print(meter.Rate());
///     }
/// \endcode
class QZ_API FrameRate {
public:
    /// Keeps 32 time stamps.
    FrameRate();
    /// \param timeStampCount  how many time stamps are kept, from 2 on to measure anything; 0 counts as 1.
    explicit FrameRate(unsigned long timeStampCount);

    /// Starts anew with another capacity; 0 counts as 1.
    void Initialize(unsigned long timeStampCount);
    /// Starts anew with the same capacity.
    void Reset();

    /// A frame was shown now.
    void Update();

    /// \return  frames a second; 0 with fewer than 2 time stamps, infinity when all of them are the same tick.
    [[nodiscard]] double Rate() const;
    /// \return  the newest time stamp in ticks of the system's monotonic clock; 0 when there is none.
    [[nodiscard]] std::uint64_t LatestTime() const;
    /// \return  the newest time stamp in seconds; 0 when there is none.
    [[nodiscard]] double LatestTimeInSec() const;

    double secondsPerTick;
    std::vector<std::uint64_t> timeStamps;   ///< in ticks: grows to the capacity, then is a ring
    std::uint64_t capacity;
    std::uint64_t latestIndex;   ///< of the newest time stamp
    std::uint64_t frameCount;    ///< calls of Update since the start
};

}   // namespace QZ::Foundation
