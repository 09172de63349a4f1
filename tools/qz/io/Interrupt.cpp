// SPDX-License-Identifier: MIT
#include "tools/qz/io/Interrupt.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>
#include <cstring>

#include "tools/qz/Failure.h"

namespace QZ::Tool {

namespace {

// Plain memory: a signal handler may read nothing better.
using PlainPath = std::array<char, PATH_MAX>;
PlainPath g_unfinished{};
PlainPath g_companion{};

volatile std::sig_atomic_t g_noting = 0;
volatile std::sig_atomic_t g_noted = 0;
volatile std::sig_atomic_t g_isComplete = 0;

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
    if (g_isComplete != 0)
        return;
    if (g_noting != 0 && g_noted == 0) {
        g_noted = 1;
        return;
    }
    for (const PlainPath* path : {&g_unfinished, &g_companion})
        if ((*path)[0] != '\0')
            unlink(path->data());
    constexpr char kMessage[] = "\nqz: interrupted\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage, sizeof kMessage - 1);
    _exit(static_cast<int>(Status::Interrupted));
}

void Set(PlainPath& memory, const std::string& path)
{
    if (path.size() >= memory.size())
        throw Failure(Status::Output, path, "the name is too long", "write to a shorter path");
    std::memcpy(memory.data(), path.c_str(), path.size() + 1);
}

}   // namespace

void InstallInterruptHandler()
{
    struct sigaction action = {};
    action.sa_handler = HandleInterruption;
    action.sa_mask = Interruptions();
    action.sa_flags = SA_RESTART;   // one that is only noted disturbs nobody's reading and writing
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

void SetUnfinishedFile(const std::string& path, const std::string& companion)
{
    Set(g_unfinished, path);
    Set(g_companion, companion);
    if (!path.empty())
        g_isComplete = 0;
}

void SetOutputComplete()
{
    SetUnfinishedFile({});
    g_isComplete = 1;
}

InterruptNote::InterruptNote()
{
    g_noted = 0;
    g_noting = 1;
}

InterruptNote::~InterruptNote()
{
    g_noting = 0;
}

bool InterruptNote::Came() const
{
    return g_noted != 0;
}

}   // namespace QZ::Tool
