// SPDX-License-Identifier: MIT
#pragma once

#include <signal.h>

#include <string>

namespace QZ::Tool {

/// From here on Ctrl-C, a hang-up and a request to terminate remove the unfinished output and end the process
/// with status 130; a reader that went away (SIGPIPE) is an ordinary write error.
void InstallInterruptHandler();

/// Runs no interruption while it lives; blocks may be nested.
class InterruptBlock {
public:
    InterruptBlock();
    ~InterruptBlock();
    InterruptBlock(const InterruptBlock&) = delete;
    InterruptBlock& operator=(const InterruptBlock&) = delete;

private:
    sigset_t m_before{};
};

/// Names the one unfinished file that an interruption removes, and another that may stand beside it; an empty
/// path means none. Call it under an InterruptBlock together with what creates, renames or removes the file.
void SetUnfinishedFile(const std::string& path, const std::string& companion = {});

/// The output has its name, and the work is done but for a few words: an interruption comes too late from
/// here on and is passed over, so that its exit status never stands beside a complete output. Until a file is
/// unfinished again.
void SetOutputComplete();

/// While it lives, the first interruption is only noted: the work is to come to an early end by itself. The
/// second one ends the process as ever. One at a time.
class InterruptNote {
public:
    InterruptNote();
    ~InterruptNote();
    InterruptNote(const InterruptNote&) = delete;
    InterruptNote& operator=(const InterruptNote&) = delete;

    [[nodiscard]] bool Came() const;
};

}   // namespace QZ::Tool
