// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "QZ/Export.h"

/// \file
/// The seam between the library and libQZMovieWriter.so, which alone links the codec libraries (internal).

namespace QZ::Platform {

class AssetWriterFactory;
class MovieReader;
struct MovieReadError;

/// Raised with every change of a class that crosses the seam (AssetWriter.h, MovieReader.h, MediaBuffers.h,
/// DispatchQueue.h).
inline constexpr std::uint32_t kMovieWriterABIVersion = 2;

inline constexpr char kMovieWriterFileName[] = "libQZMovieWriter.so";

/// An entry point of the module, loading the module first where that has not happened; null with a reason
/// when the module or the entry point is missing. The module stays loaded until the process ends.
[[nodiscard]] QZ_API void* MovieWriterSymbol(const char* name, std::string& reason);

/// The type of the module's entry point named below.
/// \param abiVersion  the library's kMovieWriterABIVersion.
/// \return the module's factory, which lives as long as the module, or null when it was built for another version.
using MovieWriterEntry = AssetWriterFactory* (*)(std::uint32_t abiVersion);
inline constexpr char kMovieWriterEntryName[] = "QZMovieWriterFactory";

/// The type of the module's other entry point, which opens a movie as MovieReader::Open does.
/// \return a reader that the caller deletes; null with an error, which a module of another version gives too.
using MovieReaderEntry = MovieReader* (*)(std::uint32_t abiVersion, const std::string& path,
                                          std::int64_t mostPixels, MovieReadError& error);
inline constexpr char kMovieReaderEntryName[] = "QZMovieReaderOpen";

}   // namespace QZ::Platform
