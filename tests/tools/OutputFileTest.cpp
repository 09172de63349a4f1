// SPDX-License-Identifier: MIT
#include "tools/qz/io/OutputFile.h"

#include <gtest/gtest.h>

#include <string_view>

#include "tests/tools/TemporaryFolder.h"
#include "tools/qz/Failure.h"

namespace {

using QZ::Test::TemporaryFolder;
using QZ::Tool::CheckOutput;
using QZ::Tool::Failure;
using QZ::Tool::Status;
using QZ::Tool::WriteOutput;

std::vector<unsigned char> Bytes(std::string_view text)
{
    return {text.begin(), text.end()};
}

Status StatusOfWriting(const std::string& path, bool force)
{
    try {
        WriteOutput(path, force, Bytes("new"));
    } catch (const Failure& failure) {
        return failure.status;
    }
    return Status::Done;
}

TEST(WriteOutput, LeavesTheWholeFileAndNothingElse)
{
    const TemporaryFolder folder;
    WriteOutput(folder / "a", false, Bytes("all of it"));
    EXPECT_EQ(folder.Read("a"), "all of it");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"a"});
}

TEST(WriteOutput, KeepsAnExistingFileWithoutForce)
{
    const TemporaryFolder folder;
    folder.Write("a", "old");
    EXPECT_EQ(StatusOfWriting(folder / "a", false), Status::Output);
    EXPECT_THROW(CheckOutput(folder / "a", false), Failure);
    EXPECT_EQ(folder.Read("a"), "old");
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"a"});
}

TEST(WriteOutput, ReplacesAnExistingFileWithForceAndKeepsItsPermissions)
{
    const TemporaryFolder folder;
    folder.Write("a", "old");
    std::filesystem::permissions(folder / "a", std::filesystem::perms(0640));
    EXPECT_EQ(StatusOfWriting(folder / "a", true), Status::Done);
    EXPECT_EQ(folder.Read("a"), "new");
    EXPECT_EQ(std::filesystem::status(folder / "a").permissions(), std::filesystem::perms(0640));
}

TEST(WriteOutput, WritesThroughASymbolicLink)
{
    const TemporaryFolder folder;
    folder.Write("a", "old");
    std::filesystem::create_symlink(folder / "a", folder / "link");
    EXPECT_EQ(StatusOfWriting(folder / "link", true), Status::Done);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(folder.Read("a"), "new");
}

TEST(WriteOutput, RefusesAFolderAndAMissingFolder)
{
    const TemporaryFolder folder;
    EXPECT_EQ(StatusOfWriting(folder / ".", true), Status::Output);
    EXPECT_EQ(StatusOfWriting(folder / "none/a", true), Status::Output);
    EXPECT_TRUE(folder.Names().empty());
}

TEST(WriteOutput, ReportsAFullDisk)
{
    EXPECT_EQ(StatusOfWriting("/dev/full", true), Status::Output);
}

}   // namespace
