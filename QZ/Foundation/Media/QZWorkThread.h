// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "QZ/Export.h"

/// A queue of shared objects, first in first out. Not locked.
template <class T>
class QZQueue {
public:
    /// Appends an object; null is ignored.
    void pushObject(std::shared_ptr<T> object)
    {
        if (object)
            m_objects.push_back(std::move(object));
    }
    /// Puts an object ahead of all others; null is ignored.
    void pushObjectFirst(std::shared_ptr<T> object)
    {
        if (object)
            m_objects.push_front(std::move(object));
    }
    /// Removes the first object. \return it, or null when the queue is empty.
    std::shared_ptr<T> popObject()
    {
        if (m_objects.empty())
            return nullptr;
        std::shared_ptr<T> object = std::move(m_objects.front());
        m_objects.pop_front();
        return object;
    }
    /// Removes every entry of the very same object.
    void removeObject(const T* object)
    {
        std::erase_if(m_objects, [object](const auto& entry) { return entry.get() == object; });
    }
    [[nodiscard]] std::size_t count() const { return m_objects.size(); }

private:
    std::deque<std::shared_ptr<T>> m_objects;
};

/// A piece of work for a QZWorkThread. Its state may be read and set from any thread.
class QZ_API QZThreadUnitOfWork {
public:
    QZThreadUnitOfWork() = default;
    virtual ~QZThreadUnitOfWork();
    QZThreadUnitOfWork(const QZThreadUnitOfWork&) = delete;
    QZThreadUnitOfWork& operator=(const QZThreadUnitOfWork&) = delete;

    /// What is to be done; nothing in this class.
    virtual void work();

    /// 0: queued; 1: done; 2: idle, as at first. A unit whose turn comes runs only in state 0: setting
    /// another state cancels it. A work thread sets it with its queues locked: an override calls no member
    /// of the thread.
    [[nodiscard]] virtual int state() const;
    virtual void setState(int state);

private:
    std::atomic<int> m_state = 2;
};

/// The order to a work thread to end: the thread that meets one does its work and ends.
class QZ_API QZStopThreadUnitOfWork : public QZThreadUnitOfWork {
public:
    /// \param unitOfWork  run as the thread's last act; may be null, and is not kept alive.
    explicit QZStopThreadUnitOfWork(QZThreadUnitOfWork* unitOfWork);
    /// Runs the wrapped unit, whatever its state, and leaves that as it is.
    void work() override;

private:
    QZThreadUnitOfWork* const m_unitOfWork;
};

/// A thread that runs units of work from two queues, one at a time.
///
/// While both queues hold work they take turns, the high-priority one first. A target hears on the main
/// thread (see Platform::MainQueue) when the thread goes idle and when it is busy again.
///
/// Any thread may call any member, but a unit's work must not call stop, remove or removeAllUnitsOfWork of
/// the thread that runs it: they would wait for themselves. Nor may it wait for a thread that is in one of
/// these, such as the main thread.
/// \code
///     QZWorkThread thread;
///     thread.setWorkingTarget(&spinner, &Spinner::show);   // void Spinner::show(bool working)
///     thread.start();
///     thread.add(std::make_shared<Thumbnail>(path), false);
/// \endcode
class QZ_API QZWorkThread {
public:
    QZWorkThread() = default;
    /// Stops, and lets go of the units. Messages that are still on their way are dropped.
    ~QZWorkThread();
    QZWorkThread(const QZWorkThread&) = delete;
    QZWorkThread& operator=(const QZWorkThread&) = delete;

    /// Has `selector` of `target` called on the main thread: with false each time the thread is about to
    /// sleep, with true when it wakes to work after having slept.
    ///
    /// The target is not kept alive. Before it dies, call this with null on the main thread, or destroy the
    /// work thread there: messages to the former target that are still on their way are dropped then.
    template <class T>
    void setWorkingTarget(T* target, void (T::*selector)(bool working))
    {
        if (target && selector)
            setWorkingFunction([target, selector](bool working) { (target->*selector)(working); });
        else
            setWorkingFunction(nullptr);
    }
    /// No target.
    void setWorkingTarget(std::nullptr_t) { setWorkingFunction(nullptr); }

    /// The unit that runs first on every start; null for none.
    void startUnitOfWork(std::shared_ptr<QZThreadUnitOfWork> unit);
    /// The unit that runs last on every stop, whatever its state; null for none.
    void stopUnitOfWork(std::shared_ptr<QZThreadUnitOfWork> unit);

    /// Starts the thread; nothing when it is started.
    void start();
    /// Ends the thread after the unit that it is running (or one more, of low priority, whose turn it is),
    /// and waits for that; nothing when it is not started. What is queued stays and runs after the next
    /// start.
    void stop();

    /// Queues a unit and sets its state to 0; null is ignored. A unit that is queued twice runs once, unless
    /// its state is set to 0 again in between.
    void add(std::shared_ptr<QZThreadUnitOfWork> unit, bool highPriority);

    /// Removes every entry of a unit from the queues; its state stays. A started thread is stopped for it and
    /// started again, so that the stop unit and the start unit run; callers rely on it.
    void remove(const std::shared_ptr<QZThreadUnitOfWork>& unit);
    /// The same for all units.
    void removeAllUnitsOfWork();

private:
    using UnitPointer = std::shared_ptr<QZThreadUnitOfWork>;
    using WorkingFunction = std::function<void(bool)>;

    void setWorkingFunction(WorkingFunction function);
    void theMain();
    UnitPointer nextUnit(bool& lowIsNext, bool& wasIdle);
    void postWorking(bool working, std::unique_lock<std::mutex>& lock) const;
    [[nodiscard]] bool hasWork() const
    {
        return m_lowPriorityQueue.count() + m_highPriorityQueue.count() > 0;
    }
    template <class Change>
    void changeQueues(Change change);

    std::recursive_mutex
        m_controlMutex;   ///< one start, stop or removal at a time; taken before m_queueMutex
    std::atomic<bool> m_threadStarted = false;
    std::thread m_thread;

    std::mutex m_queueMutex;   ///< guards what follows
    std::condition_variable m_queueCondition;
    QZQueue<QZThreadUnitOfWork> m_lowPriorityQueue;
    QZQueue<QZThreadUnitOfWork> m_highPriorityQueue;
    std::shared_ptr<const WorkingFunction> m_working;   ///< messages hold it weakly
    UnitPointer m_startUnitOfWork;
    UnitPointer m_stopUnitOfWork;
};
