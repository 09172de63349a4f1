// SPDX-License-Identifier: MIT
#include "QZ/Platform/PhotoAlbum.h"

#include <unistd.h>

#include <cstdio>
#include <mutex>
#include <utility>

#include "QZ/Platform/ImageIO.h"

namespace QZ::Platform {

namespace {

struct Album {
    std::mutex mutex;
    std::optional<std::string> directory;
};

/// Never destroyed: pictures may be saved while the process ends.
Album& TheAlbum()
{
    static Album& album = *new Album;
    return album;
}

std::string PicturePath(const std::string& directory, int number)
{
    char name[32];
    std::snprintf(name, sizeof name, "/IMG_%04d.png", number);
    return directory + name;
}

}   // namespace

void PhotoAlbum::SetDirectory(std::optional<std::string> directory)
{
    const std::lock_guard lock(TheAlbum().mutex);
    TheAlbum().directory = std::move(directory);
}

std::optional<std::string> PhotoAlbum::Directory()
{
    const std::lock_guard lock(TheAlbum().mutex);
    return TheAlbum().directory;
}

std::optional<std::string> PhotoAlbum::SavePNG(std::span<const unsigned char> file)
{
    const std::optional<std::string> directory = Directory();
    if (!directory)
        return std::nullopt;
    constexpr int kMostPictures = 1'000'000;
    for (int number = 1; number <= kMostPictures; ++number) {
        const std::string path = PicturePath(*directory, number);
        if (access(path.c_str(), F_OK) == 0)
            continue;
        if (WriteNewFileAtomically(path, file))
            return path;
        if (access(path.c_str(), F_OK) != 0)   // not because another process took the name
            return std::nullopt;
    }
    return std::nullopt;
}

}   // namespace QZ::Platform
