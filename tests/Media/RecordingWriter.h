// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/DispatchQueue.h"

namespace QZ::Test {

/// Every call of the doubles below in one list, such as "video.setTransform" or "startSession 3/30".
class CallLog {
public:
    void Add(std::string call);
    [[nodiscard]] std::vector<std::string> Calls() const;
    [[nodiscard]] int Count(const std::string& call) const;

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
};

[[nodiscard]] std::string Text(const Platform::Time& time);

struct DoubleInput final : Platform::AssetWriterInput {
    DoubleInput(std::shared_ptr<CallLog> theLog, std::string theName, Platform::OutputSettings theSettings)
        : log(std::move(theLog)), name(std::move(theName)), settings(std::move(theSettings))
    {}
    ~DoubleInput() override { log->Add("~" + name); }
    void SetExpectsMediaDataInRealTime(bool realTime) override;
    void SetTransform(const Platform::AffineTransform& transform) override;
    bool IsReadyForMoreMediaData() const override { return room != 0; }
    bool AppendSampleBuffer(const std::shared_ptr<Platform::SampleBuffer>& sample) override;
    void MarkAsFinished() override;
    void RequestMediaDataWhenReady(const std::shared_ptr<Platform::DispatchQueue>& queue,
                                   std::function<void()> block) override;

    /// Makes room for so many samples, and asks for them; -1 for any number.
    void MakeRoom(int samples);
    void TakeRoom();

    const std::shared_ptr<CallLog> log;
    const std::string name;
    const Platform::OutputSettings settings;
    std::atomic<int> room = -1;
    std::atomic<bool> accepts = true;
    std::mutex mutex;
    std::shared_ptr<Platform::DispatchQueue> askedOn;
    std::function<void()> block;
    std::vector<std::shared_ptr<Platform::SampleBuffer>> samples;
    Platform::AffineTransform lastTransform = {};
};

struct DoublePool final : Platform::PixelBufferPool {
    std::shared_ptr<Platform::PixelBuffer> MakePixelBuffer() override;

    std::shared_ptr<Platform::PixelBufferPool> memory;
    std::atomic<int> left = -1;              ///< buffers until it is exhausted; -1 for any number
    std::atomic<bool> hidesMemory = false;   ///< gives buffers without a base address
    std::atomic<int> made = 0;
};

/// A picture as it was appended.
struct AppendedPicture {
    Platform::Time time;
    unsigned char firstByte;
    Platform::ICCProfile profile;
};

struct DoubleAdaptor final : Platform::PixelBufferAdaptor {
    explicit DoubleAdaptor(std::shared_ptr<DoubleInput> theInput) : input(std::move(theInput)) {}
    ~DoubleAdaptor() override { input->log->Add("~adaptor"); }
    std::shared_ptr<Platform::PixelBufferPool> Pool() const override { return pool; }
    bool AppendPixelBuffer(const std::shared_ptr<Platform::PixelBuffer>& buffer,
                           const Platform::Time& time) override;
    [[nodiscard]] std::vector<AppendedPicture> Pictures();

    const std::shared_ptr<DoubleInput> input;
    const std::shared_ptr<DoublePool> pool = std::make_shared<DoublePool>();
    std::mutex mutex;
    std::vector<AppendedPicture> pictures;
};

struct DoubleWriter final : Platform::AssetWriter {
    DoubleWriter(std::shared_ptr<CallLog> theLog, std::string thePath)
        : log(std::move(theLog)), path(std::move(thePath))
    {}
    ~DoubleWriter() override { log->Add("~writer"); }
    void SetMetadata(const std::vector<Platform::MetadataItem>& items) override;
    void AddInput(const std::shared_ptr<Platform::AssetWriterInput>& input) override;
    bool StartWriting() override;
    void StartSessionAtSourceTime(const Platform::Time& time) override;
    void FinishWriting(std::function<void()> completion) override;
    Platform::AssetWriterStatus Status() const override { return status; }
    std::string Reason() const override
    {
        return status == Platform::AssetWriterStatus::Failed ? "disk full" : "";
    }

    void Fail();
    /// Has the file finished, on this thread.
    void Complete();

    const std::shared_ptr<CallLog> log;
    const std::string path;
    bool starts = true;
    std::atomic<Platform::AssetWriterStatus> status = Platform::AssetWriterStatus::Unknown;
    std::vector<Platform::MetadataItem> tags;
    std::mutex mutex;
    std::function<void()> completion;
};

/// Makes doubles and remembers the latest of each kind, weakly: who holds them is for the tests to see.
struct DoubleFactory final : Platform::AssetWriterFactory {
    std::shared_ptr<Platform::AssetWriter> MakeWriter(const std::string& path,
                                                      Platform::FileType type) override;
    std::shared_ptr<Platform::AssetWriterInput> MakeInput(Platform::MediaType type,
                                                          const Platform::OutputSettings& settings) override;
    std::shared_ptr<Platform::PixelBufferAdaptor> MakeAdaptor(
        const std::shared_ptr<Platform::AssetWriterInput>& input,
        const Platform::PixelBufferAttributes& attributes) override;
    std::string Reason() const override { return "the double fails " + failing; }

    const std::shared_ptr<CallLog> log = std::make_shared<CallLog>();
    std::string failing;   ///< "writer", "video", "audio", "metadata", "adaptor", "start", or empty
    std::weak_ptr<DoubleWriter> writer;
    std::map<std::string, std::weak_ptr<DoubleInput>> inputs;
    std::weak_ptr<DoubleAdaptor> adaptor;
    Platform::PixelBufferAttributes attributes;
    int roomAtFirst = -1;   ///< of the inputs

    [[nodiscard]] std::shared_ptr<DoubleInput> Input(const std::string& name) { return inputs[name].lock(); }
    [[nodiscard]] bool AllReleased() const;
};

}   // namespace QZ::Test
