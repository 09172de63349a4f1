// SPDX-License-Identifier: MIT
// The colours of movies that are tagged in every way, against the standards' equations in double precision.
#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <vector>

#include "QZ/Platform/MovieReader.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Test {
namespace {

using namespace QZ::Platform;
using testing::HasSubstr;

struct RGB {
    int red, green, blue;
};

struct YCbCr {
    int y, cb, cr;
};

// ITU-R BT.709-6, 3 and BT.601-7, 2.5: R' = Y' + 2 (1 - Kr) Cr and so on, Y' and the differences from their
// codes of 8 bits.
RGB Decoded(const YCbCr& code, double kr, double kb, bool isFullRange)
{
    const double y = isFullRange ? code.y / 255.0 : (code.y - 16) / 219.0;
    const double cb = isFullRange ? (code.cb - 128) / 255.0 : (code.cb - 128) / 224.0;
    const double cr = isFullRange ? (code.cr - 128) / 255.0 : (code.cr - 128) / 224.0;
    const double red = y + 2 * (1 - kr) * cr;
    const double blue = y + 2 * (1 - kb) * cb;
    const double green = (y - kr * red - kb * blue) / (1 - kr - kb);
    const auto byte = [](double value) {
        return static_cast<int>(std::lround(255 * std::min(1.0, std::max(0.0, value))));
    };
    return {byte(red), byte(green), byte(blue)};
}

class MovieColours : public ::testing::Test {
protected:
    /// A lossless movie of one colour.
    std::string Movie(const YCbCr& code, const std::string& tags, int height = 64)
    {
        const std::string raw = folder.File("raw.yuv");
        const std::string path = folder.File("movie" + std::to_string(++m_count) + ".mkv");
        {
            std::ofstream file(raw, std::ios::binary);
            for (const int value : {code.y, code.cb, code.cr})
                file << std::string(static_cast<std::size_t>(64 * height), static_cast<char>(value));
        }
        Output("ffmpeg -v fatal -f rawvideo -pix_fmt yuv444p -s 64x" + std::to_string(height) + " -i '" +
               raw + "' -c:v ffv1 " + tags + " '" + path + "'");
        return path;
    }

    void ExpectColour(const std::string& path, const RGB& expected, const std::string& description)
    {
        MovieReadError error;
        const std::unique_ptr<MovieReader> movie = MovieReader::Open(path, error);
        ASSERT_NE(movie, nullptr) << error.reason;
        EXPECT_EQ(movie->Description().colours, description);
        const std::optional<MoviePicture> picture = movie->NextPicture(error);
        ASSERT_TRUE(picture.has_value()) << error.reason;
        const unsigned char* bgra = picture->pixels->BaseAddress();
        // The conversion works in integers: it may be off by one level.
        EXPECT_NEAR(bgra[0], expected.blue, 1) << description;
        EXPECT_NEAR(bgra[1], expected.green, 1) << description;
        EXPECT_NEAR(bgra[2], expected.red, 1) << description;
        EXPECT_EQ(bgra[3], 255);
    }

    ScratchFolder folder;

private:
    int m_count = 0;
};

constexpr YCbCr kCode = {120, 90, 170};

TEST_F(MovieColours, AreReadByTheTaggedMatrixAndRange)
{
    ExpectColour(Movie(kCode, "-colorspace bt709 -color_range tv"), Decoded(kCode, 0.2126, 0.0722, false),
                 "BT.709, limited range");
    ExpectColour(Movie(kCode, "-colorspace bt709 -color_range pc"), Decoded(kCode, 0.2126, 0.0722, true),
                 "BT.709, full range");
    ExpectColour(Movie(kCode, "-colorspace smpte170m -color_range tv"), Decoded(kCode, 0.299, 0.114, false),
                 "BT.601, limited range");
    ExpectColour(Movie(kCode, "-colorspace bt2020nc -color_range tv"), Decoded(kCode, 0.2627, 0.0593, false),
                 "BT.2020, limited range");
}

TEST_F(MovieColours, AreAssumedByTheHeightWhereTheyAreNotTagged)
{
    ExpectColour(Movie(kCode, "", 718), Decoded(kCode, 0.299, 0.114, false),
                 "BT.601, limited range, assumed");
    ExpectColour(Movie(kCode, "", 720), Decoded(kCode, 0.2126, 0.0722, false),
                 "BT.709, limited range, assumed");
}

// Worked with 30 digits from the chromaticities of ITU-R BT.2020-2, BT.601-7 (525 lines) and SMPTE EG 432-1,
// the white of D65 (0.3127, 0.3290) and the curve of IEC 61966-2-1, from what Decoded gives for the code.
TEST_F(MovieColours, AreConvertedToThePrimariesOfBT709)
{
    constexpr YCbCr kMuted = {140, 120, 138};
    struct Case {
        const char* primaries;
        RGB expected;
    };
    for (const Case& c : {Case{"bt2020", {175, 138, 125}}, Case{"smpte170m", {161, 141, 127}},
                          Case{"smpte432", {167, 140, 126}}})
        ExpectColour(
            Movie(kMuted, std::string("-colorspace bt709 -color_range tv -color_primaries ") + c.primaries),
            c.expected, "BT.709, limited range");
}

TEST_F(MovieColours, OfHighDynamicRangeAreRefused)
{
    for (const char* transfer : {"smpte2084", "arib-std-b67"}) {
        MovieReadError error;
        const std::string path =
            Movie(kCode, std::string("-colorspace bt2020nc -color_primaries bt2020 -color_trc ") + transfer);
        EXPECT_EQ(MovieReader::Open(path, error), nullptr);
        EXPECT_EQ(error.kind, MovieReadError::Kind::Unsupported);
        EXPECT_THAT(error.reason, HasSubstr("high dynamic range"));
    }
}

TEST_F(MovieColours, OfAnUnknownMatrixAreRefused)
{
    MovieReadError error;
    EXPECT_EQ(MovieReader::Open(Movie(kCode, "-colorspace ycgco"), error), nullptr);
    EXPECT_THAT(error.reason, HasSubstr("ycgco"));
}

}   // namespace
}   // namespace QZ::Test
