// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZRealTimeVideoRecorder.h"

#include <atomic>
#include <future>
#include <mutex>
#include <utility>

#include "QZ/Foundation/Media/QZFileUtility.h"
#include "QZ/Foundation/Media/RecorderSettings.h"
#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/DispatchQueue.h"
#include "QZ/Platform/MainQueue.h"

using namespace QZ::Platform;
using QZ::Foundation::Truncate;

namespace {

constexpr Time kUnset = {-1, 60, kTimeValid, 0};

bool IsUnset(const Time& time)
{
    return CompareTime(time, kUnset) == 0;
}

/// The preferred size in the orientation of the pictures; sizes that are square, or one of each, swap it.
Size OutputSize(int width, int height, Size preferred)
{
    if (preferred.width == 0.0 && preferred.height == 0.0)
        return {static_cast<double>(width), static_cast<double>(height)};
    const bool bothLandscape = width > height && preferred.width > preferred.height;
    const bool bothPortrait = height > width && preferred.height > preferred.width;
    return bothLandscape || bothPortrait ? preferred : Size{preferred.height, preferred.width};
}

AudioSettings MonoAAC()
{
    AudioSettings settings;
    settings.formatID = FourCharacterCode("aac ");
    settings.sampleRate = 44100.0;
    settings.numberOfChannels = 1;
    settings.bitRate = 128000;
    settings.channelLayout.tag = kChannelLayoutMono;
    return settings;
}

/// The platform's objects of one recording.
struct Tracks {
    std::shared_ptr<AssetWriter> writer;
    std::shared_ptr<AssetWriterInput> video;
    std::shared_ptr<AssetWriterInput> audio;
    std::shared_ptr<PixelBufferAdaptor> adaptor;

    /// The writer first: what is still underway in it goes with it.
    void Release()
    {
        writer.reset();
        video.reset();
        audio.reset();
        adaptor.reset();
    }
};

struct Request {
    VideoSettings video;
    PixelBufferAttributes source;
    const AffineTransform* transform;
    bool audio;
    const std::vector<MetadataItem>* metadata;
};

void MakeVideo(AssetWriterFactory& factory, const Request& request, Tracks& tracks)
{
    tracks.video = factory.MakeInput(MediaType::Video, request.video);
    if (!tracks.video)
        return;
    tracks.writer->AddInput(tracks.video);
    tracks.video->SetExpectsMediaDataInRealTime(true);
    if (request.transform)
        tracks.video->SetTransform(*request.transform);
    tracks.adaptor = factory.MakeAdaptor(tracks.video, request.source);
}

void MakeAudio(AssetWriterFactory& factory, Tracks& tracks)
{
    tracks.audio = factory.MakeInput(MediaType::Audio, MonoAAC());
    if (!tracks.audio)
        return;
    tracks.audio->SetExpectsMediaDataInRealTime(true);
    tracks.writer->AddInput(tracks.audio);
}

/// Makes what it can, in the order in which the platform wants it. \return whether all of it writes now.
bool Make(AssetWriterFactory& factory, const std::string& path, const Request& request, Tracks& tracks)
{
    tracks.writer = factory.MakeWriter(path, FileType::QuickTimeMovie);
    if (!tracks.writer)
        return false;
    if (request.metadata)
        tracks.writer->SetMetadata(*request.metadata);
    MakeVideo(factory, request, tracks);
    if (request.audio)
        MakeAudio(factory, tracks);
    return tracks.video && (tracks.audio || !request.audio) && tracks.adaptor &&
           tracks.writer->StartWriting();
}

}   // namespace

QZRealTimeVideoRecorderFrame::~QZRealTimeVideoRecorderFrame() = default;

bool QZRealTimeVideoRecorderFrame::sample(unsigned char*, std::uint64_t)
{
    return false;
}

bool QZRealTimeVideoRecorderFrame::sampleTime(Time* time)
{
    *time = TimeZero;
    return false;
}

Time QZRealTimeVideoRecorderFrame::startTime()
{
    return kUnset;
}

struct QZRealTimeVideoRecorder::Recording {
    mutable std::mutex mutex;   ///< guards what follows; never held while the provider paints
    Time startTime = kUnset;
    Time lastTime = kUnset;
    std::optional<std::string> filename;
    std::shared_ptr<QZRealTimeVideoRecorderFrame> frame;
    Tracks tracks;
    std::string failureReason;
    unsigned starts = 0;   ///< tells the recording that a teardown belongs to from a later one
    bool finishing = false;

    std::atomic<bool> started = false;
    std::atomic<int> unfinishedFiles = 0;   ///< that a stop has asked for

    Tracks CurrentTracks() const
    {
        const std::lock_guard lock(mutex);
        return tracks;
    }
    std::shared_ptr<QZRealTimeVideoRecorderFrame> CurrentFrame() const
    {
        const std::lock_guard lock(mutex);
        return frame;
    }
    bool SessionIsUnset() const
    {
        const std::lock_guard lock(mutex);
        return IsUnset(startTime);
    }

    /// Starts the session, unless another thread has just done so.
    void StartSession(const Time& time)
    {
        const std::lock_guard lock(mutex);
        if (!IsUnset(startTime))
            return;
        startTime = time;
        if (tracks.writer)
            tracks.writer->StartSessionAtSourceTime(time);
    }

    /// \return false for a time that does not advance: such a picture is dropped.
    bool Advance(const Time& time)
    {
        const std::lock_guard lock(mutex);
        if (CompareTime(time, lastTime) <= 0 && CompareTime(time, startTime) != 0)
            return false;
        lastTime = time;
        return true;
    }

    /// \return the number of the start whose recording is to be stopped, unless it was stopped before.
    std::optional<unsigned> BeginFinishing()
    {
        const std::lock_guard lock(mutex);
        return std::exchange(finishing, tracks.writer != nullptr) ? std::nullopt : std::optional(starts);
    }

    void Finished(const AssetWriter& writer, unsigned start)
    {
        const std::lock_guard lock(mutex);
        if (start == starts)
            KeepReasonOf(writer);
    }

    /// With the mutex held.
    void KeepReasonOf(const AssetWriter& writer)
    {
        if (failureReason.empty() && writer.Status() == AssetWriterStatus::Failed)
            failureReason = writer.Reason();
    }

    /// Back to idle, on the main queue.
    void TearDown(unsigned start)
    {
        Tracks released;
        std::shared_ptr<QZRealTimeVideoRecorderFrame> releasedFrame;
        {
            const std::lock_guard lock(mutex);
            if (start != starts)
                return;
            startTime = lastTime = kUnset;
            started = false;
            finishing = false;
            if (tracks.writer)
                KeepReasonOf(*tracks.writer);
            std::swap(released, tracks);
            releasedFrame.swap(frame);
        }
        released.Release();
    }
};

QZRealTimeVideoRecorder::QZRealTimeVideoRecorder() : QZRealTimeVideoRecorder(std::nullopt)
{}

QZRealTimeVideoRecorder::QZRealTimeVideoRecorder(std::optional<std::string> path)
    : m_recording(std::make_shared<Recording>())
{
    m_recording->filename = path ? std::move(path) : QZ::Foundation::DefaultMoviePath();
}

QZRealTimeVideoRecorder::~QZRealTimeVideoRecorder()
{
    stop();
    QZFileUtility::markUniqueFilenameForDelete(m_recording->filename);
}

bool QZRealTimeVideoRecorder::start(int width, int height, const AffineTransform* transform,
                                    std::shared_ptr<QZRealTimeVideoRecorderFrame> frame, bool audio,
                                    const std::vector<MetadataItem>* metadata)
{
    return startWithFrameRate(-1, 1.0, width, height, transform, std::move(frame), audio, metadata, {});
}

bool QZRealTimeVideoRecorder::startWithFrameRate(int frameRate, double bitRateMultiplier, int width,
                                                 int height, const AffineTransform* transform,
                                                 std::shared_ptr<QZRealTimeVideoRecorderFrame> frame,
                                                 bool audio, const std::vector<MetadataItem>* metadata,
                                                 std::string_view format)
{
    if (m_recording->CurrentTracks().writer)
        return false;
    QZFileUtility::markUniqueFilenameForDelete(filename());
    const std::string path = *QZFileUtility::uniqueFilename(QZ::Foundation::DefaultMoviePath());

    const Size output = OutputSize(width, height, m_preferredOutputSize);
    Request request = {{}, QZ::Foundation::SourceAttributes(width, height), transform, audio, metadata};
    request.video.codec = QZ::Foundation::CodecOfFormat(format);
    request.video.width = Truncate(output.width);
    request.video.height = Truncate(output.height);
    request.video.scalingMode = VideoScalingMode::ResizeAspectFill;
    if (frameRate != -1 && bitRateMultiplier > 0.0 && request.video.codec != VideoCodec::ProRes422)
        request.video.compression =
            QZ::Foundation::CompressionFor(width, height, frameRate, bitRateMultiplier);

    const std::shared_ptr<AssetWriterFactory> factory = AssetWriterFactory::Shared();
    Tracks tracks;
    const bool writes = factory && Make(*factory, path, request, tracks);
    {
        const std::lock_guard lock(m_recording->mutex);
        ++m_recording->starts;
        m_recording->filename = path;
        m_recording->tracks = tracks;
        m_recording->failureReason = writes ? "" : QZ::Foundation::ReasonOf(factory, tracks.writer);
        if (writes)
            m_recording->frame = std::move(frame);
    }
    if (writes)
        m_recording->started = true;
    else
        stop();
    return writes;
}

bool QZRealTimeVideoRecorder::readyForAnotherFrame() const
{
    const Tracks tracks = m_recording->CurrentTracks();
    return tracks.writer && tracks.video && tracks.video->IsReadyForMoreMediaData();
}

bool QZRealTimeVideoRecorder::readyForMoreAudio() const
{
    const Tracks tracks = m_recording->CurrentTracks();
    return tracks.audio && tracks.audio->IsReadyForMoreMediaData();
}

bool QZRealTimeVideoRecorder::recordFrame()
{
    Recording& recording = *m_recording;
    const std::shared_ptr<QZRealTimeVideoRecorderFrame> frame = recording.CurrentFrame();
    Time time = TimeZero;
    if (!recording.started || !readyForAnotherFrame() || !frame || !frame->sampleTime(&time))
        return false;
    recording.StartSession(time);

    const std::shared_ptr<PixelBufferAdaptor> adaptor = recording.CurrentTracks().adaptor;
    const std::shared_ptr<PixelBufferPool> pool = adaptor ? adaptor->Pool() : nullptr;
    const std::shared_ptr<PixelBuffer> buffer = pool ? pool->MakePixelBuffer() : nullptr;
    if (!buffer)
        return false;
    buffer->Lock();
    unsigned char* base = buffer->BaseAddress();
    const bool painted = base && frame->sample(base, buffer->BytesPerRow());
    buffer->Unlock();
    if (!painted)
        return false;
    if (!recording.Advance(time))
        return true;   // hosts count on a picture that comes twice to be no failure
    return adaptor->AppendPixelBuffer(buffer, time);
}

bool QZRealTimeVideoRecorder::recordAudio(const std::shared_ptr<SampleBuffer>& sample)
{
    Recording& recording = *m_recording;
    if (!recording.started || !readyForMoreAudio() || !sample)
        return false;
    if (recording.SessionIsUnset()) {
        const std::shared_ptr<QZRealTimeVideoRecorderFrame> frame = recording.CurrentFrame();
        const Time start = frame ? frame->startTime() : Time{};
        if (!IsUnset(start))
            recording.StartSession(start);
    }
    std::unique_lock lock(recording.mutex);
    const Time start = recording.startTime;
    const std::shared_ptr<AssetWriterInput> audio = recording.tracks.audio;
    lock.unlock();
    if (!audio || IsUnset(start) || CompareTime(sample->presentationTime, start) < 0)
        return false;
    return audio->AppendSampleBuffer(sample);
}

void QZRealTimeVideoRecorder::stop()
{
    const std::optional<unsigned> beginning = m_recording->BeginFinishing();
    if (!beginning)
        return;
    const unsigned start = *beginning;
    const Tracks tracks = m_recording->CurrentTracks();
    if (tracks.video)
        tracks.video->MarkAsFinished();
    if (tracks.audio)
        tracks.audio->MarkAsFinished();

    const auto requested = std::make_shared<std::promise<void>>();
    DispatchQueue::Global()->Async(
        [requested, start, writer = tracks.writer, recording = m_recording]() mutable {
            if (writer) {
                ++recording->unfinishedFiles;
                writer->FinishWriting([start, writer, recording] {
                    recording->Finished(*writer, start);
                    --recording->unfinishedFiles;
                });
            }
            writer.reset();   // before the caller goes on: the teardown is to release the last of them
            requested->set_value();
        });
    requested->get_future().wait();   // for the request, not for the file
    MainQueue::Shared().Post([start, recording = m_recording] { recording->TearDown(start); });
}

std::optional<std::string> QZRealTimeVideoRecorder::filename() const
{
    const std::lock_guard lock(m_recording->mutex);
    return m_recording->filename;
}

bool QZRealTimeVideoRecorder::finishing() const
{
    return m_recording->unfinishedFiles > 0;
}

bool QZRealTimeVideoRecorder::started() const
{
    return m_recording->started;
}

void QZRealTimeVideoRecorder::setStarted(bool started)
{
    m_recording->started = started;
}

Size QZRealTimeVideoRecorder::preferredOutputSize() const
{
    return m_preferredOutputSize;
}

void QZRealTimeVideoRecorder::setPreferredOutputSize(Size size)
{
    m_preferredOutputSize = size;
}

std::string QZRealTimeVideoRecorder::failureReason() const
{
    const std::lock_guard lock(m_recording->mutex);
    const std::shared_ptr<AssetWriter>& writer = m_recording->tracks.writer;
    if (writer && writer->Status() == AssetWriterStatus::Failed)
        return writer->Reason();
    return m_recording->failureReason;
}
