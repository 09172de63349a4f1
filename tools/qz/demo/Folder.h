// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace QZ::Tool {

/// A file of a folder to be written.
struct FolderFile {
    std::string name;
    std::vector<unsigned char> bytes;
};

/// Refuses, before any work is done, a folder that could not be written at the end: one that holds anything,
/// unless `force`, or a path that is a file. Throws Failure (Status::Output).
void CheckFolder(const std::string& path, bool force);

/// Writes a whole folder or nothing. The files are put into a temporary folder beside it, which then takes
/// the name in one step. With `force`, a folder that holds files keeps them but for those of the same names,
/// each replaced in one step, the last file last. An interruption waits until the folder is complete. Throws
/// Failure (Status::Output).
void WriteFolder(const std::string& path, bool force, const std::vector<FolderFile>& files);

}   // namespace QZ::Tool
