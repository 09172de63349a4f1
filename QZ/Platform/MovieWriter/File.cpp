// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace QZ::Platform::Movie {

std::string ErrorText(int error)
{
    return std::generic_category().message(error);
}

File::~File()
{
    Close();
}

bool File::Create(const std::string& path)
{
    return Open(path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC);
}

bool File::Replace(const std::string& path)
{
    return Open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC);
}

bool File::Open(const std::string& path, int flags)
{
    m_path = path;
    m_descriptor = ::open(path.c_str(), flags, 0666);
    return m_descriptor >= 0 || Fail("cannot be created");
}

bool File::Fail(const std::string& what)
{
    if (m_reason.empty())
        m_reason = m_path + " " + what + ": " + ErrorText(errno);
    return false;
}

bool File::Append(std::span<const unsigned char> bytes)
{
    if (!m_reason.empty())
        return false;
    for (std::size_t written = 0; written < bytes.size();) {
        const ssize_t count = ::pwrite(m_descriptor, bytes.data() + written, bytes.size() - written,
                                       static_cast<off_t>(m_size + written));
        if (count > 0) {
            written += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            Fail("cannot be written");
            // The reason stands already; a tail that stays is skipped by readers.
            [[maybe_unused]] const int cut = ::ftruncate(m_descriptor, static_cast<off_t>(m_size));
            return false;
        }
    }
    m_size += bytes.size();
    return true;
}

bool File::Read(std::uint64_t offset, std::span<unsigned char> bytes) const
{
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = ::pread(m_descriptor, bytes.data() + done, bytes.size() - done,
                                      static_cast<off_t>(offset + done));
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool File::Sync()
{
    return m_reason.empty() && (::fsync(m_descriptor) == 0 || Fail("cannot be stored"));
}

void File::Close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

bool File::IsAtItsPath() const
{
    struct stat open = {}, named = {};
    return ::fstat(m_descriptor, &open) == 0 && ::stat(m_path.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

void KeepBeside(const std::string& path)
{
    const std::filesystem::path original(path);
    for (int number = 1; ::access(path.c_str(), F_OK) == 0; ++number) {
        const std::string name =
            original.stem().string() + "-" + std::to_string(number) + original.extension().string();
        // A link never takes the place of another file, as a rename would.
        if (::link(path.c_str(), (original.parent_path() / name).c_str()) == 0) {
            ::unlink(path.c_str());
            return;
        }
        if (errno != EEXIST)
            return;
    }
}

std::string RenameDurably(const std::string& from, const std::string& to)
{
    if (std::rename(from.c_str(), to.c_str()) != 0)
        return to + " cannot be replaced: " + ErrorText(errno);
    const std::filesystem::path parent = std::filesystem::path(to).parent_path();
    const int folder = ::open(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        // Some file systems cannot sync a folder; the rename itself has happened.
        [[maybe_unused]] const int synced = ::fsync(folder);
        ::close(folder);
    }
    return {};
}

}   // namespace QZ::Platform::Movie
