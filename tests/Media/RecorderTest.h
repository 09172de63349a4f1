// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "QZ/Platform/Application.h"
#include "QZ/Platform/MainQueue.h"
#include "tests/Media/RecordingWriter.h"
#include "tests/Support/Scratch.h"

namespace QZ::Test {

/// A fixture whose movies are written by doubles, into a folder of the test's own.
class RecorderTest : public testing::Test {
protected:
    RecorderTest()
    {
        Platform::AssetWriterFactory::SetShared(factory);
        Platform::Application::SetBundleName("App");
        Platform::Application::SetTemporaryDirectory(scratch.Path());
        Drain();
    }
    ~RecorderTest() override
    {
        Drain();
        Platform::AssetWriterFactory::SetShared(nullptr);
        Platform::Application::SetTemporaryDirectory(std::nullopt);
    }

    static void Drain()
    {
        while (Platform::MainQueue::Shared().Drain() > 0) {
        }
    }
    /// Serves the main queue until a condition holds.
    static void RunUntil(const std::function<bool()>& done)
    {
        ASSERT_TRUE(Platform::MainQueue::Shared().RunUntil(done, std::chrono::seconds(30)));
    }
    [[nodiscard]] std::shared_ptr<DoubleWriter> Writer() const { return factory->writer.lock(); }
    [[nodiscard]] std::shared_ptr<DoubleAdaptor> Adaptor() const { return factory->adaptor.lock(); }
    [[nodiscard]] std::shared_ptr<DoubleInput> Input(const std::string& name) const
    {
        return factory->Input(name);
    }
    [[nodiscard]] Platform::VideoSettings Video() const
    {
        return std::get<Platform::VideoSettings>(Input("video")->settings);
    }

    const Scratch scratch;
    const std::shared_ptr<DoubleFactory> factory = std::make_shared<DoubleFactory>();
    const std::shared_ptr<CallLog> log = factory->log;
};

}   // namespace QZ::Test
