// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZWorkThread.h"

#include <vector>

#include "QZ/Platform/MainQueue.h"

QZThreadUnitOfWork::~QZThreadUnitOfWork() = default;

void QZThreadUnitOfWork::work()
{}

int QZThreadUnitOfWork::state() const
{
    return m_state;
}

void QZThreadUnitOfWork::setState(int state)
{
    m_state = state;
}

QZStopThreadUnitOfWork::QZStopThreadUnitOfWork(QZThreadUnitOfWork* unitOfWork) : m_unitOfWork(unitOfWork)
{}

void QZStopThreadUnitOfWork::work()
{
    if (m_unitOfWork)
        m_unitOfWork->work();
}

QZWorkThread::~QZWorkThread()
{
    stop();
    removeAllUnitsOfWork();
}

void QZWorkThread::setWorkingFunction(WorkingFunction function)
{
    const std::lock_guard lock(m_queueMutex);
    m_working = function ? std::make_shared<const WorkingFunction>(std::move(function)) : nullptr;
}

void QZWorkThread::startUnitOfWork(UnitPointer unit)
{
    const std::lock_guard lock(m_queueMutex);
    m_startUnitOfWork.swap(unit);
}

void QZWorkThread::stopUnitOfWork(UnitPointer unit)
{
    const std::lock_guard lock(m_queueMutex);
    m_stopUnitOfWork.swap(unit);
}

void QZWorkThread::start()
{
    if (m_threadStarted)   // without the lock: a unit may ask while another thread waits for it in stop
        return;
    const std::lock_guard control(m_controlMutex);
    if (m_threadStarted)
        return;
    {
        const std::lock_guard lock(m_queueMutex);
        if (m_startUnitOfWork) {
            m_startUnitOfWork->setState(0);
            m_highPriorityQueue.pushObjectFirst(m_startUnitOfWork);
        }
    }
    m_thread = std::thread([this] { theMain(); });
    m_threadStarted = true;
}

void QZWorkThread::stop()
{
    const std::lock_guard control(m_controlMutex);
    if (!m_threadStarted)
        return;
    UnitPointer stopUnit, order;
    {
        const std::lock_guard lock(m_queueMutex);
        stopUnit = m_stopUnitOfWork;
        if (stopUnit)
            stopUnit->setState(0);
        order = std::make_shared<QZStopThreadUnitOfWork>(stopUnit.get());
        m_highPriorityQueue.pushObjectFirst(order);
    }
    m_queueCondition.notify_one();
    m_thread.join();   // no wake-up can be mistaken for the end
    {
        const std::lock_guard lock(m_queueMutex);
        m_highPriorityQueue.removeObject(
            order.get());   // there still, when a stop order of the host's came first
    }
    m_threadStarted = false;
}

void QZWorkThread::add(UnitPointer unit, bool highPriority)
{
    if (!unit)
        return;
    {
        const std::lock_guard lock(m_queueMutex);
        unit->setState(0);
        (highPriority ? m_highPriorityQueue : m_lowPriorityQueue).pushObject(std::move(unit));
    }
    m_queueCondition.notify_one();
}

/// Changes the queues while no thread runs, and starts it again if one did.
template <class Change>
void QZWorkThread::changeQueues(Change change)
{
    const std::lock_guard control(m_controlMutex);
    const bool wasStarted = m_threadStarted;
    stop();
    {
        const std::lock_guard lock(m_queueMutex);
        change(m_lowPriorityQueue);
        change(m_highPriorityQueue);
    }
    if (wasStarted)
        start();
}

void QZWorkThread::remove(const UnitPointer& unit)
{
    changeQueues([&unit](QZQueue<QZThreadUnitOfWork>& queue) { queue.removeObject(unit.get()); });
}

void QZWorkThread::removeAllUnitsOfWork()
{
    std::vector<UnitPointer> removed;   // let go of without a lock: a unit's destructor may add others
    changeQueues([&removed](QZQueue<QZThreadUnitOfWork>& queue) {
        while (UnitPointer unit = queue.popObject())
            removed.push_back(std::move(unit));
    });
}

void QZWorkThread::theMain()
{
    bool lowIsNext = false, wasIdle = false;
    for (;;) {
        const UnitPointer unit = nextUnit(lowIsNext, wasIdle);
        if (dynamic_cast<QZStopThreadUnitOfWork*>(unit.get())) {
            unit->work();
            return;
        }
        if (unit->state() == 0) {
            unit->work();
            unit->setState(1);
        }
    }
}

/// Waits for work and takes the unit whose turn it is. While both queues hold work they take turns; a queue
/// that was served alone leaves the next turn to the other.
QZWorkThread::UnitPointer QZWorkThread::nextUnit(bool& lowIsNext, bool& wasIdle)
{
    std::unique_lock lock(m_queueMutex);
    while (!hasWork()) {
        postWorking(false, lock);
        wasIdle = true;
        if (!hasWork())
            m_queueCondition.wait(lock);
    }
    if (wasIdle && m_working) {
        postWorking(true, lock);
        wasIdle = false;
    }
    const bool both = m_lowPriorityQueue.count() > 0 && m_highPriorityQueue.count() > 0;
    const bool low = both ? lowIsNext : m_lowPriorityQueue.count() > 0;
    lowIsNext = !low;
    return (low ? m_lowPriorityQueue : m_highPriorityQueue).popObject();
}

/// With m_queueMutex held, and let go of meanwhile: posting runs the main queue's wake handler, which is the
/// host's and may want the queues, or a lock behind which another thread wants them. Units may arrive, but
/// none goes: only this thread takes them.
void QZWorkThread::postWorking(bool working, std::unique_lock<std::mutex>& lock) const
{
    if (!m_working)
        return;
    const std::weak_ptr message = m_working;
    lock.unlock();
    QZ::Platform::MainQueue::Shared().Post([message, working] {
        if (const auto function = message.lock())
            (*function)(working);
    });
    lock.lock();
}
