// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "QZ/Platform/AssetWriter.h"
#include "tests/Movie/Painter.h"

namespace QZ::Test {

using namespace QZ::Platform;

/// What a test records: a video track, and perhaps sound and metadata.
struct Scene {
    VideoSettings video = {VideoCodec::H264, 320, 240, {}, {}};
    int sourceWidth = 320, sourceHeight = 240;
    std::optional<AffineTransform> transform;
    OutputSettings audio;
    bool hasAudio = false, hasMetadata = false, realTime = false;
    std::vector<MetadataItem> tags;
};

/// A writer with its inputs, driven by a test. Appending waits for room, as a test has no deadline.
class Recorder {
public:
    Recorder(const std::string& path, const Scene& scene) : m_scene(scene)
    {
        const std::shared_ptr<AssetWriterFactory> factory = AssetWriterFactory::Shared();
        if (!factory) {
            ADD_FAILURE() << AssetWriterFactory::SharedReason();
            return;
        }
        writer = factory->MakeWriter(path, FileType::QuickTimeMovie);
        writer->SetMetadata(scene.tags);
        video = factory->MakeInput(MediaType::Video, scene.video);
        EXPECT_NE(video, nullptr) << factory->Reason();
        AddInput(video);
        if (scene.transform)
            video->SetTransform(*scene.transform);
        adaptor = factory->MakeAdaptor(video, {.width = scene.sourceWidth, .height = scene.sourceHeight});
        if (scene.hasAudio)
            AddInput(audio = factory->MakeInput(MediaType::Audio, scene.audio));
        if (scene.hasMetadata)
            AddInput(metadata = factory->MakeInput(MediaType::Metadata, {}));
    }

    void AddInput(const std::shared_ptr<AssetWriterInput>& input)
    {
        input->SetExpectsMediaDataInRealTime(m_scene.realTime);
        writer->AddInput(input);
    }

    /// Waits until the input has room; false when it never has.
    static bool WaitFor(const AssetWriterInput& input)
    {
        for (int i = 0; i < 60000 && !input.IsReadyForMoreMediaData(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return input.IsReadyForMoreMediaData();
    }

    std::shared_ptr<PixelBuffer> Picture(int index, const ICCProfile& profile = nullptr) const
    {
        std::shared_ptr<PixelBuffer> buffer = adaptor->Pool()->MakePixelBuffer();
        PaintScene(buffer->BaseAddress(), buffer->BytesPerRow(), m_scene.sourceWidth, m_scene.sourceHeight,
                   index);
        buffer->SetICCProfile(profile);
        return buffer;
    }

    bool AppendPicture(int index, const Time& time, const ICCProfile& profile = nullptr)
    {
        return WaitFor(*video) && adaptor->AppendPixelBuffer(Picture(index, profile), time);
    }

    static std::shared_ptr<SampleBuffer> Tone(double rate, int channels, std::int64_t first,
                                              std::int64_t count)
    {
        auto buffer = std::make_shared<SampleBuffer>();
        buffer->format = FormatDescription::LinearPCM16(rate, channels);
        buffer->presentationTime = MakeTime(first, static_cast<std::int32_t>(rate));
        buffer->bytes = ToneBytes(440, rate, channels, first, count);
        return buffer;
    }

    bool AppendTone(double rate, int channels, std::int64_t first, std::int64_t count)
    {
        return WaitFor(*audio) && audio->AppendSampleBuffer(Tone(rate, channels, first, count));
    }

    bool AppendNote(const std::string& text, const Time& time, const Time& duration)
    {
        return WaitFor(*metadata) && metadata->AppendSampleBuffer(SampleBuffer::MakeMetadata(
                                         {{"org.example.note", text}}, time, duration));
    }

    /// Finishes and waits.
    AssetWriterStatus Finish()
    {
        auto done = std::make_shared<std::promise<void>>();
        std::future<void> future = done->get_future();
        writer->FinishWriting([done] { done->set_value(); });
        future.wait();
        return writer->Status();
    }

    std::shared_ptr<AssetWriter> writer;
    std::shared_ptr<AssetWriterInput> video, audio, metadata;
    std::shared_ptr<PixelBufferAdaptor> adaptor;

private:
    Scene m_scene;
};

inline constexpr AudioSettings kAAC = {.formatID = FourCharacterCode("aac "),
                                       .sampleRate = 44100,
                                       .numberOfChannels = 1,
                                       .bitRate = 128000,
                                       .channelLayout = {.tag = kChannelLayoutMono}};

}   // namespace QZ::Test
