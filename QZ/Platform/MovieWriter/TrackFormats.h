// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "QZ/Platform/MovieWriter/Channel.h"
#include "QZ/Platform/MovieWriter/SampleEntries.h"

namespace QZ::Platform::Movie {

/// Why no track can be made with these settings; empty when one can.
[[nodiscard]] std::string WhyUnsuitable(MediaType type, const OutputSettings& output);

/// Whether a track of these settings can take the buffer: uncompressed sound to be encoded; uncompressed
/// sound, AAC or timed metadata to pass through.
[[nodiscard]] bool SuitsTrack(const ChannelSettings& settings, const SampleBuffer& buffer);

[[nodiscard]] PCMEntry PCMOf(const FormatDescription& format);

}   // namespace QZ::Platform::Movie
