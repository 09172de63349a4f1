// SPDX-License-Identifier: MIT
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <memory>
#include <string>

#include "QZ/Platform/MovieReader.h"

namespace QZ::Platform::Movie {

/// The bytes of one file for a demuxer, which so never opens a file itself.
class FileSource {
public:
    FileSource() = default;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    ~FileSource();

    /// False with an error for what cannot be opened and what is no regular file.
    bool Open(const std::string& path, MovieReadError& error);
    [[nodiscard]] AVIOContext* Context() const { return m_context; }

private:
    static int Read(void* self, std::uint8_t* buffer, int size);
    static std::int64_t Seek(void* self, std::int64_t offset, int whence);

    int m_descriptor = -1;
    std::int64_t m_size = 0;
    std::int64_t m_position = 0;
    AVIOContext* m_context = nullptr;
};

}   // namespace QZ::Platform::Movie
