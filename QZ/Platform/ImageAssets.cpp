// SPDX-License-Identifier: MIT
#include "QZ/Platform/ImageAssets.h"

#include <mutex>
#include <utility>

namespace QZ::Platform {

namespace {

struct Assets {
    std::mutex mutex;
    std::optional<std::string> directory;
};

Assets& TheAssets()
{
    static Assets& assets = *new Assets;
    return assets;
}

}   // namespace

void ImageAssets::SetDirectory(std::optional<std::string> directory)
{
    const std::lock_guard lock(TheAssets().mutex);
    TheAssets().directory = std::move(directory);
}

std::optional<std::string> ImageAssets::Directory()
{
    const std::lock_guard lock(TheAssets().mutex);
    return TheAssets().directory;
}

std::optional<Image> ImageAssets::Named(const std::string& name)
{
    const std::optional<std::string> directory = Directory();
    if (!directory)
        return std::nullopt;
    std::optional<std::vector<unsigned char>> file = ReadFile(*directory + '/' + name);
    if (!file)
        file = ReadFile(*directory + '/' + name + ".png");
    return file ? DecodePNG(*file) : std::nullopt;
}

}   // namespace QZ::Platform
