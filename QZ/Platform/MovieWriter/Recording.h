// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/MovieWriter/Channel.h"
#include "QZ/Platform/MovieWriter/DiskSync.h"
#include "QZ/Platform/MovieWriter/MovieFile.h"
#include "QZ/Platform/MovieWriter/TrackWriter.h"

namespace QZ::Platform::Movie {

/// One recording: its channels, its file, and the thread that encodes. Every member may be called from any
/// thread.
///
/// The thread holds a reference to the recording, so that a finish that was asked for completes whoever lets
/// go of it.
class Recording : public std::enable_shared_from_this<Recording> {
public:
    using Status = AssetWriterStatus;

    explicit Recording(std::string path) : m_path(std::move(path)) {}

    void SetTags(const std::vector<MetadataItem>& items);
    void Add(const std::shared_ptr<Channel>& channel);
    bool Start();
    void StartSession(const Time& time);
    void Finish(std::function<void()> completion);
    /// Ends a recording that nobody finished: the file stays as it was recorded. Waits for the thread.
    void Abandon();

    [[nodiscard]] Status GetStatus() const;
    [[nodiscard]] std::string Reason() const;

private:
    enum class Order { None, Finish, Abandon };

    bool OpenLocked();
    [[nodiscard]] bool IsRealTimeLocked() const;
    bool OpenOnAThreadLocked();
    bool FailLocked(const std::string& reason);
    void Wake();
    [[nodiscard]] std::vector<std::shared_ptr<Channel>> Channels() const;

    /// \name The writer's thread
    void Run();
    Order WaitForWork();
    bool EncodeQueued();
    [[nodiscard]] std::optional<std::size_t> EarliestChannel() const;
    bool FlushWhenDue(std::size_t track);
    void Complete();
    /// Keeps the first reason; the status follows when the channels are closed, by End.
    bool Fail(const std::string& reason);
    void End(Status status);

    const std::string m_path;
    MovieFile m_file;   ///< the thread's once it runs
    DiskSync m_diskSync;
    std::vector<std::shared_ptr<Channel>> m_channels;   ///< fixed by the start
    std::vector<std::unique_ptr<TrackWriter>> m_tracks;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Status m_status = Status::Unknown;
    std::string m_reason;
    bool m_inSession = false;
    bool m_work = false;
    bool m_ended = false;   ///< the thread has done all but call the completions
    Order m_order = Order::None;
    std::vector<std::function<void()>> m_completions;
    std::thread m_thread;
};

}   // namespace QZ::Platform::Movie
