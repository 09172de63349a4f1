// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

namespace QZ::Platform::Movie {

/// Asks the disk once a second to store what was written to a file, on a thread of its own, so that a power
/// failure costs about as much as the death of the process and the encoder never waits for a slow disk.
class DiskSync {
public:
    DiskSync() = default;
    ~DiskSync() { Stop(); }
    DiskSync(const DiskSync&) = delete;
    DiskSync& operator=(const DiskSync&) = delete;

    /// The descriptor stays open until Stop returns. May throw std::system_error when no thread can be had.
    void Start(int descriptor);
    void Stop();

private:
    void Run(int descriptor);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopped = false;
    std::thread m_thread;
};

}   // namespace QZ::Platform::Movie
