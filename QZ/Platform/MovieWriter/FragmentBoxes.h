// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "QZ/Platform/MovieWriter/Box.h"
#include "QZ/Platform/MovieWriter/Track.h"

namespace QZ::Platform::Movie {

/// The samples of one track that a fragment stores: the last ones of the track's list.
struct FragmentRun {
    const Track* track = nullptr;
    std::span<const Sample> samples;   ///< in decoding order, not empty; their data follow each other
};

/// A fragment up to the first byte of its media data, which hold the runs' samples in their order.
/// \param sequence  from 1, one more each time
/// \param dataSize  all bytes of the media data, which may hold more behind the runs
void WriteFragmentHead(ByteWriter& out, std::uint32_t sequence, std::span<const FragmentRun> runs,
                       std::uint64_t dataSize);

}   // namespace QZ::Platform::Movie
