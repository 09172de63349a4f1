// SPDX-License-Identifier: MIT
// The conventions of the program, seen from outside: exit statuses, where words go, and what is left on the
// disk.
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>

#include "tests/tools/RunQz.h"
#include "tests/tools/SampleFiles.h"
#include "tests/tools/TemporaryFolder.h"
#include "tools/qz/io/ImageReader.h"

namespace {

using namespace QZ::Test;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using Names = std::vector<std::string>;

std::string AsText(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

class Program : public testing::Test {
protected:
    Program() { m_folder.Write("in.png", AsText(MakePNG(MakeSamples(20, 10, 3, 8)))); }

    [[nodiscard]] Outcome Run(const std::vector<std::string>& arguments, RunOptions options = {}) const
    {
        options.folder = m_folder / ".";
        return RunQz(arguments, options);
    }

    // A failure is one line on standard error, nothing on standard output, and no new file.
    void ExpectFailure(const Outcome& outcome, int status, const std::string& part,
                       Names left = {"in.png"}) const
    {
        EXPECT_EQ(outcome.status, status) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, StartsWith("qz: "));
        EXPECT_THAT(outcome.err, HasSubstr(part));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        std::sort(left.begin(), left.end());
        EXPECT_EQ(m_folder.Names(), left);
    }

    TemporaryFolder m_folder;
};

TEST_F(Program, HelpsWithExamplesFirst)
{
    for (const std::string option : {"-h", "--help"}) {
        for (const std::vector<std::string>& arguments : {std::vector<std::string>{option},
                                                          {"tones", option},
                                                          {"threshold", option},
                                                          {"three-tone", option},
                                                          {"adjust", option}}) {
            const Outcome outcome = Run(arguments);
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(outcome.err, "");
            const std::size_t examples = outcome.out.find("Examples:\n");
            ASSERT_NE(examples, std::string::npos);
            EXPECT_LT(examples, outcome.out.find("Usage:"));
            EXPECT_LT(examples, outcome.out.find("Options:"));
        }
    }
}

TEST_F(Program, TellsItsVersion)
{
    const Outcome outcome = Run({"--version"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, testing::MatchesRegex("qz [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(outcome.err, "");
}

TEST_F(Program, SaysWhatIsWrongWithTheCommandLine)
{
    ExpectFailure(Run({}), 2, "--help");
    ExpectFailure(Run({"nonsense"}), 2, "nonsense");
    ExpectFailure(Run({"tones", "in.png"}), 2, "OUT");
    ExpectFailure(Run({"tones", "in.png", "a.png", "b.png"}), 2, "b.png");
    ExpectFailure(Run({"tones", "in.png", "out.png", "--nonsense"}), 2, "--nonsense");
    ExpectFailure(Run({"tones", "in.png", "out.png", "--count", "many"}), 2, "--count");
    ExpectFailure(Run({"tones", "in.png", "out.png", "--count", "0"}), 2, "--count");
    ExpectFailure(Run({"tones", "in.png", "out.png", "--gamma", "nan"}), 2, "--gamma");
    ExpectFailure(Run({"tones", "in.png", "out.png", "--grey", "blue"}), 2, "blue is not one of");
    ExpectFailure(Run({"tones", "in.png", "out.gif"}), 2, ".png or .jpg");
    ExpectFailure(Run({"tones", "in.png", "out"}), 2, "--format");
    ExpectFailure(Run({"tones", "in.png", "-", "--json"}), 2, "--json");
    ExpectFailure(Run({"adjust", "in.png", "out.png", "--hable", "1,2,3"}), 2, "4 numbers");
    ExpectFailure(Run({"adjust", "in.png", "out.png", "--hable", "1,2,3,x"}), 2, "--hable");
    ExpectFailure(Run({"adjust", "in.png", "out.png", "--inverse"}), 2, "--insomniac");
}

TEST_F(Program, SaysWhichInputCannotBeRead)
{
    ExpectFailure(Run({"tones", "none.png", "out.png"}), 3, "none.png");
    ExpectFailure(Run({"tones", ".", "out.png"}), 3, ".");
    if (geteuid() != 0) {   // root may read everything
        chmod((m_folder / "in.png").c_str(), 0);
        ExpectFailure(Run({"tones", "in.png", "out.png"}), 3, "in.png");
    }
}

TEST_F(Program, SaysWhichInputIsMalformed)
{
    const std::string whole = m_folder.Read("in.png");
    m_folder.Write("empty.png", "");
    m_folder.Write("text.png", "hello");
    m_folder.Write("short.png", whole.substr(0, whole.size() / 2));
    std::string corrupt = whole;
    corrupt[corrupt.size() / 2] = static_cast<char>(corrupt[corrupt.size() / 2] ^ 0x55);
    m_folder.Write("corrupt.png", corrupt);
    const Names left = {"corrupt.png", "empty.png", "in.png", "short.png", "text.png"};
    ExpectFailure(Run({"tones", "empty.png", "out.png"}), 4, "empty", left);
    ExpectFailure(Run({"tones", "text.png", "out.png"}), 4, "text.png: not a picture", left);
    ExpectFailure(Run({"tones", "short.png", "out.png"}), 4, "truncated", left);
    ExpectFailure(Run({"tones", "corrupt.png", "out.png"}), 4, "corrupt.png", left);
    ExpectFailure(Run({"tones", "-", "out.png"}, {.input = "hello"}), 4, "standard input", left);
    ExpectFailure(Run({"tones", "in.png", "out.png", "--max-pixels", "199"}), 4, "--max-pixels", left);
    EXPECT_EQ(Run({"tones", "in.png", "out.png", "--max-pixels", "200"}).status, 0);
}

// 20,000 x 20,000 pixels in a file of a few bytes.
TEST_F(Program, RefusesAHugePictureBeforeDecodingIt)
{
    const std::string whole = m_folder.Read("in.png");
    m_folder.Write("huge.ppm", "P6\n20000 20000\n255\nabc");
    ExpectFailure(Run({"tones", "huge.ppm", "out.png"}), 4, "over the limit", {"huge.ppm", "in.png"});
}

TEST_F(Program, KeepsAnExistingOutputUnlessForced)
{
    m_folder.Write("out.png", "mine");
    ExpectFailure(Run({"tones", "in.png", "out.png"}), 5, "--force", {"in.png", "out.png"});
    EXPECT_EQ(m_folder.Read("out.png"), "mine");
    m_folder.Write("bad.png", "hello");
    ExpectFailure(Run({"tones", "bad.png", "out.png", "--force"}), 4, "bad.png",
                  {"bad.png", "in.png", "out.png"});
    EXPECT_EQ(m_folder.Read("out.png"), "mine");
    EXPECT_EQ(Run({"tones", "in.png", "out.png", "--force"}).status, 0);
    EXPECT_THAT(m_folder.Read("out.png"), HasSubstr("PNG"));
}

TEST_F(Program, MayWriteOverItsOwnInput)
{
    EXPECT_EQ(Run({"tones", "in.png", "in.png", "-f"}).status, 0);
    EXPECT_EQ(m_folder.Names(), Names{"in.png"});
}

TEST_F(Program, SaysWhichOutputIsNotWritten)
{
    ExpectFailure(Run({"tones", "in.png", "none/out.png"}), 5, "none/out.png");
    ExpectFailure(Run({"tones", "in.png", "-"}, {.outPath = "/dev/full"}), 5, "standard output");
    ExpectFailure(Run({"tones", "in.png", "out.png"}, {.outPath = "/dev/full"}), 5, "standard output",
                  {"in.png", "out.png"});
}

TEST_F(Program, LeavesNothingOnAFullDisk)
{
    ExpectFailure(Run({"tones", "in.png", "out.png"}, {.fileSizeLimit = 100}), 5, "out.png");
}

TEST_F(Program, SaysThatTheEncoderRefuses)
{
    m_folder.Write("long.pgm", "P5\n70000 1\n255\n" + std::string(70000, 'x'));
    ExpectFailure(Run({"tones", "long.pgm", "out.jpg"}), 6, "JPEG", {"in.png", "long.pgm"});
    EXPECT_EQ(Run({"tones", "long.pgm", "out.png"}).status, 0);
}

TEST_F(Program, ReadsAndWritesStandardStreams)
{
    const Outcome piped = Run({"tones", "-", "-"}, {.input = m_folder.Read("in.png")});
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(Run({"tones", "in.png", "out.png"}).status, 0);
    EXPECT_EQ(piped.out, m_folder.Read("out.png"));
    EXPECT_THAT(piped.err, HasSubstr("tones of"));   // the result makes way for the picture

    const Outcome jpeg = Run({"tones", "in.png", "-", "--format", "jpeg", "--quiet"});
    EXPECT_THAT(jpeg.out, StartsWith("\xFF\xD8\xFF"));
    EXPECT_EQ(jpeg.err, "");
}

TEST_F(Program, PrintsResultsAndNothingElseOnStandardOutput)
{
    const Outcome plain = Run({"tones", "in.png", "out.png", "--count", "2"});
    EXPECT_EQ(plain.status, 0);
    EXPECT_THAT(plain.out, StartsWith("2 tones of "));
    EXPECT_EQ(plain.err, "");
}

TEST_F(Program, PrintsMeasurementsAsJSON)
{
    using nlohmann::json;
    const json tones = json::parse(Run({"tones", "in.png", "a.png", "--count", "3", "--json"}).out);
    EXPECT_EQ(tones.at("width"), 20);
    EXPECT_EQ(tones.at("height"), 10);
    ASSERT_EQ(tones.at("tones").size(), 3u);
    double share = 0.0;
    for (const json& tone : tones.at("tones"))
        share += tone.at("share").get<double>();
    EXPECT_NEAR(share, 1.0, 1e-12);   // sums of a few roundings

    const json threshold = json::parse(Run({"threshold", "in.png", "b.png", "--json"}).out);
    EXPECT_NEAR(threshold.at("dark").get<double>() + threshold.at("light").get<double>(), 1.0, 1e-12);
    const json three = json::parse(Run({"three-tone", "in.png", "c.png", "--json"}).out);
    EXPECT_LE(three.at("low").get<int>(), three.at("high").get<int>());
}

TEST_F(Program, RepaintsInAFewHues)
{
    const Outcome outcome = Run({"hues", "in.png", "out.png", "--count", "3", "--space", "luv"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, StartsWith("3 hues\n#"));
    ExpectFailure(Run({"hues", "in.png", "bad.png", "--method", "median-cut", "--space", "lab"}), 2,
                  "--method clusters", {"in.png", "out.png"});
}

TEST_F(Program, PosterizesAndDrawsTheTones)
{
    const Outcome outcome = Run({"posterize", "in.png", "out.png", "--palette", "tones.png"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("groups\n#"));
    const Names left = {"in.png", "out.png", "tones.png"};
    EXPECT_EQ(m_folder.Names(), left);
    ExpectFailure(Run({"posterize", "in.png", "bad.png", "--palette", "bad.png"}), 2, "--palette", left);
}

TEST_F(Program, BalancesAndTellsTheLight)
{
    const Outcome outcome = Run({"balance", "in.png", "out.png", "--p3", "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(nlohmann::json::parse(outcome.out).at("xyz").at(1), 1.0);
    EXPECT_THAT(m_folder.Read("out.png"), HasSubstr("iCCP"));
    m_folder.Write("black.ppm", "P6\n2 1\n255\n" + std::string(6, '\0'));
    const Names left = {"black.ppm", "in.png", "out.png"};
    ExpectFailure(Run({"balance", "black.ppm", "bad.png"}), 4, "black throughout", left);
    ExpectFailure(Run({"balance", "in.png", "bad.png", "--light", "1,2"}), 2, "3 numbers", left);
}

TEST_F(Program, ShowsNoControlSequencesInAPipe)
{
    const Outcome outcome = Run({"tones", "in.png", "out.png"});
    EXPECT_EQ((outcome.out + outcome.err).find('\033'), std::string::npos);
}

TEST_F(Program, KeepsAHostileFileNameOnOneLine)
{
    ExpectFailure(Run({"tones", "a\nb\033[31m.png", "out.png"}), 3, "a?b?[31m.png");
}

TEST_F(Program, LeavesNothingWhenInterrupted)
{
    const Outcome waiting = Run({"tones", "-", "out.png"}, {.keepInputOpen = true, .interruptAfter = 100});
    EXPECT_EQ(waiting.status, 130);
    EXPECT_THAT(waiting.err, EndsWith("qz: interrupted\n"));
    EXPECT_EQ(m_folder.Names(), Names{"in.png"});
}

// At whatever moment it comes: either all was done, or nothing is there.
TEST_F(Program, FinishesOrLeavesNothingWhenInterruptedAtAnyMoment)
{
    m_folder.Write("large.ppm", AsText(MakePNM(MakeSamples(1500, 1000, 3, 8))));
    int interrupted = 0;
    for (int milliseconds = 1; milliseconds < 300 && interrupted < 12; milliseconds += 17) {
        const Outcome outcome = Run({"tones", "large.ppm", "out.png"}, {.interruptAfter = milliseconds});
        constexpr int kBeforeMain = 1000 + SIGINT;   // the process had not come to its first line
        if (outcome.status == 130 || outcome.status == kBeforeMain) {
            interrupted += outcome.status == 130 ? 1 : 0;
            EXPECT_EQ(m_folder.Names(), (Names{"in.png", "large.ppm"}));
        } else {
            EXPECT_EQ(outcome.status, 0) << outcome.err;
            EXPECT_EQ(m_folder.Names(), (Names{"in.png", "large.ppm", "out.png"}));
            unlink((m_folder / "out.png").c_str());
        }
    }
    EXPECT_GT(interrupted, 0);
}

}   // namespace
