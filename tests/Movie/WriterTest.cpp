// SPDX-License-Identifier: MIT
// How the writer and its inputs answer: readiness, order, sessions, failures, threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <utility>

#include "QZ/Platform/DispatchQueue.h"
#include "tests/Movie/BoxReader.h"
#include "tests/Movie/FullDisk.h"
#include "tests/Movie/Recorder.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Test {
namespace {

using Status = AssetWriterStatus;

class WriterTest : public ::testing::Test {
protected:
    Scene scene;
    ScratchFolder folder;
    std::string path = folder.File("movie.mov");
};

TEST_F(WriterTest, IsReadyFromTheStartOnAndTakesSamplesFromTheSessionOn)
{
    Recorder recorder(path, scene);
    EXPECT_EQ(recorder.writer->Status(), Status::Unknown);
    EXPECT_FALSE(recorder.video->IsReadyForMoreMediaData());
    EXPECT_EQ(recorder.adaptor->Pool(), nullptr);
    ASSERT_TRUE(recorder.writer->StartWriting());
    EXPECT_EQ(recorder.writer->Status(), Status::Writing);
    EXPECT_TRUE(recorder.video->IsReadyForMoreMediaData());
    EXPECT_FALSE(recorder.adaptor->AppendPixelBuffer(recorder.Picture(0), TimeZero));
    recorder.writer->StartSessionAtSourceTime(Time{});   // not a number of seconds: no session
    EXPECT_FALSE(recorder.adaptor->AppendPixelBuffer(recorder.Picture(0), TimeZero));
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    EXPECT_TRUE(recorder.adaptor->AppendPixelBuffer(recorder.Picture(0), TimeZero));
    EXPECT_FALSE(recorder.writer->StartWriting());
}

TEST_F(WriterTest, RefusesTimesThatDoNotIncrease)
{
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    EXPECT_TRUE(recorder.AppendPicture(0, MakeTime(10, 600)));
    EXPECT_FALSE(recorder.AppendPicture(1, MakeTime(1, 60)));   // the same
    EXPECT_FALSE(recorder.AppendPicture(1, MakeTime(9, 600)));
    EXPECT_FALSE(recorder.AppendPicture(1, Time{}));
    EXPECT_TRUE(recorder.AppendPicture(1, MakeTime(11, 600)));
    ASSERT_EQ(recorder.Finish(), Status::Completed);
    EXPECT_EQ(ReadMovie(path).Track("vide").samples.size(), 2u);
}

TEST_F(WriterTest, RefusesBuffersThatDoNotSuitTheTrack)
{
    scene.hasAudio = scene.hasMetadata = true;
    scene.audio = kAAC;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    EXPECT_FALSE(recorder.adaptor->AppendPixelBuffer(nullptr, TimeZero));
    EXPECT_FALSE(
        recorder.adaptor->AppendPixelBuffer(PixelBuffer::Create({.width = 8, .height = 8}), TimeZero));
    EXPECT_FALSE(recorder.video->AppendSampleBuffer(Recorder::Tone(44100, 1, 0, 100)));
    EXPECT_FALSE(recorder.audio->AppendSampleBuffer(nullptr));
    EXPECT_FALSE(recorder.audio->AppendSampleBuffer(std::make_shared<SampleBuffer>()));
    EXPECT_FALSE(recorder.metadata->AppendSampleBuffer(Recorder::Tone(44100, 1, 0, 100)));
    auto halfFrame = Recorder::Tone(44100, 2, 0, 100);
    halfFrame->bytes.pop_back();
    EXPECT_FALSE(recorder.audio->AppendSampleBuffer(halfFrame));
    EXPECT_TRUE(recorder.AppendTone(44100, 1, 0, 100));
    EXPECT_FALSE(recorder.AppendTone(44100, 2, 100, 100));   // another format than the first
    EXPECT_TRUE(recorder.AppendNote("a", TimeZero, MakeTime(1, 2)));
    EXPECT_FALSE(recorder.metadata->AppendSampleBuffer(
        SampleBuffer::MakeMetadata({{"org.example.other", "b"}}, MakeTime(1, 1), MakeTime(1, 2))));
}

TEST_F(WriterTest, TakesNothingAfterTheFinish)
{
    scene.hasAudio = true;
    scene.audio = kAAC;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    ASSERT_TRUE(recorder.AppendPicture(0, TimeZero));
    recorder.audio->MarkAsFinished();
    recorder.audio->MarkAsFinished();
    EXPECT_FALSE(recorder.audio->IsReadyForMoreMediaData());
    EXPECT_FALSE(recorder.audio->AppendSampleBuffer(Recorder::Tone(44100, 1, 0, 100)));
    EXPECT_TRUE(recorder.AppendPicture(1, MakeTime(1, 30)));
    EXPECT_EQ(recorder.Finish(), Status::Completed);
    EXPECT_FALSE(recorder.adaptor->AppendPixelBuffer(recorder.Picture(2), MakeTime(2, 30)));
    EXPECT_EQ(recorder.Finish(), Status::Completed);   // once more: nothing but the completion
}

TEST_F(WriterTest, FailsWithAReasonWhenItIsFinishedTooEarly)
{
    Recorder never(path, scene);
    EXPECT_EQ(never.Finish(), Status::Failed);
    EXPECT_NE(never.writer->Reason().find("before it was started"), std::string::npos);
    EXPECT_FALSE(never.writer->StartWriting());
    Recorder empty(path, scene);
    ASSERT_TRUE(empty.writer->StartWriting());
    EXPECT_EQ(empty.Finish(), Status::Failed);
    EXPECT_NE(empty.writer->Reason().find("holds no sample"), std::string::npos) << empty.writer->Reason();
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(WriterTest, TellsWhyItCannotStart)
{
    Recorder nowhere(folder.File("missing/movie.mov"), scene);
    EXPECT_FALSE(nowhere.writer->StartWriting());
    EXPECT_EQ(nowhere.writer->Status(), Status::Failed);
    EXPECT_NE(nowhere.writer->Reason().find("No such file or directory"), std::string::npos);
    EXPECT_FALSE(nowhere.video->IsReadyForMoreMediaData());

    const auto factory = AssetWriterFactory::Shared();
    const auto bare = factory->MakeWriter(path, FileType::QuickTimeMovie);
    EXPECT_FALSE(bare->StartWriting());
    EXPECT_NE(bare->Reason().find("at least one track"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(WriterTest, KeepsWhatStandsAtItsPathUnderAFreeName)
{
    for (const std::string content : {"first", "second"}) {
        std::ofstream(path) << content;
        Recorder recorder(path, scene);
        ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        ASSERT_TRUE(recorder.AppendPicture(0, TimeZero));
        ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();
        EXPECT_EQ(ReadMovie(path).Track("vide").samples.size(), 1u);
    }
    const auto textOf = [&](const std::string& name) {
        const std::vector<unsigned char> bytes = ReadBytes(folder.File(name));
        return std::string(bytes.begin(), bytes.end());
    };
    EXPECT_EQ(textOf("movie-1.mov"), "first");
    EXPECT_EQ(textOf("movie-2.mov"), "second");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 3);
}

// What is asked for goes on being asked for, so that who supplies it learns of the failure and ends.
TEST_F(WriterTest, AsksForSamplesOnceMoreWhenItHasFailed)
{
    Recorder recorder(path, scene);
    const auto queue = DispatchQueue::Serial("org.example.videoRecorder");
    std::promise<void> refused;
    int taken = 0;             // touched on the queue alone
    bool wasRefused = false;   // likewise
    {
        const FullDisk full(60000);
        ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        recorder.video->RequestMediaDataWhenReady(queue, [&] {
            while (recorder.video->IsReadyForMoreMediaData()) {
                if (!recorder.adaptor->AppendPixelBuffer(recorder.Picture(taken), MakeTime(taken, 30))) {
                    if (!std::exchange(wasRefused, true))
                        refused.set_value();
                    return;
                }
                ++taken;
            }
        });
        EXPECT_EQ(refused.get_future().wait_for(std::chrono::seconds(60)), std::future_status::ready);
    }
    EXPECT_EQ(recorder.Finish(), Status::Failed);
    queue->Sync([] {});
}

TEST_F(WriterTest, TellsWhichSettingsItCannotMeet)
{
    const auto factory = AssetWriterFactory::Shared();
    ASSERT_NE(factory, nullptr) << AssetWriterFactory::SharedReason();
    EXPECT_EQ(factory->MakeInput(MediaType::Video, {}), nullptr);
    EXPECT_NE(factory->Reason(), "");
    EXPECT_EQ(factory->MakeInput(MediaType::Video, VideoSettings{VideoCodec::H264, 0, 10, {}, {}}), nullptr);
    EXPECT_NE(factory->Reason().find("0 x 10"), std::string::npos);
    EXPECT_EQ(factory->MakeInput(MediaType::Audio, VideoSettings{VideoCodec::H264, 10, 10, {}, {}}), nullptr);
    AudioSettings other = kAAC;
    other.formatID = FourCharacterCode("alac");
    EXPECT_EQ(factory->MakeInput(MediaType::Audio, other), nullptr);
    const auto sound = factory->MakeInput(MediaType::Audio, kAAC);
    EXPECT_NE(sound, nullptr);
    EXPECT_EQ(factory->Reason(), "");
    EXPECT_EQ(factory->MakeAdaptor(sound, {.width = 8, .height = 8}), nullptr);
    EXPECT_EQ(factory->MakeAdaptor(nullptr, {.width = 8, .height = 8}), nullptr);
    EXPECT_EQ(factory->MakeWriter("", FileType::QuickTimeMovie), nullptr);
}

TEST_F(WriterTest, NeverBlocksARealTimeCallerButTurnsUnready)
{
    scene.realTime = true;
    scene.video = {VideoCodec::HEVC, 1280, 720, {}, {}};
    scene.sourceWidth = 1280;
    scene.sourceHeight = 720;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    const std::shared_ptr<PixelBuffer> picture = recorder.Picture(0);
    int taken = 0;
    // Far faster than any encoder: the queue of twelve fills.
    while (taken < 1000 && recorder.video->IsReadyForMoreMediaData() &&
           recorder.adaptor->AppendPixelBuffer(picture, MakeTime(taken, 600)))
        ++taken;
    EXPECT_GE(taken, 12);
    EXPECT_LT(taken, 1000);
    EXPECT_TRUE(Recorder::WaitFor(*recorder.video));   // true again as it drains
    EXPECT_EQ(recorder.Finish(), Status::Completed);
    EXPECT_EQ(ReadMovie(path).Track("vide").samples.size(), static_cast<std::size_t>(taken));
}

TEST_F(WriterTest, PullsSamplesOfAllInputsOnTheirQueue)
{
    scene.hasAudio = true;   // passes through
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    const auto queue = DispatchQueue::Serial("org.example.videoRecorder");
    int pictures = 0, tones = 0;   // touched on the queue alone
    std::atomic<int> finished = 0;
    std::atomic<bool> together = false, inside = false;
    recorder.video->RequestMediaDataWhenReady(queue, [&] {
        together = together || inside.exchange(true);
        while (pictures < 60 && recorder.video->IsReadyForMoreMediaData()) {
            EXPECT_TRUE(
                recorder.adaptor->AppendPixelBuffer(recorder.Picture(pictures), MakeTime(pictures, 30)));
            ++pictures;
        }
        inside = false;
        if (pictures == 60) {
            recorder.video->MarkAsFinished();
            ++finished;
        }
    });
    recorder.audio->RequestMediaDataWhenReady(queue, [&] {
        together = together || inside.exchange(true);
        while (tones < 20 && recorder.audio->IsReadyForMoreMediaData()) {
            EXPECT_TRUE(recorder.audio->AppendSampleBuffer(Recorder::Tone(8000, 1, tones * 800, 800)));
            ++tones;
        }
        inside = false;
        if (tones == 20) {
            recorder.audio->MarkAsFinished();
            ++finished;
        }
    });
    for (int i = 0; i < 30000 && finished < 2; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ASSERT_EQ(finished, 2);
    ASSERT_EQ(recorder.Finish(), Status::Completed);
    queue->Sync([] {});
    EXPECT_FALSE(together);
    const MovieView movie = ReadMovie(path);
    EXPECT_EQ(movie.Track("vide").samples.size(), 60u);
    EXPECT_EQ(movie.Track("soun").samples.size(), 16000u);
    // Interleaved: no half second of one track is far from the other's.
    EXPECT_GE(movie.Track("vide").chunkOffsets.size(), 4u);
    EXPECT_LT(movie.Track("soun").chunkOffsets.at(0), movie.Track("vide").chunkOffsets.at(1));
}

TEST_F(WriterTest, LetsGoOfAnOldBlockWhenTheInputIsFinished)
{
    Recorder recorder(path, scene);
    const auto token = std::make_shared<int>(0);
    recorder.video->RequestMediaDataWhenReady(DispatchQueue::Serial("test"), [token] {});
    EXPECT_EQ(token.use_count(), 2);
    recorder.video->MarkAsFinished();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(WriterTest, HidesPicturesBeforeTheSession)
{
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(MakeTime(5, 30));
    for (int i = 0; i < 15; ++i)
        ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i, 30)));
    ASSERT_EQ(recorder.Finish(), Status::Completed);
    const MovieView movie = ReadMovie(path);
    EXPECT_EQ(movie.Track("vide").samples.size(), 15u);
    EXPECT_EQ(movie.duration * 30, 10 * movie.timescale);
    EXPECT_EQ(Probe(path, "-count_frames -show_entries stream=nb_read_frames,start_time"),
              "start_time=0.000000\nnb_read_frames=10\n");
}

TEST_F(WriterTest, KeepsTimesOfSeveralTimescales)
{
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    const Time times[] = {TimeZero, MakeTime(1, 24), MakeTime(1001, 24000), MakeTime(1, 7), MakeTime(3, 10)};
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(recorder.AppendPicture(i, times[i]));
    ASSERT_EQ(recorder.Finish(), Status::Completed);
    const TrackView video = ReadMovie(path).Track("vide");
    EXPECT_EQ(video.timescale, 168000);   // the least common multiple of 1, 24, 24000, 7 and 10
    std::vector<std::int64_t> shown;
    for (const TrackSample& sample : video.samples)
        shown.push_back(sample.presentation - video.edits.at(0).mediaTime);
    std::sort(shown.begin(), shown.end());
    EXPECT_EQ(shown, (std::vector<std::int64_t>{0, 7000, 7007, 24000, 50400}));
}

TEST_F(WriterTest, PassesUncompressedSoundThroughUnchanged)
{
    scene.hasAudio = true;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    std::vector<unsigned char> given;
    for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i, 30)));
        ASSERT_TRUE(recorder.AppendTone(48000, 2, i * 1600, 1600));
        const auto bytes = ToneBytes(440, 48000, 2, i * 1600, 1600);
        given.insert(given.end(), bytes.begin(), bytes.end());
    }
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();
    const std::string decoded = Output("ffmpeg -v fatal -i '" + path + "' -map 0:a -f s16le -");
    EXPECT_EQ(std::vector<unsigned char>(decoded.begin(), decoded.end()), given);
    EXPECT_EQ(Probe(path, "-select_streams a -show_entries stream=codec_name,sample_rate,channels"),
              "codec_name=pcm_s16le\nsample_rate=48000\nchannels=2\n");
}

TEST_F(WriterTest, EncodesSoundWithGapsAsAACOfTheRightLength)
{
    scene.hasAudio = true;
    scene.audio = kAAC;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    ASSERT_TRUE(recorder.AppendPicture(0, TimeZero));
    ASSERT_TRUE(recorder.AppendTone(48000, 2, 0, 24000));
    ASSERT_TRUE(
        recorder.AppendTone(48000, 2, 48000, 24000));   // half a second later than the first one's end
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();
    const TrackView sound = ReadMovie(path).Track("soun");
    EXPECT_EQ(sound.edits.at(0).mediaTime, 1024);
    EXPECT_EQ(
        Probe(path,
              "-select_streams a -show_entries stream=codec_name,sample_rate,channels,start_time,duration"),
        "codec_name=aac\nsample_rate=44100\nchannels=1\nstart_time=0.000000\nduration=1.500000\n");
    const std::string pcm = Output("ffmpeg -v fatal -i '" + path + "' -map 0:a -f f32le -");
    const auto* samples = reinterpret_cast<const float*>(pcm.data());
    const auto loudness = [&](double from, double to) {
        double sum = 0;
        for (auto i = static_cast<std::size_t>(from * 44100); i < static_cast<std::size_t>(to * 44100); ++i)
            sum += static_cast<double>(samples[i]) * samples[i];
        return std::sqrt(sum / ((to - from) * 44100));
    };
    ASSERT_GE(pcm.size(), 66000 * sizeof(float));
    // The tone's amplitude is 16000/32768, so its root mean square 0.345; a codec at 128 kbit/s keeps it
    // within 2 %.
    EXPECT_NEAR(loudness(0.1, 0.4), 0.345, 0.007);
    EXPECT_LT(loudness(0.6, 0.9), 0.001);
    EXPECT_NEAR(loudness(1.1, 1.4), 0.345, 0.007);
}

TEST_F(WriterTest, LeavesAPlayableFileWhenItIsReleasedUnfinished)
{
    {
        Recorder recorder(path, scene);
        ASSERT_TRUE(recorder.writer->StartWriting());
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        for (int i = 0; i < 90; ++i)
            ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i, 30)));
    }
    const std::string frames = Probe(path, "-count_frames -show_entries stream=nb_read_frames");
    const int count = std::atoi(frames.c_str() + frames.find('=') + 1);
    EXPECT_GE(count, 90 - 12 - 30);   // what waited in the queue, and a second at most in the encoder
}

TEST_F(WriterTest, CompletesThoughItIsReleasedWhileFinishing)
{
    std::promise<void> done;
    {
        Recorder recorder(path, scene);
        ASSERT_TRUE(recorder.writer->StartWriting());
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        for (int i = 0; i < 30; ++i)
            ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i, 30)));
        recorder.writer->FinishWriting([&done] { done.set_value(); });
    }
    done.get_future().wait();
    EXPECT_EQ(ReadMovie(path).Track("vide").samples.size(), 30u);
}

TEST_F(WriterTest, LetsItsCompletionHoldTheLastReference)
{
    std::promise<void> done;
    {
        const auto recorder = std::make_shared<Recorder>(path, scene);
        ASSERT_TRUE(recorder->writer->StartWriting());
        recorder->writer->StartSessionAtSourceTime(TimeZero);
        ASSERT_TRUE(recorder->AppendPicture(0, TimeZero));
        recorder->writer->FinishWriting([recorder, &done] { done.set_value(); });
    }
    done.get_future().wait();
    EXPECT_EQ(ReadMovie(path).Track("vide").samples.size(), 1u);
}

TEST_F(WriterTest, TakesCallsFromManyThreads)
{
    scene.hasAudio = scene.hasMetadata = true;
    scene.audio = kAAC;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting());
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    std::atomic<bool> stop = false;
    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        for (int i = 0; i < 60; ++i)
            recorder.AppendPicture(i, MakeTime(i, 30));
    });
    threads.emplace_back([&] {
        for (int i = 0; i < 60; ++i)
            recorder.AppendTone(44100, 1, i * 1470, 1470);
    });
    threads.emplace_back([&] {
        for (int i = 0; i < 60; ++i)
            recorder.AppendNote(std::to_string(i), MakeTime(i, 30), MakeTime(1, 30));
    });
    std::thread observer([&] {
        while (!stop) {
            EXPECT_NE(recorder.writer->Status(), Status::Failed);
            EXPECT_EQ(recorder.writer->Reason(), "");
            recorder.video->SetTransform({1, 0, 0, 1, 0, 0});
            recorder.writer->StartSessionAtSourceTime(MakeTime(9, 1));
            recorder.writer->SetMetadata({});
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();
    stop = true;
    observer.join();
    const MovieView movie = ReadMovie(path);
    EXPECT_EQ(movie.Track("vide").samples.size(), 60u);
    EXPECT_EQ(movie.Track("meta").samples.size(), 60u);
}

TEST_F(WriterTest, EndsWithAReasonAndAPlayableFileWhenTheDiskIsFull)
{
    Recorder recorder(path, scene);
    int taken = 0;
    {
        const FullDisk full(150000);
        ASSERT_TRUE(recorder.writer->StartWriting());
        recorder.writer->StartSessionAtSourceTime(TimeZero);
        while (taken < 3000 && recorder.writer->Status() == Status::Writing) {
            if (recorder.video->IsReadyForMoreMediaData() &&
                recorder.adaptor->AppendPixelBuffer(recorder.Picture(taken), MakeTime(taken, 30)))
                ++taken;
        }
        EXPECT_EQ(recorder.writer->Status(), Status::Failed);
        // Ready, so that who waits to append learns from the answer.
        EXPECT_TRUE(recorder.video->IsReadyForMoreMediaData());
        EXPECT_FALSE(recorder.adaptor->AppendPixelBuffer(recorder.Picture(taken), MakeTime(taken, 30)));
        recorder.video->MarkAsFinished();
        EXPECT_FALSE(recorder.video->IsReadyForMoreMediaData());
        EXPECT_EQ(recorder.Finish(), Status::Failed);
    }
    EXPECT_NE(recorder.writer->Reason().find("cannot be written: File too large"), std::string::npos)
        << recorder.writer->Reason();
    const std::string frames = Probe(path, "-count_frames -show_entries stream=nb_read_frames");
    const int count = std::atoi(frames.c_str() + frames.find('=') + 1);
    EXPECT_GT(count, 5) << frames;
    EXPECT_LE(taken - count, 12 + 30 + 1) << "of " << taken;
    EXPECT_EQ(Output("ffmpeg -v error -i '" + path + "' -f null - 2>&1"), "");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST_F(WriterTest, EndsWithAReasonAndAPlayableFileOnASmallDisk)
{
    const SmallDisk disk(folder.File("disk"), 200);
    if (!disk.IsMounted())
        GTEST_SKIP() << "no small file system can be mounted here";
    const std::string small = disk.File("movie.mov");
    scene.realTime = true;
    Recorder recorder(small, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    int taken = 0;
    while (taken < 3000 && recorder.AppendPicture(taken, MakeTime(taken, 30)))
        ++taken;
    EXPECT_EQ(recorder.Finish(), Status::Failed);
    EXPECT_NE(recorder.writer->Reason().find("cannot be written: No space left on device"), std::string::npos)
        << recorder.writer->Reason();
    const std::string frames = Probe(small, "-count_frames -show_entries stream=nb_read_frames");
    const int count = std::atoi(frames.c_str() + frames.find('=') + 1);
    EXPECT_GT(count, 5) << frames;
    EXPECT_LE(taken - count, 12 + 1 + 1)
        << "of " << taken;   // the queue, the encoder, the one that did not fit
    EXPECT_EQ(Output("ffmpeg -v error -i '" + small + "' -f null - 2>&1"), "");
    std::printf("    full after %d pictures, of which %d play\n", taken, count);
}

TEST_F(WriterTest, KeepsTheRecordedFileWhenThereIsNoRoomForTheOrdinaryOne)
{
    const SmallDisk disk(folder.File("disk"), 400);   // room for the recording, not for it twice
    if (!disk.IsMounted())
        GTEST_SKIP() << "no small file system can be mounted here";
    const std::string small = disk.File("movie.mov");
    Recorder recorder(small, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    int i = 0;
    while (i < 3000 && recorder.writer->Status() == Status::Writing &&
           (!std::filesystem::exists(small) || std::filesystem::file_size(small) < 250000))
        i += recorder.AppendPicture(i, MakeTime(i, 30)) ? 1 : 0;
    EXPECT_EQ(recorder.Finish(), Status::Failed);
    EXPECT_NE(recorder.writer->Reason().find("No space left on device"), std::string::npos)
        << recorder.writer->Reason();
    EXPECT_EQ(Output("ffmpeg -v error -i '" + small + "' -f null - 2>&1"), "");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.File("disk")), {}), 1);
}

}   // namespace
}   // namespace QZ::Test
