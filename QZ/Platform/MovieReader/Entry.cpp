// SPDX-License-Identifier: MIT
// The module's entry point for reading.
#include "QZ/Platform/MovieReader/Reader.h"
#include "QZ/Platform/MovieWriterModule.h"

extern "C" QZ_API QZ::Platform::MovieReader* QZMovieReaderOpen(std::uint32_t abiVersion,
                                                               const std::string& path,
                                                               std::int64_t mostPixels,
                                                               QZ::Platform::MovieReadError& error)
{
    if (abiVersion != QZ::Platform::kMovieWriterABIVersion) {
        error = {
            QZ::Platform::MovieReadError::Kind::NoModule,
            std::string(QZ::Platform::kMovieWriterFileName) + " belongs to another version of the library"};
        return nullptr;
    }
    return QZ::Platform::Movie::OpenMovie(path, mostPixels, error).release();
}
