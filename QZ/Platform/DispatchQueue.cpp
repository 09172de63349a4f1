// SPDX-License-Identifier: MIT
#include "QZ/Platform/DispatchQueue.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

namespace QZ::Platform {

DispatchQueue::~DispatchQueue() = default;

namespace {

using Function = std::function<void()>;

/// Threads, each of which runs one function after another: as many as there are functions at a time.
class ThreadPool {
public:
    /// Never destroyed: its threads may run until the process ends.
    static ThreadPool& Shared()
    {
        static ThreadPool& pool = *new ThreadPool;
        return pool;
    }

    void Run(Function function)
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(function));
        if (m_idle >= m_waiting.size())
            m_arrived.notify_one();
        else
            std::thread([this] { Work(); }).detach();
    }

private:
    void Work()
    {
        std::unique_lock lock(m_mutex);
        while (WaitForFunction(lock)) {
            Function function = std::move(m_waiting.front());
            m_waiting.pop_front();
            lock.unlock();
            function();
            function = nullptr;   // what it holds is released outside the lock
            lock.lock();
        }
    }

    bool WaitForFunction(std::unique_lock<std::mutex>& lock)
    {
        constexpr std::chrono::seconds kIdleTime(5);
        ++m_idle;
        const bool found = m_arrived.wait_for(lock, kIdleTime, [this] { return !m_waiting.empty(); });
        --m_idle;
        return found;
    }

    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::deque<Function> m_waiting;
    std::size_t m_idle = 0;   ///< threads in WaitForFunction
};

class GlobalQueue final : public DispatchQueue {
public:
    void Async(Function function) override { ThreadPool::Shared().Run(std::move(function)); }
    void Sync(const Function& function) override { function(); }   // nothing to wait for
    const std::string& Label() const override { return m_label; }

private:
    const std::string m_label = "global";
};

/// What a serial queue shares with the thread that works for it, so that this outlives the queue.
class SerialLine : public std::enable_shared_from_this<SerialLine> {
public:
    void Add(Function function)
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(function));
        if (!std::exchange(m_working, true))
            ThreadPool::Shared().Run([self = shared_from_this()] { self->Work(); });
    }

private:
    void Work()
    {
        while (Function function = Next())
            function();
    }

    /// The first in line; an empty one, and the end of the work, when there is none.
    Function Next()
    {
        const std::lock_guard lock(m_mutex);
        if (m_waiting.empty()) {
            m_working = false;
            return nullptr;
        }
        Function function = std::move(m_waiting.front());
        m_waiting.pop_front();
        return function;
    }

    std::mutex m_mutex;
    std::deque<Function> m_waiting;
    bool m_working = false;
};

class SerialQueue final : public DispatchQueue {
public:
    explicit SerialQueue(std::string label) : m_label(std::move(label)) {}

    void Async(Function function) override
    {
        if (function)
            m_line->Add(std::move(function));
    }

    void Sync(const Function& function) override
    {
        // Shared with the line: it may let go of the task after this thread has gone on.
        const auto task = std::make_shared<std::packaged_task<void()>>(function);
        std::future<void> done = task->get_future();
        m_line->Add([task] { (*task)(); });
        done.get();
    }

    const std::string& Label() const override { return m_label; }

private:
    const std::string m_label;
    const std::shared_ptr<SerialLine> m_line = std::make_shared<SerialLine>();
};

}   // namespace

std::shared_ptr<DispatchQueue> DispatchQueue::Serial(std::string label)
{
    return std::make_shared<SerialQueue>(std::move(label));
}

std::shared_ptr<DispatchQueue> DispatchQueue::Global()
{
    static const auto& queue = *new std::shared_ptr<DispatchQueue>(std::make_shared<GlobalQueue>());
    return queue;
}

}   // namespace QZ::Platform
