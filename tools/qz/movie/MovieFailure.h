// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "QZ/Platform/MovieReader.h"
#include "tools/qz/Failure.h"

namespace QZ::Tool {

/// Why a movie cannot be read. \param path  may be empty where the file is known from elsewhere
[[nodiscard]] Failure MovieFailure(const Platform::MovieReadError& error, const std::string& path = {});

/// What to do when the module of the movies cannot be loaded.
inline constexpr char kModuleRemedy[] =
    "install libQZMovieWriter.so beside the library, and FFmpeg's libraries";

}   // namespace QZ::Tool
