// SPDX-License-Identifier: MIT
#include "tools/qz/movie/RecordMovie.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <thread>

#include "QZ/Foundation/Media/QZRealTimeVideoRecorder.h"
#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/MainQueue.h"
#include "tools/qz/io/Interrupt.h"
#include "tools/qz/movie/MovieFailure.h"
#include "tools/qz/movie/MovieFile.h"
#include "tools/qz/movie/MovieProgress.h"
#include "tools/qz/scene/MovingScene.h"

namespace QZ::Tool {

namespace {

using namespace Platform;
using Clock = std::chrono::steady_clock;

constexpr int kSampleRate = 44100;
constexpr int kFramesABuffer = 2205;   // a twentieth of a second

/// A quiet hum with a bell at every second, when the ball is highest.
std::shared_ptr<SampleBuffer> Tone(std::int64_t first, std::int64_t count)
{
    constexpr double kTurn = 2 * std::numbers::pi;
    auto buffer = std::make_shared<SampleBuffer>();
    static const auto format = FormatDescription::LinearPCM16(kSampleRate, 1);
    buffer->format = format;
    buffer->presentationTime = MakeTime(first, kSampleRate);
    for (std::int64_t i = first; i < first + count; ++i) {
        const double time = static_cast<double>(i) / kSampleRate;
        const double bell = std::exp(-6 * std::fmod(time, 1.0)) * std::sin(kTurn * 880 * time);
        const double value = 0.08 * std::sin(kTurn * 220 * time) + 0.22 * bell;
        const auto level = static_cast<std::uint16_t>(static_cast<std::int16_t>(std::lround(value * 32767)));
        buffer->bytes.push_back(static_cast<unsigned char>(level & 0xFF));
        buffer->bytes.push_back(static_cast<unsigned char>(level >> 8));
    }
    return buffer;
}

class SceneFrame final : public QZRealTimeVideoRecorderFrame {
public:
    explicit SceneFrame(const RecordOptions& options)
        : m_scene(options.width, options.height, options.rate), m_rate(options.rate)
    {}
    bool sample(unsigned char* base, std::uint64_t bytesPerRow) override
    {
        m_scene.Paint(number, base, bytesPerRow);
        return true;
    }
    bool sampleTime(Time* time) override
    {
        *time = MakeTime(number, m_rate);
        return true;
    }

    int number = 0;

private:
    const MovingScene m_scene;
    const int m_rate;
};

/// Turns about the corner that keeps the picture where it was.
AffineTransform Turned(const RecordOptions& options)
{
    switch (options.turn) {
        case 90:
            return {0, 1, -1, 0, static_cast<double>(options.height), 0};
        case 180:
            return {-1, 0, 0, -1, static_cast<double>(options.width), static_cast<double>(options.height)};
        case 270:
            return {0, -1, 1, 0, 0, static_cast<double>(options.width)};
        default:
            return {1, 0, 0, 1, 0, 0};
    }
}

class Recording {
public:
    Recording(const RecordOptions& options, const Context& context)
        : m_options(options),
          m_count(std::max(1, static_cast<int>(std::lround(options.seconds * options.rate)))),
          m_output(options.out, context.force),
          m_frame(std::make_shared<SceneFrame>(options)),
          m_progress(context, "recording")
    {}

    Recorded Run()
    {
        const AffineTransform transform = Turned(m_options);
        if (!m_recorder.startWithFrameRate(m_options.rate, m_options.encoding.bitRate.value_or(1.0),
                                           m_options.width, m_options.height, &transform, m_frame, true,
                                           nullptr, m_options.encoding.codec.value_or("h264")))
            Fail();
        const InterruptNote interruption;
        const Clock::time_point begin = Clock::now();
        for (int number = 0; number < m_count && !interruption.Came() && !HasFailed(); ++number) {
            m_frame->number = number;
            if (m_options.isLive)
                std::this_thread::sleep_until(begin +
                                              std::chrono::duration_cast<Clock::duration>(
                                                  std::chrono::duration<double>(number) / m_options.rate));
            RecordPicture();
            RecordSound(number + 1);
            m_progress.Show(static_cast<double>(number + 1) / m_count);
        }
        m_recorder.stop();
        MainQueue::Shared().Drain();
        while (m_recorder.finishing())
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        if (HasFailed())
            Fail();
        m_output.Keep();
        const auto pictures = m_progress.Pictures();
        return {{m_options.width, m_options.height, pictures,
                 static_cast<double>(m_frame->number + 1) / m_options.rate, m_progress.Seconds(),
                 interruption.Came()},
                m_dropped};
    }

private:
    [[nodiscard]] bool HasFailed() const { return !m_recorder.failureReason().empty(); }

    [[noreturn]] void Fail() const
    {
        throw Failure(Status::Output, m_options.out, "not written: " + m_recorder.failureReason(),
                      AssetWriterFactory::Shared() ? "" : kModuleRemedy);
    }

    void RecordPicture()
    {
        while (!m_options.isLive && !m_recorder.readyForAnotherFrame())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (m_recorder.recordFrame())
            m_progress.Picture();
        else
            ++m_dropped;
    }

    /// All up to the time of a picture.
    void RecordSound(int number)
    {
        const std::int64_t end = std::int64_t{number} * kSampleRate / m_options.rate;
        while (m_soundFrames < end) {
            if (m_recorder.readyForMoreAudio()) {
                const std::int64_t count = std::min<std::int64_t>(kFramesABuffer, end - m_soundFrames);
                m_recorder.recordAudio(Tone(m_soundFrames, count));
                m_soundFrames += count;
            } else {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
    }

    const RecordOptions& m_options;
    const int m_count;
    MovieFile m_output;
    const std::shared_ptr<SceneFrame> m_frame;
    QZRealTimeVideoRecorder m_recorder;
    MovieProgress m_progress;
    std::int64_t m_soundFrames = 0;
    int m_dropped = 0;
};

}   // namespace

Recorded RecordScene(const RecordOptions& options, const Context& context)
{
    CheckMovieOutput(options.out, context.force);
    return Recording(options, context).Run();
}

}   // namespace QZ::Tool
