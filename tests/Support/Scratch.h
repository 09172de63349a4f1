// SPDX-License-Identifier: MIT
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace QZ::Test {

/// A new folder for a test's files, deleted with all that is in it.
class Scratch {
public:
    Scratch()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "qz-test-XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~Scratch()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    /// The path of a name in the folder.
    [[nodiscard]] std::string operator/(const std::string& name) const { return (m_path / name).string(); }
    [[nodiscard]] std::string Path() const { return m_path.string(); }
    /// How many entries the folder has.
    [[nodiscard]] std::size_t Count() const
    {
        const std::filesystem::directory_iterator entries(m_path);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
    /// Makes a small file. \return its path
    std::string Touch(const std::string& name, const std::string& content = "content") const
    {
        std::ofstream(*this / name) << content;
        return *this / name;
    }

private:
    std::filesystem::path m_path;
};

/// All bytes of a file; empty when there is none.
inline std::vector<unsigned char> FileBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}   // namespace QZ::Test
