// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "QZ/Platform/MovieWriter/Box.h"
#include "QZ/Platform/MovieWriter/Layout.h"
#include "QZ/Platform/MovieWriter/Track.h"

namespace QZ::Platform::Movie {

/// The content of a finished track's Sample Table Box.
/// \param index       the track's place in its movie; other tracks' chunks are passed over
/// \param mediaStart  position of the media data in the file
void WriteSampleTables(ByteWriter& out, const Track& track, std::size_t index, std::span<const Chunk> chunks,
                       std::uint64_t mediaStart);

/// The content of the Sample Table Box of a track whose samples lie in fragments.
void WriteEmptySampleTables(ByteWriter& out, const Track& track);

}   // namespace QZ::Platform::Movie
