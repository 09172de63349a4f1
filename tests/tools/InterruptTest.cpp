// SPDX-License-Identifier: MIT
#include "tools/qz/io/Interrupt.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/tools/TemporaryFolder.h"

namespace {

using QZ::Test::TemporaryFolder;
using namespace QZ::Tool;

TEST(InterruptDeathTest, RemovesTheUnfinishedFile)
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const TemporaryFolder folder;
        folder.Write("half", "unfinished");
        folder.Write("other", "finished");
        EXPECT_EXIT(
            {
                InstallInterruptHandler();
                SetUnfinishedFile(folder / "half");
                raise(number);
            },
            testing::ExitedWithCode(130), "interrupted");
        EXPECT_EQ(folder.Names(), std::vector<std::string>{"other"});
    }
}

TEST(InterruptDeathTest, WaitsForTheEndOfABlock)
{
    const TemporaryFolder folder;
    folder.Write("half", "unfinished");
    EXPECT_EXIT(
        {
            InstallInterruptHandler();
            SetUnfinishedFile(folder / "half");
            {
                const InterruptBlock block;
                raise(SIGINT);
                std::filesystem::rename(folder / "half", folder / "whole");
                SetUnfinishedFile({});
            }
        },
        testing::ExitedWithCode(130), "interrupted");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"whole"});
}

TEST(InterruptDeathTest, ComesTooLateForACompleteOutputUntilTheNextOne)
{
    const TemporaryFolder folder;
    folder.Write("half", "unfinished");
    folder.Write("whole", "finished");
    const auto complete = [&] {
        InstallInterruptHandler();
        SetUnfinishedFile(folder / "whole");
        SetOutputComplete();
        raise(SIGINT);
    };
    EXPECT_EXIT((complete(), _exit(0)), testing::ExitedWithCode(0), "^$");
    EXPECT_EXIT((complete(), SetUnfinishedFile(folder / "half"), raise(SIGINT)), testing::ExitedWithCode(130),
                "interrupted");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"whole"});
}

}   // namespace
