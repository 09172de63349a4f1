// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZVideoRecorder.h"

#include <filesystem>
#include <thread>

#include "QZ/Foundation/Media/QZFileUtility.h"
#include "QZ/Platform/ImageIO.h"
#include "tests/Media/RecorderTest.h"

using namespace QZ::Platform;
using std::filesystem::exists;
using testing::Contains;
using testing::ElementsAre;

namespace {

/// Supplies a number of pictures and samples, thirty a second, and logs what it hears.
class Film : public QZVideoRecorderDelegate {
public:
    explicit Film(std::shared_ptr<QZ::Test::CallLog> log) : m_log(std::move(log)) {}

    bool doesHaveAudio() override { return hasAudio; }
    bool doesHaveMetadata() override { return hasMetadata; }
    void getVideoFrame(QZVideoRecorderVideoFrame* frame) override
    {
        onMainThread = onMainThread && MainQueue::Shared().IsMainThread();
        EXPECT_FALSE(frame->hasFrame);
        asked.push_back(frame->baseAddress);
        if (onPicture)
            onPicture();
        if (shown == pictures)
            return;
        frame->hasFrame = true;
        frame->holdFrame = holds > 0;
        if (holds > 0) {
            --holds;
            return;
        }
        frame->time = MakeTime(firstPicture + shown, 30);
        std::fill_n(frame->baseAddress, frame->bytesPerRow, static_cast<unsigned char>(++shown));
    }
    void getAudioSample(std::shared_ptr<SampleBuffer>* sample) override
    {
        Supply(sample, sounds, firstSound);
    }
    void getMetadataSample(std::shared_ptr<SampleBuffer>* sample) override
    {
        Supply(sample, words, firstWord);
    }
    void willFinishRecording() override
    {
        EXPECT_TRUE(MainQueue::Shared().IsMainThread());
        m_log->Add("will finish");
        willFinish = true;
        if (onWillFinish)
            onWillFinish();
    }
    void didFinishRecording(const std::string& filename) override
    {
        m_log->Add("did finish " + filename);
        didFinish = true;
    }

    bool hasAudio = false, hasMetadata = false;
    int pictures = 3, sounds = 0, words = 0;
    int firstPicture = 0, firstSound = 0, firstWord = 0;   ///< in thirtieths of a second
    int holds = 0;                                         ///< how often the next picture is held
    int shown = 0;
    bool onMainThread = true;
    std::vector<unsigned char*> asked;
    std::function<void()> onPicture, onWillFinish;
    std::atomic<bool> willFinish = false, didFinish = false;

private:
    void Supply(std::shared_ptr<SampleBuffer>* sample, int& left, int& next)
    {
        onMainThread = onMainThread && MainQueue::Shared().IsMainThread();
        EXPECT_EQ(*sample, nullptr);
        if (left == 0)
            return;
        --left;
        *sample = std::make_shared<SampleBuffer>();
        (*sample)->presentationTime = MakeTime(next++, 30);
    }

    const std::shared_ptr<QZ::Test::CallLog> m_log;
};

class VideoRecorderTest : public QZ::Test::RecorderTest {
protected:
    bool Start(std::string_view format = {}, int frameRate = 30, double multiplier = 1.0)
    {
        return recorder->startWithFrameRate(frameRate, multiplier, 64, 48, nullptr, nullptr, format);
    }
    /// Runs a started recording to its end, completion included. \return the writer
    void Finish()
    {
        const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
        RunUntil([&] { return film.willFinish.load(); });
        writer->Complete();
    }
    std::vector<std::string> CallsWith(const std::string& begin) const
    {
        std::vector<std::string> calls;
        for (const std::string& call : log->Calls())
            if (call.starts_with(begin))
                calls.push_back(call);
        return calls;
    }

    Film film{log};
    std::unique_ptr<QZVideoRecorder> recorder = std::make_unique<QZVideoRecorder>(&film, std::nullopt);
};

}   // namespace

TEST_F(VideoRecorderTest, IsNamedAfterTheApplicationUntilItStarts)
{
    EXPECT_EQ(recorder->filename(), scratch / "AppEdit.mov");
    EXPECT_EQ(QZVideoRecorder(&film, "/somewhere/else.mov").filename(), "/somewhere/else.mov");
}

TEST_F(VideoRecorderTest, StartsInOrder)
{
    film.hasAudio = film.hasMetadata = true;
    film.sounds = film.words = 1;
    factory->roomAtFirst = 0;   // the pumps wait
    const AffineTransform turn = {0, 1, -1, 0, 48, 0};
    const std::vector<MetadataItem> tags = {{"title", "A film"}};
    ASSERT_TRUE(recorder->startWithFrameRate(30, 1.0, 64, 48, &turn, &tags, "hevc"));
    EXPECT_THAT(log->Calls(),
                ElementsAre("writer " + scratch / "AppEdit.mov", "setMetadata", "make video", "add video",
                            "video.offline", "video.setTransform", "make adaptor", "make audio",
                            "audio.offline", "add audio", "make metadata", "metadata.offline", "add metadata",
                            "startWriting", "startSession 0/30", "video.append 0/30", "audio.append 0/30",
                            "metadata.append 0/30", "video.request on org.qzfoundation.videoRecorder",
                            "audio.request on org.qzfoundation.videoRecorder",
                            "metadata.request on org.qzfoundation.videoRecorder"));
    EXPECT_EQ(Writer()->tags, tags);
    EXPECT_EQ(Input("video")->lastTransform.tx, 48.0);
    EXPECT_EQ(Input("audio")->settings, OutputSettings());
    EXPECT_EQ(Input("metadata")->settings, OutputSettings());
    PixelBufferAttributes expected;
    expected.width = 64;
    expected.height = 48;
    EXPECT_EQ(factory->attributes, expected);
}

TEST_F(VideoRecorderTest, EncodesByTheFormatAndTakesEveryRateAtItsWord)
{
    factory->roomAtFirst = 0;
    const auto compressionOf = [&](std::string_view format, int frameRate, double multiplier) {
        film.shown = 0;
        EXPECT_TRUE(Start(format, frameRate, multiplier));
        const VideoSettings video = Video();
        EXPECT_EQ(video.width, 64);
        EXPECT_EQ(video.height, 48);
        EXPECT_EQ(video.scalingMode, std::nullopt);
        recorder->stop();
        return std::pair(video.codec, video.compression);
    };
    // 64 x 48 x 30 = 92,160 pixels, times 0.61728395061728 is 56,888.9.
    EXPECT_EQ(compressionOf({}, 30, 1.0),
              std::pair(VideoCodec::H264, std::optional(VideoCompression{56'889, 30})));
    EXPECT_EQ(compressionOf("mpeg", 30, 2.0),
              std::pair(VideoCodec::H264, std::optional(VideoCompression{113'778, 30})));
    // -3,072 x 0.61728395061728 + 0.5 = -1,895.8, truncated toward zero.
    EXPECT_EQ(compressionOf("hevc", -1, 1.0),
              std::pair(VideoCodec::HEVC, std::optional(VideoCompression{-1'895, -1})));
    EXPECT_EQ(compressionOf({}, 30, 0.0),
              std::pair(VideoCodec::H264, std::optional(VideoCompression{0, 30})));
    EXPECT_EQ(compressionOf("prores", 30, 1.0),
              std::pair(VideoCodec::ProRes422, std::optional<VideoCompression>()));
}

TEST_F(VideoRecorderTest, AppendsEveryPictureAndEnds)
{
    ASSERT_TRUE(Start());
    Finish();
    EXPECT_THAT(CallsWith("video.append"),
                ElementsAre("video.append 0/30", "video.append 1/30", "video.append 2/30"));
    EXPECT_EQ(film.asked.size(), 4u);
    EXPECT_TRUE(film.onMainThread);
    std::vector<std::string> calls = log->Calls();
    std::erase_if(calls, [](const std::string& call) { return call.starts_with('~'); });
    EXPECT_THAT(std::vector(calls.end() - 4, calls.end()),
                ElementsAre("video.finished", "finishWriting", "will finish",
                            "did finish " + scratch / "AppEdit.mov"));
}

TEST_F(VideoRecorderTest, TagsEveryPictureAsSRGB)
{
    factory->roomAtFirst = 1;
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoubleAdaptor> adaptor = Adaptor();
    Input("video")->MakeRoom(-1);
    Finish();
    const auto expected = ICCProfileOf(ImageColorSpace::SRGB);
    ASSERT_EQ(adaptor->Pictures().size(), 3u);
    for (const QZ::Test::AppendedPicture& picture : adaptor->Pictures()) {
        ASSERT_NE(picture.profile, nullptr);
        EXPECT_TRUE(std::ranges::equal(*picture.profile, expected));
    }
    EXPECT_EQ(adaptor->Pictures()[0].firstByte, 1);
    EXPECT_EQ(adaptor->Pictures()[2].firstByte, 3);
}

TEST_F(VideoRecorderTest, WritesAllTracksAndFinishesAfterTheLast)
{
    film.hasAudio = film.hasMetadata = true;
    film.sounds = 5;
    film.words = 2;
    ASSERT_TRUE(Start());
    Finish();
    EXPECT_EQ(CallsWith("audio.append").size(), 5u);
    EXPECT_EQ(CallsWith("metadata.append").size(), 2u);
    EXPECT_EQ(CallsWith("video.append").size(), 3u);
    for (const std::string track : {"video", "audio", "metadata"})
        EXPECT_EQ(log->Count(track + ".finished"), 1) << track;
    EXPECT_EQ(log->Count("finishWriting"), 1);
    EXPECT_EQ(log->Count("will finish"), 1);
    EXPECT_TRUE(film.onMainThread);
}

TEST_F(VideoRecorderTest, WaitsForRoomAndLosesNothing)
{
    film.hasAudio = true;
    film.sounds = 4;
    film.pictures = 5;
    factory->roomAtFirst = 1;   // for the first picture and sound
    ASSERT_TRUE(Start());
    EXPECT_EQ(CallsWith("video.append").size(), 1u);
    const std::shared_ptr<QZ::Test::DoubleInput> video = Input("video"), audio = Input("audio");
    const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
    while (!film.willFinish) {
        for (const auto& input : {video, audio})
            if (input->room == 0)
                input->MakeRoom(1);
        MainQueue::Shared().RunUntil([] { return false; }, std::chrono::milliseconds(2));
    }
    writer->Complete();
    EXPECT_EQ(CallsWith("video.append").size(), 5u);
    EXPECT_EQ(CallsWith("audio.append").size(), 4u);
}

TEST_F(VideoRecorderTest, BeginsTheMovieWithItsEarliestTrack)
{
    factory->roomAtFirst = 0;
    film.hasAudio = film.hasMetadata = true;
    const auto sessionOf = [&](int picture, int sound, int word) {
        film.shown = 0;
        film.sounds = sound < 0 ? 0 : 1;
        film.words = word < 0 ? 0 : 1;
        film.firstPicture = picture;
        film.firstSound = sound;
        film.firstWord = word;
        EXPECT_TRUE(Start());
        recorder->stop();
        return CallsWith("startSession").back();
    };
    EXPECT_EQ(sessionOf(7, 8, 9), "startSession 7/30");
    EXPECT_EQ(sessionOf(8, 7, 9), "startSession 7/30");
    EXPECT_EQ(sessionOf(9, 8, 7), "startSession 7/30");
    EXPECT_EQ(sessionOf(7, -1, 9), "startSession 0/1");   // a missing sample counts as zero
    EXPECT_EQ(sessionOf(7, 8, -1), "startSession 0/1");
    film.hasAudio = film.hasMetadata = false;   // and so does an absent track
    EXPECT_EQ(sessionOf(7, 8, 9), "startSession 0/1");
    EXPECT_EQ(sessionOf(-3, 8, 9), "startSession -3/30");
    EXPECT_EQ(sessionOf(0, 8, 9), "startSession 0/1");   // of equal times the one that was compared last
}

TEST_F(VideoRecorderTest, CountsATrackWithoutASample)
{
    film.hasAudio = true;
    ASSERT_TRUE(Start());
    Finish();
    EXPECT_EQ(log->Count("audio.finished"), 1);
    EXPECT_EQ(CallsWith("audio.append").size(), 0u);
    EXPECT_EQ(log->Count("will finish"), 1);
}

TEST_F(VideoRecorderTest, DoesNotStartWithoutAFirstPicture)
{
    film.pictures = 0;
    EXPECT_FALSE(Start());
    EXPECT_EQ(recorder->failureReason(), "there is no first picture");
    EXPECT_TRUE(factory->AllReleased());
    EXPECT_TRUE(CallsWith("video.request").empty());
    EXPECT_TRUE(CallsWith("startSession").empty());
    film.pictures = 1;
    EXPECT_TRUE(Start());
    Finish();
}

TEST_F(VideoRecorderTest, DoesNotAskWhetherTheFirstPictureIsHeld)
{
    factory->roomAtFirst = 0;
    film.holds = 1;
    EXPECT_TRUE(Start());
    EXPECT_EQ(CallsWith("video.append").size(), 1u);
}

TEST_F(VideoRecorderTest, OffersAHeldBufferAgain)
{
    ASSERT_TRUE(Start());
    film.holds = 2;
    const std::shared_ptr<QZ::Test::DoublePool> pool = Adaptor()->pool;
    Finish();
    EXPECT_THAT(CallsWith("video.append"),
                ElementsAre("video.append 0/30", "video.append 1/30", "video.append 2/30"));
    ASSERT_EQ(film.asked.size(), 6u);   // one at the start, two held, two more, and the end
    EXPECT_EQ(film.asked[1], film.asked[2]);
    EXPECT_EQ(film.asked[2], film.asked[3]);
    EXPECT_EQ(pool->made, 4);
}

TEST_F(VideoRecorderTest, EndsWithABufferThatIsHeldAndNeverAppended)
{
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoublePool> pool = Adaptor()->pool;
    film.onPicture = [&] {
        if (film.asked.size() == 3) {
            film.holds = 0;
            film.pictures = film.shown;   // no more
        }
    };
    film.holds = 5;
    Finish();
    EXPECT_THAT(CallsWith("video.append"), ElementsAre("video.append 0/30"));
    EXPECT_EQ(film.asked.size(), 3u);
    EXPECT_EQ(film.asked[1], film.asked[2]);
    EXPECT_EQ(pool->made, 2);
}

// The delegate writes the flag every time: the recorder clears it but once.
TEST_F(VideoRecorderTest, ClearsTheHoldFlagOnlyBeforeTheFirstPicture)
{
    class Careless : public Film {
    public:
        using Film::Film;
        void getVideoFrame(QZVideoRecorderVideoFrame* frame) override
        {
            flags.push_back(frame->holdFrame);
            const bool kept = flags.size() > 1 && frame->holdFrame;
            Film::getVideoFrame(frame);
            frame->holdFrame = kept || flags.size() == 2;
            if (flags.size() == 4)
                frame->hasFrame = false;   // the end
        }
        std::vector<bool> flags;
    };
    Careless careless(log);
    careless.pictures = 100;
    recorder = std::make_unique<QZVideoRecorder>(&careless, std::nullopt);
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
    RunUntil([&] { return careless.willFinish.load(); });
    writer->Complete();
    EXPECT_EQ(careless.flags, (std::vector<bool>{false, false, true, true}));
    EXPECT_EQ(CallsWith("video.append").size(), 1u);
    recorder.reset();   // before its delegate
}

TEST_F(VideoRecorderTest, LosesAHeldBufferWhenThereIsNoMoreRoom)
{
    factory->roomAtFirst = 1;
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoublePool> pool = Adaptor()->pool;
    const std::shared_ptr<QZ::Test::DoubleInput> video = Input("video");
    film.holds = 1;
    film.onPicture = [&, first = true]() mutable {
        if (std::exchange(first, false))
            video->MakeRoom(0);   // while the picture is being held
    };
    video->MakeRoom(2);
    RunUntil([&] { return film.asked.size() == 2; });
    video->askedOn->Sync([] {});   // until the pump has returned
    EXPECT_EQ(pool->made, 2);
    video->MakeRoom(-1);
    Finish();
    EXPECT_EQ(CallsWith("video.append").size(), 3u);
    EXPECT_EQ(pool->made, 5);   // the first, the lost one, two more, and one for the end
}

TEST_F(VideoRecorderTest, EndsTheMovieWhenThePoolIsExhausted)
{
    factory->roomAtFirst = 1;
    ASSERT_TRUE(Start());
    Adaptor()->pool->left = 1;
    Input("video")->MakeRoom(-1);
    Finish();
    EXPECT_EQ(CallsWith("video.append").size(), 2u);
    EXPECT_EQ(log->Count("will finish"), 1);
}

TEST_F(VideoRecorderTest, FinishesAShorterMovieWhenCancelled)
{
    film.hasAudio = film.hasMetadata = true;
    film.pictures = film.sounds = film.words = 1'000'000;
    ASSERT_TRUE(Start());
    film.onPicture = [&] {
        if (film.shown == 10)
            recorder->cancel();
    };
    Finish();
    EXPECT_EQ(CallsWith("video.append").size(), 10u);
    for (const std::string track : {"video", "audio", "metadata"})
        EXPECT_EQ(log->Count(track + ".finished"), 1) << track;
    EXPECT_EQ(log->Count("did finish " + scratch / "AppEdit.mov"), 1);
    film.pictures = film.sounds = film.words = 20;
    film.willFinish = false;
    film.onPicture = nullptr;
    ASSERT_TRUE(Start()) << "and is no longer cancelled";
    Finish();
    EXPECT_EQ(CallsWith("video.append").size(), 19u);   // the eleventh was painted when it was too late
}

TEST_F(VideoRecorderTest, KeepsItsFirstPictureWhenItWasCancelledBeforeTheStart)
{
    recorder->cancel();
    ASSERT_TRUE(Start());
    Finish();
    EXPECT_THAT(CallsWith("video.append"), ElementsAre("video.append 0/30"));
    EXPECT_EQ(film.asked.size(), 2u);   // by the start, and once by the pump, which then saw it
    EXPECT_EQ(log->Count("finishWriting"), 1);
    recorder->cancel();
    recorder->stop();   // forgets that it was cancelled
    film.shown = 0;
    film.willFinish = false;
    ASSERT_TRUE(Start());
    Finish();
    EXPECT_EQ(CallsWith("video.append").size(), 1u + 3u);
}

TEST_F(VideoRecorderTest, FinishesEarlyAndSaysWhyWhenTheWriterFails)
{
    film.pictures = 1'000'000;
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
    film.onPicture = [&] {
        if (film.shown == 5)
            writer->Fail();
    };
    Finish();
    EXPECT_EQ(CallsWith("video.append").size(), 5u);
    EXPECT_TRUE(film.didFinish);
    EXPECT_EQ(recorder->failureReason(), "disk full");
}

TEST_F(VideoRecorderTest, AnswersNoAndStartsAgainAfterEveryFailure)
{
    film.hasAudio = film.hasMetadata = true;
    for (const std::string failing : {"writer", "video", "audio", "metadata", "adaptor", "start"}) {
        factory->failing = failing;
        EXPECT_FALSE(Start()) << failing;
        EXPECT_EQ(recorder->failureReason(),
                  failing == "start" ? "disk full" : "the double fails " + failing);
        EXPECT_TRUE(factory->AllReleased()) << failing;
        EXPECT_EQ(film.asked.size(), 0u);
        factory->failing.clear();
        factory->roomAtFirst = 0;
        EXPECT_TRUE(Start()) << failing;
        EXPECT_EQ(recorder->failureReason(), "");
        recorder->stop();
        EXPECT_TRUE(factory->AllReleased()) << failing;
        film.asked.clear();
        film.shown = 0;
    }
}

TEST_F(VideoRecorderTest, RefusesToStartTwice)
{
    factory->roomAtFirst = 0;
    ASSERT_TRUE(Start());
    const std::size_t calls = log->Calls().size();
    EXPECT_FALSE(Start());
    EXPECT_EQ(log->Calls().size(), calls);
}

TEST_F(VideoRecorderTest, CanStartAnewFromItsFirstNotification)
{
    film.onWillFinish = [&] {
        film.onWillFinish = nullptr;
        film.shown = 0;
        QZFileUtility::markUniqueFilename(recorder->filename(), true);
        factory->roomAtFirst = 0;
        EXPECT_TRUE(Start());
    };
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
    RunUntil([&] { return film.willFinish.load(); });
    writer->Complete();
    EXPECT_THAT(log->Calls(), Contains("did finish " + scratch / "AppEdit.mov"));
    EXPECT_EQ(recorder->filename(), scratch / "AppEdit1.mov");
    QZFileUtility::markUniqueFilename(scratch / "AppEdit.mov", false);
}

TEST_F(VideoRecorderTest, AbandonsARecordingThatIsStopped)
{
    film.pictures = 1'000'000;
    ASSERT_TRUE(Start());
    film.onPicture = [&] {
        if (film.shown == 5)
            recorder->stop();
    };
    RunUntil([&] { return Writer() == nullptr; });
    Drain();
    EXPECT_EQ(log->Count("finishWriting"), 0);
    EXPECT_EQ(log->Count("will finish"), 0);
    EXPECT_EQ(CallsWith("video.append").size(), 5u);
}

TEST_F(VideoRecorderTest, CountsTheTracksThatFinish)
{
    film.hasAudio = true;
    factory->roomAtFirst = 0;
    ASSERT_TRUE(Start());
    const std::shared_ptr<QZ::Test::DoubleWriter> writer = Writer();
    recorder->finishedWithSamples();
    EXPECT_EQ(log->Count("finishWriting"), 0);
    recorder->finishedWithSamples();
    EXPECT_EQ(log->Count("finishWriting"), 1);
    EXPECT_EQ(log->Count("will finish"), 1);
    recorder->finishedWithSamples();
    EXPECT_EQ(log->Count("will finish"), 1);
    writer->Complete();
}

TEST_F(VideoRecorderTest, DeletesTheFormerMovieUnlessItIsInUse)
{
    const std::string path = scratch.Touch("AppEdit.mov");
    factory->roomAtFirst = 0;
    ASSERT_TRUE(Start());
    EXPECT_FALSE(exists(path));
    recorder->stop();
    scratch.Touch("AppEdit.mov");
    QZFileUtility::markUniqueFilename(path, true);
    film.shown = 0;
    ASSERT_TRUE(Start());
    EXPECT_EQ(recorder->filename(), scratch / "AppEdit1.mov");
    recorder.reset();
    EXPECT_TRUE(exists(path));
    QZFileUtility::markUniqueFilename(path, false);
    EXPECT_FALSE(exists(path));
}

TEST_F(VideoRecorderTest, CallsNothingAfterItsDestructor)
{
    film.pictures = 1'000'000;
    ASSERT_TRUE(Start());
    RunUntil([&] { return film.shown > 3; });
    recorder.reset();
    const int shown = film.shown;
    for (int i = 0; i < 5; ++i)
        MainQueue::Shared().RunUntil([] { return false; }, std::chrono::milliseconds(2));
    EXPECT_EQ(film.shown, shown);
    EXPECT_FALSE(film.willFinish);
    EXPECT_TRUE(factory->AllReleased());
}

TEST_F(VideoRecorderTest, MayDieInItsFirstNotification)
{
    film.onWillFinish = [&] { recorder.reset(); };
    ASSERT_TRUE(Start());
    Finish();
    EXPECT_FALSE(film.didFinish);
}
