// SPDX-License-Identifier: MIT
// Movies that the writer made, and others that the ffmpeg program made, read back through the module.
#include "QZ/Platform/MovieReader.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <random>

#include "tests/Movie/BoxReader.h"
#include "tests/Movie/Recorder.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Test {
namespace {

using Kind = MovieReadError::Kind;
using Bytes = std::vector<unsigned char>;
using testing::HasSubstr;

std::string FileBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

struct Contents {
    std::vector<MoviePicture> pictures;
    std::vector<std::shared_ptr<SampleBuffer>> sounds;
    MovieReadError error;
};

Contents ReadAll(MovieReader& movie)
{
    Contents contents;
    while (std::optional<MoviePicture> picture = movie.NextPicture(contents.error))
        contents.pictures.push_back(*picture);
    MovieReadError soundError;
    while (const auto sound = movie.NextSound(soundError))
        contents.sounds.push_back(sound);
    if (contents.error.kind == Kind::None)
        contents.error = soundError;
    return contents;
}

Bytes SoundBytes(const Contents& contents)
{
    Bytes bytes;
    for (const auto& sound : contents.sounds)
        bytes.insert(bytes.end(), sound->bytes.begin(), sound->bytes.end());
    return bytes;
}

/// The stored bytes of a movie's sound by another reader.
Bytes StoredSound(const std::string& path)
{
    const std::string bytes = Output("ffmpeg -v fatal -i '" + path + "' -map a -c copy -f data -");
    return {bytes.begin(), bytes.end()};
}

class MovieReading : public ::testing::Test {
protected:
    /// Records a movie of uneven times with a second of sound; times and pictures are kept to compare with.
    void Record(Scene scene, int count)
    {
        scene.hasAudio = true;
        m_scene = scene;
        Recorder recorder(path, scene);
        ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        std::int64_t time = 0;
        for (int i = 0; i < count; ++i) {
            m_times.push_back(MakeTime(time, 90000));
            ASSERT_TRUE(recorder.AppendPicture(i, m_times.back()));
            time += 3003 + i * 997 % 1501;
        }
        ASSERT_TRUE(recorder.AppendTone(44100, 1, 0, 44100));
        ASSERT_EQ(recorder.Finish(), AssetWriterStatus::Completed) << recorder.writer->Reason();
    }

    std::unique_ptr<MovieReader> Open() const
    {
        MovieReadError error;
        std::unique_ptr<MovieReader> movie = MovieReader::Open(path, error);
        EXPECT_NE(movie, nullptr) << error.reason;
        return movie;
    }

    MovieReadError ErrorOf(const std::string& file) const
    {
        MovieReadError error;
        const std::unique_ptr<MovieReader> movie = MovieReader::Open(file, error);
        return movie ? ReadAll(*movie).error : error;
    }

    /// The least PSNR of the pictures against the painted scene.
    double WorstPSNR(const Contents& contents) const
    {
        const int width = m_scene.sourceWidth, height = m_scene.sourceHeight;
        Bytes painted(static_cast<std::size_t>(width * height * 4));
        double worst = 1000;
        for (std::size_t i = 0; i < contents.pictures.size(); ++i) {
            PaintScene(painted.data(), static_cast<std::uint64_t>(width) * 4, width, height,
                       static_cast<int>(i));
            worst = std::min(worst, PSNR(painted.data(), contents.pictures[i].pixels->BaseAddress(),
                                         static_cast<std::size_t>(width * height)));
        }
        return worst;
    }

    ScratchFolder folder;
    std::string path = folder.File("movie.mov");
    Scene m_scene;
    std::vector<Time> m_times;
};

struct ReadingCase {
    const char* name;
    VideoCodec codec;
    const char* codecName;
    double leastPSNR;
};

// Tests are listed with their parameters.
void PrintTo(const ReadingCase& codec, std::ostream* out)
{
    *out << codec.name;
}

class CodecReading : public MovieReading, public ::testing::WithParamInterface<ReadingCase> {};

TEST_P(CodecReading, GivesThePicturesTimesSoundAndRotationThatWereRecorded)
{
    Scene scene;
    scene.video = {GetParam().codec, 160, 96, {}, {}};
    scene.sourceWidth = 160;
    scene.sourceHeight = 96;
    scene.transform = AffineTransform{0, 1, -1, 0, 96, 0};
    scene.audio = kAAC;
    ASSERT_NO_FATAL_FAILURE(Record(scene, 24));

    const std::unique_ptr<MovieReader> movie = Open();
    const MovieDescription& description = movie->Description();
    EXPECT_EQ(description.codec, GetParam().codecName);
    EXPECT_EQ(description.width, 160);
    EXPECT_EQ(description.height, 96);
    EXPECT_EQ(description.pixelAspectRatio, 1.0);
    EXPECT_EQ(description.transform.b, 1.0);
    EXPECT_EQ(description.transform.c, -1.0);
    EXPECT_EQ(description.transform.tx, 96.0);
    EXPECT_EQ(description.colours, "BT.709, limited range");
    EXPECT_EQ(description.soundCodec, "aac");
    EXPECT_TRUE(description.hasSound);
    EXPECT_NEAR(description.frameRate, 24 / TimeInSeconds(description.duration), 0.01);   // it rounds itself

    const Contents contents = ReadAll(*movie);
    EXPECT_EQ(contents.error.kind, Kind::None) << contents.error.reason;
    ASSERT_EQ(contents.pictures.size(), m_times.size());
    for (std::size_t i = 0; i < m_times.size(); ++i) {
        EXPECT_EQ(contents.pictures[i].time.value, m_times[i].value) << i;
        EXPECT_EQ(contents.pictures[i].time.timescale, 90000);
    }
    EXPECT_GT(WorstPSNR(contents), GetParam().leastPSNR);
    EXPECT_EQ(SoundBytes(contents), StoredSound(path));
}

INSTANTIATE_TEST_SUITE_P(Codecs, CodecReading,
                         ::testing::Values(ReadingCase{"H264", VideoCodec::H264, "h264", 35},
                                           ReadingCase{"HEVC", VideoCodec::HEVC, "hevc", 35},
                                           ReadingCase{"ProRes", VideoCodec::ProRes422, "prores", 45}),
                         [](const auto& reading) { return reading.param.name; });

Scene SmallScene()
{
    Scene scene;
    scene.video = {VideoCodec::H264, 64, 48, {}, {}};
    scene.sourceWidth = 64;
    scene.sourceHeight = 48;
    scene.audio = kAAC;
    return scene;
}

TEST_F(MovieReading, GivesThePrimingOfAACWithTheFirstSoundThatIsHeard)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 4));
    const Contents contents = ReadAll(*Open());
    ASSERT_FALSE(contents.sounds.empty());
    const SampleBuffer& first = *contents.sounds[0];
    EXPECT_EQ(first.leadingFrames, 1024);
    EXPECT_EQ(CompareTime(first.presentationTime, TimeZero), 0);
    EXPECT_EQ(first.format->framesPerPacket, 1024);
    std::int64_t expected = 0;
    for (const auto& sound : contents.sounds) {
        EXPECT_EQ(sound->presentationTime.value, expected);
        EXPECT_EQ(sound->presentationTime.timescale, 44100);
        expected += static_cast<std::int64_t>(sound->sampleSizes.size()) * 1024 - sound->leadingFrames;
    }
}

TEST_F(MovieReading, GivesSoundThatPassesThroughAWriterUnchanged)
{
    for (const bool compressed : {true, false}) {
        Scene scene = SmallScene();
        if (!compressed)
            scene.audio = std::monostate();
        m_times.clear();
        std::filesystem::remove(path);
        ASSERT_NO_FATAL_FAILURE(Record(scene, 4));
        const Contents original = ReadAll(*Open());

        Scene copy = SmallScene();
        copy.hasAudio = true;
        copy.audio = std::monostate();
        const std::string copied = folder.File(compressed ? "aac.mov" : "pcm.mov");
        Recorder recorder(copied, copy);
        ASSERT_TRUE(recorder.writer->StartWriting());
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        for (int i = 0; i < 4; ++i)
            ASSERT_TRUE(recorder.AppendPicture(i, m_times[static_cast<std::size_t>(i)]));
        for (const auto& sound : original.sounds)
            ASSERT_TRUE(Recorder::WaitFor(*recorder.audio) && recorder.audio->AppendSampleBuffer(sound));
        ASSERT_EQ(recorder.Finish(), AssetWriterStatus::Completed) << recorder.writer->Reason();

        EXPECT_EQ(StoredSound(copied), StoredSound(path));
        const TrackView track = ReadMovie(copied).Track("soun");
        EXPECT_EQ(track.edits.at(0).mediaTime, compressed ? 1024 : 0);
        const auto heard = [&](const std::string& file) {
            return Output("ffmpeg -v fatal -i '" + file + "' -map a -t 0.9 -f md5 -");
        };
        EXPECT_EQ(heard(copied), heard(path));
    }
}

// Every container counts in its own unit; the sound of AVI and Matroska passes through as well.
TEST_F(MovieReading, ReadsOtherContainers)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 12));
    struct Container {
        const char* name;
        std::int32_t timescale;
        const char* options;
    };
    for (const Container& container :
         {Container{"a.mp4", 90000, "-c copy"}, Container{"a.mkv", 1000, "-c copy"},
          Container{"a.avi", 30000, "-r 30000/1001 -c:v mpeg4 -c:a pcm_s16le"},
          Container{"a.ts", 90000, "-c:v copy -an"}}) {
        const std::string file = folder.File(container.name);
        Output("ffmpeg -v fatal -i '" + path + "' " + container.options + " '" + file + "'");
        MovieReadError error;
        const std::unique_ptr<MovieReader> movie = MovieReader::Open(file, error);
        ASSERT_NE(movie, nullptr) << container.name << ": " << error.reason;
        const Contents contents = ReadAll(*movie);
        EXPECT_EQ(contents.error.kind, Kind::None) << container.name << ": " << contents.error.reason;
        ASSERT_FALSE(contents.pictures.empty()) << container.name;
        EXPECT_EQ(contents.pictures[0].time.timescale, container.timescale) << container.name;
        // Matroska has no times below 0: the priming of the sound, 1024 frames, comes first.
        const Time first = container.timescale == 1000 ? MakeTime(23, 1000) : TimeZero;
        EXPECT_EQ(CompareTime(contents.pictures[0].time, first), 0) << container.name;
        EXPECT_EQ(movie->Description().hasSound, !contents.sounds.empty()) << container.name;
        if (container.name != std::string("a.avi")) {
            EXPECT_EQ(contents.pictures.size(), 12u) << container.name;
        }
    }
}

TEST_F(MovieReading, TellsOfSoundThatDoesNotPassThrough)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 4));
    path = folder.File("flac.mkv");
    Output("ffmpeg -v fatal -i '" + folder.File("movie.mov") + "' -c:v copy -c:a flac '" + path + "'");
    const std::unique_ptr<MovieReader> movie = Open();
    EXPECT_EQ(movie->Description().soundCodec, "flac");
    EXPECT_FALSE(movie->Description().hasSound);
    EXPECT_TRUE(ReadAll(*movie).sounds.empty());
}

TEST_F(MovieReading, TellsTheShapeOfItsPixels)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 4));
    path = folder.File("wide.mp4");
    Output("ffmpeg -v fatal -i '" + folder.File("movie.mov") + "' -c copy -aspect 16:9 '" + path + "'");
    EXPECT_NEAR(Open()->Description().pixelAspectRatio, 4.0 / 3.0, 1e-9);   // a quotient of integers
}

// What a recording left that died: an index without samples, fragments, and a last one that is cut off.
TEST_F(MovieReading, ReadsARecordingThatDiedAsFarAsItGoes)
{
    Scene scene = SmallScene();
    scene.realTime = true;
    {
        Recorder recorder(path, scene);
        ASSERT_TRUE(recorder.writer->StartWriting());
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        for (int i = 0; i < 20; ++i)
            ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i, 30)));
        for (int wait = 0; wait < 5000 && std::filesystem::file_size(path) < 4000; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const std::string bytes = FileBytes(path);
    for (const std::size_t cut : {std::size_t{0}, std::size_t{5}, std::size_t{60}}) {
        WriteFile(path, bytes.substr(0, bytes.size() - cut));
        const Contents contents = ReadAll(*Open());
        EXPECT_EQ(contents.error.kind, Kind::None) << contents.error.reason;
        EXPECT_GT(contents.pictures.size(), 2u);
    }
}

TEST_F(MovieReading, SaysThatAMovieIsCutShort)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 12));
    const std::string bytes = FileBytes(path);
    const std::string file = folder.File("short.mov");
    for (int i = 0; i < 40; ++i) {
        WriteFile(file, bytes.substr(0, bytes.size() * static_cast<std::size_t>(i) / 40));
        const MovieReadError error = ErrorOf(file);
        EXPECT_NE(error.kind, Kind::None) << i;
        EXPECT_FALSE(error.reason.empty());
        EXPECT_EQ(error.reason.find('\n'), std::string::npos);
    }
    WriteFile(file, bytes.substr(0, bytes.size() - 1));
    EXPECT_EQ(ErrorOf(file).kind, Kind::Damaged);
}

// Whatever the bytes are, reading ends, and each picture is whole.
TEST_F(MovieReading, SurvivesDamage)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 8));
    const std::string whole = FileBytes(path);
    std::mt19937 random(7);
    for (int i = 0; i < 150; ++i) {
        std::string bytes = whole;
        // Mostly the index, which stands in front.
        const std::size_t reach = i % 3 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 2500);
        for (int change = 0; change < 1 + i % 6; ++change)
            bytes[random() % reach] = static_cast<char>(random() % 4 == 0 ? 0xFF : random());
        const std::string file = folder.File("damaged.mov");
        WriteFile(file, bytes);
        MovieReadError error;
        const std::unique_ptr<MovieReader> movie = MovieReader::Open(file, error);
        if (!movie) {
            EXPECT_NE(error.kind, Kind::None);
            continue;
        }
        int count = 0;
        while (const std::optional<MoviePicture> picture = movie->NextPicture(error)) {
            EXPECT_EQ(picture->pixels->Width(), movie->Description().width);
            EXPECT_EQ(picture->pixels->Height(), movie->Description().height);
            ASSERT_LT(++count, 1000);
        }
        count = 0;
        while (movie->NextSound(error))
            ASSERT_LT(++count, 100000);
    }
}

TEST_F(MovieReading, SaysWhatIsNoMovie)
{
    WriteFile(folder.File("empty.mov"), "");
    WriteFile(folder.File("text.mov"), "A sentence, and another one.\n");
    WriteFile(folder.File("picture.mov"), "P6\n2 1\n255\nabcdef");
    for (const char* name : {"empty.mov", "text.mov", "picture.mov"})
        EXPECT_EQ(ErrorOf(folder.File(name)).kind, Kind::NotAMovie) << name;
    Output("ffmpeg -v fatal -f lavfi -i sine=d=0.1 '" + folder.File("sound.mov") + "'");
    EXPECT_EQ(ErrorOf(folder.File("sound.mov")).kind, Kind::NotAMovie);
    EXPECT_THAT(ErrorOf(folder.File("sound.mov")).reason, HasSubstr("no track of pictures"));
}

TEST_F(MovieReading, SaysWhatCannotBeRead)
{
    EXPECT_EQ(ErrorOf(folder.File("none.mov")).kind, Kind::Unreadable);
    EXPECT_EQ(ErrorOf(folder.Path().string()).kind, Kind::Unreadable);
    ASSERT_EQ(mkfifo(folder.File("pipe.mov").c_str(), 0600), 0);
    EXPECT_EQ(ErrorOf(folder.File("pipe.mov")).kind, Kind::Unreadable);   // and does not wait for a writer
}

TEST_F(MovieReading, RefusesMorePixelsThanAllowed)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 2));
    MovieReadError error;
    EXPECT_EQ(MovieReader::Open(path, error, 64 * 48 - 1), nullptr);
    EXPECT_EQ(error.kind, Kind::Unsupported);
    EXPECT_THAT(error.reason, HasSubstr("64 x 48"));
    EXPECT_NE(MovieReader::Open(path, error, 64 * 48), nullptr);
}

// A playlist is a movie to the codec libraries; the file that it names is none of the caller's.
TEST_F(MovieReading, OpensNoFileThatAMovieNames)
{
    ASSERT_NO_FATAL_FAILURE(Record(SmallScene(), 2));
    WriteFile(folder.File("list.m3u8"),
              "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nfile://" + path + "\n#EXT-X-ENDLIST\n");
    WriteFile(folder.File("list.ffconcat"), "ffconcat version 1.0\nfile movie.mov\n");
    EXPECT_NE(ErrorOf(folder.File("list.m3u8")).kind, Kind::None);
    EXPECT_NE(ErrorOf(folder.File("list.ffconcat")).kind, Kind::None);
}

}   // namespace
}   // namespace QZ::Test
