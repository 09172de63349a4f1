// SPDX-License-Identifier: MIT
#include "tools/qz/io/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>

#include "tools/qz/Failure.h"
#include "tools/qz/io/Interrupt.h"

namespace QZ::Tool {

namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& what, const std::string& remedy)
{
    throw Failure(Status::Output, path == "-" ? "standard output" : path, what, remedy);
}

[[noreturn]] void RefuseErrno(const std::string& path, int error)
{
    const char* remedy = "choose another place for the output";
    if (error == ENOSPC || error == EDQUOT)
        remedy = "make room on the disk or write elsewhere";
    else if (error == ENOENT)
        remedy = "create the folder first";
    else if (error == EACCES || error == EROFS || error == EPERM)
        remedy = "choose a folder that you may write to";
    Refuse(path, std::string("not written: ") + std::strerror(error), remedy);
}

// What stands at the path, links followed.
struct Target {
    std::string path;   // of the file itself, not of a link to it
    bool exists = false;
    bool regular = false;
    mode_t mode = 0666;
};

Target FindTarget(const std::string& path)
{
    Target target{path};
    std::error_code error;
    if (std::filesystem::is_symlink(path, error)) {
        const auto resolved = std::filesystem::weakly_canonical(path, error);
        if (error)
            Refuse(path, "a symbolic link that leads nowhere", "remove it or choose another name");
        target.path = resolved.string();
    }
    struct stat status = {};
    if (stat(target.path.c_str(), &status) == 0) {
        target.exists = true;
        target.regular = S_ISREG(status.st_mode);
        target.mode = status.st_mode & 07777;
        if (S_ISDIR(status.st_mode))
            Refuse(path, "a folder, not a file", "name a file in it");
    } else if (errno != ENOENT) {
        RefuseErrno(path, errno);
    }
    return target;
}

std::string FolderOf(const std::string& path)
{
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

void RefuseExisting(const std::string& path)
{
    Refuse(path, "exists already", "say --force to replace it");
}

void WriteAll(int descriptor, std::span<const unsigned char> bytes, const std::string& path)
{
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            RefuseErrno(path, errno);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

std::string HiddenName()
{
    std::random_device random;
    return ".qz-" + std::to_string(random()) + ".tmp";
}

int RenameOver(const std::string& name, const std::string& target, bool force)
{
    if (force)
        return rename(name.c_str(), target.c_str());
    const int result = renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
    if (result == 0 || (errno != EINVAL && errno != ENOSYS))
        return result;
    // A file system without that call: look, then rename.
    struct stat status = {};
    if (stat(target.c_str(), &status) == 0) {
        errno = EEXIST;
        return -1;
    }
    return rename(name.c_str(), target.c_str());
}

void Rename(const std::string& name, const Target& target, bool force, const std::string& path)
{
    if (RenameOver(name, target.path, force) == 0)
        return;
    if (errno == EEXIST)
        RefuseExisting(path);
    RefuseErrno(path, errno);
}

// The name itself is on the disk only when the folder is. Some file systems cannot sync a folder; that is no
// failure of the output.
void SyncFolder(const std::string& path)
{
    const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    fsync(folder);
    close(folder);
}

// A file under a temporary name, removed unless it took its own.
class TemporaryFile {
public:
    TemporaryFile(const std::string& path, const Target& target)
        : m_path(path), m_target(target), m_folder(FolderOf(target.path))
    {
        const InterruptBlock block;
        do {
            m_name = m_folder + "/" + HiddenName();
            SetUnfinishedFile(m_name);
            m_descriptor = open(m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        } while (m_descriptor < 0 && errno == EEXIST);
        if (m_descriptor < 0) {
            SetUnfinishedFile({});
            RefuseErrno(m_path, errno);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    ~TemporaryFile()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
        if (m_name.empty())
            return;
        const InterruptBlock block;
        unlink(m_name.c_str());
        SetUnfinishedFile({});
    }

    void Write(std::span<const unsigned char> bytes)
    {
        WriteAll(m_descriptor, bytes, m_path);
        if (m_target.exists)
            fchmod(m_descriptor, m_target.mode);
        if (fsync(m_descriptor) != 0)
            RefuseErrno(m_path, errno);
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        if (close(descriptor) != 0)
            RefuseErrno(m_path, errno);
    }

    void TakeName(bool force)
    {
        {
            const InterruptBlock block;
            Rename(m_name, m_target, force, m_path);
            m_name.clear();
            SetOutputComplete();
        }
        SyncFolder(m_folder);
    }

private:
    std::string m_path;
    Target m_target;
    std::string m_folder;
    std::string m_name;
    int m_descriptor = -1;
};

void WriteDevice(const std::string& path, std::span<const unsigned char> bytes)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0)
        RefuseErrno(path, errno);
    try {
        WriteAll(descriptor, bytes, path);
    } catch (...) {
        close(descriptor);
        throw;
    }
    if (close(descriptor) != 0)
        RefuseErrno(path, errno);
}

}   // namespace

void CheckOutput(const std::string& path, bool force)
{
    if (path == "-") {
        if (isatty(STDOUT_FILENO) == 1)
            Refuse(path, "a terminal cannot show a picture file", "redirect it or name a file");
        return;
    }
    const Target target = FindTarget(path);
    if (target.exists && target.regular && !force)
        RefuseExisting(path);
    const std::string folder = FolderOf(target.path);
    if ((!target.exists || target.regular) && access(folder.c_str(), W_OK | X_OK) != 0)
        RefuseErrno(path, errno);
}

void WriteOutput(const std::string& path, bool force, std::span<const unsigned char> bytes)
{
    if (path == "-") {
        std::fflush(stdout);
        return WriteAll(STDOUT_FILENO, bytes, path);
    }
    const Target target = FindTarget(path);
    if (target.exists && !target.regular)
        return WriteDevice(path, bytes);
    if (target.exists && !force)
        RefuseExisting(path);
    TemporaryFile file(path, target);
    file.Write(bytes);
    file.TakeName(force);
}

std::string TemporaryBeside(const std::string& path)
{
    const Target target = FindTarget(path);
    if (target.exists && !target.regular)
        Refuse(path, "not a file that can be replaced", "name another one");
    std::string temporary;
    do {
        temporary = FolderOf(target.path) + "/" + HiddenName();
    } while (access(temporary.c_str(), F_OK) == 0);
    return temporary;
}

void TakeOutputName(const std::string& temporary, const std::string& path, bool force)
{
    const Target target = FindTarget(path);
    if (target.exists)
        chmod(temporary.c_str(), target.mode);
    Rename(temporary, target, force, path);
    SyncFolder(FolderOf(target.path));
}

}   // namespace QZ::Tool
