// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

namespace QZ::Tool {

/// Refuses, before any work is done, an output that could not be written at the end.
/// \param path   a file's path, or "-" for standard output.
/// \param force  whether an existing file may be replaced.
/// Throws Failure (Status::Output).
void CheckOutput(const std::string& path, bool force);

/// Writes a whole file or nothing. The bytes go to a temporary file beside it, onto the disk, and take the
/// name in one step, so that the old file stays until the new one is complete. A symbolic link keeps pointing
/// at its file; a file replaced keeps its permissions. Standard output ("-") and devices are written
/// directly. Throws Failure (Status::Output).
void WriteOutput(const std::string& path, bool force, std::span<const unsigned char> bytes);

/// A path beside an output, links followed, for a file that takes its name when it is complete: hidden, and
/// of no file that exists. Throws Failure (Status::Output) for an output that is no regular file.
[[nodiscard]] std::string TemporaryBeside(const std::string& path);

/// Gives a complete file that lies beside an output the output's name, as WriteOutput does with its own. Call
/// it under an InterruptBlock. Throws Failure (Status::Output).
void TakeOutputName(const std::string& temporary, const std::string& path, bool force);

}   // namespace QZ::Tool
