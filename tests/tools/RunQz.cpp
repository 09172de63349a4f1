// SPDX-License-Identifier: MIT
#include "tests/tools/RunQz.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <stdexcept>

namespace QZ::Test {

namespace {

using Clock = std::chrono::steady_clock;

struct Pipe {
    Pipe()
    {
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }
    ~Pipe()
    {
        CloseRead();
        CloseWrite();
    }
    void CloseRead() { Close(ends[0]); }
    void CloseWrite() { Close(ends[1]); }
    static void Close(int& end)
    {
        if (end >= 0)
            close(end);
        end = -1;
    }
    std::array<int, 2> ends{};
};

[[noreturn]] void Become(const std::vector<std::string>& arguments, const RunOptions& options, const Pipe& in,
                         const Pipe& out, const Pipe& err)
{
    dup2(in.ends[0], STDIN_FILENO);
    const int file = options.outPath.empty() ? -1 : open(options.outPath.c_str(), O_WRONLY | O_CLOEXEC);
    dup2(file >= 0 ? file : out.ends[1], STDOUT_FILENO);
    dup2(err.ends[1], STDERR_FILENO);
    if (!options.folder.empty() && chdir(options.folder.c_str()) != 0)
        _exit(126);
    if (options.fileSizeLimit > 0) {
        const rlimit limit = {options.fileSizeLimit, options.fileSizeLimit};
        setrlimit(RLIMIT_FSIZE, &limit);
        signal(SIGXFSZ, SIG_IGN);   // a write beyond it fails with EFBIG
    }
    std::vector<char*> words;
    std::string program = QZ_PROGRAM;
    words.push_back(program.data());
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    execv(program.c_str(), words.data());
    _exit(127);
}

bool ReadSome(int& descriptor, std::string& text)
{
    std::array<char, 65536> buffer;
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
        return true;
    }
    Pipe::Close(descriptor);
    return false;
}

// Feeds the input and collects both outputs until all are closed.
void Converse(pid_t process, const RunOptions& options, Pipe& in, Pipe& out, Pipe& err, Outcome& outcome)
{
    const auto start = Clock::now();
    std::size_t fed = 0;
    bool interrupted = false;
    while (out.ends[0] >= 0 || err.ends[0] >= 0) {
        std::array<pollfd, 3> polled = {pollfd{out.ends[0], POLLIN, 0}, pollfd{err.ends[0], POLLIN, 0},
                                        pollfd{in.ends[1], POLLOUT, 0}};
        poll(polled.data(), polled.size(), 1);
        const auto passed =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
        if (options.interruptAfter > 0 && !interrupted && passed >= options.interruptAfter) {
            kill(process, SIGINT);
            interrupted = true;
        }
        if (passed > 1000L * options.timeoutSeconds)
            kill(process, SIGKILL);
        if (polled[0].revents != 0)
            ReadSome(out.ends[0], outcome.out);
        if (polled[1].revents != 0)
            ReadSome(err.ends[0], outcome.err);
        if ((polled[2].revents & POLLOUT) != 0) {
            const ssize_t count = write(in.ends[1], options.input.data() + fed, options.input.size() - fed);
            fed += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        if (in.ends[1] >= 0 &&
            ((fed == options.input.size() && !options.keepInputOpen) || (polled[2].revents & POLLERR) != 0))
            in.CloseWrite();
    }
}

}   // namespace

Outcome RunQz(const std::vector<std::string>& arguments, const RunOptions& options)
{
    signal(SIGPIPE, SIG_IGN);   // a program that reads none of its input is no failure of the test
    Pipe in;
    Pipe out;
    Pipe err;
    fcntl(in.ends[1], F_SETFL, O_NONBLOCK);
    const pid_t process = fork();
    if (process < 0)
        throw std::runtime_error("no process");
    if (process == 0)
        Become(arguments, options, in, out, err);
    in.CloseRead();
    out.CloseWrite();
    err.CloseWrite();
    Outcome outcome;
    Converse(process, options, in, out, err, outcome);
    int status = 0;
    waitpid(process, &status, 0);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    return outcome;
}

}   // namespace QZ::Test
