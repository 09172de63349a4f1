// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace QZ::Platform::Movie {

/// A file being written. The first failure is kept, and every later operation fails without trying.
class File {
public:
    File() = default;
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Creates a new file; fails where one exists.
    bool Create(const std::string& path);
    /// Creates a file, emptying what exists there.
    bool Replace(const std::string& path);

    /// Appends all bytes or, failing that, none: a part that was written is cut off again.
    bool Append(std::span<const unsigned char> bytes);
    bool Read(std::uint64_t offset, std::span<unsigned char> bytes) const;
    /// Waits until everything that was written is on the disk.
    bool Sync();
    void Close();
    /// Whether the path still leads to this file.
    [[nodiscard]] bool IsAtItsPath() const;

    [[nodiscard]] std::uint64_t Size() const { return m_size; }
    [[nodiscard]] int Descriptor() const { return m_descriptor; }
    /// What went wrong, for a person to read; empty while nothing has.
    [[nodiscard]] const std::string& Reason() const { return m_reason; }

private:
    bool Open(const std::string& path, int flags);
    bool Fail(const std::string& what);

    int m_descriptor = -1;
    std::uint64_t m_size = 0;
    std::string m_path;
    std::string m_reason;
};

/// Moves a file over another of the same folder, and waits until the folder on the disk says so. Gives a
/// reason, or an empty text on success.
[[nodiscard]] std::string RenameDurably(const std::string& from, const std::string& to);

/// Moves what exists at a path beside it, under its name with the first number from 1 that is free:
/// "movie.mov" becomes "movie-1.mov". Does nothing where nothing exists or the file system has no hard links.
void KeepBeside(const std::string& path);

/// An error number in words; the same from any thread.
[[nodiscard]] std::string ErrorText(int error);

}   // namespace QZ::Platform::Movie
