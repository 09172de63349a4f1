// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/Recording.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace QZ::Platform::Movie {

namespace {
Media MediaOf(MediaType type)
{
    switch (type) {
        case MediaType::Video:
            return Media::Video;
        case MediaType::Audio:
            return Media::Audio;
        case MediaType::Metadata:
            break;
    }
    return Media::Metadata;
}

/// The calling thread, and every one that it creates, no longer interrupts the thread that wakes it: who
/// appends a picture to an idle writer goes on at once, even where no processor is free.
void YieldToWhoWakes()
{
    const sched_param ordinary = {};
    // Without it recordings work all the same.
    [[maybe_unused]] const int refused = ::pthread_setschedparam(::pthread_self(), SCHED_BATCH, &ordinary);
}

std::uint32_t VideoTrackId(const std::vector<Track>& tracks)
{
    const auto video = std::find_if(tracks.begin(), tracks.end(),
                                    [](const Track& track) { return track.media == Media::Video; });
    return video == tracks.end() ? 0 : video->id;
}
}   // namespace

void Recording::SetTags(const std::vector<MetadataItem>& items)
{
    const std::lock_guard lock(m_mutex);
    if (m_status != Status::Unknown)
        return;
    m_file.movie.tags.clear();
    for (const MetadataItem& item : items)
        m_file.movie.tags.emplace_back(item.key, item.value);
}

void Recording::Add(const std::shared_ptr<Channel>& channel)
{
    const std::lock_guard lock(m_mutex);
    if (m_status != Status::Unknown)
        return;
    const auto wake = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->Wake();
    };
    if (channel->Attach(wake))
        m_channels.push_back(channel);
}

bool Recording::FailLocked(const std::string& reason)
{
    m_status = Status::Failed;
    m_reason = reason;
    return false;
}

bool Recording::OpenLocked()
{
    std::vector<Track>& tracks = m_file.movie.tracks;
    tracks.resize(m_channels.size());
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        tracks[i].media = MediaOf(m_channels[i]->Settings().type);
        tracks[i].id = static_cast<std::uint32_t>(i + 1);
    }
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (tracks[i].media == Media::Metadata)
            tracks[i].describedTrack = VideoTrackId(tracks);
        m_tracks.push_back(TrackWriter::Make(m_channels[i]->Settings(), m_file, i));
        if (!m_tracks.back()->Open())
            return FailLocked(m_tracks.back()->Reason());
    }
    return m_file.Create(m_path) || FailLocked(m_file.Reason());
}

/// Whether samples come in real time, so that who appends them must not be interrupted.
bool Recording::IsRealTimeLocked() const
{
    return std::any_of(m_channels.begin(), m_channels.end(),
                       [](const auto& channel) { return channel->Settings().realTime; });
}

/// Opens the encoders and the file, on a thread whose scheduling the encoders' own threads inherit.
bool Recording::OpenOnAThreadLocked()
{
    bool opened = false;
    std::thread([this, &opened] {
        if (IsRealTimeLocked())
            YieldToWhoWakes();
        opened = OpenLocked();
    }).join();
    return opened;
}

bool Recording::Start()
{
    const std::lock_guard lock(m_mutex);
    if (m_status != Status::Unknown || m_order != Order::None)
        return false;
    if (m_channels.empty())
        return FailLocked("a movie needs at least one track");
    try {
        if (!OpenOnAThreadLocked())
            return false;
        m_diskSync.Start(m_file.Descriptor());
        m_thread = std::thread([self = shared_from_this(), realTime = IsRealTimeLocked()] {
            if (realTime)
                YieldToWhoWakes();
            self->Run();
        });
    } catch (const std::system_error& error) {
        m_diskSync.Stop();
        m_file.Abandon();
        return FailLocked(std::string("no thread for the movie writer: ") + error.what());
    }
    m_status = Status::Writing;
    for (const std::shared_ptr<Channel>& channel : m_channels)
        channel->Start();
    return true;
}

void Recording::StartSession(const Time& time)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_status != Status::Writing || m_order != Order::None || m_inSession || !IsNumeric(time))
            return;
        m_inSession = true;
        // No sample can be queued before the channels open, so the thread does not read this yet.
        m_file.movie.sessionStart = MomentOf(time);
    }
    for (const std::shared_ptr<Channel>& channel : m_channels)
        channel->Open();
}

void Recording::Wake()
{
    {
        const std::lock_guard lock(m_mutex);
        m_work = true;
    }
    m_changed.notify_all();
}

void Recording::Finish(std::function<void()> completion)
{
    if (!completion)
        completion = [] {};
    for (const std::shared_ptr<Channel>& channel : Channels())
        channel->Finish();
    std::unique_lock lock(m_mutex);
    if (m_status == Status::Unknown)
        FailLocked("the movie was finished before it was started");
    if (m_thread.joinable() && !m_ended && m_order != Order::Abandon) {
        m_completions.push_back(std::move(completion));
        m_order = Order::Finish;
        m_changed.notify_all();
        return;
    }
    lock.unlock();
    std::thread(std::move(completion)).detach();
}

std::vector<std::shared_ptr<Channel>> Recording::Channels() const
{
    const std::lock_guard lock(m_mutex);
    return m_channels;
}

void Recording::Abandon()
{
    std::thread thread;
    bool finishing = false;
    {
        const std::lock_guard lock(m_mutex);
        thread.swap(m_thread);
        finishing = m_order == Order::Finish;
        if (!finishing)
            m_order = Order::Abandon;
    }
    m_changed.notify_all();
    if (!finishing)
        for (const std::shared_ptr<Channel>& channel : Channels())
            channel->Close();
    if (!thread.joinable())
        return;
    // A finish runs on by itself; and the completion, which may hold the last reference, runs on this very
    // thread.
    if (finishing || thread.get_id() == std::this_thread::get_id()) {
        thread.detach();
    } else {
        thread.join();
    }
}

Recording::Status Recording::GetStatus() const
{
    const std::lock_guard lock(m_mutex);
    return m_status;
}

std::string Recording::Reason() const
{
    const std::lock_guard lock(m_mutex);
    return m_reason;
}

}   // namespace QZ::Platform::Movie
