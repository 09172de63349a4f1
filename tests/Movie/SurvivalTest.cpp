// SPDX-License-Identifier: MIT
// Recordings whose process is killed play up to about the last second. QZ_SURVIVAL_KILLS sets how many are
// killed.
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

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

/// A RecordForever of its own process.
class Victim {
public:
    explicit Victim(std::vector<std::string> arguments)
    {
        int ends[2] = {};
        EXPECT_EQ(::pipe(ends), 0);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        std::string program = QZ_RECORD_FOREVER;
        std::vector<char*> pointers = {program.data()};
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        EXPECT_EQ(posix_spawn(&m_child, pointers[0], &actions, nullptr, pointers.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        m_told = ::fdopen(ends[0], "r");
    }
    ~Victim() { std::fclose(m_told); }
    Victim(const Victim&) = delete;
    Victim& operator=(const Victim&) = delete;

    /// Waits until it has appended so many pictures, or has ended. \return how many it had
    int WaitFor(int pictures)
    {
        char line[32];
        while (m_appended < pictures && std::fgets(line, sizeof line, m_told))
            m_appended = std::atoi(line);
        return m_appended;
    }

    /// \return how many pictures it had appended.
    int Kill()
    {
        ::kill(m_child, SIGKILL);
        const int appended = WaitFor(std::numeric_limits<int>::max());
        ::waitpid(m_child, nullptr, 0);
        return appended;
    }

private:
    pid_t m_child = 0;
    FILE* m_told = nullptr;
    int m_appended = 0;
};

int Kills()
{
    const char* wanted = std::getenv("QZ_SURVIVAL_KILLS");
    return wanted ? std::atoi(wanted) : 4;
}

/// How many pictures a file shows; it must play without a complaint.
int Played(const std::string& path)
{
    const std::string counted =
        Probe(path, "-select_streams v -count_frames -show_entries stream=nb_read_frames");
    EXPECT_EQ(Output("ffmpeg -v error -i '" + path + "' -f null - 2>&1"), "") << path;
    return std::atoi(counted.c_str() + counted.find('=') + 1);
}

void Sleep(double seconds)
{
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

void Report(const char* what, std::vector<int> losses)
{
    std::sort(losses.begin(), losses.end());
    std::printf("    %zu recordings killed %s: %d pictures lost at the median, %d at most\n", losses.size(),
                what, losses[losses.size() / 2], losses.back());
}

constexpr const char* kCodecs[] = {"h264", "hevc", "prores"};
constexpr int kSecond = 30;   // pictures

TEST(Survival, AKilledRecordingPlaysUpToAboutTheLastSecond)
{
    const ScratchFolder folder;
    std::mt19937 random(20011);
    std::uniform_real_distribution<double> moment(0.1, 1.6);
    std::vector<int> losses;
    for (int i = 0; i < Kills(); ++i) {
        const std::string path = folder.File(std::to_string(i) + ".mov");
        Victim victim({path, kCodecs[i % 3]});
        ASSERT_GT(victim.WaitFor(1), 0) << "the recorder did not start";
        WaitForContent(path);
        Sleep(moment(random));
        const int appended = victim.Kill();
        losses.push_back(appended - Played(path));
        EXPECT_LE(losses.back(), kSecond) << kCodecs[i % 3] << " of " << appended;
        std::filesystem::remove(path);
    }
    Report("while they record", losses);
}

// The ordinary file is made beside the recorded one, which stays until it is replaced whole.
TEST(Survival, ARecordingThatIsKilledWhileItIsFinishedPlaysToo)
{
    const ScratchFolder folder;
    std::mt19937 random(20012);
    std::uniform_real_distribution<double> moment(0.0, 0.1);
    std::vector<int> losses;
    constexpr int kPictures = 120;
    for (int i = 0; i < Kills(); ++i) {
        const std::string path = folder.File(std::to_string(i) + ".mov");
        Victim victim({path, kCodecs[i % 3], std::to_string(kPictures)});
        ASSERT_EQ(victim.WaitFor(kPictures), kPictures) << "the recorder did not start";
        Sleep(moment(random));
        ASSERT_EQ(victim.Kill(), kPictures);
        losses.push_back(kPictures - Played(path));
        EXPECT_LE(losses.back(), kSecond) << kCodecs[i % 3];
        std::filesystem::remove(path);
    }
    Report("while they are finished", losses);
}

}   // namespace
}   // namespace QZ::Test
