// SPDX-License-Identifier: MIT
// Records two seconds of a colour that changes, and prints where the movie is: record OUT.mov
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>

#include "QZ/Foundation/Media/QZFileUtility.h"
#include "QZ/Foundation/Media/QZVideoRecorder.h"
#include "QZ/Platform/MainQueue.h"

using namespace QZ::Platform;

namespace {

constexpr int kWidth = 320, kHeight = 240, kRate = 30, kPictures = 60;

class Fade : public QZVideoRecorderDelegate {
public:
    bool doesHaveAudio() override { return false; }
    bool doesHaveMetadata() override { return false; }
    void getAudioSample(std::shared_ptr<SampleBuffer>*) override {}
    void getMetadataSample(std::shared_ptr<SampleBuffer>*) override {}

    void getVideoFrame(QZVideoRecorderVideoFrame* frame) override
    {
        if (m_shown == kPictures)
            return;   // the end: hasFrame stays false
        const auto level = static_cast<unsigned char>(m_shown * 255 / kPictures);
        const unsigned char bgra[] = {level, 128, static_cast<unsigned char>(255 - level), 255};
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                std::copy_n(bgra, 4,
                            frame->baseAddress + frame->bytesPerRow * static_cast<unsigned>(y) + 4 * x);
        frame->time = MakeTime(m_shown++, kRate);
        frame->hasFrame = true;
        frame->holdFrame = false;
    }

    void willFinishRecording() override {}
    // On a thread of the writer's: hand over to the main thread, where everything else happens.
    void didFinishRecording(const std::string&) override
    {
        MainQueue::Shared().Post([this] { finished = true; });
    }

    bool finished = false;

private:
    int m_shown = 0;
};

}   // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUT.mov\n", argv[0]);
        return 2;
    }
    Fade fade;
    QZVideoRecorder recorder(&fade, std::nullopt);
    if (!recorder.startWithFrameRate(kRate, 1.0, kWidth, kHeight, nullptr, nullptr, "h264")) {
        std::fprintf(stderr, "cannot record: %s\n", recorder.failureReason().c_str());
        return 1;
    }
    // The recorder asks for its pictures here.
    MainQueue::Shared().RunUntil([&] { return fade.finished; }, std::chrono::minutes(1));
    if (!fade.finished || !recorder.failureReason().empty()) {
        std::fprintf(stderr, "the movie is not complete: %s\n", recorder.failureReason().c_str());
        return 1;
    }
    // The recorder deletes its file when it dies: keep a copy.
    std::filesystem::copy_file(*recorder.filename(), argv[1],
                               std::filesystem::copy_options::overwrite_existing);
    std::printf("%s\n", argv[1]);
}
