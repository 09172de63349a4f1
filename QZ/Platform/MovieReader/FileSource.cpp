// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieReader/FileSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace QZ::Platform::Movie {

namespace {
constexpr int kBufferSize = 1 << 16;
}

FileSource::~FileSource()
{
    if (m_context)
        av_freep(&m_context->buffer);   // which the library may have replaced
    avio_context_free(&m_context);
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool FileSource::Open(const std::string& path, MovieReadError& error)
{
    const auto fail = [&](const std::string& reason) {
        error = {MovieReadError::Kind::Unreadable, reason};
        return false;
    };
    // A pipe without a writer would block without O_NONBLOCK; regular files do not mind it.
    m_descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status = {};
    if (m_descriptor < 0 || fstat(m_descriptor, &status) != 0)
        return fail(std::string("cannot be read: ") + std::strerror(errno));
    if (S_ISDIR(status.st_mode))
        return fail("cannot be read: a folder, not a file");
    if (!S_ISREG(status.st_mode))
        return fail("cannot be read: a movie must be a file that can be read at any place");
    m_size = status.st_size;
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferSize));
    m_context = buffer ? avio_alloc_context(buffer, kBufferSize, 0, this, Read, nullptr, Seek) : nullptr;
    if (!m_context) {
        av_free(buffer);
        return fail("not enough memory");
    }
    return true;
}

int FileSource::Read(void* self, std::uint8_t* buffer, int size)
{
    FileSource& source = *static_cast<FileSource*>(self);
    ssize_t count = 0;
    do {
        count = pread(source.m_descriptor, buffer, static_cast<std::size_t>(size), source.m_position);
    } while (count < 0 && errno == EINTR);
    if (count < 0)
        return AVERROR(errno);
    source.m_position += count;
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
}

std::int64_t FileSource::Seek(void* self, std::int64_t offset, int whence)
{
    FileSource& source = *static_cast<FileSource*>(self);
    switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return source.m_size;
        case SEEK_CUR:
            offset += source.m_position;
            break;
        case SEEK_END:
            offset += source.m_size;
            break;
        default:
            break;
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    return source.m_position = offset;
}

}   // namespace QZ::Platform::Movie
