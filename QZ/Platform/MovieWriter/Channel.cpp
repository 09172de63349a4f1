// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/Channel.h"

#include <numeric>
#include <utility>

#include "QZ/Platform/DispatchQueue.h"
#include "QZ/Platform/MovieWriter/TrackFormats.h"

namespace QZ::Platform::Movie {

namespace {
constexpr std::size_t kMiB = std::size_t{1} << 20;

struct Capacity {
    std::size_t samples, bytes, always;   ///< `always`: so many are taken whatever their size
};
constexpr Capacity kPictures = {12, 96 * kMiB, 2};
constexpr Capacity kBuffers = {128, 4 * kMiB, 1};

std::size_t SizeOf(const QueuedSample& sample)
{
    if (sample.buffer)
        return sample.buffer->bytes.size();
    return static_cast<std::size_t>(sample.picture->BytesPerRow()) *
           static_cast<std::size_t>(sample.picture->Height());
}
}   // namespace

void Channel::SetRealTime(bool realTime)
{
    const std::lock_guard lock(m_mutex);
    if (!m_started)
        m_settings.realTime = realTime;
}

void Channel::SetTransform(const AffineTransform& transform)
{
    const std::lock_guard lock(m_mutex);
    if (!m_started)
        m_settings.transform = transform;
}

void Channel::SetSource(const PixelBufferAttributes& attributes)
{
    const std::lock_guard lock(m_mutex);
    if (!m_started)
        m_settings.source = attributes;
}

bool Channel::Attach(std::function<void()> wake)
{
    const std::lock_guard lock(m_mutex);
    if (m_wake)
        return false;
    m_wake = std::move(wake);
    return true;
}

void Channel::Start()
{
    const std::lock_guard lock(m_mutex);
    m_started = true;
}

ChannelSettings Channel::Settings() const
{
    const std::lock_guard lock(m_mutex);
    return m_settings;
}

bool Channel::IsReadyLocked() const
{
    if (!m_started || m_finished)
        return false;
    if (m_stopped)
        return true;
    const Capacity& capacity = m_settings.type == MediaType::Video ? kPictures : kBuffers;
    return m_samples.size() < capacity.always ||
           (m_samples.size() < capacity.samples && m_bytes < capacity.bytes);
}

bool Channel::IsReady() const
{
    const std::lock_guard lock(m_mutex);
    return IsReadyLocked();
}

bool Channel::SuitsLocked(const QueuedSample& sample) const
{
    if (!IsNumeric(sample.time) || (m_lastTime && CompareTime(sample.time, *m_lastTime) <= 0))
        return false;
    if (sample.picture) {
        return m_settings.type == MediaType::Video && sample.picture->Width() == m_settings.source.width &&
               sample.picture->Height() == m_settings.source.height;
    }
    return sample.buffer && SuitsTrack(m_settings, *sample.buffer) &&
           (!m_format || *sample.buffer->format == *m_format);
}

bool Channel::Append(QueuedSample sample)
{
    std::function<void()> wake;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_inSession || m_stopped || !IsReadyLocked() || !SuitsLocked(sample))
            return false;
        m_lastTime = sample.time;
        if (sample.buffer)
            m_format = sample.buffer->format;
        m_bytes += SizeOf(sample);
        m_samples.push_back(std::move(sample));
        wake = m_wake;
    }
    wake();
    return true;
}

void Channel::Finish()
{
    Block released;
    const std::lock_guard lock(m_mutex);
    m_finished = true;
    // Released behind the lock: it may hold the last reference to objects that call back.
    released.swap(m_block);
}

std::shared_ptr<PixelBufferPool> Channel::Pool()
{
    const std::lock_guard lock(m_mutex);
    if (m_started && !m_pool)
        m_pool = PixelBufferPool::Create(m_settings.source);
    return m_pool;
}

void Channel::Request(std::shared_ptr<DispatchQueue> queue, std::function<void()> block)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_finished || !queue || !block)
            return;
        m_queue = std::move(queue);
        m_block = std::make_shared<std::function<void()>>(std::move(block));
    }
    AskForMore();
}

void Channel::AskForMore()
{
    Block block;
    std::shared_ptr<DispatchQueue> queue;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_block || m_asking || !m_inSession || !IsReadyLocked())
            return;
        if (m_stopped && std::exchange(m_askedSinceStop, true))
            return;
        m_asking = true;
        block = m_block;
        queue = m_queue;
    }
    queue->Async([self = shared_from_this(), block = std::move(block)]() mutable {
        self->RunBlock(block);
        block.reset();
        self->AskForMore();
    });
}

void Channel::RunBlock(const Block& block)
{
    bool wanted = false;
    {
        const std::lock_guard lock(m_mutex);
        wanted = m_block == block && IsReadyLocked();
    }
    if (wanted)
        (*block)();
    const std::lock_guard lock(m_mutex);
    m_asking = false;
}

void Channel::Open()
{
    {
        const std::lock_guard lock(m_mutex);
        m_inSession = true;
    }
    AskForMore();
}

void Channel::Close()
{
    Finish();
    Stop();
}

void Channel::Stop()
{
    std::deque<QueuedSample> dropped;
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
    dropped.swap(m_samples);
    m_bytes = 0;
}

std::optional<Time> Channel::NextTime() const
{
    const std::lock_guard lock(m_mutex);
    return m_samples.empty() ? std::nullopt : std::optional(m_samples.front().time);
}

std::optional<QueuedSample> Channel::Take()
{
    std::optional<QueuedSample> sample;
    {
        const std::lock_guard lock(m_mutex);
        if (m_samples.empty())
            return std::nullopt;
        sample = std::move(m_samples.front());
        m_samples.pop_front();
        m_bytes -= SizeOf(*sample);
    }
    AskForMore();
    return sample;
}

}   // namespace QZ::Platform::Movie
