// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/DiskSync.h"

#include <unistd.h>

#include <chrono>

namespace QZ::Platform::Movie {

void DiskSync::Start(int descriptor)
{
    m_thread = std::thread([this, descriptor] { Run(descriptor); });
}

void DiskSync::Stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void DiskSync::Run(int descriptor)
{
    std::unique_lock lock(m_mutex);
    while (!m_changed.wait_for(lock, std::chrono::seconds(1), [this] { return m_stopped; })) {
        lock.unlock();
        // A failure shows again at the next write or at the end, where it is reported.
        [[maybe_unused]] const int synced = ::fdatasync(descriptor);
        lock.lock();
    }
}

}   // namespace QZ::Platform::Movie
