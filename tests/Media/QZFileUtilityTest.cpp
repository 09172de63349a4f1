// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZFileUtility.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/Support/Scratch.h"

using Path = std::optional<std::string>;
using std::filesystem::exists;

namespace {

/// Marks paths as in use and takes the marks back at the end: the registry is the process's.
class InUse {
public:
    explicit InUse(std::string path) : m_path(std::move(path))
    {
        QZFileUtility::markUniqueFilename(m_path, true);
    }
    ~InUse() { QZFileUtility::markUniqueFilename(m_path, false); }
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;

private:
    const std::string m_path;
};

}   // namespace

TEST(QZFileUtility, HandsAPathOutThatNobodyMarked)
{
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/AEdit.mov"), "/x/AEdit.mov");
}

TEST(QZFileUtility, NumbersThePathsInUse)
{
    const InUse base("/x/AEdit.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/AEdit.mov"), "/x/AEdit1.mov");
    const InUse first("/x/AEdit1.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/AEdit.mov"), "/x/AEdit2.mov");
}

TEST(QZFileUtility, BuildsEveryCandidateFromThePathItself)
{
    const InUse second("/x/AEdit.mov"), third("/x/AEdit1.mov"), fourth("/x/AEdit2.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/AEdit.mov"), "/x/AEdit3.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/AEdit.mov", 7), "/x/AEdit7.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/AEdit.mov", 1), "/x/AEdit3.mov");
}

TEST(QZFileUtility, GivesAPathWithoutExtensionTheNumberAndAPoint)
{
    const InUse base("/x/A");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/A"), "/x/A1.");
}

TEST(QZFileUtility, TakesTheExtensionFromTheLastComponentOnly)
{
    const InUse inFolder("/x.y/A"), twoPoints("/x/A.b.c"), endsWithPoint("/x/A."), noFolder("A.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x.y/A"), "/x.y/A1.");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/A.b.c"), "/x/A.b1.c");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/A."), "/x/A1.");
    EXPECT_EQ(QZFileUtility::uniqueFilename("A.mov"), "A1.mov");
}

TEST(QZFileUtility, ComparesPathsAsTexts)
{
    const InUse lower("/x/a.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/A.mov"), "/x/A.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename("/x/./a.mov"), "/x/./a.mov");
}

TEST(QZFileUtility, NeverAsksTheDisk)
{
    const QZ::Test::Scratch scratch;
    const std::string path = scratch.Touch("A.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename(path), path);
    EXPECT_TRUE(exists(path));
}

TEST(QZFileUtility, DeletesAGivenUpFileAtOnce)
{
    const QZ::Test::Scratch scratch;
    const std::string path = scratch.Touch("A.mov"), other = scratch.Touch("B.mov");
    QZFileUtility::markUniqueFilenameForDelete(path);
    EXPECT_FALSE(exists(path));
    EXPECT_TRUE(exists(other));
    EXPECT_EQ(QZFileUtility::uniqueFilename(path), path);
}

TEST(QZFileUtility, KeepsAGivenUpFileWhileItIsInUse)
{
    const QZ::Test::Scratch scratch;
    const std::string path = scratch.Touch("A.mov");
    QZFileUtility::markUniqueFilename(path, true);
    QZFileUtility::markUniqueFilenameForDelete(path);
    EXPECT_TRUE(exists(path));
    EXPECT_EQ(QZFileUtility::uniqueFilename(path), scratch / "A1.mov");
    QZFileUtility::markUniqueFilename(path, false);
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(QZFileUtility::uniqueFilename(path), path);
}

TEST(QZFileUtility, LeavesAFileThatWasNeverGivenUp)
{
    const QZ::Test::Scratch scratch;
    const std::string path = scratch.Touch("A.mov");
    QZFileUtility::markUniqueFilename(path, true);
    QZFileUtility::markUniqueFilename(path, false);
    QZFileUtility::checkAndValidateFileNames();
    EXPECT_TRUE(exists(path));
}

TEST(QZFileUtility, ForgetsAFileThatCannotBeDeleted)
{
    const QZ::Test::Scratch scratch;
    QZFileUtility::markUniqueFilenameForDelete(scratch / "never-there.mov");
    EXPECT_EQ(QZFileUtility::uniqueFilename(scratch / "never-there.mov"), scratch / "never-there.mov");
    const std::string later = scratch.Touch("never-there.mov");
    QZFileUtility::checkAndValidateFileNames();
    EXPECT_TRUE(exists(later));
}

TEST(QZFileUtility, IgnoresNoPath)
{
    QZFileUtility::ensureInitialization();
    QZFileUtility::markUniqueFilename(std::nullopt, true);
    QZFileUtility::markUniqueFilenameForDelete(std::nullopt);
    EXPECT_EQ(QZFileUtility::uniqueFilename(std::nullopt), std::nullopt);
    EXPECT_EQ(QZFileUtility::uniqueFilename(std::nullopt, 0), std::nullopt);
}
