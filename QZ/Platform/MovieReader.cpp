// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader.h"

#include "QZ/Platform/MovieWriterModule.h"

namespace QZ::Platform {

MovieReader::~MovieReader() = default;

std::unique_ptr<MovieReader> MovieReader::Open(const std::string& path, MovieReadError& error,
                                               std::int64_t mostPixels)
{
    error = {};
    void* symbol = MovieWriterSymbol(kMovieReaderEntryName, error.reason);
    if (!symbol) {
        error.kind = MovieReadError::Kind::NoModule;
        return nullptr;
    }
    return std::unique_ptr<MovieReader>(
        reinterpret_cast<MovieReaderEntry>(symbol)(kMovieWriterABIVersion, path, mostPixels, error));
}

}   // namespace QZ::Platform
