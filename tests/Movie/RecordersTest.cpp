// SPDX-License-Identifier: MIT
// The two recorders with the real movie writer, their movies read back by ffprobe, by ffmpeg's decoders and
// by a strict reader of boxes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <ostream>

#include "QZ/Foundation/Media/QZRealTimeVideoRecorder.h"
#include "QZ/Foundation/Media/QZVideoRecorder.h"
#include "QZ/Platform/Application.h"
#include "QZ/Platform/MainQueue.h"
#include "tests/Movie/BoxReader.h"
#include "tests/Movie/FullDisk.h"
#include "tests/Movie/ReadBack.h"
#include "tests/Movie/Recorder.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Test {
namespace {

using testing::HasSubstr;

constexpr int kWidth = 320, kHeight = 240, kRate = 30;

/// What a recorder is asked to record.
struct Wish {
    const char* name;
    const char* format;
    double leastPSNR;
    bool audio, metadata;
};

// Tests are listed with their parameters.
void PrintTo(const Wish& wish, std::ostream* out)
{
    *out << wish.name;
}

std::string NameOf(const testing::TestParamInfo<Wish>& info)
{
    return info.param.name;
}

const std::vector<MetadataItem> kTags = {{"title", "Prüfung"}, {"com.apple.quicktime.software", "qz"}};
constexpr AffineTransform kQuarterTurn = {0, 1, -1, 0, kHeight, 0};

class RecordersTest : public testing::Test {
protected:
    RecordersTest()
    {
        Application::SetBundleName("App");
        Application::SetTemporaryDirectory(folder.Path().string());
    }
    ~RecordersTest() override { Application::SetTemporaryDirectory(std::nullopt); }

    static void RunUntil(const std::function<bool()>& done)
    {
        ASSERT_TRUE(MainQueue::Shared().RunUntil(done, std::chrono::minutes(2)));
    }

    ScratchFolder folder;
    std::string path = folder.File("AppEdit.mov");
};

/// Paints the painter's scene, the picture of the time that comes next.
struct LiveScene : QZRealTimeVideoRecorderFrame {
    bool sample(unsigned char* base, std::uint64_t bytesPerRow) override
    {
        PaintScene(base, bytesPerRow, width, height, next++);
        return true;
    }
    bool sampleTime(Time* time) override
    {
        *time = MakeTime(first + next, kRate);
        return true;
    }
    Time startTime() override { return start; }

    int width = kWidth, height = kHeight, first = 100, next = 0;
    Time start = MakeTime(-1, 60);   // sound waits for the first picture
};

class LiveRecorderTest : public RecordersTest {
protected:
    void RecordPicture()
    {
        RunUntil([&] { return recorder.readyForAnotherFrame(); });
        EXPECT_TRUE(recorder.recordFrame()) << recorder.failureReason();
    }
    /// Sound of one picture's length, at the picture with this number.
    void RecordSound(int picture)
    {
        RunUntil([&] { return recorder.readyForMoreAudio(); });
        const std::int64_t first = std::int64_t{scene->first + picture} * 44100 / kRate;
        EXPECT_TRUE(recorder.recordAudio(Recorder::Tone(44100, 1, first, 44100 / kRate)));
    }
    /// Stops, and waits for the ordinary file, of which a real-time recorder does not tell.
    void Stop()
    {
        recorder.stop();
        RunUntil([&] { return !recorder.started(); });
        EXPECT_EQ(recorder.filename(), path);
        RunUntil([&] {
            try {
                return !ReadMovie(path).tracks.empty();
            } catch (const BoxError&) {
                return false;   // fragments yet
            }
        });
        EXPECT_EQ(recorder.failureReason(), "");
    }

    const std::shared_ptr<LiveScene> scene = std::make_shared<LiveScene>();
    QZRealTimeVideoRecorder recorder;
};

class LiveCodecsTest : public LiveRecorderTest, public testing::WithParamInterface<Wish> {};

TEST_P(LiveCodecsTest, RecordsWhatIsPainted)
{
    const Wish& wish = GetParam();
    ASSERT_TRUE(recorder.startWithFrameRate(kRate, 1.0, kWidth, kHeight, &kQuarterTurn, scene, wish.audio,
                                            &kTags, wish.format))
        << recorder.failureReason();
    for (int i = 0; i < 45; ++i) {
        RecordPicture();
        if (wish.audio)
            RecordSound(i);
    }
    Stop();
    ExpectScene(path, kWidth, kHeight, 45, wish.leastPSNR);
    std::vector<double> expected;
    for (int i = 0; i < 45; ++i)
        expected.push_back(i / 30.0);
    // ffprobe prints six decimals.
    EXPECT_THAT(Times(path, "v"), testing::Pointwise(testing::DoubleNear(1e-6), expected));
    const std::string probed = Probe(path, "-show_entries stream_side_data=rotation:format_tags");
    for (const char* entry : {"rotation=-90", "TAG:title=Prüfung", "TAG:com.apple.quicktime.software=qz"})
        EXPECT_THAT(probed, HasSubstr(entry));
    EXPECT_EQ(ReadMovie(path).tracks.size(), wish.audio ? 2u : 1u);
    if (wish.audio) {
        EXPECT_EQ(Probe(path,
                        "-select_streams a -show_entries "
                        "stream=codec_name,profile,sample_rate,channels,start_time,duration"),
                  "codec_name=aac\nprofile=LC\nsample_rate=44100\nchannels=1\n"
                  "start_time=0.000000\nduration=1.500000\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Codecs, LiveCodecsTest,
                         testing::Values(Wish{"H264", "", 35, false, false},
                                         Wish{"H264WithSound", "h264", 35, true, false},
                                         Wish{"HEVC", "hevc", 35, false, false},
                                         Wish{"HEVCWithSound", "hevc", 35, true, false},
                                         Wish{"ProRes", "prores", 45, false, false},
                                         Wish{"ProResWithSound", "prores", 45, true, false}),
                         NameOf);

TEST_F(LiveRecorderTest, TurnsAndFillsThePreferredSize)
{
    scene->width = kHeight;
    scene->height = kWidth;
    recorder.setPreferredOutputSize({160, 90});
    ASSERT_TRUE(recorder.start(scene->width, scene->height, nullptr, scene, false, nullptr));
    for (int i = 0; i < 5; ++i)
        RecordPicture();
    Stop();
    const TrackView video = ReadMovie(path).Track("vide");
    EXPECT_EQ(video.width, 90);
    EXPECT_EQ(video.height, 160);
    // 240 x 320 fills 90 x 160 at half its height: 180 of its columns are seen, from the 31st on.
    std::vector<unsigned char> painted(240 * 320 * 4), filled(90 * 160 * 4);
    PaintScene(painted.data(), 240 * 4, 240, 320, 0);
    for (std::size_t y = 0; y < 160; ++y)
        for (std::size_t x = 0; x < 90; ++x)
            for (std::size_t k = 0; k < 4; ++k) {
                const auto at = [&](std::size_t dx, std::size_t dy) {
                    return painted[((2 * y + dy) * 240 + 30 + 2 * x + dx) * 4 + k];
                };
                filled[(y * 90 + x) * 4 + k] =
                    static_cast<unsigned char>((at(0, 0) + at(1, 0) + at(0, 1) + at(1, 1)) / 4);
            }
    const std::vector<unsigned char> decoded = Decode(path);
    ASSERT_EQ(decoded.size(), 5 * filled.size());
    EXPECT_GT(PSNR(filled.data(), decoded.data(), 90 * 160), 35);
}

TEST_F(LiveRecorderTest, BeginsWithTheSoundWhenTheSceneSaysSo)
{
    scene->start = MakeTime(95, kRate);
    ASSERT_TRUE(recorder.startWithFrameRate(kRate, 1.0, kWidth, kHeight, nullptr, scene, true, nullptr, ""));
    for (int i = -5; i < 10; ++i) {
        RecordSound(i);
        if (i >= 0)
            RecordPicture();
    }
    Stop();
    EXPECT_EQ(Probe(path, "-show_entries stream=codec_type,start_time"),
              "codec_type=video\nstart_time=0.166667\ncodec_type=audio\nstart_time=0.000000\n");
}

TEST_F(LiveRecorderTest, SaysThatTheDiskIsFullAndRecordsAgain)
{
    {
        const FullDisk full(60000);
        ASSERT_TRUE(
            recorder.startWithFrameRate(kRate, 1.0, kWidth, kHeight, nullptr, scene, false, nullptr, ""));
        RunUntil([&] {
            if (recorder.readyForAnotherFrame())
                recorder.recordFrame();
            return !recorder.failureReason().empty();
        });
        EXPECT_THAT(recorder.failureReason(), HasSubstr("AppEdit.mov cannot be written: File too large"));
        EXPECT_FALSE(recorder.recordFrame());
        recorder.stop();
        RunUntil([&] { return !recorder.started(); });
        EXPECT_THAT(recorder.failureReason(), HasSubstr("File too large"));
    }
    EXPECT_EQ(Output("ffmpeg -v error -i '" + path + "' -f null - 2>&1"), "");
    EXPECT_GT(Times(path, "v").size(), 5u);
    ASSERT_TRUE(recorder.start(kWidth, kHeight, nullptr, scene, false, nullptr)) << recorder.failureReason();
    RecordPicture();
    Stop();
}

/// AAC that the writer has not made: packets of ffmpeg's, out of the framing of ISO/IEC 13818-7, 6.2 (ADTS).
struct Packets {
    std::shared_ptr<FormatDescription> format = std::make_shared<FormatDescription>();
    std::vector<std::vector<unsigned char>> packets;

    Packets()
    {
        const std::string stream = Output(
            "ffmpeg -v fatal -f lavfi -i sine=frequency=440:sample_rate=44100:duration=1.5 "
            "-ac 1 -c:a aac -f adts -");
        const auto* bytes = reinterpret_cast<const unsigned char*>(stream.data());
        for (std::size_t at = 0; at + 7 <= stream.size();) {
            const unsigned char* head = bytes + at;
            const unsigned kind = (head[2] >> 6) + 1u, rate = head[2] >> 2 & 15u;
            const unsigned channels = (head[2] & 1u) << 2 | head[3] >> 6;
            format->configuration = {static_cast<unsigned char>(kind << 3 | rate >> 1),
                                     static_cast<unsigned char>((rate & 1) << 7 | channels << 3)};
            const std::size_t size =
                (head[3] & 3u) << 11 | static_cast<unsigned>(head[4]) << 3 | head[5] >> 5;
            packets.emplace_back(head + 7, head + size);
            at += size;
        }
        format->mediaType = MediaType::Audio;
        format->subType = FourCharacterCode("aac ");
        format->sampleRate = 44100;
        format->channels = 1;
        format->framesPerPacket = 1024;
    }
};

/// Supplies the painter's scene, a note a second, and sound: AAC in buffers of four packets, or uncompressed.
class Film : public QZVideoRecorderDelegate {
public:
    bool doesHaveAudio() override { return aac || pcm; }
    bool doesHaveMetadata() override { return metadata; }
    void getVideoFrame(QZVideoRecorderVideoFrame* frame) override
    {
        frame->hasFrame = m_shown < pictures;
        frame->holdFrame = false;
        if (!frame->hasFrame)
            return;
        PaintScene(frame->baseAddress, frame->bytesPerRow, kWidth, kHeight, m_shown);
        frame->time = MakeTime(first + m_shown++, kRate);
    }
    void getAudioSample(std::shared_ptr<SampleBuffer>* sample) override
    {
        if (pcm && m_heard < pictures) {
            *sample = Recorder::Tone(48000, 2, m_heard * 1600, 1600);
            (*sample)->presentationTime = MakeTime(first + m_heard++, kRate);
        }
        if (!aac || m_packet == aac->packets.size())
            return;
        *sample = std::make_shared<SampleBuffer>();
        (*sample)->format = aac->format;
        (*sample)->presentationTime =
            MakeTime(first * 44100 / kRate + static_cast<std::int64_t>(m_packet) * 1024, 44100);
        for (int i = 0; i < 4 && m_packet < aac->packets.size(); ++i, ++m_packet) {
            const std::vector<unsigned char>& packet = aac->packets[m_packet];
            (*sample)->sampleSizes.push_back(static_cast<std::uint32_t>(packet.size()));
            (*sample)->bytes.insert((*sample)->bytes.end(), packet.begin(), packet.end());
        }
    }
    void getMetadataSample(std::shared_ptr<SampleBuffer>* sample) override
    {
        if (m_noted * kRate < pictures) {
            *sample = SampleBuffer::MakeMetadata({{"org.example.note", "note " + std::to_string(m_noted)}},
                                                 MakeTime(first + m_noted * kRate, kRate), MakeTime(1, 2));
            ++m_noted;
        }
    }
    void willFinishRecording() override { willFinish = true; }
    void didFinishRecording(const std::string& filename) override
    {
        MainQueue::Shared().Post([this, filename] { finished = filename; });
    }

    std::unique_ptr<Packets> aac;
    bool pcm = false, metadata = false, willFinish = false;
    int pictures = 45, first = 0;
    std::string finished;

private:
    int m_shown = 0, m_heard = 0, m_noted = 0;
    std::size_t m_packet = 0;
};

class FilmRecorderTest : public RecordersTest {
protected:
    bool Start(const char* format)
    {
        return recorder.startWithFrameRate(kRate, 1.0, kWidth, kHeight, &kQuarterTurn, &kTags, format);
    }
    void Finish()
    {
        RunUntil([&] { return !film.finished.empty(); });
        EXPECT_TRUE(film.willFinish);
        EXPECT_EQ(film.finished, path);
    }
    /// The bytes of a track's samples, one behind the other.
    std::vector<unsigned char> BytesOf(const TrackView& track) const
    {
        const std::vector<unsigned char> file = ReadBytes(path);
        std::vector<unsigned char> bytes;
        for (const TrackSample& sample : track.samples) {
            const auto begin = file.begin() + static_cast<std::ptrdiff_t>(sample.offset);
            bytes.insert(bytes.end(), begin, begin + static_cast<std::ptrdiff_t>(sample.size));
        }
        return bytes;
    }

    Film film;
    QZVideoRecorder recorder{&film, std::nullopt};
};

class FilmCodecsTest : public FilmRecorderTest, public testing::WithParamInterface<Wish> {};

TEST_P(FilmCodecsTest, RecordsWhatTheDelegateSupplies)
{
    const Wish& wish = GetParam();
    film.pcm = wish.audio;
    film.metadata = wish.metadata;
    ASSERT_TRUE(Start(wish.format)) << recorder.failureReason();
    Finish();
    EXPECT_EQ(recorder.failureReason(), "");
    ExpectScene(path, kWidth, kHeight, 45, wish.leastPSNR);
    const std::string probed =
        Probe(path, "-show_entries stream_side_data=rotation,side_data_type:format_tags");
    for (const char* entry : {"rotation=-90", "side_data_type=ICC Profile", "TAG:title=Prüfung"})
        EXPECT_THAT(probed, HasSubstr(entry));
    if (wish.audio) {
        EXPECT_EQ(BytesOf(ReadMovie(path).Track("soun")), ToneBytes(440, 48000, 2, 0, 45 * 1600));
        EXPECT_EQ(Probe(path, "-select_streams a -show_entries stream=codec_name,start_time,duration"),
                  "codec_name=pcm_s16le\nstart_time=0.000000\nduration=1.500000\n");
    }
    if (wish.metadata) {
        EXPECT_THAT(Times(path, "d"), testing::ElementsAre(0.0, 1.0));
        EXPECT_THAT(Probe(path, "-select_streams d -show_entries stream=codec_tag_string"),
                    HasSubstr("codec_tag_string=mebx"));
    }
}

INSTANTIATE_TEST_SUITE_P(Codecs, FilmCodecsTest,
                         testing::Values(Wish{"H264", "", 35, false, false},
                                         Wish{"H264WithAll", "h264", 35, true, true},
                                         Wish{"HEVC", "hevc", 35, false, true},
                                         Wish{"HEVCWithAll", "hevc", 35, true, true},
                                         Wish{"ProRes", "prores", 45, true, false},
                                         Wish{"ProResWithAll", "prores", 45, true, true}),
                         NameOf);

TEST_F(FilmRecorderTest, PassesAACThroughWithEveryByteAndTime)
{
    film.aac = std::make_unique<Packets>();
    const std::vector<std::vector<unsigned char>> packets = film.aac->packets;
    ASSERT_GE(packets.size(), 60u);
    ASSERT_TRUE(Start("")) << recorder.failureReason();
    Finish();
    const TrackView sound = ReadMovie(path).Track("soun");
    EXPECT_EQ(sound.timescale, 44100);
    ASSERT_EQ(sound.samples.size(), packets.size());
    std::vector<unsigned char> given;
    for (std::size_t i = 0; i < packets.size(); ++i) {
        EXPECT_EQ(sound.samples[i].size, packets[i].size());
        EXPECT_EQ(sound.samples[i].presentation, static_cast<std::int64_t>(i) * 1024);
        EXPECT_EQ(sound.samples[i].duration, 1024);
        given.insert(given.end(), packets[i].begin(), packets[i].end());
    }
    EXPECT_EQ(BytesOf(sound), given);
    EXPECT_EQ(Probe(path, "-select_streams a -show_entries stream=codec_name,profile,sample_rate,channels"),
              "codec_name=aac\nprofile=LC\nsample_rate=44100\nchannels=1\n");
    EXPECT_EQ(Output("ffmpeg -v error -i '" + path + "' -f null - 2>&1"), "");
}

TEST_F(FilmRecorderTest, KeepsTheTimesOfTracksThatBeginTogetherLater)
{
    film.aac = std::make_unique<Packets>();
    film.metadata = true;
    film.first = 60;
    ASSERT_TRUE(Start("")) << recorder.failureReason();
    Finish();
    // The earliest of the first times is the movie's zero: 60/30 s of every track.
    EXPECT_EQ(Times(path, "v").at(0), 0.0);
    EXPECT_EQ(Times(path, "a").at(0), 0.0);
    EXPECT_THAT(Times(path, "d"), testing::ElementsAre(0.0, 1.0));
}

TEST_F(FilmRecorderTest, BeginsAtZeroWhenATrackIsAbsent)
{
    film.first = 60;
    ASSERT_TRUE(Start("")) << recorder.failureReason();
    Finish();
    EXPECT_EQ(Times(path, "v").at(0), 2.0);
}

TEST_F(FilmRecorderTest, FinishesAShorterMovieWhenCancelled)
{
    film.pcm = film.metadata = true;
    film.pictures = 1'000'000;
    ASSERT_TRUE(Start("")) << recorder.failureReason();
    RunUntil([] { return true; });
    recorder.cancel();
    Finish();
    const MovieView movie = ReadMovie(path);
    EXPECT_GE(movie.Track("vide").samples.size(), 1u);
    EXPECT_LT(movie.Track("vide").samples.size(), 1000u);
    EXPECT_EQ(Output("ffmpeg -v error -i '" + path + "' -f null - 2>&1"), "");
}

TEST_F(FilmRecorderTest, EndsWithBothNoticesAndAReasonWhenTheDiskIsFull)
{
    film.pcm = film.metadata = true;
    film.pictures = 3000;
    {
        const FullDisk full(400000);
        ASSERT_TRUE(Start("")) << recorder.failureReason();
        Finish();
    }
    EXPECT_THAT(recorder.failureReason(), HasSubstr("AppEdit.mov cannot be written: File too large"));
    EXPECT_EQ(Output("ffmpeg -v error -i '" + path + "' -f null - 2>&1"), "");
    // How many pictures fit depends on the turns that the tracks' threads took.
    EXPECT_GE(Times(path, "v").size(), 1u);
}

}   // namespace
}   // namespace QZ::Test
