// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "QZ/Platform/MovieWriter/Box.h"
#include "QZ/Platform/MovieWriter/Track.h"

namespace QZ::Platform::Movie {

/// When a track is shown: after `gap`, from its media time `mediaTime` on, for `shown`.
struct Edit {
    std::int64_t gap = 0;         ///< in ticks of the movie
    std::int64_t mediaTime = 0;   ///< in ticks of the track, from its first sample's decoding
    std::int64_t shown = 0;       ///< in ticks of the movie
    [[nodiscard]] std::int64_t Duration() const { return gap + shown; }
};
[[nodiscard]] Edit EditOf(const Track& track, const Moment& sessionStart, std::int32_t movieTimescale);

/// A track's boxes; `sampleTables` writes what stands in its Sample Table Box.
/// \param finished  false: the durations are not known yet and written as 0
void WriteTrack(ByteWriter& out, const Track& track, const Moment& sessionStart, std::int32_t movieTimescale,
                bool finished, const std::function<void()>& sampleTables);

/// A transformation as the file keeps it, from the six numbers a, b, c, d, tx, ty.
void Matrix(ByteWriter& out, const double (&matrix)[6]);

/// Names what a metadata or media box holds; `component` is empty or one of QuickTime's two kinds.
void Handler(ByteWriter& out, std::string_view component, std::string_view type, std::string_view name);

}   // namespace QZ::Platform::Movie
