// SPDX-License-Identifier: MIT
#include "QZ/Platform/Application.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <ctime>

#include "QZ/Platform/Clock.h"

using QZ::Platform::Application;
using QZ::Platform::Clock;

TEST(Application, IsNamedAfterItsExecutableUntilTheHostNamesIt)
{
    EXPECT_EQ(Application::BundleName(), "PlatformTests");
    Application::SetBundleName("Holiday");
    EXPECT_EQ(Application::BundleName(), "Holiday");
}

TEST(Application, TakesTheTemporaryDirectoryFromTheEnvironment)
{
    setenv("TMPDIR", "/somewhere/else", 1);
    EXPECT_EQ(Application::TemporaryDirectory(), "/somewhere/else/");
    setenv("TMPDIR", "/with/slash/", 1);
    EXPECT_EQ(Application::TemporaryDirectory(), "/with/slash/");
    setenv("TMPDIR", "", 1);
    EXPECT_EQ(Application::TemporaryDirectory(), "/tmp/");
    unsetenv("TMPDIR");
    EXPECT_EQ(Application::TemporaryDirectory(), "/tmp/");
}

TEST(Application, PrefersTheHostsTemporaryDirectory)
{
    Application::SetTemporaryDirectory("/of/the/host");
    EXPECT_EQ(Application::TemporaryDirectory(), "/of/the/host/");
    Application::SetTemporaryDirectory(std::nullopt);
    EXPECT_NE(Application::TemporaryDirectory(), "/of/the/host/");
}

TEST(Clock, NeverGoesBack)
{
    std::uint64_t before = Clock::Ticks();
    for (int i = 0; i < 1000; ++i) {
        const std::uint64_t now = Clock::Ticks();
        EXPECT_GE(now, before);
        before = now;
    }
}

TEST(Clock, TakesItsTicksFromTheHost)
{
    Clock::SetTickSource([]() -> std::uint64_t { return 42; });
    EXPECT_EQ(Clock::Ticks(), 42u);
    Clock::SetTickSource(nullptr);
    EXPECT_NE(Clock::Ticks(), 42u);
}

TEST(Clock, CountsTheSecondsSince2001)
{
    std::tm reference = {};
    reference.tm_year = 101;
    reference.tm_mday = 1;
    const auto expected = static_cast<double>(std::time(nullptr) - timegm(&reference));
    EXPECT_NEAR(Clock::SecondsSinceReferenceDate(), expected, 60.0);   // the clocks are read a moment apart
}
