// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/MovieFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <utility>

#include "QZ/Platform/MovieWriter/Box.h"
#include "QZ/Platform/MovieWriter/MovieBoxes.h"
#include "QZ/Platform/MovieWriter/SampleEntries.h"
#include "tests/Movie/BoxReader.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Platform::Movie {
namespace {

using QZ::Test::MovieView;
using QZ::Test::ReadMovie;
using QZ::Test::TrackView;

Bytes Pattern(std::size_t size, int seed)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(seed * 31 + static_cast<int>(i % 97));
    return bytes;
}

/// A file with three tracks whose samples are not real pictures, which no box depends on.
class MovieFileTest : public ::testing::Test {
protected:
    MovieFileTest()
    {
        EXPECT_TRUE(file.Create(path));
        file.movie.sessionStart = {100, 600};
        file.movie.tags = {{"title", "Grüße"}, {"com.apple.quicktime.software", "qz"}};
        file.movie.tracks.resize(3);
        Track& video = file.movie.tracks[0];
        video.id = 1;
        video.timescale = 600;
        video.width = 63;
        video.height = 35;
        const double quarterTurn[6] = {0, 1, -1, 0, 35, 0.5};
        std::copy_n(quarterTurn, 6, video.matrix);
        video.sampleEntry = WriteVideoEntry({"apcn", 64, 36, 63, 35, "", {}, Pattern(77, 5)});
        video.contentStart = 100;
        Track& sound = file.movie.tracks[1];
        sound.media = Media::Audio;
        sound.id = 2;
        sound.timescale = 8000;
        sound.sampleEntry = WritePCMEntry({8000, 1, 16, false, false, true, 2});
        sound.contentStart = 2000;   // a quarter of a second; the session starts at a sixth
        Track& notes = file.movie.tracks[2];
        notes.media = Media::Metadata;
        notes.id = 3;
        notes.timescale = 3000;
        notes.describedTrack = 1;
        notes.sampleEntry =
            WriteMetadataEntry(std::vector{MetadataKey{.localID = 1, .key = "com.example.note"}});
        notes.contentStart = 600;
    }

    void AddPicture(std::int64_t decode, std::int64_t presentation, bool sync, std::size_t size)
    {
        Track& video = file.movie.tracks[0];
        Add(0, {.decodeTime = decode, .presentationTime = presentation, .sync = sync}, size);
        video.contentEnd = std::max(video.contentEnd, presentation + 20);
        video.lastDuration = 20;
    }

    void AddSound(std::int64_t time, std::uint32_t frames)
    {
        Track& sound = file.movie.tracks[1];
        Add(1, {.decodeTime = time, .presentationTime = time, .count = frames}, frames * 2);
        sound.contentEnd = time + frames;
        sound.lastDuration = frames;
    }

    void AddNote(std::int64_t time, std::int64_t duration, std::size_t size)
    {
        Track& notes = file.movie.tracks[2];
        Add(2, {.decodeTime = time, .presentationTime = time}, size);
        notes.contentEnd = time + duration;
        notes.lastDuration = duration;
    }

    void Add(std::size_t track, Sample sample, std::size_t size)
    {
        const Bytes bytes = Pattern(size, ++m_seed);
        sample.size = static_cast<std::uint32_t>(size);
        content[track].push_back(bytes);
        file.Add(track, sample, bytes);
    }

    /// The bytes of a track's samples as they lie in the finished file; uncompressed sound frame by frame.
    void ExpectContent(const TrackView& view, std::size_t track)
    {
        const Bytes whole = QZ::Test::ReadBytes(path);
        Bytes stored, expected;
        for (const QZ::Test::TrackSample& sample : view.samples)
            stored.insert(stored.end(), whole.begin() + static_cast<std::ptrdiff_t>(sample.offset),
                          whole.begin() + static_cast<std::ptrdiff_t>(sample.offset + sample.size));
        for (const Bytes& bytes : content[track])
            expected.insert(expected.end(), bytes.begin(), bytes.end());
        EXPECT_EQ(stored, expected);
    }

    void RecordTwoSeconds()
    {
        // Two reordered pictures behind each key picture, decoded a frame ahead; every flush is a fragment.
        for (std::int64_t group = 0; group < 20; ++group) {
            const std::int64_t time = 100 + group * 60;
            AddPicture(time - 20, time, group % 5 == 0, 300);
            AddPicture(time, time + 40, false, 50);
            AddPicture(time + 20, time + 20, false, 20);
            if (group % 4 == 0)
                AddNote(600 + group * 300, 1200, 10 + static_cast<std::size_t>(group));
            AddSound(2000 + group * 800, group == 9 ? 500 : 800);   // a gap of 300 frames behind the tenth
            ASSERT_TRUE(file.Flush()) << file.Reason();
        }
    }

    QZ::Test::ScratchFolder folder;
    std::string path = folder.File("movie.mov");
    MovieFile file;
    std::vector<Bytes> content[3];

private:
    int m_seed = 0;
};

TEST_F(MovieFileTest, FinishesAsAnOrdinaryFileWithTheIndexInFront)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const MovieView movie = ReadMovie(path);
    EXPECT_EQ(movie.TopLevel(), (std::vector<std::string>{"ftyp", "moov", "mdat"}));
    EXPECT_FALSE(movie.boxes[1].Has("mvex"));
    const Bytes& brand = movie.boxes[0].body;
    EXPECT_EQ(std::string(brand.begin(), brand.begin() + 4), "qt  ");
    ASSERT_EQ(movie.tracks.size(), 3u);
    // Nothing is left beside it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST_F(MovieFileTest, KeepsTheBytesOfEverySampleOfEveryTrack)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const MovieView movie = ReadMovie(path);
    for (std::size_t track = 0; track < 3; ++track)
        ExpectContent(movie.tracks.at(track), track);
}

TEST_F(MovieFileTest, KeepsTheTimesOfReorderedPictures)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const MovieView movie = ReadMovie(path);
    const TrackView& video = movie.Track("vide");
    EXPECT_EQ(video.timescale, 600);
    ASSERT_EQ(video.samples.size(), 60u);
    for (std::size_t i = 0; i < 60; ++i) {
        const std::int64_t group = static_cast<std::int64_t>(i / 3) * 60;
        const std::int64_t shown[3] = {0, 40, 20};
        EXPECT_EQ(video.samples[i].decode, static_cast<std::int64_t>(i) * 20);
        // The media's time begins with the first decoding, 20 ticks before the first picture is shown.
        EXPECT_EQ(video.samples[i].presentation, 20 + group + shown[i % 3]);
        EXPECT_EQ(video.samples[i].sync, i % 15 == 0);
    }
    // Shown from the session's start on, for 60 frames of 20 ticks.
    ASSERT_EQ(video.edits.size(), 1u);
    EXPECT_EQ(video.edits[0].mediaTime, 20);
    EXPECT_EQ(video.edits[0].duration * 600, 1200 * movie.timescale);
}

TEST_F(MovieFileTest, BeginsALaterTrackWithAnEmptyEdit)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const MovieView movie = ReadMovie(path);
    EXPECT_EQ(movie.timescale, 24000);   // the least common multiple of 600, 8000 and 3000
    const TrackView& sound = movie.Track("soun");
    ASSERT_EQ(sound.edits.size(), 2u);
    EXPECT_EQ(sound.edits[0].mediaTime, -1);
    EXPECT_EQ(sound.edits[0].duration, 2000);   // 1/4 - 1/6 of a second
    EXPECT_EQ(sound.edits[1].mediaTime, 0);
    EXPECT_EQ(sound.edits[1].duration, 16000 * 3);
    EXPECT_EQ(sound.movieDuration, 50000);
    EXPECT_EQ(movie.duration, 50000);
}

TEST_F(MovieFileTest, GivesEachFrameOfSoundATickAndTheGapToTheFrameBeforeIt)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const TrackView sound = ReadMovie(path).Track("soun");
    ASSERT_EQ(sound.samples.size(), 19u * 800 + 500);
    for (std::size_t i = 0; i < sound.samples.size(); ++i) {
        EXPECT_EQ(sound.samples[i].size, 2u);
        EXPECT_EQ(sound.samples[i].duration, i == 9 * 800 + 499 ? 301 : 1) << i;
    }
}

TEST_F(MovieFileTest, HidesWhatLiesBeforeTheSession)
{
    AddPicture(0, 0, true, 10);
    file.movie.tracks[0].contentStart = 0;
    AddPicture(60, 60, false, 10);
    AddPicture(100, 100, false, 10);
    AddPicture(160, 160, false, 10);
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const MovieView movie = ReadMovie(path);
    ASSERT_EQ(movie.tracks.size(), 1u);
    const TrackView& video = movie.Track("vide");
    EXPECT_EQ(video.samples.size(), 4u);
    ASSERT_EQ(video.edits.size(), 1u);
    EXPECT_EQ(video.edits[0].mediaTime, 100);
    EXPECT_EQ(video.edits[0].duration * 600, 80 * movie.timescale);
}

TEST_F(MovieFileTest, DescribesPictureSizeTransformAndColours)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const MovieView movie = ReadMovie(path);
    const TrackView& video = movie.Track("vide");
    EXPECT_EQ(video.width, 63);
    EXPECT_EQ(video.height, 35);
    EXPECT_EQ(video.matrix,
              (std::vector<std::int32_t>{0, 65536, 0, -65536, 0, 0, 35 * 65536, 32768, 0x40000000}));
    EXPECT_EQ(video.format, "apcn");
    EXPECT_EQ(video.entry.U(24, 2), 64u);
    EXPECT_EQ(video.entry.U(26, 2), 36u);
    // The rest of the entry by hand: colr nclc 1-13-1, colr prof, clap of 63 x 35 half a pixel left of and
    // above.
    Bytes expected = {0,  0, 0, 18, 'c', 'o', 'l', 'r', 'n', 'c', 'l', 'c', 0,   1,   0,
                      13, 0, 1, 0,  0,   0,   89,  'c', 'o', 'l', 'r', 'p', 'r', 'o', 'f'};
    const Bytes profile = Pattern(77, 5);
    expected.insert(expected.end(), profile.begin(), profile.end());
    const Bytes aperture = {0, 0, 0, 40, 'c',  'l',  'a',  'p',  0, 0, 0,    63,   0,    0,
                            0, 1, 0, 0,  0,    35,   0,    0,    0, 1, 0xFF, 0xFF, 0xFF, 0xFF,
                            0, 0, 0, 2,  0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0,    2};
    expected.insert(expected.end(), aperture.begin(), aperture.end());
    EXPECT_EQ(Bytes(video.entry.body.begin() + 78, video.entry.body.end()), expected);
}

TEST_F(MovieFileTest, KeepsTagsInTheirOrder)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    EXPECT_EQ(ReadMovie(path).tags, (std::vector<std::pair<std::string, std::string>>{
                                        {"title", "Grüße"}, {"com.apple.quicktime.software", "qz"}}));
}

TEST_F(MovieFileTest, IsReadByFFmpegWithEveryMetadataSample)
{
    RecordTwoSeconds();
    ASSERT_TRUE(file.Finish()) << file.Reason();
    const std::string notes = QZ::Test::Probe(path, "-select_streams d -show_entries packet=pts_time,size");
    // From the session's start at 1/6 of a second: 0.2 s is 0.033333.
    EXPECT_EQ(notes,
              "pts_time=0.033333\nsize=10\npts_time=0.433333\nsize=14\npts_time=0.833333\nsize=18\n"
              "pts_time=1.233333\nsize=22\npts_time=1.633333\nsize=26\n");
    EXPECT_EQ(QZ::Test::Probe(path, "-select_streams d -show_entries stream=codec_tag_string"),
              "codec_tag_string=mebx\n");
}

TEST_F(MovieFileTest, HoldsEveryFlushedSampleWhileItIsStillRecorded)
{
    RecordTwoSeconds();
    AddPicture(2000, 2000, true, 40);   // not flushed, as at a sudden death
    const auto boxes = QZ::Test::ReadBoxes(path);
    ASSERT_EQ(boxes.size(), 2 + 2 * 20u);
    EXPECT_EQ(boxes[0].type, "ftyp");
    EXPECT_TRUE(boxes[1].Has("mvex"));
    const std::string counts =
        QZ::Test::Probe(path, "-count_packets -show_entries stream=codec_type,nb_read_packets");
    EXPECT_NE(counts.find("codec_type=video\nnb_read_packets=60\n"), std::string::npos) << counts;
    EXPECT_NE(counts.find("codec_type=data\nnb_read_packets=5\n"), std::string::npos) << counts;
    EXPECT_EQ(QZ::Test::Probe(path, "-select_streams v -show_entries packet=pts_time -read_intervals %+#4"),
              "pts_time=0.000000\npts_time=0.066667\npts_time=0.033333\npts_time=0.100000\n");
}

TEST_F(MovieFileTest, TakesATrackIntoTheFinishedFileThatWasDescribedAfterTheFirstFragment)
{
    const Bytes entry = std::exchange(file.movie.tracks[2].sampleEntry, {});
    AddPicture(100, 100, true, 300);
    ASSERT_TRUE(file.Flush());
    file.movie.tracks[2].sampleEntry = entry;
    AddNote(600, 300, 10);
    AddPicture(120, 120, true, 300);
    ASSERT_TRUE(file.Flush());
    // While recording, the file has no such track, and the picture beside it is intact.
    EXPECT_EQ(QZ::Test::Probe(path, "-count_packets -show_entries stream=nb_read_packets"),
              "nb_read_packets=2\nnb_read_packets=N/A\n");
    ASSERT_TRUE(file.Finish());
    const MovieView movie = ReadMovie(path);
    EXPECT_EQ(movie.Track("meta").samples.size(), 1u);
    ExpectContent(movie.Track("vide"), 0);
    ExpectContent(movie.Track("meta"), 2);
}

TEST_F(MovieFileTest, KeepsWhatStoodAtItsPathBesideUnderAFreeName)
{
    for (const std::string name : {"new.mov", "new-1.mov"})
        std::ofstream(folder.File(name)) << name;
    MovieFile second;
    ASSERT_TRUE(second.Create(folder.File("new.mov"))) << second.Reason();
    EXPECT_EQ(QZ::Test::ReadBytes(folder.File("new.mov")), Bytes());
    const std::string kept = "new.mov", other = "new-1.mov";
    EXPECT_EQ(QZ::Test::ReadBytes(folder.File("new-2.mov")), Bytes(kept.begin(), kept.end()));
    EXPECT_EQ(QZ::Test::ReadBytes(folder.File("new-1.mov")), Bytes(other.begin(), other.end()));
}

TEST_F(MovieFileTest, DoesNotBringBackAFileThatWasRemoved)
{
    RecordTwoSeconds();
    std::filesystem::remove(path);
    EXPECT_FALSE(file.Finish());
    EXPECT_NE(file.Reason().find("was removed or replaced"), std::string::npos) << file.Reason();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(MovieFileTest, FailsToBeCreatedInAFolderThatIsNotThere)
{
    MovieFile second;
    EXPECT_FALSE(second.Create(folder.File("missing/new.mov")));
    EXPECT_NE(second.Reason().find("No such file or directory"), std::string::npos) << second.Reason();
}

TEST_F(MovieFileTest, FailsToFinishWithoutASampleAndRemovesTheEmptyFile)
{
    EXPECT_FALSE(file.Finish());
    EXPECT_NE(file.Reason().find("holds no sample"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(MovieFileTest, KeepsTheRecordedFileWhenTheOrdinaryOneCannotBeWritten)
{
    RecordTwoSeconds();
    const Bytes recorded = QZ::Test::ReadBytes(path);
    // A folder of that name is in the way.
    std::filesystem::create_directory(folder.File(".movie.mov.finishing"));
    EXPECT_FALSE(file.Finish());
    EXPECT_NE(file.Reason().find("cannot be created"), std::string::npos) << file.Reason();
    EXPECT_EQ(QZ::Test::ReadBytes(path), recorded);
}

// A head alone, for media data that no test can write.
TEST(WriteFinishedHead, TakesOffsetsOf64BitsBeyondFourGiB)
{
    Movie movie;
    movie.tracks.resize(1);
    Track& track = movie.tracks[0];
    track.id = 1;
    track.timescale = 600;
    track.sampleEntry = WriteVideoEntry({"apcn", 64, 36, 64, 36, "", {}, {}});
    for (std::int64_t i = 0; i < 3; ++i)
        track.samples.push_back({.decodeTime = i * 600, .presentationTime = i * 600, .size = 0x70000000});
    track.contentEnd = 1800;
    track.lastDuration = 600;
    ByteWriter out;
    WriteFinishedHead(out, movie, Interleave(movie));
    const Bytes& head = out.Bytes();
    // The last 16 bytes: a media data box of 3 * 0x70000000 + 16 bytes.
    EXPECT_EQ(Bytes(head.end() - 16, head.end()),
              (Bytes{0, 0, 0, 1, 'm', 'd', 'a', 't', 0, 0, 0, 1, 0x50, 0, 0, 16}));
    const std::string type = "co64";
    const auto found = std::search(head.begin(), head.end(), type.begin(), type.end());
    ASSERT_NE(found, head.end());
    ByteWriter expected;
    expected.U32(0);
    expected.U32(3);
    for (std::uint64_t i = 0; i < 3; ++i)
        expected.U64(head.size() + i * 0x70000000);
    EXPECT_EQ(Bytes(found + 4, found + 4 + 32), expected.Bytes());
}

}   // namespace
}   // namespace QZ::Platform::Movie
