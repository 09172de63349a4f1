// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>

#include "QZ/Platform/ImageIO.h"

namespace QZ::Platform {

namespace {

/// An open file, closed in any case.
class Descriptor {
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int Get() const { return m_descriptor; }
    [[nodiscard]] bool IsOpen() const { return m_descriptor >= 0; }
    bool Close()
    {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor < 0 || close(descriptor) == 0;
    }

private:
    int m_descriptor;
};

/// A new file beside `path`, with a name that nobody else has. Its permissions are those of any new file: the
/// library functions for temporary files would make one that only its owner can read.
int CreateBeside(const std::string& path, std::string& name)
{
    static std::atomic<unsigned> counter = 0;
    constexpr int kAttempts = 1000;
    for (int i = 0; i < kAttempts; ++i) {
        name = path + ".tmp-" + std::to_string(getpid()) + '-' + std::to_string(counter++);
        const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    return -1;
}

bool WriteAll(int descriptor, std::span<const unsigned char> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0)
            bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

void KeepPermissions(const std::string& path, int descriptor)
{
    struct stat old = {};
    if (lstat(path.c_str(), &old) == 0 && S_ISREG(old.st_mode))
        (void)fchmod(descriptor, old.st_mode & 07777);   // another's file: the new one is the writer's anyway
}

/// Makes the folder's entry for a renamed file durable; a file system that cannot has done what it can.
void SyncFolder(const std::string& path)
{
    const std::filesystem::path parent = std::filesystem::path(path).parent_path();
    const Descriptor folder(open(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen())
        fsync(folder.Get());
}

/// Writes a file beside `path` and moves it there with `move`.
template <class Move>
bool WriteThenMove(const std::string& path, std::span<const unsigned char> bytes, Move move)
{
    std::string temporary;
    Descriptor file(CreateBeside(path, temporary));
    if (!file.IsOpen())
        return false;
    KeepPermissions(path, file.Get());
    const bool moved = WriteAll(file.Get(), bytes) && fsync(file.Get()) == 0 && file.Close() &&
                       move(temporary.c_str(), path.c_str()) == 0;
    unlink(temporary.c_str());   // there is none any more after a rename
    if (moved)
        SyncFolder(path);
    return moved;
}

}   // namespace

bool WriteFileAtomically(const std::string& path, std::span<const unsigned char> bytes)
{
    return WriteThenMove(path, bytes, rename);
}

bool WriteNewFileAtomically(const std::string& path, std::span<const unsigned char> bytes)
{
    return WriteThenMove(path, bytes, link);
}

std::optional<std::vector<unsigned char>> ReadFile(const std::string& path)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    std::vector<unsigned char> bytes(static_cast<std::size_t>(status.st_size));
    std::size_t have = 0;
    while (have < bytes.size()) {
        const ssize_t got = read(file.Get(), bytes.data() + have, bytes.size() - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return std::nullopt;
        have += static_cast<std::size_t>(got);
    }
    return bytes;
}

}   // namespace QZ::Platform
