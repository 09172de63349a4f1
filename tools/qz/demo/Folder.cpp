// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <random>

#include "tools/qz/Failure.h"
#include "tools/qz/io/Interrupt.h"
#include "tools/qz/io/OutputFile.h"

namespace QZ::Tool {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const std::string& path, const std::string& what, const std::string& remedy)
{
    throw Failure(Status::Output, path, what, remedy);
}

fs::path Cleaned(const std::string& path)
{
    const fs::path folder = fs::absolute(path).lexically_normal();
    return folder.has_filename() ? folder : folder.parent_path();   // without a slash at the end
}

// A new folder beside another, removed with all it holds unless it took that one's name.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const fs::path& beside)
    {
        std::random_device random;
        do {
            m_path = beside.parent_path() / (".qz-" + std::to_string(random()) + ".tmp");
        } while (!fs::create_directory(m_path));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }

    [[nodiscard]] const fs::path& Path() const { return m_path; }

private:
    fs::path m_path;
};

void MoveInto(const TemporaryFolder& from, const fs::path& folder, const std::vector<FolderFile>& files)
{
    if (!fs::exists(folder) || fs::is_empty(folder)) {
        fs::rename(from.Path(), folder);
        return;
    }
    for (const FolderFile& file : files)
        fs::rename(from.Path() / file.name, folder / file.name);
}

// The names are on the disk only when the folder is; a file system that cannot sync a folder is no failure.
void Sync(const fs::path& folder)
{
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

}   // namespace

void CheckFolder(const std::string& path, bool force)
{
    if (path.empty())
        Refuse("DIR", "a folder's name is empty", "name a folder that does not exist yet");
    const fs::path folder = Cleaned(path);
    std::error_code error;
    const fs::file_status status = fs::status(folder, error);
    const bool exists = fs::exists(status);
    if (exists && !fs::is_directory(status))
        Refuse(path, "a file, not a folder", "name a folder that does not exist yet");
    const fs::path writable = exists ? folder : folder.parent_path();
    if (!fs::is_directory(writable, error))
        Refuse(path, "there is no folder " + writable.string(), "create it first");
    if (access(writable.c_str(), W_OK | X_OK) != 0 || access(folder.parent_path().c_str(), W_OK | X_OK) != 0)
        Refuse(path, "not writable", "choose a place that you may write to");
    if (exists && !force && !fs::is_empty(folder, error))
        Refuse(path, "holds files already", "name another folder, or say --force to write into it");
}

void WriteFolder(const std::string& path, bool force, const std::vector<FolderFile>& files)
{
    CheckFolder(path, force);
    const fs::path folder = Cleaned(path);
    const InterruptBlock block;
    try {
        const TemporaryFolder temporary(folder);
        for (const FolderFile& file : files)
            WriteOutput((temporary.Path() / file.name).string(), false, file.bytes);
        MoveInto(temporary, folder, files);
        Sync(folder);
        Sync(folder.parent_path());
    } catch (const fs::filesystem_error& error) {
        Refuse(path, "not written: " + error.code().message(), "choose another place for the folder");
    }
}

}   // namespace QZ::Tool
