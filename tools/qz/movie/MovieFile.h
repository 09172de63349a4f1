// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace QZ::Tool {

/// Where a movie is recorded until it is complete: under a hidden name beside its output. While one lives,
/// the library's recorders write there and nowhere else. What is not kept is removed, at an interruption too.
class MovieFile {
public:
    /// Throws Failure (Status::Output).
    MovieFile(std::string path, bool force);
    ~MovieFile();
    MovieFile(const MovieFile&) = delete;
    MovieFile& operator=(const MovieFile&) = delete;

    /// Gives the finished movie the output's name. Throws Failure (Status::Output).
    void Keep();

private:
    const std::string m_path;
    const bool m_force;
    const std::string m_bundleName;   ///< the host's
    std::string m_recorded;           ///< the recorder's path; empty when the movie was kept
    std::string m_finishing;          ///< what the writer has beside it while it finishes
};

}   // namespace QZ::Tool
