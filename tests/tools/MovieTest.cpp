// SPDX-License-Identifier: MIT
// qz on movies, seen from outside: what the movies hold, and what is left on the disk.
#include <gmock/gmock.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "QZ/Platform/MovieReader.h"
#include "tests/tools/RunQz.h"
#include "tests/tools/TemporaryFolder.h"
#include "tools/qz/movie/MovieProgress.h"
#include "tools/qz/movie/Pixels.h"
#include "tools/qz/operations/Tones.h"
#include "tools/qz/scene/MovingScene.h"

namespace {

using namespace QZ::Platform;
using namespace QZ::Test;
using QZ::Tool::Image;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

using Arguments = std::vector<std::string>;

struct Movie {
    MovieDescription description;
    std::vector<Image> pictures;
    std::vector<Time> times;
    std::vector<unsigned char> sound;
    std::string error;
};

Image ImageOf(PixelBuffer& pixels)
{
    Image image(pixels.Width(), pixels.Height());
    for (int y = 0; y < image.height; ++y)
        QZ::Tool::SwapRedAndBlue(pixels.BaseAddress() + static_cast<std::uint64_t>(y) * pixels.BytesPerRow(),
                                 image.width, image.At(0, y));
    return image;
}

Movie ReadMovie(const std::string& path)
{
    Movie movie;
    MovieReadError error;
    const auto reader = MovieReader::Open(path, error);
    if (reader) {
        movie.description = reader->Description();
        while (const auto picture = reader->NextPicture(error)) {
            movie.pictures.push_back(ImageOf(*picture->pixels));
            movie.times.push_back(picture->time);
        }
        movie.error = error.reason;
        while (const auto sound = reader->NextSound(error))
            movie.sound.insert(movie.sound.end(), sound->bytes.begin(), sound->bytes.end());
    }
    if (movie.error.empty())
        movie.error = error.reason;
    EXPECT_EQ(movie.error, "") << path;
    return movie;
}

/// Peak signal-to-noise ratio in dB of the colours of two pictures of one size.
double PSNR(const Image& a, const Image& b)
{
    double sum = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        sum += i % 4 == 3 ? 0.0 : std::pow(static_cast<double>(a.pixels[i]) - b.pixels[i], 2);
    return 10 * std::log10(255.0 * 255.0 / (sum / (3.0 * static_cast<double>(a.Count())) + 1e-9));
}

class MovieProgram : public testing::Test {
protected:
    [[nodiscard]] Outcome Run(const Arguments& arguments, RunOptions options = {}) const
    {
        options.folder = m_folder / ".";
        return RunQz(arguments, options);
    }

    void Record(const std::string& name, const Arguments& options = {},
                const std::string& seconds = "0.6") const
    {
        Arguments arguments = {"record", name, "--size", "96x64", "--rate", "20", "--seconds", seconds};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Outcome outcome = Run(arguments);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }

    // A failure is one line on standard error, nothing on standard output, and no new file.
    void ExpectFailure(const Outcome& outcome, int status, const std::string& part,
                       const Arguments& left) const
    {
        EXPECT_EQ(outcome.status, status) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, StartsWith("qz: "));
        EXPECT_THAT(outcome.err, HasSubstr(part));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_EQ(m_folder.Names(), left);
    }

    TemporaryFolder m_folder;
};

TEST_F(MovieProgram, RecordsTheSceneWithItsToneInEveryCodec)
{
    for (const std::string codec : {"h264", "hevc", "prores"}) {
        ASSERT_NO_FATAL_FAILURE(Record(codec + ".mov", {"--codec", codec, "--turn", "90"}));
        const Movie movie = ReadMovie(m_folder / (codec + ".mov"));
        EXPECT_EQ(movie.description.codec, codec);
        EXPECT_EQ(movie.description.soundCodec, "aac");
        EXPECT_EQ(movie.description.transform.b, 1.0);
        EXPECT_EQ(movie.description.transform.tx, 64.0);
        ASSERT_EQ(movie.pictures.size(), 12u);
        const QZ::Tool::MovingScene scene(96, 64, 20);
        for (std::size_t i = 0; i < movie.pictures.size(); ++i) {
            EXPECT_EQ(CompareTime(movie.times[i], MakeTime(static_cast<std::int64_t>(i), 20)), 0);
            const auto painted = PixelBuffer::Create({.width = 96, .height = 64});
            scene.Paint(static_cast<int>(i), painted->BaseAddress(), painted->BytesPerRow());
            EXPECT_GT(PSNR(movie.pictures[i], ImageOf(*painted)), 25) << codec;   // small letters in 4:2:0
        }
        EXPECT_GT(movie.sound.size(), 1000u);
    }
    EXPECT_THAT(m_folder.Names(), ElementsAre("h264.mov", "hevc.mov", "prores.mov"));
}

TEST_F(MovieProgram, WorksOnEachPictureAndKeepsTimesSoundRotationAndCodec)
{
    for (const std::string codec : {"h264", "hevc", "prores"}) {
        const std::string in = codec + ".mov", out = codec + "-tones.mov";
        ASSERT_NO_FATAL_FAILURE(Record(in, {"--codec", codec, "--turn", "270"}));
        const Outcome outcome = Run({"tones", in, out});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_THAT(outcome.out, StartsWith("12 pictures of 96 x 64, 0.60 s; "));
        const Outcome again = Run({"tones", in, out, "--force", "--json"});
        EXPECT_EQ(nlohmann::json::parse(again.out).at("pictures"), 12);
        EXPECT_EQ(outcome.err, "");
        const Movie before = ReadMovie(m_folder / in);
        const Movie after = ReadMovie(m_folder / out);
        EXPECT_EQ(after.description.codec, codec);
        EXPECT_EQ(after.description.transform.c, before.description.transform.c);
        EXPECT_EQ(after.description.transform.ty, before.description.transform.ty);
        EXPECT_EQ(after.sound, before.sound);
        ASSERT_EQ(after.pictures.size(), before.pictures.size());
        for (std::size_t i = 0; i < after.pictures.size(); ++i) {
            EXPECT_EQ(CompareTime(after.times[i], before.times[i]), 0);
            Image expected = before.pictures[i];
            QZ::Tool::ReduceToTones({}, expected);
            EXPECT_GT(PSNR(after.pictures[i], expected), codec == "prores" ? 38 : 30);   // of hard edges
        }
    }
}

TEST_F(MovieProgram, WorksWithEveryOperationOnPictures)
{
    ASSERT_NO_FATAL_FAILURE(Record("in.mov"));
    for (const std::string command : {"hues", "posterize", "balance", "adjust", "threshold", "three-tone"}) {
        const Outcome outcome = Run({command, "in.mov", command + ".mov", "--codec", "hevc"});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        const Movie movie = ReadMovie(m_folder / (command + ".mov"));
        EXPECT_EQ(movie.pictures.size(), 12u);
        EXPECT_EQ(movie.description.codec, "hevc");
    }
}

// Every third picture of a movie with a broken rate, in a container of another kind.
TEST_F(MovieProgram, KeepsUnevenTimes)
{
    ASSERT_NO_FATAL_FAILURE(Record("in.mov"));
    const std::string command = "ffmpeg -v fatal -i '" + (m_folder / "in.mov") +
                                "' -vf \"select='not(mod(n,3))+not(mod(n,5))'\" -vsync vfr -an '" +
                                (m_folder / "uneven.mkv") + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const Outcome outcome = Run({"adjust", "uneven.mkv", "out.mov", "--saturation", "0"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Movie before = ReadMovie(m_folder / "uneven.mkv"), after = ReadMovie(m_folder / "out.mov");
    ASSERT_EQ(before.times.size(), 6u);   // 0, 3, 5, 6, 9, 10
    ASSERT_EQ(after.times.size(), 6u);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(CompareTime(after.times[i], before.times[i]), 0) << i;
    EXPECT_FALSE(after.description.hasSound);
}

TEST_F(MovieProgram, LeavesTheBlackPicturesOfAMovieBlackWhenItBalances)
{
    const std::string command =
        "ffmpeg -v fatal -f lavfi -i color=black:s=32x32:d=0.2 '" + (m_folder / "black.mp4") + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const Outcome outcome = Run({"balance", "black.mp4", "out.mov"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("pictures without light, which stay as they are: 5\n"));
}

TEST_F(MovieProgram, SaysWhatIsWrongAndLeavesNothing)
{
    ASSERT_NO_FATAL_FAILURE(Record("in.mov"));
    const std::string whole = m_folder.Read("in.mov");
    m_folder.Write("short.mov", whole.substr(0, whole.size() / 2));
    m_folder.Write("text.mov", "hello");
    const Arguments left = {"in.mov", "short.mov", "text.mov"};
    ExpectFailure(Run({"tones", "short.mov", "out.mov"}), 4, "short.mov: ", left);
    ExpectFailure(Run({"tones", "short.mov", "out.mov"}), 4, "cut short", left);
    ExpectFailure(Run({"tones", "text.mov", "out.mov"}), 4, "text.mov: not a movie", left);
    ExpectFailure(Run({"tones", "none.mov", "out.mov"}), 3, "none.mov", left);
    ExpectFailure(Run({"tones", "-", "out.mov"}), 2, "standard input", left);
    ExpectFailure(Run({"tones", "in.mov", "none/out.mov"}), 5, "none/out.mov", left);
    ExpectFailure(Run({"tones", "in.mov", "out.png"}), 4, "a movie, not a picture", left);
    ExpectFailure(Run({"tones", "in.mov", "out.png", "--codec", "hevc"}), 2, "--codec", left);
    ExpectFailure(Run({"tones", "in.mov", "out.mov", "--codec", "vp9"}), 2, "vp9", left);
    ExpectFailure(Run({"tones", "in.mov", "out.mov", "--max-pixels", "6143"}), 4, "96 x 64", left);
    ExpectFailure(Run({"posterize", "in.mov", "out.mov", "--palette", "p.png"}), 2, "--palette", left);
    ExpectFailure(Run({"balance", "in.mov", "out.mov", "--p3"}), 2, "--p3", left);
    ExpectFailure(Run({"balance", "in.mov", "out.mov", "--light", "0,0,0"}), 2, "black is no light", left);
    ExpectFailure(Run({"record", "out.mp4"}), 2, ".mov", left);
    ExpectFailure(Run({"record", "out.mov", "--size", "8x8"}), 2, "--size", left);
    ExpectFailure(Run({"record", "out.mov", "--size", "640"}), 2, "--size", left);
}

TEST_F(MovieProgram, KeepsAnExistingMovieUnlessForced)
{
    ASSERT_NO_FATAL_FAILURE(Record("in.mov"));
    m_folder.Write("out.mov", "mine");
    ExpectFailure(Run({"tones", "in.mov", "out.mov"}), 5, "--force", {"in.mov", "out.mov"});
    ExpectFailure(Run({"record", "out.mov"}), 5, "--force", {"in.mov", "out.mov"});
    EXPECT_EQ(m_folder.Read("out.mov"), "mine");
    EXPECT_EQ(Run({"tones", "in.mov", "out.mov", "--force"}).status, 0);
    EXPECT_EQ(ReadMovie(m_folder / "out.mov").pictures.size(), 12u);
    EXPECT_EQ(Run({"tones", "in.mov", "in.mov", "--force"}).status, 0) << "over its own input";
    EXPECT_EQ(ReadMovie(m_folder / "in.mov").pictures.size(), 12u);
    EXPECT_THAT(m_folder.Names(), ElementsAre("in.mov", "out.mov"));
}

TEST_F(MovieProgram, LeavesNothingOnAFullDisk)
{
    ASSERT_NO_FATAL_FAILURE(Record("in.mov"));
    ExpectFailure(Run({"tones", "in.mov", "out.mov"}, {.fileSizeLimit = 3000}), 5, "out.mov: not written",
                  {"in.mov"});
    ExpectFailure(Run({"record", "out.mov"}, {.fileSizeLimit = 3000}), 5, "out.mov: not written", {"in.mov"});
}

TEST_F(MovieProgram, FinishesAShorterMovieWhenInterrupted)
{
    ASSERT_NO_FATAL_FAILURE(Record("in.mov", {"--bit-rate", "0.2"}, "60"));
    for (const Arguments& command :
         {Arguments{"record", "out.mov", "--live", "--size", "96x64", "--seconds", "600"},
          Arguments{"posterize", "in.mov", "out.mov"}}) {
        // Before the first picture an interruption ends the program as ever: the slower the machine, the
        // later.
        Outcome outcome;
        for (int milliseconds = 100; milliseconds < 30000 && m_folder.Names().size() == 1;
             milliseconds = milliseconds * 3 / 2) {
            outcome = Run(command, {.interruptAfter = milliseconds});
            constexpr int kBeforeMain = 1000 + SIGINT;
            ASSERT_TRUE(outcome.status == 130 || outcome.status == kBeforeMain) << outcome.err;
        }
        EXPECT_EQ(outcome.status, 130);
        EXPECT_THAT(outcome.err, HasSubstr("interrupted: out.mov is complete as far as"));
        ASSERT_THAT(m_folder.Names(), ElementsAre("in.mov", "out.mov"));
        const std::size_t count = ReadMovie(m_folder / "out.mov").pictures.size();
        EXPECT_GT(count, 0u);
        EXPECT_LT(count, 1200u);
        std::filesystem::remove(m_folder / "out.mov");
    }
}

// The library without its module beside it.
TEST_F(MovieProgram, SaysThatTheModuleIsMissing)
{
    ASSERT_NO_FATAL_FAILURE(Record("in.mov"));
    const TemporaryFolder alone;
    std::filesystem::copy_file(QZ_LIBRARY_FILE, alone / "libQZFoundation.so.1");
    setenv("LD_LIBRARY_PATH", (alone / "").c_str(), 1);
    const Outcome worked = Run({"tones", "in.mov", "out.mov"});
    const Outcome recorded = Run({"record", "out.mov"});
    unsetenv("LD_LIBRARY_PATH");
    ExpectFailure(worked, 3, "libQZMovieWriter.so", {"in.mov"});
    ExpectFailure(recorded, 5, "libQZMovieWriter.so", {"in.mov"});
}

TEST(ProgressLine, TellsWhatIsKnown)
{
    using QZ::Tool::ProgressLine;
    EXPECT_EQ(ProgressLine("tones", 0.5, 31.24, 12.0),
              "tones  [############            ]   50 %  31.2 pictures a second, 0:12 left");
    EXPECT_EQ(ProgressLine("tones", 0.25, 10.0, 60.0),
              "tones  [######                  ]   25 %  10.0 pictures a second, 3:00 left");
    EXPECT_EQ(ProgressLine("tones", 0.0, 0.0, 0.0), "tones  [                        ]    0 %");
    EXPECT_EQ(ProgressLine("tones", 1.5, 0.0, 0.5), "tones  [########################]  100 %");
    EXPECT_EQ(ProgressLine("tones", -1.0, 20.0, 3.0), "tones  20.0 pictures a second");
}

}   // namespace
