// SPDX-License-Identifier: MIT
// Two measurements of the movie writer.
//   MovieBench realtime OUT.mov CODEC SECONDS   QZRealTimeVideoRecorder at 1920 x 1080, 30 frames a second
//   MovieBench encode RAW.bgra OUT.mov CODEC    1920 x 1080 pictures of a file as fast as they are taken
// CODEC is h264, hevc or prores. scripts/movie-bench compares the second with the ffmpeg program.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <thread>

#include "QZ/Foundation/Media/QZRealTimeVideoRecorder.h"
#include "QZ/Platform/Application.h"
#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/MainQueue.h"

namespace {

using namespace QZ::Platform;
using Clock = std::chrono::steady_clock;

constexpr int kWidth = 1920, kHeight = 1080, kRate = 30;

double Milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

VideoSettings Settings(const std::string& codec)
{
    VideoSettings settings = {VideoCodec::H264, kWidth, kHeight, {}, {}};
    if (codec == "prores") {
        settings.codec = VideoCodec::ProRes422;
        return settings;
    }
    if (codec == "hevc")
        settings.codec = VideoCodec::HEVC;
    // What a recorder asks for at 30 frames a second.
    settings.compression = {static_cast<int>(kWidth * kHeight * kRate * 0.61728395061728 + 0.5), kRate};
    return settings;
}

struct Movie {
    std::shared_ptr<AssetWriter> writer;
    std::shared_ptr<AssetWriterInput> input;
    std::shared_ptr<PixelBufferAdaptor> adaptor;

    Movie(const std::string& path, const std::string& codec)
    {
        const auto factory = AssetWriterFactory::Shared();
        if (!factory) {
            std::fprintf(stderr, "%s\n", AssetWriterFactory::SharedReason().c_str());
            std::exit(1);
        }
        writer = factory->MakeWriter(path, FileType::QuickTimeMovie);
        input = factory->MakeInput(MediaType::Video, Settings(codec));
        input->SetExpectsMediaDataInRealTime(false);
        writer->AddInput(input);
        adaptor = factory->MakeAdaptor(input, {.width = kWidth, .height = kHeight});
        if (!writer->StartWriting())
            Stop();
        writer->StartSessionAtSourceTime(TimeZero);
    }
    void Finish()
    {
        std::promise<void> done;
        writer->FinishWriting([&done] { done.set_value(); });
        done.get_future().wait();
        if (writer->Status() != AssetWriterStatus::Completed)
            Stop();
    }
    [[noreturn]] void Stop()
    {
        std::fprintf(stderr, "%s\n", writer->Reason().c_str());
        std::exit(1);
    }
};

/// A gradient that moves: cheap to paint, and every picture differs from the last in every pixel.
void Paint(unsigned char* base, std::uint64_t bytesPerRow, int index)
{
    for (int y = 0; y < kHeight; ++y) {
        unsigned char* pixel = base + static_cast<std::uint64_t>(y) * bytesPerRow;
        for (int x = 0; x < kWidth; ++x, pixel += 4) {
            pixel[0] = static_cast<unsigned char>(x + 2 * index);
            pixel[1] = static_cast<unsigned char>(y + index);
            pixel[2] = static_cast<unsigned char>((x + y) / 4 - index);
            pixel[3] = 255;
        }
    }
}

/// Paints, and measures for how long.
struct Scene : QZRealTimeVideoRecorderFrame {
    bool sample(unsigned char* base, std::uint64_t bytesPerRow) override
    {
        const Clock::time_point before = Clock::now();
        Paint(base, bytesPerRow, index);
        painting = Clock::now() - before;
        return true;
    }
    bool sampleTime(Time* time) override
    {
        *time = MakeTime(index, kRate);
        return true;
    }

    int index = 0;
    Clock::duration painting = {};
};

/// Processor time of the whole process so far.
double ProcessorMilliseconds()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void RealTime(const std::string& path, const std::string& codec, int seconds)
{
    Application::SetTemporaryDirectory(std::filesystem::path(path).parent_path());
    QZRealTimeVideoRecorder recorder;
    const auto scene = std::make_shared<Scene>();
    if (!recorder.startWithFrameRate(kRate, 1.0, kWidth, kHeight, nullptr, scene, false, nullptr, codec)) {
        std::fprintf(stderr, "%s\n", recorder.failureReason().c_str());
        std::exit(1);
    }
    double slowest = 0, painting = 0;
    int refused = 0;
    const double processor = ProcessorMilliseconds();
    const int pictures = seconds * kRate;
    const Clock::time_point start = Clock::now();
    for (scene->index = 0; scene->index < pictures; ++scene->index) {
        std::this_thread::sleep_until(start + std::chrono::microseconds(1000000) * scene->index / kRate);
        scene->painting = {};
        const Clock::time_point before = Clock::now();
        refused += recorder.recordFrame() ? 0 : 1;
        slowest = std::max(slowest, Milliseconds(Clock::now() - before - scene->painting));
        painting += Milliseconds(scene->painting);
    }
    recorder.stop();
    MainQueue::Shared().RunUntil([&] { return !recorder.started(); }, std::chrono::minutes(1));
    std::printf(
        "%s: %d pictures, %d refused, slowest recordFrame %.3f ms without the painting; "
        "%.1f ms of processor time a picture beside it\n",
        codec.c_str(), pictures, refused, slowest,
        (ProcessorMilliseconds() - processor - painting) / (pictures - refused));
}

void Encode(const std::string& raw, const std::string& path, const std::string& codec)
{
    std::ifstream in(raw, std::ios::binary);
    const Clock::time_point start = Clock::now();
    Movie movie(path, codec);
    int count = 0;
    for (;; ++count) {
        while (!movie.input->IsReadyForMoreMediaData())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const std::shared_ptr<PixelBuffer> buffer = movie.adaptor->Pool()->MakePixelBuffer();
        if (!in.read(reinterpret_cast<char*>(buffer->BaseAddress()), std::streamsize{kWidth} * kHeight * 4))
            break;
        movie.adaptor->AppendPixelBuffer(buffer, MakeTime(count, kRate));
    }
    movie.Finish();
    std::printf("%s: %d pictures in %.2f s\n", codec.c_str(), count,
                Milliseconds(Clock::now() - start) / 1000);
}

}   // namespace

int main(int argc, char** argv)
{
    if (argc == 5 && std::strcmp(argv[1], "realtime") == 0) {
        RealTime(argv[2], argv[3], std::stoi(argv[4]));
    } else if (argc == 5 && std::strcmp(argv[1], "encode") == 0) {
        Encode(argv[2], argv[3], argv[4]);
    } else {
        std::fprintf(stderr,
                     "usage: MovieBench realtime OUT.mov CODEC SECONDS | encode RAW.bgra OUT.mov CODEC\n");
        return 2;
    }
}
