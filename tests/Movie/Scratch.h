// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace QZ::Test {

/// A folder of a test's own, removed with all it holds.
class ScratchFolder {
public:
    ScratchFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "qz-movie-XXXXXX").string();
        m_path = ::mkdtemp(pattern.data());
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] std::string File(const std::string& name) const { return (m_path / name).string(); }
    [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// What a shell command prints on its standard output; a failing command fails the test.
inline std::string Output(const std::string& command)
{
    std::string text;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) {
        ADD_FAILURE() << "cannot run " << command;
        return text;
    }
    char block[4096];
    for (std::size_t count = 0; (count = std::fread(block, 1, sizeof block, pipe)) > 0;)
        text.append(block, count);
    EXPECT_EQ(::pclose(pipe), 0) << command;
    return text;
}

/// ffprobe's answer for some entries, a line each: fields and values as "name=value".
inline std::string Probe(const std::string& path, const std::string& arguments)
{
    return Output("ffprobe -v fatal -of default=noprint_wrappers=1 " + arguments + " '" + path + "' 2>&1");
}

}   // namespace QZ::Test
