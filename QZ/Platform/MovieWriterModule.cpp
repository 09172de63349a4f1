// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriterModule.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <optional>
#include <vector>

#include "QZ/Platform/AssetWriter.h"

namespace QZ::Platform {

namespace {

struct Module {
    std::mutex mutex;
    std::optional<std::string> folder;   ///< the host's
    void* handle = nullptr;
};

/// Never destroyed, and the module never unloaded: its threads may outlive any owner.
Module& TheModule()
{
    static Module& module = *new Module;
    return module;
}

/// Where the object lies that this code was linked into.
std::filesystem::path OwnFolder()
{
    Dl_info info = {};
    if (!dladdr(reinterpret_cast<void*>(&TheModule), &info) || !info.dli_fname)
        return {};
    std::error_code error;
    const std::filesystem::path file = std::filesystem::canonical(info.dli_fname, error);
    return error ? std::filesystem::path() : file.parent_path();
}

std::vector<std::filesystem::path> FoldersToSearch(const std::optional<std::string>& hostsFolder)
{
    if (hostsFolder)
        return {*hostsFolder};
    std::vector<std::filesystem::path> folders = {OwnFolder()};
    // A program with raised privileges does not load what its caller's environment names.
    if (const char* folder = secure_getenv("QZ_MOVIE_WRITER_PATH"))
        folders.emplace_back(folder);
    return folders;
}

void* Load(const std::vector<std::filesystem::path>& folders, std::string& reason)
{
    reason = "the movie writer cannot be loaded";
    for (const std::filesystem::path& folder : folders) {
        // Without a folder the loader would look wherever it likes.
        if (!folder.is_absolute()) {
            reason += "; not an absolute folder: '" + folder.string() + "'";
            continue;
        }
        if (void* handle = dlopen((folder / kMovieWriterFileName).c_str(), RTLD_NOW | RTLD_LOCAL))
            return handle;
        reason += std::string("; ") + dlerror();
    }
    return nullptr;
}

}   // namespace

void* MovieWriterSymbol(const char* name, std::string& reason)
{
    Module& module = TheModule();
    const std::lock_guard lock(module.mutex);
    if (!module.handle)
        module.handle = Load(FoldersToSearch(module.folder), reason);
    if (!module.handle)
        return nullptr;
    void* symbol = dlsym(module.handle, name);
    reason = symbol ? std::string() : std::string(kMovieWriterFileName) + " has no entry point " + name;
    return symbol;
}

void AssetWriterFactory::SetModuleFolder(std::optional<std::string> folder)
{
    Module& module = TheModule();
    const std::lock_guard lock(module.mutex);
    module.folder = std::move(folder);
}

}   // namespace QZ::Platform
