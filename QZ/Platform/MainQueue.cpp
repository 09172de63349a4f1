// SPDX-License-Identifier: MIT
#include "QZ/Platform/MainQueue.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

namespace QZ::Platform {

namespace {

using Clock = std::chrono::steady_clock;

/// Taken while the library is loaded, which is the host's main thread but for odd hosts.
const std::thread::id kLoadingThread = std::this_thread::get_id();

}   // namespace

struct MainQueue::State {
    std::atomic<std::thread::id> mainThread = kLoadingThread;
    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::function<void()>> waiting;
    std::mutex handlerMutex;
    std::function<void()> wakeHandler;
};

MainQueue::MainQueue() : m_state(std::make_unique<State>())
{}
MainQueue::~MainQueue() = default;

MainQueue& MainQueue::Shared()
{
    static MainQueue& queue = *new MainQueue;
    return queue;
}

void MainQueue::Post(std::function<void()> function)
{
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->waiting.push_back(std::move(function));
    }
    m_state->arrived.notify_all();
    const std::lock_guard lock(m_state->handlerMutex);
    if (m_state->wakeHandler)
        m_state->wakeHandler();
}

void MainQueue::Sync(const std::function<void()>& function)
{
    if (IsMainThread()) {
        function();
        return;
    }
    // Shared with the queue: it may let go of the task after this thread has gone on.
    const auto task = std::make_shared<std::packaged_task<void()>>(function);
    std::future<void> done = task->get_future();
    Post([task] { (*task)(); });
    done.get();
}

bool MainQueue::IsMainThread() const
{
    return std::this_thread::get_id() == m_state->mainThread.load();
}

void MainQueue::BindToCurrentThread()
{
    m_state->mainThread = std::this_thread::get_id();
}

bool MainQueue::RunNext()
{
    std::unique_lock lock(m_state->mutex);
    if (m_state->waiting.empty())
        return false;
    const std::function<void()> function = std::move(m_state->waiting.front());
    m_state->waiting.pop_front();
    lock.unlock();
    if (function)
        function();
    return true;
}

std::size_t MainQueue::Drain()
{
    std::size_t queued = 0;
    {
        const std::lock_guard lock(m_state->mutex);
        queued = m_state->waiting.size();
    }
    std::size_t run = 0;
    while (run < queued && RunNext())
        ++run;
    return run;
}

bool MainQueue::RunUntil(const std::function<bool()>& done, std::chrono::nanoseconds timeout)
{
    constexpr std::chrono::milliseconds kAskAgain(10);
    const Clock::time_point start = Clock::now();
    while (!done()) {
        if (RunNext())
            continue;
        const Clock::duration left = timeout - (Clock::now() - start);
        if (left <= Clock::duration::zero())
            return false;
        std::unique_lock lock(m_state->mutex);
        m_state->arrived.wait_for(lock, std::min<Clock::duration>(left, kAskAgain),
                                  [this] { return !m_state->waiting.empty(); });
    }
    return true;
}

void MainQueue::SetWakeHandler(std::function<void()> handler)
{
    const std::lock_guard lock(m_state->handlerMutex);
    m_state->wakeHandler = std::move(handler);
}

}   // namespace QZ::Platform
