// SPDX-License-Identifier: MIT
#include "tools/qz/movie/MovieFile.h"

#include <unistd.h>

#include <filesystem>

#include "QZ/Platform/Application.h"
#include "tools/qz/io/Interrupt.h"
#include "tools/qz/io/OutputFile.h"

namespace QZ::Tool {

using Platform::Application;

MovieFile::MovieFile(std::string path, bool force)
    : m_path(std::move(path)), m_force(force), m_bundleName(Application::BundleName())
{
    const std::filesystem::path temporary = std::filesystem::absolute(TemporaryBeside(m_path));
    Application::SetTemporaryDirectory(temporary.parent_path().string());
    Application::SetBundleName(temporary.filename().string());
    // The names that a recorder and its writer form from these.
    m_recorded = temporary.string() + "Edit.mov";
    m_finishing =
        (temporary.parent_path() / ("." + temporary.filename().string() + "Edit.mov.finishing")).string();
    const InterruptBlock block;
    SetUnfinishedFile(m_recorded, m_finishing);
}

MovieFile::~MovieFile()
{
    {
        const InterruptBlock block;
        if (!m_recorded.empty()) {
            unlink(m_recorded.c_str());
            unlink(m_finishing.c_str());
        }
        SetUnfinishedFile({});
    }
    Application::SetTemporaryDirectory(std::nullopt);
    Application::SetBundleName(m_bundleName);
}

void MovieFile::Keep()
{
    const InterruptBlock block;
    TakeOutputName(m_recorded, m_path, m_force);
    m_recorded.clear();
}

}   // namespace QZ::Tool
