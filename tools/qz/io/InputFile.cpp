// SPDX-License-Identifier: MIT
#include "tools/qz/io/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/qz/Failure.h"

namespace QZ::Tool {

namespace {

class Descriptor {
public:
    explicit Descriptor(const std::string& path)
        : m_owned(path != "-"), m_number(m_owned ? open(path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO)
    {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (m_owned && m_number >= 0)
            close(m_number);
    }
    [[nodiscard]] int Number() const { return m_number; }

private:
    bool m_owned;
    int m_number;
};

[[noreturn]] void Unreadable(const std::string& path, int error)
{
    throw Failure(Status::Input, InputName(path), std::string("cannot be read: ") + std::strerror(error),
                  error == ENOENT ? "check the name" : "check the file and its permissions");
}

std::size_t SizeHint(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
               ? static_cast<std::size_t>(status.st_size)
               : 0;
}

// Reads until `wanted` bytes are there or the input ends.
void ReadUpTo(int descriptor, std::size_t wanted, const std::string& path, std::vector<unsigned char>& bytes)
{
    std::size_t size = bytes.size();
    bytes.resize(wanted);
    while (size < wanted) {
        const ssize_t count = read(descriptor, bytes.data() + size, wanted - size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            Unreadable(path, errno);
        if (count == 0)
            break;
        size += static_cast<std::size_t>(count);
    }
    bytes.resize(size);
}

}   // namespace

std::string InputName(const std::string& path)
{
    return path == "-" ? "standard input" : path;
}

std::vector<unsigned char> ReadInput(const std::string& path, const Limits& limits, const HeadCheck& check)
{
    const Descriptor file(path);
    if (file.Number() < 0)
        Unreadable(path, errno);
    const std::size_t hint = SizeHint(file.Number());
    const std::uint64_t most = limits.Bytes();
    const auto refuseTooLarge = [&] {
        throw Failure(Status::Malformed, InputName(path),
                      "the file is larger than " + std::to_string(most >> 20) + " MiB",
                      "raise the limit with --max-pixels");
    };

    std::vector<unsigned char> bytes;
    ReadUpTo(file.Number(), kHeadBytes, path, bytes);
    check(bytes);
    if (hint > most)
        refuseTooLarge();
    // One byte more than a file says it has, to meet its end at the first try.
    std::size_t wanted = std::max<std::size_t>(hint, 1 << 16) + 1;
    while (bytes.size() >= kHeadBytes) {
        ReadUpTo(file.Number(), wanted, path, bytes);
        if (bytes.size() > most)
            refuseTooLarge();
        if (bytes.size() < wanted)
            break;
        wanted = static_cast<std::size_t>(std::min<std::uint64_t>(2 * std::uint64_t{wanted}, most + 1));
    }
    return bytes;
}

}   // namespace QZ::Tool
