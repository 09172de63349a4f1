// SPDX-License-Identifier: MIT
// The part of a recording that runs on the writer's own thread.
#include <algorithm>
#include <utility>

#include "QZ/Platform/MovieWriter/Recording.h"

namespace QZ::Platform::Movie {

namespace {
// Samples wait at most so long for a picture, behind which a fragment ends.
constexpr double kLongestFragment = 0.5;

// The index that opens the file waits so long for the formats of tracks that pass through.
constexpr double kLongestOpening = 1.0;
}   // namespace

void Recording::Run()
{
    while (true) {
        const Order order = WaitForWork();
        if (order == Order::Abandon)
            break;
        if (!EncodeQueued())
            return End(Status::Failed);
        if (order == Order::Finish)
            return Complete();
    }
    m_file.Flush();
    End(Status::Failed);
}

Recording::Order Recording::WaitForWork()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_work || m_order != Order::None; });
    m_work = false;
    return m_order;
}

std::optional<std::size_t> Recording::EarliestChannel() const
{
    std::optional<std::size_t> earliest;
    std::optional<Time> earliestTime;
    for (std::size_t i = 0; i < m_channels.size(); ++i) {
        const std::optional<Time> time = m_channels[i]->NextTime();
        if (time && (!earliestTime || CompareTime(*time, *earliestTime) < 0)) {
            earliest = i;
            earliestTime = time;
        }
    }
    return earliest;
}

bool Recording::EncodeQueued()
{
    while (const std::optional<std::size_t> channel = EarliestChannel()) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_order == Order::Abandon)
                return true;
        }
        const std::optional<QueuedSample> sample = m_channels[*channel]->Take();
        if (!sample)
            continue;
        if (!m_tracks[*channel]->Write(*sample)) {
            m_file.Flush();
            return Fail(m_tracks[*channel]->Reason());
        }
        if (!FlushWhenDue(*channel))
            return false;
    }
    return true;
}

bool Recording::FlushWhenDue(std::size_t track)
{
    const std::vector<Track>& tracks = m_file.movie.tracks;
    const bool described = std::all_of(tracks.begin(), tracks.end(),
                                       [](const Track& each) { return !each.sampleEntry.empty(); });
    const double waited = m_file.PendingSeconds();
    const bool mayOpen = m_file.IsOpened() || described || waited >= kLongestOpening;
    const bool due = tracks[track].media == Media::Video || waited >= kLongestFragment;
    return !mayOpen || !due || m_file.Flush() || Fail(m_file.Reason());
}

void Recording::Complete()
{
    for (const std::unique_ptr<TrackWriter>& track : m_tracks) {
        if (!track->Finish()) {
            m_file.Flush();
            Fail(track->Reason());
            return End(Status::Failed);
        }
    }
    m_diskSync.Stop();
    if (m_file.Finish())
        return End(Status::Completed);
    Fail(m_file.Reason());
    End(Status::Failed);
}

bool Recording::Fail(const std::string& reason)
{
    const std::lock_guard lock(m_mutex);
    if (m_reason.empty())
        m_reason = reason;
    return false;
}

/// Lets go of everything, and then of who waits. Until Finish is called, a failed recording keeps its thread
/// for it.
void Recording::End(Status status)
{
    for (const std::shared_ptr<Channel>& channel : m_channels)
        channel->Stop();
    m_tracks.clear();
    m_diskSync.Stop();
    m_file.Abandon();
    std::vector<std::function<void()>> completions;
    {
        const std::lock_guard lock(m_mutex);
        m_status = status;
        if (status == Status::Failed && m_reason.empty())
            m_reason = "the movie was abandoned";
        m_ended = true;
        completions.swap(m_completions);
    }
    for (const std::shared_ptr<Channel>& channel : m_channels)
        channel->AskForMore();
    for (const std::function<void()>& completion : completions)
        completion();
}

}   // namespace QZ::Platform::Movie
