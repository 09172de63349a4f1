// SPDX-License-Identifier: MIT
// Recordings whose process is killed play up to about the last second. QZ_SURVIVAL_KILLS sets how many are
// killed.
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <thread>

#include "tests/Movie/Scratch.h"

extern char** environ;

namespace QZ::Test {
namespace {

/// Waits until something of a recording has left the encoder, which a busy machine takes a while for.
void WaitForContent(const std::string& path)
{
    std::error_code missing;
    for (int i = 0; i < 60000; ++i) {
        const auto size = std::filesystem::file_size(path, missing);
        if (!missing && size > 0)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

/// Runs RecordForever, kills it `seconds` after its first picture was stored, and gives the number of
/// pictures that it had appended.
int RecordAndKill(const std::string& path, const std::string& codec, double seconds)
{
    int ends[2] = {};
    EXPECT_EQ(::pipe(ends), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    std::string program = QZ_RECORD_FOREVER, file = path, name = codec;
    char* arguments[] = {program.data(), file.data(), name.data(), nullptr};
    pid_t child = 0;
    EXPECT_EQ(posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    std::string told;
    char block[4096];
    ssize_t count = ::read(ends[0], block, sizeof block);
    if (count > 0) {
        told.append(block, static_cast<std::size_t>(count));
        WaitForContent(path);
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    }
    ::kill(child, SIGKILL);
    while ((count = ::read(ends[0], block, sizeof block)) > 0)
        told.append(block, static_cast<std::size_t>(count));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    if (told.size() < 2)
        return 0;
    const std::size_t line = told.rfind('\n', told.size() - 2);
    return std::atoi(told.c_str() + (line == std::string::npos ? 0 : line + 1));
}

TEST(Survival, AKilledRecordingPlaysUpToAboutTheLastSecond)
{
    const char* wanted = std::getenv("QZ_SURVIVAL_KILLS");
    const int kills = wanted ? std::atoi(wanted) : 4;
    const ScratchFolder folder;
    std::mt19937 random(20011);
    std::uniform_real_distribution<double> moment(0.1, 1.6);
    const std::string codecs[] = {"h264", "hevc", "prores"};
    std::vector<int> losses;
    for (int i = 0; i < kills; ++i) {
        const std::string path = folder.File(std::to_string(i) + ".mov");
        const int appended = RecordAndKill(path, codecs[i % 3], moment(random));
        ASSERT_GT(appended, 0) << "the recorder did not start";
        const std::string counted =
            Probe(path, "-select_streams v -count_frames -show_entries stream=nb_read_frames");
        const int played = std::atoi(counted.c_str() + counted.find('=') + 1);
        EXPECT_EQ(Output("ffmpeg -v error -i '" + path + "' -f null - 2>&1"), "") << path;
        losses.push_back(appended - played);
        EXPECT_LE(losses.back(), 30) << codecs[i % 3] << " of " << appended;   // a second
        std::filesystem::remove(path);
    }
    std::sort(losses.begin(), losses.end());
    std::printf("    %d recordings killed: %d pictures lost at the median, %d at most\n", kills,
                losses[losses.size() / 2], losses.back());
}

}   // namespace
}   // namespace QZ::Test
