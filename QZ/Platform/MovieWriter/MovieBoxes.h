// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "QZ/Platform/MovieWriter/Box.h"
#include "QZ/Platform/MovieWriter/Layout.h"
#include "QZ/Platform/MovieWriter/Track.h"

namespace QZ::Platform::Movie {

/// The opening of a recorded file: its brands and an index without samples, which fragments will follow.
/// Marks the tracks whose format is known as announced; a track without one stays out of the index.
void WriteOpening(ByteWriter& out, Movie& movie);

/// Everything of a finished file that stands before its media data, whose header is included.
/// \param chunks  all samples of all tracks, as Interleave lays them
void WriteFinishedHead(ByteWriter& out, const Movie& movie, std::span<const Chunk> chunks);

}   // namespace QZ::Platform::Movie
