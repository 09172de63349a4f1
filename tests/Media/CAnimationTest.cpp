// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/CAnimation.h"

#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <string>

using Animation::CAnimation;
using Animation::IAnimationEvent;

namespace {

/// Writes its name to a log when ticked, and the name in capitals when destroyed.
class LoggedEvent : public IAnimationEvent {
public:
    LoggedEvent(char name, std::string& log) : m_name(name), m_log(log) {}
    ~LoggedEvent() override { m_log += static_cast<char>(m_name - 'a' + 'A'); }
    void Tick(const double* currentTime) override
    {
        m_log += m_name;
        time = currentTime;
        if (onTick)
            onTick();
    }

    std::function<void()> onTick;
    const double* time = nullptr;

private:
    const char m_name;
    std::string& m_log;
};

class CAnimationTest : public testing::Test {
protected:
    LoggedEvent* New(char name) { return new LoggedEvent(name, log); }   // destroyed by the driver

    std::string log;
    CAnimation animation;
};

}   // namespace

TEST_F(CAnimationTest, TicksInTheOrderOfTheBeginnings)
{
    LoggedEvent a('a', log), b('b', log);
    animation.BeginAnimationEvent(&a);
    animation.BeginAnimationEvent(&b);
    animation.Animate();
    animation.Animate();
    EXPECT_EQ(log, "abab");
}

TEST_F(CAnimationTest, HandsEveryEventTheAddressOfTheSameTime)
{
    LoggedEvent a('a', log), b('b', log);
    animation.BeginAnimationEvent(&a);
    animation.BeginAnimationEvent(&b);
    animation.Animate();
    EXPECT_EQ(a.time, &animation.currentTime);
    EXPECT_EQ(b.time, &animation.currentTime);
    // 2001-01-01 is 978307200 s after 1970-01-01; the clocks are read a moment apart.
    EXPECT_NEAR(animation.currentTime, static_cast<double>(std::time(nullptr)) - 978307200.0, 60.0);
}

TEST_F(CAnimationTest, SetsTheTimingsThatItIsGiven)
{
    LoggedEvent a('a', log), b('b', log), c('c', log);
    for (LoggedEvent* event : {&a, &b, &c})
        event->m_firstTiming = event->m_secondTiming = 9.0f;
    animation.BeginAnimationEvent(&a);
    animation.BeginAnimationEvent(&b, 1.5f);
    animation.BeginAnimationEvent(&c, 2.5f, 3.5f);
    EXPECT_EQ(a.m_firstTiming, 9.0f);
    EXPECT_EQ(a.m_secondTiming, 9.0f);
    EXPECT_EQ(b.m_firstTiming, 9.0f);
    EXPECT_EQ(b.m_secondTiming, 1.5f);
    EXPECT_EQ(c.m_firstTiming, 2.5f);
    EXPECT_EQ(c.m_secondTiming, 3.5f);
    EXPECT_EQ(animation.activeEvents.size(), 3u);
}

TEST_F(CAnimationTest, DestroysAnEventThatStopsItselfAtTheEndOfTheFrame)
{
    LoggedEvent* a = New('a');
    LoggedEvent b('b', log);
    a->onTick = [&, a] {
        animation.StopAnimationEvent(a);
        EXPECT_EQ(animation.activeEvents.size(), 2u);
    };
    animation.BeginAnimationEvent(a);
    animation.BeginAnimationEvent(&b);
    animation.Animate();
    EXPECT_EQ(log, "abA");
    animation.Animate();
    EXPECT_EQ(log, "abAb");
}

TEST_F(CAnimationTest, TicksALaterEventOnceMoreInTheFrameThatStopsIt)
{
    LoggedEvent a('a', log);
    LoggedEvent* b = New('b');
    a.onTick = [&, b, first = true]() mutable {
        if (std::exchange(first, false))
            animation.StopAnimationEvent(b);
    };
    animation.BeginAnimationEvent(&a);
    animation.BeginAnimationEvent(b);
    animation.Animate();
    animation.Animate();
    EXPECT_EQ(log, "abBa");
}

TEST_F(CAnimationTest, DestroysInTheOrderOfTheStops)
{
    LoggedEvent *a = New('a'), *b = New('b'), *c = New('c');
    for (LoggedEvent* event : {a, b, c})
        animation.BeginAnimationEvent(event);
    animation.StopAnimationEvent(c);
    animation.StopAnimationEvent(a);
    animation.FlushRemovedAnimationEvents();
    EXPECT_EQ(log, "CA");
    EXPECT_EQ(animation.activeEvents, std::vector<IAnimationEvent*>{b});
    EXPECT_TRUE(animation.removedEvents.empty());
    animation.StopAnimationEvent(b);
    animation.FlushRemovedAnimationEvents();
    EXPECT_EQ(log, "CAB");
}

TEST_F(CAnimationTest, ChangesNothingWhenNothingWasStopped)
{
    LoggedEvent a('a', log);
    animation.BeginAnimationEvent(&a);
    animation.FlushRemovedAnimationEvents();
    EXPECT_EQ(log, "");
    EXPECT_EQ(animation.activeEvents, std::vector<IAnimationEvent*>{&a});
}

TEST_F(CAnimationTest, ShortensByOneSlotWhenAnEventWasBegunTwice)
{
    LoggedEvent* a = New('a');
    LoggedEvent b('b', log), c('c', log);
    for (LoggedEvent* event : {a, &b, a, &c})
        animation.BeginAnimationEvent(event);
    animation.StopAnimationEvent(a);
    animation.FlushRemovedAnimationEvents();
    // b and c close up; of the two slots at the end, which still hold a and c, one goes.
    EXPECT_EQ(animation.activeEvents, (std::vector<IAnimationEvent*>{&b, &c, a}));
    animation.activeEvents.clear();   // a is gone
}

// Not guarded on purpose, as the header says: for each stop the list becomes one shorter.
TEST_F(CAnimationTest, ShortensByOneSlotWhenAnEventThatIsNotActiveIsStopped)
{
    LoggedEvent b('b', log), c('c', log);
    animation.BeginAnimationEvent(&b);
    animation.BeginAnimationEvent(&c);
    animation.StopAnimationEvent(New('a'));
    animation.FlushRemovedAnimationEvents();
    EXPECT_EQ(log, "A");
    EXPECT_EQ(animation.activeEvents, std::vector<IAnimationEvent*>{&b});
    animation.activeEvents.clear();
    animation.StopAnimationEvent(New('a'));
    animation.FlushRemovedAnimationEvents();
    EXPECT_TRUE(animation.activeEvents.empty());
}

TEST_F(CAnimationTest, TakesANullAmongTheStoppedForNoEvent)
{
    animation.activeEvents.push_back(nullptr);
    animation.StopAnimationEvent(nullptr);
    animation.FlushRemovedAnimationEvents();
    EXPECT_TRUE(animation.activeEvents.empty());
}

TEST_F(CAnimationTest, TicksAnEventThatATickBegins)
{
    LoggedEvent a('a', log), b('b', log);
    a.onTick = [&, first = true]() mutable {
        if (std::exchange(first, false))
            animation.BeginAnimationEvent(&b);
    };
    animation.BeginAnimationEvent(&a);
    animation.Animate();
    EXPECT_EQ(log, "ab");
}

TEST_F(CAnimationTest, LeavesItsEventsAliveWhenItDies)
{
    LoggedEvent a('a', log);
    {
        CAnimation shortLived;
        shortLived.BeginAnimationEvent(&a);
    }
    EXPECT_EQ(log, "");
}

TEST(CAnimationInstance, IsNullUntilTheHostSetsIt)
{
    EXPECT_EQ(CAnimation::Instance, nullptr);
}

TEST(AnimationNotificationReceivers, AreNoneAtFirst)
{
    EXPECT_TRUE(Notification::INotifications<Notification::IAnimationNotification>::Receivers.empty());
}
