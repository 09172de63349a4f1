// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "tools/qz/Command.h"

namespace QZ::Tool {

/// How a movie is written.
struct MovieEncoding {
    std::optional<std::string> codec;   ///< "h264", "hevc" or "prores"
    std::optional<double> bitRate;      ///< times the recorder's default
};

/// Whether a path is that of a movie: it ends in .mov.
[[nodiscard]] bool IsMovieName(const std::string& path);

/// Says before any work whether a movie can be written there. Throws Failure: Status::Usage or
/// Status::Output.
void CheckMovieOutput(const std::string& path, bool force);

/// --codec and --bit-rate. \param defaultCodec  what the help calls the codec that is taken without the
/// option
void AddMovieEncoding(Command& command, MovieEncoding& encoding, const std::string& defaultCodec);

}   // namespace QZ::Tool
