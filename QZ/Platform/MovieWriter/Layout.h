// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "QZ/Platform/MovieWriter/Track.h"

namespace QZ::Platform::Movie {

/// Consecutive samples of one track that lie together in the finished file.
struct Chunk {
    std::size_t track = 0;   ///< index into Movie::tracks
    std::size_t first = 0;   ///< index into Track::samples
    std::size_t count = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0;   ///< from the first byte of the media data
};

/// Interleaves the tracks by time: half a second of each in turn, in the tracks' order.
[[nodiscard]] std::vector<Chunk> Interleave(const Movie& movie);

}   // namespace QZ::Platform::Movie
