// SPDX-License-Identifier: MIT
// The module's one entry point, and the classes of AssetWriter.h in terms of channels and recordings.
#include <memory>
#include <string>
#include <utility>

#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/MovieWriter/Channel.h"
#include "QZ/Platform/MovieWriter/Recording.h"
#include "QZ/Platform/MovieWriter/TrackFormats.h"
#include "QZ/Platform/MovieWriterModule.h"

namespace QZ::Platform::Movie {

namespace {
class Input final : public AssetWriterInput {
public:
    explicit Input(ChannelSettings settings) : channel(std::make_shared<Channel>(std::move(settings))) {}

    void SetExpectsMediaDataInRealTime(bool realTime) override { channel->SetRealTime(realTime); }
    void SetTransform(const AffineTransform& transform) override { channel->SetTransform(transform); }
    bool IsReadyForMoreMediaData() const override { return channel->IsReady(); }
    bool AppendSampleBuffer(const std::shared_ptr<SampleBuffer>& sample) override
    {
        return sample && channel->Append({sample->presentationTime, nullptr, sample});
    }
    void MarkAsFinished() override { channel->Finish(); }
    void RequestMediaDataWhenReady(const std::shared_ptr<DispatchQueue>& queue,
                                   std::function<void()> block) override
    {
        channel->Request(queue, std::move(block));
    }

    const std::shared_ptr<Channel> channel;
};

class Adaptor final : public PixelBufferAdaptor {
public:
    explicit Adaptor(std::shared_ptr<Channel> channel) : m_channel(std::move(channel)) {}

    std::shared_ptr<PixelBufferPool> Pool() const override { return m_channel->Pool(); }
    bool AppendPixelBuffer(const std::shared_ptr<PixelBuffer>& buffer, const Time& presentationTime) override
    {
        return buffer && m_channel->Append({presentationTime, buffer, nullptr});
    }

private:
    std::shared_ptr<Channel> m_channel;
};

class Writer final : public AssetWriter {
public:
    explicit Writer(const std::string& path) : m_recording(std::make_shared<Recording>(path)) {}
    ~Writer() override { m_recording->Abandon(); }

    void SetMetadata(const std::vector<MetadataItem>& items) override { m_recording->SetTags(items); }
    void AddInput(const std::shared_ptr<AssetWriterInput>& input) override
    {
        if (const auto own = std::dynamic_pointer_cast<Input>(input))
            m_recording->Add(own->channel);
    }
    bool StartWriting() override { return m_recording->Start(); }
    void StartSessionAtSourceTime(const Time& time) override { m_recording->StartSession(time); }
    void FinishWriting(std::function<void()> completion) override
    {
        m_recording->Finish(std::move(completion));
    }
    AssetWriterStatus Status() const override { return m_recording->GetStatus(); }
    std::string Reason() const override { return m_recording->Reason(); }

private:
    std::shared_ptr<Recording> m_recording;
};

class Factory final : public AssetWriterFactory {
public:
    std::shared_ptr<AssetWriter> MakeWriter(const std::string& path, FileType) override
    {
        s_reason = path.empty() ? "a movie needs a path" : "";
        return s_reason.empty() ? std::make_shared<Writer>(path) : nullptr;
    }

    std::shared_ptr<AssetWriterInput> MakeInput(MediaType type, const OutputSettings& settings) override
    {
        s_reason = WhyUnsuitable(type, settings);
        return s_reason.empty() ? std::make_shared<Input>(ChannelSettings{.type = type, .output = settings})
                                : nullptr;
    }

    std::shared_ptr<PixelBufferAdaptor> MakeAdaptor(const std::shared_ptr<AssetWriterInput>& input,
                                                    const PixelBufferAttributes& attributes) override
    {
        const auto own = std::dynamic_pointer_cast<Input>(input);
        s_reason = WhyNoAdaptor(own.get(), attributes);
        if (!s_reason.empty())
            return nullptr;
        own->channel->SetSource(attributes);
        return std::make_shared<Adaptor>(own->channel);
    }

    std::string Reason() const override { return s_reason; }

private:
    static std::string WhyNoAdaptor(const Input* input, const PixelBufferAttributes& attributes)
    {
        if (!input || input->channel->Settings().type != MediaType::Video)
            return "an adaptor needs a video input of this writer's";
        if (attributes.pixelFormat != kPixelFormatBGRA)
            return "pictures come as BGRA only";
        constexpr int kLargestSide = 16384;
        if (attributes.width < 1 || attributes.height < 1 || attributes.width > kLargestSide ||
            attributes.height > kLargestSide)
            return "pictures of " + std::to_string(attributes.width) + " x " +
                   std::to_string(attributes.height) + " pixels cannot be made";
        return {};
    }

    static thread_local std::string s_reason;
};

thread_local std::string Factory::s_reason;
}   // namespace

}   // namespace QZ::Platform::Movie

extern "C" QZ_API QZ::Platform::AssetWriterFactory* QZMovieWriterFactory(std::uint32_t abiVersion)
{
    if (abiVersion != QZ::Platform::kMovieWriterABIVersion)
        return nullptr;
    static QZ::Platform::Movie::Factory factory;
    return &factory;
}
