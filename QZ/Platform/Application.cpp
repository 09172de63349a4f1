// SPDX-License-Identifier: MIT
#include "QZ/Platform/Application.h"

#include <cerrno>   // program_invocation_short_name
#include <cstdlib>
#include <mutex>
#include <utility>

namespace QZ::Platform {

namespace {

struct Settings {
    std::mutex mutex;
    std::optional<std::string> bundleName;
    std::optional<std::string> temporaryDirectory;
};

/// Never destroyed: recorders may end while the process does.
Settings& TheSettings()
{
    static Settings& settings = *new Settings;
    return settings;
}

std::string DefaultTemporaryDirectory()
{
    const char* folder = std::getenv("TMPDIR");
    return folder && *folder ? folder : "/tmp/";
}

}   // namespace

std::string Application::BundleName()
{
    Settings& settings = TheSettings();
    const std::lock_guard lock(settings.mutex);
    return settings.bundleName.value_or(program_invocation_short_name);
}

void Application::SetBundleName(std::string name)
{
    Settings& settings = TheSettings();
    const std::lock_guard lock(settings.mutex);
    settings.bundleName = std::move(name);
}

std::string Application::TemporaryDirectory()
{
    Settings& settings = TheSettings();
    const std::lock_guard lock(settings.mutex);
    std::string folder =
        settings.temporaryDirectory ? *settings.temporaryDirectory : DefaultTemporaryDirectory();
    if (!folder.ends_with('/'))
        folder += '/';
    return folder;
}

void Application::SetTemporaryDirectory(std::optional<std::string> folder)
{
    Settings& settings = TheSettings();
    const std::lock_guard lock(settings.mutex);
    settings.temporaryDirectory = std::move(folder);
}

}   // namespace QZ::Platform
