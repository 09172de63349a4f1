// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace QZ::Tool {

/// How qz ends; scripts rely on the numbers.
enum class Status : int {
    Done = 0,           ///< Done, and what was asked for is on the disk.
    Different = 1,      ///< The "no" of a comparison.
    Usage = 2,          ///< Wrong usage.
    Input = 3,          ///< An input is missing or cannot be read.
    Malformed = 4,      ///< An input is malformed or over a limit.
    Output = 5,         ///< An output was not written.
    Encoder = 6,        ///< An encoder refused the picture.
    Bug = 70,           ///< An error of qz itself.
    Interrupted = 130   ///< Ctrl-C.
};

/// Why a command cannot do its work: one line for the reader and the exit status for the shell.
class Failure : public std::runtime_error {
public:
    /// \param subject  the file, option or folder concerned; may be empty.
    /// \param what     what is wrong.
    /// \param remedy   what to try; may be empty.
    Failure(Status failureStatus, const std::string& subject, const std::string& what,
            const std::string& remedy)
        : std::runtime_error((subject.empty() ? "" : subject + ": ") + what +
                             (remedy.empty() ? "" : "; " + remedy)),
          status(failureStatus)
    {}

    Status status;
};

}   // namespace QZ::Tool
