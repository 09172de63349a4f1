// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZWorkThread.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <vector>

#include "QZ/Platform/MainQueue.h"

using QZ::Platform::MainQueue;
using namespace std::chrono_literals;

namespace {

/// What units write, in the order of their running.
class Log {
public:
    void Add(char name)
    {
        const std::lock_guard lock(m_mutex);
        m_text += name;
    }
    std::string Text() const
    {
        const std::lock_guard lock(m_mutex);
        return m_text;
    }
    void WaitFor(const std::string& text) const
    {
        const auto start = std::chrono::steady_clock::now();
        while (Text() != text) {
            ASSERT_LT(std::chrono::steady_clock::now() - start, 30s)
                << "have " << Text() << ", want " << text;
            std::this_thread::yield();
        }
    }

private:
    mutable std::mutex m_mutex;
    std::string m_text;
};

class LoggedUnit : public QZThreadUnitOfWork {
public:
    LoggedUnit(char name, Log& log) : m_name(name), m_log(log) {}
    void work() override { m_log.Add(m_name); }

private:
    const char m_name;
    Log& m_log;
};

/// Holds the thread until it is let go.
class Gate : public QZThreadUnitOfWork {
public:
    void work() override
    {
        m_reached.set_value();
        m_opened.get_future().wait();
    }
    void WaitUntilReached() { m_reached.get_future().wait(); }
    void Open() { m_opened.set_value(); }

private:
    std::promise<void> m_reached, m_opened;
};

struct Listener {
    std::vector<bool> heard;
    void Working(bool working)
    {
        EXPECT_TRUE(MainQueue::Shared().IsMainThread());
        heard.push_back(working);
    }
};

class QZWorkThreadTest : public testing::Test {
protected:
    QZWorkThreadTest()
    {
        while (MainQueue::Shared().Drain() > 0) {
        }
    }
    std::shared_ptr<LoggedUnit> Unit(char name) { return std::make_shared<LoggedUnit>(name, log); }
    void Low(char name) { thread.add(Unit(name), false); }
    void High(char name) { thread.add(Unit(name), true); }
    /// Calls stop on another thread, and returns once the order to stop is queued.
    std::thread BeginStop()
    {
        const std::shared_ptr<LoggedUnit> stopUnit = Unit('E');
        thread.stopUnitOfWork(stopUnit);
        std::thread stopping([this] { thread.stop(); });
        while (stopUnit->state() != 0)   // set together with the queueing of the order
            std::this_thread::yield();
        return stopping;
    }
    /// Has the thread wait in a unit, so that what is added meanwhile is all there at once.
    std::shared_ptr<Gate> Hold(bool highPriority)
    {
        auto gate = std::make_shared<Gate>();
        thread.add(gate, highPriority);
        gate->WaitUntilReached();
        return gate;
    }

    Log log;
    QZWorkThread thread;
};

}   // namespace

TEST(QZQueue, IsFirstInFirstOut)
{
    QZQueue<int> queue;
    EXPECT_EQ(queue.popObject(), nullptr);
    queue.pushObject(std::make_shared<int>(1));
    queue.pushObject(nullptr);
    queue.pushObject(std::make_shared<int>(2));
    EXPECT_EQ(queue.count(), 2u);
    EXPECT_EQ(*queue.popObject(), 1);
    EXPECT_EQ(*queue.popObject(), 2);
    EXPECT_EQ(queue.popObject(), nullptr);
}

TEST(QZThreadUnitOfWork, IsIdleAtFirst)
{
    QZThreadUnitOfWork unit;
    EXPECT_EQ(unit.state(), 2);
    unit.work();
    EXPECT_EQ(unit.state(), 2);
    EXPECT_EQ(QZStopThreadUnitOfWork(nullptr).state(), 2);
}

TEST(QZStopThreadUnitOfWork, RunsWhatItWrapsWhateverItsState)
{
    Log log;
    LoggedUnit wrapped('w', log);
    QZStopThreadUnitOfWork(&wrapped).work();
    EXPECT_EQ(log.Text(), "w");
    EXPECT_EQ(wrapped.state(), 2);
    QZStopThreadUnitOfWork(nullptr).work();
}

TEST_F(QZWorkThreadTest, TakesTurnsFromHighToLowWhenBothQueuesHoldWork)
{
    for (const char name : {'1', '2', '3'})
        Low(name);
    for (const char name : {'a', 'b', 'c'})
        High(name);
    thread.start();
    log.WaitFor("a1b2c3");
}

TEST_F(QZWorkThreadTest, TurnsToHighAfterALowUnitAlone)
{
    thread.start();
    const std::shared_ptr<Gate> gate = Hold(false);
    Low('1');
    High('a');
    gate->Open();
    log.WaitFor("a1");
}

TEST_F(QZWorkThreadTest, TurnsToLowAfterAHighUnitAlone)
{
    thread.start();
    const std::shared_ptr<Gate> gate = Hold(true);
    High('a');
    Low('1');
    gate->Open();
    log.WaitFor("1a");
}

TEST_F(QZWorkThreadTest, SetsTheStateOfAUnitFromQueuedToDone)
{
    const std::shared_ptr<LoggedUnit> unit = Unit('a');
    thread.add(unit, false);
    EXPECT_EQ(unit->state(), 0);
    thread.start();
    log.WaitFor("a");
    thread.stop();
    EXPECT_EQ(unit->state(), 1);
}

TEST_F(QZWorkThreadTest, DropsAUnitWhoseStateWasSet)
{
    const std::shared_ptr<LoggedUnit> done = Unit('d'), idle = Unit('i'), odd = Unit('o');
    for (const auto& unit : {done, idle, odd})
        thread.add(unit, false);
    done->setState(1);
    idle->setState(2);
    odd->setState(-7);
    Low('z');
    thread.start();
    log.WaitFor("z");
    EXPECT_EQ(done->state(), 1);
    EXPECT_EQ(idle->state(), 2);
    EXPECT_EQ(odd->state(), -7);
}

TEST_F(QZWorkThreadTest, RunsAUnitThatIsQueuedTwiceOnce)
{
    const std::shared_ptr<LoggedUnit> unit = Unit('a');
    thread.add(unit, false);
    thread.add(unit, false);
    Low('z');
    thread.start();
    log.WaitFor("az");
}

TEST_F(QZWorkThreadTest, RunsAUnitAgainWhoseStateWasReset)
{
    class Resetting : public LoggedUnit {
    public:
        using LoggedUnit::LoggedUnit;
        std::shared_ptr<QZThreadUnitOfWork> other;
        void work() override
        {
            LoggedUnit::work();
            other->setState(0);
        }
    };
    const std::shared_ptr<LoggedUnit> unit = Unit('a');
    const auto reset = std::make_shared<Resetting>('r', log);
    reset->other = unit;
    thread.add(unit, false);
    thread.add(reset, false);
    thread.add(unit, false);
    thread.start();
    log.WaitFor("ara");
}

TEST_F(QZWorkThreadTest, IgnoresANullUnit)
{
    thread.add(nullptr, true);
    Low('z');
    thread.start();
    log.WaitFor("z");
}

TEST_F(QZWorkThreadTest, RunsTheStartUnitFirstAndTheStopUnitLast)
{
    High('h');
    thread.startUnitOfWork(Unit('S'));
    thread.stopUnitOfWork(Unit('E'));
    thread.start();
    log.WaitFor("Sh");
    thread.stop();
    EXPECT_EQ(log.Text(), "ShE");
}

TEST_F(QZWorkThreadTest, LeavesTheStateOfTheStopUnitAtQueued)
{
    const std::shared_ptr<LoggedUnit> stopUnit = Unit('E');
    thread.stopUnitOfWork(stopUnit);
    thread.start();
    thread.stop();
    EXPECT_EQ(log.Text(), "E");
    EXPECT_EQ(stopUnit->state(), 0);
}

TEST_F(QZWorkThreadTest, ReplacesAndClearsTheStartAndStopUnits)
{
    const std::shared_ptr<LoggedUnit> replaced = Unit('x');
    thread.startUnitOfWork(replaced);
    thread.startUnitOfWork(Unit('S'));
    EXPECT_EQ(replaced.use_count(), 1);
    thread.stopUnitOfWork(Unit('x'));
    thread.stopUnitOfWork(nullptr);
    thread.start();
    log.WaitFor("S");
    thread.stop();
    EXPECT_EQ(log.Text(), "S");
}

TEST_F(QZWorkThreadTest, StartsAndStopsOnlyOnce)
{
    thread.stopUnitOfWork(Unit('E'));
    thread.stop();
    EXPECT_EQ(log.Text(), "");
    thread.startUnitOfWork(Unit('S'));
    thread.start();
    thread.start();
    log.WaitFor("S");
    thread.stop();
    thread.stop();
    EXPECT_EQ(log.Text(), "SE");
}

TEST_F(QZWorkThreadTest, KeepsWhatIsBehindTheStopOrderForTheNextStart)
{
    thread.startUnitOfWork(Unit('S'));
    thread.start();
    log.WaitFor("S");
    const std::shared_ptr<Gate> gate = Hold(false);   // alone from the low queue: the next turn is high's
    for (const char name : {'a', 'b'})
        High(name);
    std::thread stopping = BeginStop();
    gate->Open();
    stopping.join();
    EXPECT_EQ(log.Text(), "SE");
    thread.start();
    log.WaitFor("SESab");
}

TEST_F(QZWorkThreadTest, RunsOneMoreLowUnitWhenItIsTheTurnOfLow)
{
    thread.start();
    const std::shared_ptr<Gate> gate = Hold(true);   // alone from the high queue: the next turn is low's
    for (const char name : {'1', '2'})
        Low(name);
    std::thread stopping = BeginStop();
    gate->Open();
    stopping.join();
    EXPECT_EQ(log.Text(), "1E");
    thread.start();
    log.WaitFor("1E2");
}

TEST_F(QZWorkThreadTest, RestartsToRemoveAUnit)
{
    thread.startUnitOfWork(Unit('S'));
    thread.stopUnitOfWork(Unit('E'));
    thread.start();
    log.WaitFor("S");
    thread.remove(nullptr);
    log.WaitFor("SES");
    thread.removeAllUnitsOfWork();
    log.WaitFor("SESES");
}

TEST_F(QZWorkThreadTest, RemovesEveryEntryOfAUnitAndNoOther)
{
    const std::shared_ptr<LoggedUnit> removed = Unit('x');
    thread.add(removed, false);
    Low('1');
    thread.add(removed, true);
    thread.add(removed, false);
    High('a');
    thread.remove(removed);
    EXPECT_EQ(removed.use_count(), 1);
    EXPECT_EQ(removed->state(), 0);
    thread.start();
    log.WaitFor("a1");
}

TEST_F(QZWorkThreadTest, RemovesAllUnitsAndStaysStopped)
{
    const std::shared_ptr<LoggedUnit> low = Unit('1'), high = Unit('a');
    thread.add(low, false);
    thread.add(high, true);
    thread.removeAllUnitsOfWork();
    EXPECT_EQ(low.use_count(), 1);
    EXPECT_EQ(high.use_count(), 1);
    EXPECT_EQ(low->state(), 0);
    High('z');
    thread.start();
    log.WaitFor("z");
}

TEST_F(QZWorkThreadTest, EndsAtAStopOrderOfTheHosts)
{
    const std::shared_ptr<LoggedUnit> wrapped = Unit('x');
    thread.add(std::make_shared<QZStopThreadUnitOfWork>(wrapped.get()), true);
    thread.start();
    log.WaitFor("x");
    Low('1');
    thread.stop();
    EXPECT_EQ(log.Text(), "x");
    thread.start();
    log.WaitFor("x1");
}

TEST_F(QZWorkThreadTest, EndsAtAStopOrderOfADerivedClass)
{
    class Order : public QZStopThreadUnitOfWork {
    public:
        explicit Order(Log& log) : QZStopThreadUnitOfWork(nullptr), m_log(log) {}
        void work() override { m_log.Add('o'); }

    private:
        Log& m_log;
    };
    const auto order = std::make_shared<Order>(log);
    thread.add(order, true);
    order->setState(1);   // makes no difference to an order
    High('a');
    thread.start();
    log.WaitFor("o");
    thread.stop();
    EXPECT_EQ(order->state(), 1);
    thread.start();
    log.WaitFor("oa");
}

TEST_F(QZWorkThreadTest, RemovesAUnitFromTheRunningThread)
{
    thread.startUnitOfWork(Unit('S'));
    thread.start();
    log.WaitFor("S");
    const std::shared_ptr<Gate> gate =
        Hold(false);   // the next turn is high's, where the stop order comes first
    const std::shared_ptr<LoggedUnit> removed = Unit('x');
    thread.add(removed, false);
    High('a');
    thread.add(removed, true);
    const std::shared_ptr<LoggedUnit> stopUnit = Unit('E');
    thread.stopUnitOfWork(stopUnit);
    std::thread removing([&] { thread.remove(removed); });
    while (stopUnit->state() != 0)   // set together with the queueing of the stop order
        std::this_thread::yield();
    gate->Open();
    removing.join();
    log.WaitFor("SESa");
    thread.stop();
    EXPECT_EQ(removed->state(), 0);
    EXPECT_EQ(removed.use_count(), 1);
}

TEST_F(QZWorkThreadTest, LetsADestructorOfARemovedUnitAddAnother)
{
    class Successor : public QZThreadUnitOfWork {
    public:
        Successor(QZWorkThread& thread, std::shared_ptr<LoggedUnit> next)
            : m_thread(thread), m_next(std::move(next))
        {}
        ~Successor() override { m_thread.add(m_next, false); }

    private:
        QZWorkThread& m_thread;
        const std::shared_ptr<LoggedUnit> m_next;
    };
    thread.add(std::make_shared<Successor>(thread, Unit('n')), false);
    thread.removeAllUnitsOfWork();
    thread.start();
    log.WaitFor("n");
}

TEST_F(QZWorkThreadTest, TellsTheTargetWhenItIsIdleAndWhenItIsBusyAgain)
{
    Listener listener;
    thread.setWorkingTarget(&listener, &Listener::Working);
    thread.start();
    MainQueue& queue = MainQueue::Shared();
    ASSERT_TRUE(queue.RunUntil([&] { return listener.heard.size() == 1; }, 30s));
    Low('a');
    ASSERT_TRUE(queue.RunUntil([&] { return listener.heard.size() == 3; }, 30s));
    EXPECT_EQ(listener.heard, (std::vector<bool>{false, true, false}));
    EXPECT_EQ(log.Text(), "a");
}

TEST_F(QZWorkThreadTest, TellsOfNoBusynessThatBeginsWithTheStart)
{
    Listener listener;
    thread.setWorkingTarget(&listener, &Listener::Working);
    thread.startUnitOfWork(Unit('S'));
    thread.start();
    ASSERT_TRUE(MainQueue::Shared().RunUntil([&] { return !listener.heard.empty(); }, 30s));
    EXPECT_EQ(log.Text(), "S");
    EXPECT_EQ(listener.heard, std::vector<bool>{false});
}

TEST_F(QZWorkThreadTest, TellsATargetThatCameWhileItSleptOfTheNextWork)
{
    thread.start();
    thread.add(Unit('a'), false);
    log.WaitFor("a");
    // It sleeps, or is about to, and has told nobody of that. Only work can wake it.
    std::this_thread::sleep_for(20ms);
    Listener listener;
    thread.setWorkingTarget(&listener, &Listener::Working);
    Low('b');
    ASSERT_TRUE(MainQueue::Shared().RunUntil([&] { return listener.heard.size() >= 2; }, 30s));
    EXPECT_EQ(listener.heard.end()[-1], false);
    EXPECT_EQ(listener.heard.end()[-2], true);
    EXPECT_EQ(log.Text(), "ab");
}

TEST_F(QZWorkThreadTest, TellsOfItsSleepBeforeEachAndOfWorkAfterEach)
{
    Listener listener;
    thread.setWorkingTarget(&listener, &Listener::Working);
    thread.start();
    MainQueue& queue = MainQueue::Shared();
    for (std::size_t i = 0; i < 5; ++i) {
        ASSERT_TRUE(queue.RunUntil([&] { return listener.heard.size() >= 2 * i + 1; }, 30s));
        Low('a');
    }
    ASSERT_TRUE(queue.RunUntil([&] { return listener.heard.size() >= 11; }, 30s));
    for (std::size_t i = 0; i < 11; ++i)
        EXPECT_EQ(listener.heard[i], i % 2 == 1) << i;
}

TEST_F(QZWorkThreadTest, HoldsNoLockWhileTheHostIsWoken)
{
    Listener listener;
    thread.setWorkingTarget(&listener, &Listener::Working);
    MainQueue& queue = MainQueue::Shared();
    // On the work thread, and the first notice comes before any work: with a lock held this would never end.
    queue.SetWakeHandler([&, first = true]() mutable {
        if (std::exchange(first, false))
            Low('w');
    });
    thread.start();
    log.WaitFor("w");
    thread.stop();
    queue.SetWakeHandler(nullptr);
    queue.Drain();
    EXPECT_EQ(listener.heard.at(0), false);
    EXPECT_EQ(listener.heard.at(1), true);
}

TEST_F(QZWorkThreadTest, DropsMessagesToATargetThatWasTakenAway)
{
    Listener listener;
    thread.setWorkingTarget(&listener, &Listener::Working);
    thread.start();
    thread.stop();
    thread.setWorkingTarget(nullptr);
    MainQueue::Shared().Drain();
    EXPECT_TRUE(listener.heard.empty());
}

TEST_F(QZWorkThreadTest, MayDieWhileMessagesAreOnTheirWay)
{
    {
        auto listener = std::make_unique<Listener>();
        QZWorkThread shortLived;
        shortLived.setWorkingTarget(listener.get(), &Listener::Working);
        shortLived.start();
    }
    MainQueue::Shared().Drain();   // the address sanitizer would see a call of the dead listener
    EXPECT_EQ(MainQueue::Shared().Drain(), 0u);
}

TEST_F(QZWorkThreadTest, StopsWhenItDies)
{
    const std::shared_ptr<LoggedUnit> running = Unit('a'), last = Unit('E');
    {
        QZWorkThread shortLived;
        shortLived.stopUnitOfWork(last);
        shortLived.start();
        shortLived.add(running, true);
        log.WaitFor("a");
    }
    EXPECT_EQ(log.Text(), "aE");
    EXPECT_EQ(running.use_count(), 1);
    EXPECT_EQ(last.use_count(), 1);
}

TEST_F(QZWorkThreadTest, LetsGoOfItsUnitsWhenItDies)
{
    const std::shared_ptr<LoggedUnit> queued = Unit('q'), first = Unit('S'), last = Unit('E');
    {
        QZWorkThread shortLived;
        shortLived.startUnitOfWork(first);
        shortLived.stopUnitOfWork(last);
        shortLived.add(queued, false);
    }
    EXPECT_EQ(queued.use_count(), 1);
    EXPECT_EQ(first.use_count(), 1);
    EXPECT_EQ(last.use_count(), 1);
    EXPECT_EQ(log.Text(), "");
}

TEST_F(QZWorkThreadTest, RunsWhatManyThreadsAddWhileOthersRemoveAndCancel)
{
    class Counting : public QZThreadUnitOfWork {
    public:
        explicit Counting(int& count) : m_count(count) {}
        void work() override { ++m_count; }   // unguarded on purpose: units run one at a time

    private:
        int& m_count;
    };
    constexpr int kThreads = 6, kUnits = 300;
    int count = 0;
    thread.start();
    std::vector<std::thread> producers;
    for (int t = 0; t < kThreads; ++t)
        producers.emplace_back([&, t] {
            for (int i = 0; i < kUnits; ++i)
                thread.add(std::make_shared<Counting>(count), (t + i) % 2 == 0);
        });
    producers.emplace_back([&] {
        for (int i = 0; i < 20; ++i) {
            const std::shared_ptr<LoggedUnit> unit = Unit('x');
            thread.add(unit, i % 2 == 0);
            unit->setState(2);
            thread.remove(unit);
        }
    });
    for (std::thread& producer : producers)
        producer.join();
    auto last = std::make_shared<Gate>();   // from the low queue, behind everything there
    thread.add(last, false);
    last->WaitUntilReached();
    last->Open();
    last = std::make_shared<Gate>();
    thread.add(last, true);
    last->WaitUntilReached();
    last->Open();
    thread.stop();
    EXPECT_EQ(count, kThreads * kUnits);
}
