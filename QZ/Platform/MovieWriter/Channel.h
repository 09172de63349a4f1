// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "QZ/Platform/AssetWriter.h"

namespace QZ::Platform::Movie {

/// What an input is told before the recording starts.
struct ChannelSettings {
    MediaType type = MediaType::Video;
    OutputSettings output;
    AffineTransform transform = {1, 0, 0, 1, 0, 0};
    PixelBufferAttributes source = {};   ///< of an adaptor; its sizes are 0 without one
    bool realTime = false;
};

/// A sample on its way to the encoder.
struct QueuedSample {
    Time time = TimeZero;
    std::shared_ptr<PixelBuffer> picture;   ///< or
    std::shared_ptr<SampleBuffer> buffer;
};

/// The bounded queue between an input, from whichever threads it is called, and the writer's thread.
///
/// It holds at most 12 pictures and 96 MiB of them (twelve of 1920 x 1080, three of 3840 x 2160, two of any
/// size), or 128 sample buffers and 4 MiB. A buffer that is appended to a queue with room is taken whatever
/// its size.
class Channel : public std::enable_shared_from_this<Channel> {
public:
    explicit Channel(ChannelSettings settings) : m_settings(std::move(settings)) {}

    /// \name Before the recording starts
    void SetRealTime(bool realTime);
    void SetTransform(const AffineTransform& transform);
    void SetSource(const PixelBufferAttributes& attributes);
    /// Claims the channel for a writer, which is told of each new sample by `wake`; false when it has one.
    bool Attach(std::function<void()> wake);
    /// Fixes the settings: the writer has started, and there is room for samples.
    void Start();
    [[nodiscard]] ChannelSettings Settings() const;

    /// \name The input's side, from any thread
    [[nodiscard]] bool IsReady() const;
    bool Append(QueuedSample sample);
    void Finish();
    void Request(std::shared_ptr<DispatchQueue> queue, std::function<void()> block);
    /// Buffers of the source's attributes; null before the start.
    [[nodiscard]] std::shared_ptr<PixelBufferPool> Pool();

    /// \name The writer's side
    void Open();    ///< the session has started: samples are taken
    void Close();   ///< no more samples, and those that wait are dropped
    /// The writer has ended: what waits is dropped, and what is appended refused. An input that is not
    /// finished is ready all the same, so that who waits to append goes on and learns of it.
    void Stop();
    /// Runs the block that was requested when there is room; after Stop only once.
    void AskForMore();
    [[nodiscard]] std::optional<Time> NextTime() const;
    std::optional<QueuedSample> Take();

private:
    using Block = std::shared_ptr<std::function<void()>>;

    bool IsReadyLocked() const;
    bool SuitsLocked(const QueuedSample& sample) const;
    void RunBlock(const Block& block);

    mutable std::mutex m_mutex;
    ChannelSettings m_settings;
    std::function<void()> m_wake;
    std::deque<QueuedSample> m_samples;
    std::size_t m_bytes = 0;
    bool m_started = false, m_inSession = false, m_finished = false;
    std::optional<Time> m_lastTime;
    std::shared_ptr<const FormatDescription> m_format;   ///< of the first sample buffer
    std::shared_ptr<PixelBufferPool> m_pool;

    std::shared_ptr<DispatchQueue> m_queue;
    Block m_block;
    bool m_asking = false;   ///< the block is queued or runs
    bool m_stopped = false, m_askedSinceStop = false;
};

}   // namespace QZ::Platform::Movie
