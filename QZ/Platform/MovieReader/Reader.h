// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "QZ/Platform/MovieReader.h"

namespace QZ::Platform::Movie {

/// MovieReader::Open, within the module.
[[nodiscard]] std::unique_ptr<MovieReader> OpenMovie(const std::string& path, std::int64_t mostPixels,
                                                     MovieReadError& error);

}   // namespace QZ::Platform::Movie
