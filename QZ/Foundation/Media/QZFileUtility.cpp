// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZFileUtility.h"

#include <filesystem>
#include <set>
#include <system_error>
#include <vector>

namespace {

struct Registry {
    std::set<std::string> fileNamesPendingDelete;
    std::set<std::string> fileNamesInUse;
};

/// Made at first use and never destroyed: recorders may be released while the process ends.
Registry& TheRegistry()
{
    static Registry& registry = *new Registry;
    return registry;
}

/// Where the extension's point stands; the path's size when it has none.
std::size_t ExtensionPoint(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    const std::size_t component = slash == std::string::npos ? 0 : slash + 1;
    const std::size_t point = path.rfind('.');
    return point == std::string::npos || point < component ? path.size() : point;
}

std::string Candidate(const std::string& path, int iteration)
{
    if (iteration == 0)
        return path;
    const std::size_t point = ExtensionPoint(path);
    const std::string extension = point == path.size() ? "" : path.substr(point + 1);
    return path.substr(0, point) + std::to_string(iteration) + '.' + extension;
}

}   // namespace

void QZFileUtility::ensureInitialization()
{
    (void)TheRegistry();
}

void QZFileUtility::checkAndValidateFileNames()
{
    Registry& registry = TheRegistry();
    std::vector<std::string> givenUp;
    for (const std::string& path : registry.fileNamesPendingDelete)
        if (!registry.fileNamesInUse.contains(path))
            givenUp.push_back(path);
    for (const std::string& path : givenUp) {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        registry.fileNamesPendingDelete.erase(path);
    }
}

std::optional<std::string> QZFileUtility::uniqueFilename(const std::optional<std::string>& path)
{
    if (!path)
        return std::nullopt;
    checkAndValidateFileNames();
    return uniqueFilename(path, 0);
}

std::optional<std::string> QZFileUtility::uniqueFilename(const std::optional<std::string>& path,
                                                         int iteration)
{
    if (!path)
        return std::nullopt;
    const Registry& registry = TheRegistry();
    for (;; ++iteration) {
        const std::string candidate = Candidate(*path, iteration);
        if (!registry.fileNamesInUse.contains(candidate) &&
            !registry.fileNamesPendingDelete.contains(candidate))
            return candidate;
    }
}

void QZFileUtility::markUniqueFilename(const std::optional<std::string>& path, bool inUse)
{
    if (!path)
        return;
    if (inUse)
        TheRegistry().fileNamesInUse.insert(*path);
    else
        TheRegistry().fileNamesInUse.erase(*path);
    checkAndValidateFileNames();
}

void QZFileUtility::markUniqueFilenameForDelete(const std::optional<std::string>& path)
{
    if (!path)
        return;
    TheRegistry().fileNamesPendingDelete.insert(*path);
    checkAndValidateFileNames();
}
