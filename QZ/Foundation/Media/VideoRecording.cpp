// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/VideoRecording.h"

#include <algorithm>
#include <utility>

#include "QZ/Foundation/Media/QZFileUtility.h"
#include "QZ/Foundation/Media/RecorderSettings.h"
#include "QZ/Platform/ImageIO.h"
#include "QZ/Platform/MainQueue.h"

using namespace QZ::Platform;

namespace {

/// The profile that every frame carries; all of them share its bytes.
const ICCProfile& SRGBProfile()
{
    static const ICCProfile profile = [] {
        const std::span<const unsigned char> bytes = ICCProfileOf(ImageColorSpace::SRGB);
        return std::make_shared<const std::vector<unsigned char>>(bytes.begin(), bytes.end());
    }();
    return profile;
}

Time TimeOf(const std::shared_ptr<SampleBuffer>& sample)
{
    return sample ? sample->presentationTime : TimeZero;
}

Time Earlier(const Time& a, const Time& b)
{
    return CompareTime(a, b) < 0 ? a : b;
}

std::shared_ptr<AssetWriterInput> MakePassThrough(AssetWriterFactory& factory, AssetWriter& writer,
                                                  MediaType type)
{
    std::shared_ptr<AssetWriterInput> input = factory.MakeInput(type, {});
    if (input) {
        input->SetExpectsMediaDataInRealTime(false);
        writer.AddInput(input);
    }
    return input;
}

void MakeVideo(AssetWriterFactory& factory, const VideoRecordingRequest& request,
               VideoRecordingTracks& tracks)
{
    tracks.video = factory.MakeInput(MediaType::Video, request.video);
    if (!tracks.video)
        return;
    tracks.writer->AddInput(tracks.video);
    tracks.video->SetExpectsMediaDataInRealTime(false);
    if (request.transform)
        tracks.video->SetTransform(*request.transform);
    tracks.adaptor = factory.MakeAdaptor(tracks.video, request.source);
}

}   // namespace

void VideoRecordingTracks::Release()
{
    writer.reset();
    video.reset();
    audio.reset();
    metadata.reset();
    adaptor.reset();
    queue.reset();
    frame.reset();
}

VideoRecordingTracks QZVideoRecorder::Recording::CurrentTracks() const
{
    const std::lock_guard lock(mutex);
    return tracks;
}

void QZVideoRecorder::Recording::ForgetDelegate()
{
    const std::lock_guard lock(delegateMutex);
    delegate = nullptr;
}

void QZVideoRecorder::Recording::Fail(std::string reason)
{
    const std::lock_guard lock(mutex);
    failureReason = std::move(reason);
}

bool QZVideoRecorder::Recording::Start(const VideoRecordingRequest& request)
{
    bool audio = false, metadata = false;
    AskDelegate([&](QZVideoRecorderDelegate& asked) {
        audio = asked.doesHaveAudio();
        metadata = asked.doesHaveMetadata();
    });
    {
        const std::lock_guard lock(mutex);
        filename = QZFileUtility::uniqueFilename(QZ::Foundation::DefaultMoviePath());
        failureReason.clear();
        ++starts;
    }
    FirstSamples first;
    if (!MakeTracks(request, audio, metadata) || !AskForFirst(first))
        return false;
    AppendFirst(first);
    StartPumps();
    return true;
}

bool QZVideoRecorder::Recording::MakeTracks(const VideoRecordingRequest& request, bool audio, bool metadata)
{
    const std::shared_ptr<AssetWriterFactory> factory = AssetWriterFactory::Shared();
    VideoRecordingTracks made;
    made.frame = std::make_shared<QZVideoRecorderVideoFrame>();
    if (factory)
        made.writer = factory->MakeWriter(*filename, FileType::QuickTimeMovie);
    bool writes = false;
    if (made.writer) {
        if (request.metadata)
            made.writer->SetMetadata(*request.metadata);
        MakeVideo(*factory, request, made);
        if (audio)
            made.audio = MakePassThrough(*factory, *made.writer, MediaType::Audio);
        if (metadata)
            made.metadata = MakePassThrough(*factory, *made.writer, MediaType::Metadata);
        writes = made.video && made.adaptor && (made.audio || !audio) && (made.metadata || !metadata) &&
                 made.writer->StartWriting();
    }
    if (!writes)
        Fail(QZ::Foundation::ReasonOf(factory, made.writer));
    const std::lock_guard lock(mutex);
    tracks = std::move(made);
    return writes;
}

/// A locked picture, whose place the frame record tells; null when the pool has none.
std::shared_ptr<PixelBuffer> QZVideoRecorder::Recording::NextPicture(const VideoRecordingTracks& tracks)
{
    const std::shared_ptr<PixelBufferPool> pool = tracks.adaptor ? tracks.adaptor->Pool() : nullptr;
    std::shared_ptr<PixelBuffer> picture = pool ? pool->MakePixelBuffer() : nullptr;
    if (!picture)
        return nullptr;
    picture->SetICCProfile(SRGBProfile());
    picture->Lock();
    tracks.frame->bytesPerRow = picture->BytesPerRow();
    tracks.frame->baseAddress = picture->BaseAddress();
    return picture;
}

/// Asks for the first picture and samples, on the calling thread. \return whether there is a picture.
bool QZVideoRecorder::Recording::AskForFirst(FirstSamples& first)
{
    const VideoRecordingTracks current = CurrentTracks();
    first.picture = NextPicture(current);
    if (!first.picture) {
        Fail("no memory for a picture");
        return false;
    }
    AskDelegate([&](QZVideoRecorderDelegate& asked) { asked.getVideoFrame(current.frame.get()); });
    first.picture->Unlock();
    if (!current.frame->hasFrame) {
        Fail("there is no first picture");
        return false;
    }
    AskDelegate([&](QZVideoRecorderDelegate& asked) {
        if (current.audio)
            asked.getAudioSample(&first.audio);
        if (current.metadata)
            asked.getMetadataSample(&first.metadata);
    });
    return true;
}

void QZVideoRecorder::Recording::AppendFirst(const FirstSamples& first)
{
    const VideoRecordingTracks current = CurrentTracks();
    if (!current.writer)   // the delegate has stopped the recorder
        return;
    const Time start = Earlier(Earlier(current.frame->time, TimeOf(first.audio)), TimeOf(first.metadata));
    current.writer->StartSessionAtSourceTime(start);
    current.adaptor->AppendPixelBuffer(first.picture, current.frame->time);
    int count = 1;
    if (current.audio) {
        if (first.audio)
            current.audio->AppendSampleBuffer(first.audio);
        ++count;
    }
    if (current.metadata) {
        if (first.metadata)
            current.metadata->AppendSampleBuffer(first.metadata);
        ++count;
    }
    const std::lock_guard lock(mutex);
    numToFinish = count;
}

void QZVideoRecorder::Recording::StartPumps()
{
    VideoRecordingTracks current;
    unsigned start = 0;
    {
        const std::lock_guard lock(mutex);
        tracks.queue = DispatchQueue::Serial("org.qzfoundation.videoRecorder");
        current = tracks;
        start = starts;
    }
    const std::shared_ptr<Recording> self = shared_from_this();
    if (current.video)
        current.video->RequestMediaDataWhenReady(current.queue, [self, start] { self->PumpVideo(start); });
    if (current.audio)
        current.audio->RequestMediaDataWhenReady(current.queue, [self, start] {
            self->PumpSamples(start,
                              {&VideoRecordingTracks::audio, &QZVideoRecorderDelegate::getAudioSample});
        });
    if (current.metadata)
        current.metadata->RequestMediaDataWhenReady(current.queue, [self, start] {
            self->PumpSamples(start,
                              {&VideoRecordingTracks::metadata, &QZVideoRecorderDelegate::getMetadataSample});
        });
}

void QZVideoRecorder::Recording::Stop()
{
    VideoRecordingTracks released;
    {
        const std::lock_guard lock(mutex);
        std::swap(released, tracks);
    }
    released.Release();
    cancelled = false;
}

void QZVideoRecorder::Recording::FinishedWithSamples()
{
    std::shared_ptr<AssetWriter> writer;
    std::string path;
    unsigned start = 0;
    {
        const std::lock_guard lock(mutex);
        if (numToFinish-- != 1)
            return;
        writer = tracks.writer;
        path = *filename;
        start = starts;
    }
    if (writer)
        writer->FinishWriting([self = shared_from_this(), writer, path, start] {
            if (writer->Status() == AssetWriterStatus::Failed && self->IsLatest(start))
                self->Fail(writer->Reason());
            self->AskDelegate([&](QZVideoRecorderDelegate& told) { told.didFinishRecording(path); });
        });
    Stop();
    AskDelegate([](QZVideoRecorderDelegate& told) { told.willFinishRecording(); });
}
