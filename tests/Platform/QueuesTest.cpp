// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "QZ/Platform/DispatchQueue.h"
#include "QZ/Platform/MainQueue.h"

using namespace QZ::Platform;
using namespace std::chrono_literals;

namespace {

/// Each test starts with an empty queue, its own thread being the main one.
class MainQueueTest : public testing::Test {
protected:
    MainQueueTest()
    {
        queue.BindToCurrentThread();
        while (queue.Drain() > 0) {
        }
    }
    ~MainQueueTest() override { queue.SetWakeHandler(nullptr); }

    MainQueue& queue = MainQueue::Shared();
};

}   // namespace

TEST(MainQueueThread, IsTheOneThatLoadedTheLibrary)
{
    EXPECT_TRUE(MainQueue::Shared().IsMainThread());
    EXPECT_FALSE(std::async(std::launch::async, [] { return MainQueue::Shared().IsMainThread(); }).get());
}

TEST_F(MainQueueTest, RunsWhatWasPostedInOrder)
{
    std::string order;
    queue.Post([&] { order += 'a'; });
    queue.Post([&] { order += 'b'; });
    EXPECT_EQ(order, "");
    EXPECT_EQ(queue.Drain(), 2u);
    EXPECT_EQ(order, "ab");
    EXPECT_EQ(queue.Drain(), 0u);
}

TEST_F(MainQueueTest, LeavesWhatIsPostedWhileDrainingForTheNextTime)
{
    int runs = 0;
    queue.Post([&] {
        ++runs;
        queue.Post([&] { ++runs; });
    });
    EXPECT_EQ(queue.Drain(), 1u);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(queue.Drain(), 1u);
    EXPECT_EQ(runs, 2);
}

TEST_F(MainQueueTest, RunsAFunctionOnceWhenDrainedFromWithin)
{
    int runs = 0;
    queue.Post([&] { EXPECT_EQ(queue.Drain(), 1u); });
    queue.Post([&] { ++runs; });
    EXPECT_EQ(queue.Drain(), 1u);
    EXPECT_EQ(runs, 1);
}

TEST_F(MainQueueTest, SyncRunsAtOnceOnTheMainThread)
{
    std::string order;
    queue.Post([&] { order += 'p'; });
    queue.Sync([&] { order += 's'; });
    EXPECT_EQ(order, "s");
    queue.Drain();
    EXPECT_EQ(order, "sp");
}

TEST_F(MainQueueTest, SyncWaitsOnOtherThreads)
{
    std::atomic<bool> returned = false;
    bool ranOnMain = false;
    std::thread other([&] {
        queue.Sync([&] { ranOnMain = queue.IsMainThread(); });
        EXPECT_TRUE(ranOnMain);
        returned = true;
    });
    EXPECT_TRUE(queue.RunUntil([&] { return returned.load(); }, 30s));
    other.join();
    EXPECT_TRUE(ranOnMain);
}

TEST_F(MainQueueTest, SyncHandsAnExceptionToWhoWaits)
{
    std::future<std::string> other = std::async(std::launch::async, [&]() -> std::string {
        try {
            queue.Sync([] { throw std::runtime_error("thrown on main"); });
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    });
    EXPECT_TRUE(queue.RunUntil([&] { return other.wait_for(0s) == std::future_status::ready; }, 30s));
    EXPECT_EQ(other.get(), "thrown on main");
}

TEST_F(MainQueueTest, AnExceptionOfAPostedFunctionLeavesTheRestQueued)
{
    int runs = 0;
    queue.Post([] { throw std::runtime_error("thrown"); });
    queue.Post([&] { ++runs; });
    EXPECT_THROW(queue.Drain(), std::runtime_error);
    EXPECT_EQ(queue.Drain(), 1u);
    EXPECT_EQ(runs, 1);
}

TEST_F(MainQueueTest, RunUntilAsksFirstAndStopsAsSoonAsItHolds)
{
    int runs = 0;
    queue.Post([&] { ++runs; });
    queue.Post([&] { ++runs; });
    EXPECT_TRUE(queue.RunUntil([] { return true; }, 0s));
    EXPECT_EQ(runs, 0);
    EXPECT_TRUE(queue.RunUntil([&] { return runs == 1; }, 30s));
    EXPECT_EQ(queue.Drain(), 1u);
}

TEST_F(MainQueueTest, RunUntilGivesUpAfterItsTimeout)
{
    EXPECT_FALSE(queue.RunUntil([] { return false; }, 1ms));
}

TEST_F(MainQueueTest, WakesTheHostAtEveryPost)
{
    std::atomic<int> wakes = 0;
    queue.SetWakeHandler([&] { ++wakes; });
    std::thread([&] { queue.Post([] {}); }).join();
    queue.Post([] {});
    EXPECT_EQ(wakes, 2);
    queue.SetWakeHandler(nullptr);
    queue.Post([] {});
    EXPECT_EQ(wakes, 2);
    EXPECT_EQ(queue.Drain(), 3u);
}

TEST_F(MainQueueTest, LosesNothingOfManyThreads)
{
    constexpr int kThreads = 8, kPosts = 500;
    int runs = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < kPosts; ++i)
                queue.Post([&] { ++runs; });
        });
    EXPECT_TRUE(queue.RunUntil([&] { return runs == kThreads * kPosts; }, 60s));
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(MainQueueTest, FollowsTheThreadThatItIsBoundTo)
{
    std::thread([&] {
        queue.BindToCurrentThread();
        EXPECT_TRUE(queue.IsMainThread());
    }).join();
    EXPECT_FALSE(queue.IsMainThread());
    queue.BindToCurrentThread();
    EXPECT_TRUE(queue.IsMainThread());
}

TEST(SerialDispatchQueue, KeepsTheOrderAndRunsOneAtATime)
{
    const std::shared_ptr<DispatchQueue> queue = DispatchQueue::Serial("org.example.test");
    std::vector<int> order;   // unguarded on purpose: the queue is the guard
    for (int i = 0; i < 1000; ++i)
        queue->Async([&order, i] { order.push_back(i); });
    queue->Sync([] {});
    ASSERT_EQ(order.size(), 1000u);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    EXPECT_EQ(queue->Label(), "org.example.test");
}

TEST(SerialDispatchQueue, RunsWhatWasQueuedAfterItsLastReferenceIsGone)
{
    std::promise<void> ran;
    std::shared_ptr<DispatchQueue> queue = DispatchQueue::Serial("short-lived");
    queue->Async([] { std::this_thread::sleep_for(5ms); });
    queue->Async([&] { ran.set_value(); });
    queue.reset();
    EXPECT_EQ(ran.get_future().wait_for(30s), std::future_status::ready);
}

TEST(SerialDispatchQueue, MayBeReleasedByItsOwnFunction)
{
    std::promise<void> ran;
    std::shared_ptr<DispatchQueue> queue = DispatchQueue::Serial("own");
    std::promise<void> handedOver;
    queue->Async([&ran, queue, hold = handedOver.get_future().share()]() mutable {
        hold.wait();
        queue.reset();
        ran.set_value();
    });
    queue.reset();
    handedOver.set_value();
    EXPECT_EQ(ran.get_future().wait_for(30s), std::future_status::ready);
}

TEST(SerialDispatchQueue, HandsTheExceptionOfASynchronousFunctionOn)
{
    const std::shared_ptr<DispatchQueue> queue = DispatchQueue::Serial("throws");
    EXPECT_THROW(queue->Sync([] { throw std::runtime_error("thrown"); }), std::runtime_error);
}

// Each function waits for all the others: fewer threads than functions would never come through.
TEST(GlobalDispatchQueue, HasAThreadForEveryFunction)
{
    constexpr int kFunctions = 24;
    std::atomic<int> arrived = 0, left = 0;
    for (int i = 0; i < kFunctions; ++i)
        DispatchQueue::Global()->Async([&] {
            ++arrived;
            while (arrived < kFunctions)
                std::this_thread::yield();
            ++left;
        });
    while (left < kFunctions)
        std::this_thread::sleep_for(1ms);
    EXPECT_EQ(arrived, kFunctions);
}

TEST(GlobalDispatchQueue, SyncRunsWhereItIsCalled)
{
    std::thread::id ranOn;
    DispatchQueue::Global()->Sync([&] { ranOn = std::this_thread::get_id(); });
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}
