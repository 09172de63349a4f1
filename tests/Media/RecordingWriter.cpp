// SPDX-License-Identifier: MIT
#include "tests/Media/RecordingWriter.h"

#include <algorithm>

using namespace QZ::Platform;

namespace QZ::Test {

void CallLog::Add(std::string call)
{
    const std::lock_guard lock(m_mutex);
    m_calls.push_back(std::move(call));
}

std::vector<std::string> CallLog::Calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

int CallLog::Count(const std::string& call) const
{
    const std::vector<std::string> calls = Calls();
    return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

std::string Text(const Time& time)
{
    return time.flags & kTimeValid ? std::to_string(time.value) + '/' + std::to_string(time.timescale)
                                   : "invalid";
}

void DoubleInput::SetExpectsMediaDataInRealTime(bool realTime)
{
    log->Add(name + (realTime ? ".realTime" : ".offline"));
}

void DoubleInput::SetTransform(const AffineTransform& transform)
{
    lastTransform = transform;
    log->Add(name + ".setTransform");
}

void DoubleInput::TakeRoom()
{
    if (room > 0)
        --room;
}

bool DoubleInput::AppendSampleBuffer(const std::shared_ptr<SampleBuffer>& sample)
{
    log->Add(name + ".append " + Text(sample->presentationTime));
    TakeRoom();
    const std::lock_guard lock(mutex);
    samples.push_back(sample);
    return accepts;
}

void DoubleInput::MarkAsFinished()
{
    log->Add(name + ".finished");
    const std::lock_guard lock(mutex);
    block = nullptr;
}

void DoubleInput::RequestMediaDataWhenReady(const std::shared_ptr<DispatchQueue>& queue,
                                            std::function<void()> asked)
{
    log->Add(name + ".request on " + queue->Label());
    {
        const std::lock_guard lock(mutex);
        askedOn = queue;
        block = std::move(asked);
    }
    MakeRoom(room);
}

void DoubleInput::MakeRoom(int count)
{
    room = count;
    const std::lock_guard lock(mutex);
    if (block && count != 0)
        askedOn->Async(block);
}

namespace {

/// A buffer whose memory cannot be reached.
class Unreachable final : public PixelBuffer {
public:
    int Width() const override { return 0; }
    int Height() const override { return 0; }
    std::uint64_t BytesPerRow() const override { return 0; }
    void Lock() override {}
    void Unlock() override {}
    unsigned char* BaseAddress() override { return nullptr; }
    void SetICCProfile(ICCProfile) override {}
    ICCProfile Profile() const override { return nullptr; }
};

}   // namespace

std::shared_ptr<PixelBuffer> DoublePool::MakePixelBuffer()
{
    if (left == 0)
        return nullptr;
    if (left > 0)
        --left;
    ++made;
    if (hidesMemory)
        return std::make_shared<Unreachable>();
    return memory->MakePixelBuffer();
}

bool DoubleAdaptor::AppendPixelBuffer(const std::shared_ptr<PixelBuffer>& buffer, const Time& time)
{
    input->log->Add("video.append " + Text(time));
    input->TakeRoom();
    const std::lock_guard lock(mutex);
    pictures.push_back({time, buffer->BaseAddress()[0], buffer->Profile()});
    return input->accepts;
}

std::vector<AppendedPicture> DoubleAdaptor::Pictures()
{
    const std::lock_guard lock(mutex);
    return pictures;
}

void DoubleWriter::SetMetadata(const std::vector<MetadataItem>& items)
{
    tags = items;
    log->Add("setMetadata");
}

void DoubleWriter::AddInput(const std::shared_ptr<AssetWriterInput>& input)
{
    log->Add("add " + dynamic_cast<DoubleInput&>(*input).name);
}

bool DoubleWriter::StartWriting()
{
    log->Add("startWriting");
    status = starts ? AssetWriterStatus::Writing : AssetWriterStatus::Failed;
    return starts;
}

void DoubleWriter::StartSessionAtSourceTime(const Time& time)
{
    log->Add("startSession " + Text(time));
}

void DoubleWriter::FinishWriting(std::function<void()> handler)
{
    log->Add("finishWriting");
    const std::lock_guard lock(mutex);
    completion = std::move(handler);
}

void DoubleWriter::Fail()
{
    status = AssetWriterStatus::Failed;
}

void DoubleWriter::Complete()
{
    std::function<void()> handler;
    {
        const std::lock_guard lock(mutex);
        handler.swap(completion);
    }
    if (handler)
        handler();
}

std::shared_ptr<AssetWriter> DoubleFactory::MakeWriter(const std::string& path, FileType)
{
    log->Add("writer " + path);
    if (failing == "writer")
        return nullptr;
    const auto made = std::make_shared<DoubleWriter>(log, path);
    made->starts = failing != "start";
    writer = made;
    return made;
}

std::shared_ptr<AssetWriterInput> DoubleFactory::MakeInput(MediaType type, const OutputSettings& settings)
{
    const std::string name = type == MediaType::Video   ? "video"
                             : type == MediaType::Audio ? "audio"
                                                        : "metadata";
    log->Add("make " + name);
    if (failing == name)
        return nullptr;
    const auto made = std::make_shared<DoubleInput>(log, name, settings);
    made->room = roomAtFirst;
    inputs[name] = made;
    return made;
}

std::shared_ptr<PixelBufferAdaptor> DoubleFactory::MakeAdaptor(const std::shared_ptr<AssetWriterInput>& input,
                                                               const PixelBufferAttributes& wanted)
{
    log->Add("make adaptor");
    attributes = wanted;
    if (failing == "adaptor")
        return nullptr;
    const auto made = std::make_shared<DoubleAdaptor>(std::dynamic_pointer_cast<DoubleInput>(input));
    made->pool->memory = PixelBufferPool::Create(wanted);
    adaptor = made;
    return made;
}

bool DoubleFactory::AllReleased() const
{
    return writer.expired() && adaptor.expired() &&
           std::all_of(inputs.begin(), inputs.end(),
                       [](const auto& entry) { return entry.second.expired(); });
}

}   // namespace QZ::Test
