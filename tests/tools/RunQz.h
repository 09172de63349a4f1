// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace QZ::Test {

/// What a run of the program left behind.
struct Outcome {
    int status = -1;   ///< Exit status; 1000 + the signal when a signal ended it.
    std::string out;
    std::string err;
};

struct RunOptions {
    std::string input = {};          ///< Standard input.
    bool keepInputOpen = false;      ///< The input does not end.
    std::string folder = {};         ///< Working folder; empty for the test's own.
    std::string outPath = {};        ///< A file for standard output in place of a pipe.
    int interruptAfter = 0;          ///< Milliseconds after which it gets a SIGINT; 0 for never.
    std::size_t fileSizeLimit = 0;   ///< Bytes that a file may grow to, as on a full disk; 0 for any.
    int timeoutSeconds = 60;         ///< After which it is killed.
};

/// Runs the qz of this build as a process of its own.
[[nodiscard]] Outcome RunQz(const std::vector<std::string>& arguments, const RunOptions& options = {});

}   // namespace QZ::Test
