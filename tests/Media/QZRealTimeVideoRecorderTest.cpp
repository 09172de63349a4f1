// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZRealTimeVideoRecorder.h"

#include <cmath>
#include <filesystem>
#include <limits>
#include <thread>

#include "QZ/Foundation/Media/QZFileUtility.h"
#include "tests/Media/RecorderTest.h"

using namespace QZ::Platform;
using std::filesystem::exists;
using testing::ElementsAre;

namespace {

constexpr Time kUnset = {-1, 60, kTimeValid, 0};

/// Paints every byte of the first row with the number of the picture.
struct Scene : QZRealTimeVideoRecorderFrame {
    bool sample(unsigned char* base, std::uint64_t bytesPerRow) override
    {
        ++painted;
        std::fill_n(base, bytesPerRow, static_cast<unsigned char>(painted));
        return paints;
    }
    bool sampleTime(Time* time) override
    {
        *time = next;
        return hasTime;
    }
    Time startTime() override { return start; }

    Time next = MakeTime(1, 30);
    Time start = kUnset;
    bool hasTime = true, paints = true;
    int painted = 0;
};

std::shared_ptr<SampleBuffer> SoundAt(Time time)
{
    auto sound = std::make_shared<SampleBuffer>();
    sound->format = FormatDescription::LinearPCM16(44100, 1);
    sound->presentationTime = time;
    sound->bytes.resize(8);
    return sound;
}

class RealTimeVideoRecorderTest : public QZ::Test::RecorderTest {
protected:
    bool Start(bool audio = false, std::string_view format = {}, int frameRate = 30, double multiplier = 1.0,
               int width = 1280, int height = 720)
    {
        return recorder->startWithFrameRate(frameRate, multiplier, width, height, nullptr, scene, audio,
                                            nullptr, format);
    }
    bool Record(Time time)
    {
        scene->next = time;
        return recorder->recordFrame();
    }
    /// The size of the movie of pictures of one size under a preferred one.
    std::pair<int, int> OutputOf(int width, int height, Size preferred)
    {
        recorder->setPreferredOutputSize(preferred);
        EXPECT_TRUE(Start(false, {}, 30, 1.0, width, height));
        const VideoSettings video = Video();
        EXPECT_EQ(factory->attributes.width, width);
        EXPECT_EQ(factory->attributes.height, height);
        Stop();
        return {video.width, video.height};
    }
    void Stop()
    {
        recorder->stop();
        if (const auto writer = Writer())
            writer->Complete();
        Drain();
    }
    void TearDown() override
    {
        if (recorder)
            Stop();
    }

    const std::shared_ptr<Scene> scene = std::make_shared<Scene>();
    std::unique_ptr<QZRealTimeVideoRecorder> recorder = std::make_unique<QZRealTimeVideoRecorder>();
};

}   // namespace

TEST(QZRealTimeVideoRecorderFrame, PaintsNothingAtZeroByDefault)
{
    QZRealTimeVideoRecorderFrame frame;
    Time time = MakeTime(7, 7);
    EXPECT_FALSE(frame.sampleTime(&time));
    EXPECT_EQ(CompareTime(time, TimeZero), 0);
    EXPECT_FALSE(frame.sample(nullptr, 0));
    EXPECT_EQ(CompareTime(frame.startTime(), kUnset), 0);
}

TEST_F(RealTimeVideoRecorderTest, IsNamedAfterTheApplicationUntilItStarts)
{
    EXPECT_EQ(recorder->filename(), scratch / "AppEdit.mov");
    EXPECT_EQ(QZRealTimeVideoRecorder("/somewhere/else.mov").filename(), "/somewhere/else.mov");
    EXPECT_FALSE(recorder->started());
    EXPECT_FALSE(recorder->readyForAnotherFrame());
    EXPECT_FALSE(recorder->readyForMoreAudio());
    EXPECT_FALSE(recorder->recordFrame());
    EXPECT_FALSE(recorder->recordAudio(SoundAt(TimeZero)));
    EXPECT_EQ(recorder->preferredOutputSize().width, 0.0);
    EXPECT_EQ(recorder->preferredOutputSize().height, 0.0);
}

TEST_F(RealTimeVideoRecorderTest, StartsInOrder)
{
    const AffineTransform turn = {0, 1, -1, 0, 720, 0};
    const std::vector<MetadataItem> tags = {{"title", "A film"}};
    ASSERT_TRUE(recorder->startWithFrameRate(30, 1.0, 1280, 720, &turn, scene, true, &tags, "hevc"));
    EXPECT_THAT(log->Calls(), ElementsAre("writer " + scratch / "AppEdit.mov", "setMetadata", "make video",
                                          "add video", "video.realTime", "video.setTransform", "make adaptor",
                                          "make audio", "audio.realTime", "add audio", "startWriting"));
    EXPECT_EQ(Writer()->tags, tags);
    EXPECT_EQ(Input("video")->lastTransform.tx, 720.0);
    EXPECT_TRUE(recorder->started());
    EXPECT_TRUE(recorder->readyForAnotherFrame());
    EXPECT_TRUE(recorder->readyForMoreAudio());
    EXPECT_EQ(recorder->failureReason(), "");
}

TEST_F(RealTimeVideoRecorderTest, StartsWithoutWhatIsNotGiven)
{
    ASSERT_TRUE(recorder->start(1280, 720, nullptr, scene, false, nullptr));
    EXPECT_THAT(log->Calls(), ElementsAre("writer " + scratch / "AppEdit.mov", "make video", "add video",
                                          "video.realTime", "make adaptor", "startWriting"));
    EXPECT_FALSE(recorder->readyForMoreAudio());
    EXPECT_FALSE(recorder->recordAudio(SoundAt(TimeZero)));
}

TEST_F(RealTimeVideoRecorderTest, EncodesTheFormatThatIsNamed)
{
    for (const auto& [format, codec] : {std::pair{"hevc", VideoCodec::HEVC},
                                        {"prores", VideoCodec::ProRes422},
                                        {"", VideoCodec::H264},
                                        {"HEVC", VideoCodec::H264},
                                        {"h264", VideoCodec::H264},
                                        {"prores ", VideoCodec::H264}}) {
        ASSERT_TRUE(Start(false, format));
        EXPECT_EQ(Video().codec, codec) << format;
        EXPECT_EQ(Video().scalingMode, VideoScalingMode::ResizeAspectFill);
        EXPECT_EQ(Video().compression.has_value(), codec != VideoCodec::ProRes422) << format;
        Stop();
    }
}

TEST_F(RealTimeVideoRecorderTest, ComputesTheBitRateFromThePictures)
{
    recorder->setPreferredOutputSize({640, 360});   // makes no difference
    ASSERT_TRUE(Start(false, {}, 60, 1.0, 1920, 1080));
    EXPECT_EQ(Video().compression, (VideoCompression{76'800'000, 60}));
    Stop();
    ASSERT_TRUE(Start(false, {}, 30, 0.5, 1280, 720));
    EXPECT_EQ(Video().compression, (VideoCompression{8'533'333, 30}));   // 8533333.33 + 0.5
    Stop();
    // 40000 x 40000 x 3 = 4,800,000,000 wraps to 505,032,704; times 0.61728395061728 is 311,748,582.7.
    ASSERT_TRUE(Start(false, {}, 3, 1.0, 40000, 40000));
    EXPECT_EQ(Video().compression, (VideoCompression{311'748'583, 3}));
}

TEST_F(RealTimeVideoRecorderTest, LeavesTheBitRateToTheEncoderWhenAsked)
{
    for (const auto& [frameRate, multiplier] :
         {std::pair{-1, 1.0}, {30, 0.0}, {30, -1.0}, {30, std::nan("")}, {-1, -1.0}}) {
        ASSERT_TRUE(Start(false, "hevc", frameRate, multiplier));
        EXPECT_EQ(Video().compression, std::nullopt);
        Stop();
    }
    ASSERT_TRUE(Start(false, {}, 0, 1.0));
    EXPECT_EQ(Video().compression, (VideoCompression{0, 0}));
    Stop();
    ASSERT_TRUE(recorder->start(1280, 720, nullptr, scene, false, nullptr));
    EXPECT_EQ(Video().compression, std::nullopt);
    Stop();
    ASSERT_TRUE(Start(false, {}, 30, std::numeric_limits<double>::infinity()));
    EXPECT_EQ(Video().compression, (VideoCompression{std::numeric_limits<int>::max(), 30}));
}

TEST_F(RealTimeVideoRecorderTest, TurnsThePreferredSizeWithThePictures)
{
    using Pair = std::pair<int, int>;
    EXPECT_EQ(OutputOf(1280, 720, {0, 0}), Pair(1280, 720));
    EXPECT_EQ(OutputOf(1280, 720, {1920, 1080}), Pair(1920, 1080));
    EXPECT_EQ(OutputOf(720, 1280, {1080, 1920}), Pair(1080, 1920));
    EXPECT_EQ(OutputOf(720, 1280, {1920, 1080}), Pair(1080, 1920));
    EXPECT_EQ(OutputOf(1280, 720, {1080, 1920}), Pair(1920, 1080));
    EXPECT_EQ(OutputOf(500, 500, {640, 480}), Pair(480, 640));
    EXPECT_EQ(OutputOf(500, 500, {480, 640}), Pair(640, 480));
    EXPECT_EQ(OutputOf(1280, 720, {600, 600}), Pair(600, 600));
    EXPECT_EQ(OutputOf(1280, 720, {640.9, 360.9}), Pair(640, 360));
    EXPECT_EQ(OutputOf(1280, 720, {0, 360}), Pair(360, 0));
}

TEST_F(RealTimeVideoRecorderTest, PaintsBGRAOfTheInputsSize)
{
    ASSERT_TRUE(Start());
    PixelBufferAttributes expected;
    expected.width = 1280;
    expected.height = 720;
    expected.bytesPerRowAlignment = 4;
    expected.pixelFormat = 0x42475241;
    EXPECT_EQ(factory->attributes, expected);
}

TEST_F(RealTimeVideoRecorderTest, EncodesMonoAAC)
{
    ASSERT_TRUE(Start(true));
    AudioSettings expected;
    expected.formatID = 0x61616320;
    expected.sampleRate = 44100.0;
    expected.numberOfChannels = 1;
    expected.bitRate = 128000;
    expected.channelLayout.tag = 0x640001;
    EXPECT_EQ(std::get<AudioSettings>(Input("audio")->settings), expected);
}

TEST_F(RealTimeVideoRecorderTest, AnswersNoAndStartsAgainAfterEveryFailure)
{
    for (const std::string failing : {"writer", "video", "audio", "adaptor", "start"}) {
        factory->failing = failing;
        EXPECT_FALSE(Start(true)) << failing;
        EXPECT_FALSE(recorder->started());
        EXPECT_EQ(recorder->failureReason(),
                  failing == "start" ? "disk full" : "the double fails " + failing);
        EXPECT_EQ(scene.use_count(), 1) << failing;
        if (const auto writer = Writer())
            writer->Complete();
        Drain();
        EXPECT_TRUE(factory->AllReleased()) << failing;
        factory->failing.clear();
        EXPECT_TRUE(Start(true)) << failing;
        EXPECT_EQ(recorder->failureReason(), "");
        Stop();
        EXPECT_TRUE(factory->AllReleased()) << failing;
    }
}

TEST_F(RealTimeVideoRecorderTest, SaysWhyWithoutAnyWriter)
{
    AssetWriterFactory::SetShared(nullptr);
    AssetWriterFactory::SetModuleFolder(scratch / "nothing here");
    EXPECT_FALSE(Start());
    EXPECT_THAT(recorder->failureReason(), testing::HasSubstr("nothing here/libQZMovieWriter.so"));
    AssetWriterFactory::SetModuleFolder(std::nullopt);
}

// A start without a writer leaves nothing that its late teardown could take from the next recording.
TEST_F(RealTimeVideoRecorderTest, OutlivesTheTeardownOfAFailedStart)
{
    factory->failing = "writer";
    EXPECT_FALSE(Start());
    factory->failing.clear();
    EXPECT_TRUE(Start());
    Drain();
    EXPECT_TRUE(recorder->started());
    EXPECT_NE(Writer(), nullptr);
}

TEST_F(RealTimeVideoRecorderTest, RefusesToStartTwice)
{
    ASSERT_TRUE(Start());
    const std::size_t calls = log->Calls().size();
    EXPECT_FALSE(Start());
    EXPECT_EQ(log->Calls().size(), calls);
    recorder->stop();
    EXPECT_FALSE(Start()) << "the teardown is yet to come";
    Stop();
    EXPECT_TRUE(Start());
}

TEST_F(RealTimeVideoRecorderTest, StartsTheSessionWithTheFirstPicture)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(Record(MakeTime(7, 30)));
    EXPECT_TRUE(Record(MakeTime(8, 30)));
    const std::vector<std::string> calls = log->Calls();
    EXPECT_THAT(std::vector(calls.end() - 3, calls.end()),
                ElementsAre("startSession 7/30", "video.append 7/30", "video.append 8/30"));
    EXPECT_EQ(Adaptor()->Pictures()[0].firstByte, 1);
    EXPECT_EQ(Adaptor()->Pictures()[1].firstByte, 2);
}

TEST_F(RealTimeVideoRecorderTest, DropsAPictureThatDoesNotAdvance)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(Record(MakeTime(1, 30)));
    EXPECT_TRUE(Record(MakeTime(2, 30)));
    EXPECT_TRUE(Record(MakeTime(4, 60)));   // the same time
    EXPECT_TRUE(Record(MakeTime(3, 60)));   // earlier
    EXPECT_TRUE(Record(MakeTime(3, 30)));
    EXPECT_EQ(scene->painted, 5);
    EXPECT_EQ(Adaptor()->Pictures().size(), 3u);
}

TEST_F(RealTimeVideoRecorderTest, LeavesAPictureAtTheStartTimeToTheWriter)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(Record(MakeTime(1, 30)));
    Input("video")->accepts = false;
    EXPECT_FALSE(Record(MakeTime(2, 60)));
    EXPECT_EQ(Adaptor()->Pictures().size(), 2u);
}

TEST_F(RealTimeVideoRecorderTest, AnswersWhatTheWriterAnswers)
{
    ASSERT_TRUE(Start(true));
    Input("video")->accepts = false;
    EXPECT_FALSE(Record(MakeTime(1, 30)));
    Input("audio")->accepts = false;
    EXPECT_FALSE(recorder->recordAudio(SoundAt(MakeTime(1, 30))));
    EXPECT_EQ(Input("audio")->samples.size(), 1u);
}

TEST_F(RealTimeVideoRecorderTest, RecordsNoPictureWithoutATime)
{
    ASSERT_TRUE(Start());
    scene->hasTime = false;
    EXPECT_FALSE(Record(MakeTime(1, 30)));
    EXPECT_EQ(log->Count("startSession 1/30"), 0);
}

TEST_F(RealTimeVideoRecorderTest, RecordsNothingWhileNotReady)
{
    ASSERT_TRUE(Start(true));
    Input("video")->MakeRoom(0);
    EXPECT_FALSE(recorder->readyForAnotherFrame());
    EXPECT_FALSE(Record(MakeTime(1, 30)));
    EXPECT_EQ(scene->painted, 0);
    Input("video")->MakeRoom(1);
    EXPECT_TRUE(Record(MakeTime(1, 30)));
    Input("audio")->MakeRoom(0);
    EXPECT_FALSE(recorder->readyForMoreAudio());
    EXPECT_FALSE(recorder->recordAudio(SoundAt(MakeTime(1, 30))));
}

TEST_F(RealTimeVideoRecorderTest, RecordsNothingWhilePaused)
{
    ASSERT_TRUE(Start(true));
    recorder->setStarted(false);
    EXPECT_FALSE(recorder->started());
    EXPECT_FALSE(Record(MakeTime(1, 30)));
    EXPECT_FALSE(recorder->recordAudio(SoundAt(MakeTime(1, 30))));
    recorder->setStarted(true);
    EXPECT_TRUE(Record(MakeTime(2, 30)));
}

TEST_F(RealTimeVideoRecorderTest, IsNoLongerStartedOnceItWasStoppedWithoutARecording)
{
    recorder->setStarted(true);
    EXPECT_FALSE(recorder->recordFrame());
    EXPECT_FALSE(recorder->recordAudio(SoundAt(TimeZero)));
    recorder->stop();
    EXPECT_TRUE(recorder->started());
    Drain();
    EXPECT_FALSE(recorder->started());
    EXPECT_TRUE(log->Calls().empty());
}

TEST_F(RealTimeVideoRecorderTest, KeepsTheSessionOfAPictureThatCouldNotBePainted)
{
    ASSERT_TRUE(Start());
    scene->paints = false;
    EXPECT_FALSE(Record(MakeTime(1, 30)));
    EXPECT_EQ(log->Count("startSession 1/30"), 1);
    scene->paints = true;
    const std::shared_ptr<QZ::Test::DoublePool> pool = Adaptor()->pool;
    pool->left = 0;
    EXPECT_FALSE(Record(MakeTime(2, 30)));
    pool->left = -1;
    pool->hidesMemory = true;
    EXPECT_FALSE(Record(MakeTime(2, 30)));
    EXPECT_EQ(scene->painted, 1);
    pool->hidesMemory = false;
    EXPECT_TRUE(Record(MakeTime(2, 30)));
    EXPECT_EQ(Adaptor()->Pictures().size(), 1u);
    EXPECT_EQ(log->Count("startSession 2/30"), 0);
}

TEST_F(RealTimeVideoRecorderTest, HasSoundWaitForTheFirstPicture)
{
    ASSERT_TRUE(Start(true));
    EXPECT_FALSE(recorder->recordAudio(SoundAt(MakeTime(5, 30))));
    EXPECT_TRUE(Record(MakeTime(4, 30)));
    EXPECT_FALSE(recorder->recordAudio(SoundAt(MakeTime(3, 30))));   // from before the session
    EXPECT_TRUE(recorder->recordAudio(SoundAt(MakeTime(4, 30))));
    EXPECT_TRUE(recorder->recordAudio(SoundAt(MakeTime(5, 30))));
    EXPECT_EQ(Input("audio")->samples.size(), 2u);
    EXPECT_FALSE(recorder->recordAudio(nullptr));
}

TEST_F(RealTimeVideoRecorderTest, StartsTheSessionWithSoundWhenTheProviderNamesATime)
{
    ASSERT_TRUE(Start(true));
    scene->start = MakeTime(2, 30);
    EXPECT_FALSE(recorder->recordAudio(SoundAt(MakeTime(1, 30))));
    EXPECT_EQ(log->Count("startSession 2/30"), 1);
    EXPECT_TRUE(recorder->recordAudio(SoundAt(MakeTime(3, 30))));
    EXPECT_TRUE(Record(MakeTime(3, 30)));
    EXPECT_EQ(log->Count("startSession 3/30"), 0);
}

TEST_F(RealTimeVideoRecorderTest, StartsAnInvalidSessionWithSoundWithoutAProvider)
{
    ASSERT_TRUE(recorder->startWithFrameRate(30, 1.0, 64, 64, nullptr, nullptr, true, nullptr, {}));
    EXPECT_FALSE(recorder->recordFrame());
    EXPECT_FALSE(recorder->recordAudio(SoundAt(TimeZero)));   // every time is before an invalid one
    EXPECT_EQ(log->Count("startSession invalid"), 1);
}

TEST_F(RealTimeVideoRecorderTest, StopsNowAndIsTornDownOnTheMainQueue)
{
    ASSERT_TRUE(Start(true));
    EXPECT_TRUE(Record(MakeTime(1, 30)));
    const std::string path = *recorder->filename();
    const std::size_t before = log->Calls().size();
    recorder->stop();
    std::vector<std::string> calls = log->Calls();
    EXPECT_THAT(std::vector(calls.begin() + static_cast<std::ptrdiff_t>(before), calls.end()),
                ElementsAre("video.finished", "audio.finished", "finishWriting"));
    EXPECT_TRUE(recorder->started());
    EXPECT_EQ(scene.use_count(), 2);
    Writer()->Complete();
    Drain();
    EXPECT_FALSE(recorder->started());
    EXPECT_EQ(scene.use_count(), 1);
    EXPECT_TRUE(factory->AllReleased());
    calls = log->Calls();
    // The video input goes last: the double of the adaptor holds it.
    EXPECT_THAT(std::vector(calls.begin() + static_cast<std::ptrdiff_t>(before) + 3, calls.end()),
                ElementsAre("~writer", "~audio", "~adaptor", "~video"));
    EXPECT_EQ(recorder->filename(), path);
    EXPECT_TRUE(Start());
    EXPECT_TRUE(Record(MakeTime(0, 30))) << "the times of the former recording are forgotten";
    EXPECT_EQ(log->Count("startSession 0/30"), 1);
}

TEST_F(RealTimeVideoRecorderTest, TellsUntilWhenTheFileIsBeingCompleted)
{
    ASSERT_TRUE(Start());
    EXPECT_TRUE(Record(MakeTime(1, 30)));
    const auto writer = Writer();
    EXPECT_FALSE(recorder->finishing());
    recorder->stop();
    EXPECT_TRUE(recorder->finishing());
    Drain();
    EXPECT_TRUE(recorder->finishing()) << "the teardown does not wait for the file";
    writer->Complete();
    EXPECT_FALSE(recorder->finishing());
}

TEST_F(RealTimeVideoRecorderTest, AsksForTheFileToBeFinishedOnce)
{
    ASSERT_TRUE(Start());
    recorder->stop();
    recorder->stop();
    Writer()->Complete();
    recorder.reset();
    Drain();
    EXPECT_EQ(log->Count("finishWriting"), 1);
    EXPECT_TRUE(factory->AllReleased());
}

TEST_F(RealTimeVideoRecorderTest, SaysWhyAMovieCouldNotBeFinished)
{
    ASSERT_TRUE(Start());
    Writer()->Fail();
    EXPECT_EQ(recorder->failureReason(), "disk full");
    Stop();
    EXPECT_EQ(recorder->failureReason(), "disk full");
    ASSERT_TRUE(Start());
    EXPECT_EQ(recorder->failureReason(), "");
}

// The writer may tell of its end late, on a thread of its own.
TEST_F(RealTimeVideoRecorderTest, KeepsTheReasonFromTheTeardownOn)
{
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
    writer->Fail();
    recorder->stop();
    Drain();
    EXPECT_FALSE(recorder->started());
    EXPECT_EQ(recorder->failureReason(), "disk full");
    writer->Complete();
    EXPECT_EQ(recorder->failureReason(), "disk full");
}

TEST_F(RealTimeVideoRecorderTest, DeletesTheFormerMovieAtTheNextStart)
{
    ASSERT_TRUE(Start());
    scratch.Touch("AppEdit.mov");
    Stop();
    EXPECT_TRUE(exists(scratch / "AppEdit.mov"));
    ASSERT_TRUE(Start());
    EXPECT_FALSE(exists(scratch / "AppEdit.mov"));
    EXPECT_EQ(recorder->filename(), scratch / "AppEdit.mov");
}

TEST_F(RealTimeVideoRecorderTest, KeepsAFormerMovieThatIsInUse)
{
    ASSERT_TRUE(Start());
    const std::string former = scratch.Touch("AppEdit.mov");
    Stop();
    QZFileUtility::markUniqueFilename(former, true);
    ASSERT_TRUE(Start());
    EXPECT_TRUE(exists(former));
    EXPECT_EQ(recorder->filename(), scratch / "AppEdit1.mov");
    QZFileUtility::markUniqueFilename(former, false);
    EXPECT_FALSE(exists(former));
}

TEST_F(RealTimeVideoRecorderTest, DeletesTheFileThatItWasMadeWith)
{
    const std::string given = scratch.Touch("given.mov");
    recorder = std::make_unique<QZRealTimeVideoRecorder>(given);
    EXPECT_TRUE(exists(given));
    ASSERT_TRUE(Start());
    EXPECT_FALSE(exists(given));
    EXPECT_EQ(recorder->filename(), scratch / "AppEdit.mov");
}

TEST_F(RealTimeVideoRecorderTest, MayDieWhileRecording)
{
    ASSERT_TRUE(Start(true));
    EXPECT_TRUE(Record(MakeTime(1, 30)));
    const std::string path = scratch.Touch("AppEdit.mov");
    const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
    recorder.reset();
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(log->Count("finishWriting"), 1);
    writer->Complete();
    Drain();
    EXPECT_EQ(scene.use_count(), 1);
}

// Data races are for the thread sanitizer to see; every sample arrives.
TEST_F(RealTimeVideoRecorderTest, TakesPicturesAndSoundFromTwoThreads)
{
    constexpr int kCount = 300;
    ASSERT_TRUE(Start(true, {}, 30, 1.0, 16, 16));
    scene->start = TimeZero;
    std::thread capture([&] {
        for (int i = 0; i < kCount; ++i)
            EXPECT_TRUE(recorder->recordAudio(SoundAt(MakeTime(i, 30))));
    });
    for (int i = 0; i < kCount; ++i)
        Record(MakeTime(i, 30));
    capture.join();
    EXPECT_EQ(Input("audio")->samples.size(), static_cast<std::size_t>(kCount));
    EXPECT_EQ(Adaptor()->Pictures().size(), static_cast<std::size_t>(kCount));
    EXPECT_EQ(log->Count("startSession 0/30") + log->Count("startSession 0/1"), 1);
}
