// SPDX-License-Identifier: MIT
#include "tools/qz/io/Interrupt.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstring>

#include "tools/qz/Failure.h"

namespace QZ::Tool {

namespace {

// Plain memory: a signal handler may read nothing better.
std::array<char, PATH_MAX> g_unfinished{};

constexpr std::array kInterruptions = {SIGINT, SIGTERM, SIGHUP};

sigset_t Interruptions()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : kInterruptions)
        sigaddset(&set, number);
    return set;
}

// Only calls that POSIX allows in a signal handler.
extern "C" void HandleInterruption(int)
{
    if (g_unfinished[0] != '\0')
        unlink(g_unfinished.data());
    constexpr char kMessage[] = "\nqz: interrupted\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage, sizeof kMessage - 1);
    _exit(static_cast<int>(Status::Interrupted));
}

}   // namespace

void InstallInterruptHandler()
{
    struct sigaction action = {};
    action.sa_handler = HandleInterruption;
    action.sa_mask = Interruptions();
    for (const int number : kInterruptions) {
        struct sigaction inherited = {};
        sigaction(number, nullptr, &inherited);
        if (inherited.sa_handler != SIG_IGN)   // nohup, and a shell's background jobs, ignore some on purpose
            sigaction(number, &action, nullptr);
    }
    signal(SIGPIPE, SIG_IGN);
}

InterruptBlock::InterruptBlock()
{
    const sigset_t set = Interruptions();
    sigprocmask(SIG_BLOCK, &set, &m_before);
}

InterruptBlock::~InterruptBlock()
{
    sigprocmask(SIG_SETMASK, &m_before, nullptr);
}

void SetUnfinishedFile(const std::string& path)
{
    if (path.size() >= g_unfinished.size())
        throw Failure(Status::Output, path, "the name is too long", "write to a shorter path");
    std::memcpy(g_unfinished.data(), path.c_str(), path.size() + 1);
}

}   // namespace QZ::Tool
