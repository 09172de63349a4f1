// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

#include "QZ/Export.h"

namespace QZ::Platform {

/// The functions that wait to be run on the host's main thread.
///
/// The library never runs them by itself: the host calls Drain where its event loop comes round, or RunUntil
/// where it has none. Exceptions of a function reach who drains (or, of a synchronous one, who waits); the
/// rest stays queued.
/// \code
///     Platform::MainQueue& queue = Platform::MainQueue::Shared();
///     queue.SetWakeHandler([&loop] { loop.WakeUp(); });   // from any thread: make the loop come round
///     while (loop.WaitForEvent())
///         queue.Drain();
/// \endcode
class QZ_API MainQueue {
public:
    /// The one queue. It is never destroyed.
    [[nodiscard]] static MainQueue& Shared();
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;

    /// Queues a function behind those that wait, and returns. From any thread, the main one included.
    void Post(std::function<void()> function);

    /// Runs a function on the main thread and returns when it has run: at once when called there, ahead of
    /// what is queued, and otherwise behind it. From another thread this waits for as long as nobody drains.
    void Sync(const std::function<void()>& function);

    /// Whether this is the main thread: the one bound last or, before any was, the one that loaded the
    /// library.
    [[nodiscard]] bool IsMainThread() const;
    /// Makes the calling thread the main one.
    void BindToCurrentThread();

    /// Runs the functions that were queued when it was called, in order. On the main thread only: elsewhere,
    /// and inside another call of Drain on the same functions, each still runs once.
    /// \return  how many have run.
    std::size_t Drain();

    /// Drains, and waits for more, until `done` answers true. It is asked on the calling thread: first, after
    /// every function that has run, and at least every 10 ms.
    /// \return  false when `timeout` passed first.
    bool RunUntil(const std::function<bool()>& done, std::chrono::nanoseconds timeout);

    /// Has `handler` called after every Post, on the posting thread, so that a host that sleeps in an event
    /// loop knows to drain; an empty function removes it. The handler must not call SetWakeHandler.
    void SetWakeHandler(std::function<void()> handler);

private:
    struct State;
    MainQueue();
    ~MainQueue();
    bool RunNext();

    const std::unique_ptr<State> m_state;
};

}   // namespace QZ::Platform
