// SPDX-License-Identifier: MIT
// The pumps, which the inputs call on the recording's serial queue when they want samples.
#include "QZ/Foundation/Media/VideoRecording.h"
#include "QZ/Platform/MainQueue.h"

using namespace QZ::Platform;

/// The objects of a recording; none once it was stopped or another one has started.
VideoRecordingTracks QZVideoRecorder::Recording::TracksOf(unsigned start) const
{
    const std::lock_guard lock(mutex);
    return start == starts ? tracks : VideoRecordingTracks{};
}

bool QZVideoRecorder::Recording::IsLatest(unsigned start) const
{
    const std::lock_guard lock(mutex);
    return start == starts;
}

/// Asks the delegate, unless another recording has followed the asking one.
template <class Call>
void QZVideoRecorder::Recording::AskOnMainThread(unsigned start, Call call)
{
    MainQueue::Shared().Sync([&] {
        if (IsLatest(start))
            AskDelegate(call);
    });
}

/// Whether a recording goes no further: it was cancelled, or its writer has failed and all more would be in
/// vain.
bool QZVideoRecorder::Recording::HasEnded(unsigned start) const
{
    const std::shared_ptr<AssetWriter> writer = TracksOf(start).writer;
    return cancelled || (writer && writer->Status() == AssetWriterStatus::Failed);
}

void QZVideoRecorder::Recording::PumpVideo(unsigned start)
{
    std::shared_ptr<PixelBuffer> held;
    if (!PumpPictures(start, held))
        return;
    const std::shared_ptr<AssetWriterInput> input = TracksOf(start).video;
    MainQueue::Shared().Sync([&input] {
        if (input)
            input->MarkAsFinished();
    });
    if (held)
        held->Unlock();
    held.reset();
    TrackHasFinished(start);
}

/// Appends pictures while the input takes them. \return whether that was all of them.
bool QZVideoRecorder::Recording::PumpPictures(unsigned start, std::shared_ptr<PixelBuffer>& held)
{
    const auto isReady = [&] {
        const std::shared_ptr<AssetWriterInput> input = TracksOf(start).video;
        return input && input->IsReadyForMoreMediaData();
    };
    while (isReady()) {
        const VideoRecordingTracks current = TracksOf(start);
        if (!held && current.frame)
            held = NextPicture(current);
        if (!held || !current.frame)
            return true;
        QZVideoRecorderVideoFrame& frame = *current.frame;
        frame.hasFrame = false;
        AskOnMainThread(start, [&](QZVideoRecorderDelegate& asked) { asked.getVideoFrame(&frame); });
        if (HasEnded(start) || !frame.hasFrame)
            return true;
        if (frame.holdFrame)
            continue;
        held->Unlock();
        if (const std::shared_ptr<PixelBufferAdaptor> adaptor = TracksOf(start).adaptor)
            adaptor->AppendPixelBuffer(held, frame.time);
        held.reset();
    }
    return false;   // a buffer that is held now is lost
}

void QZVideoRecorder::Recording::PumpSamples(unsigned start, const SampleTrack& track)
{
    const auto currentInput = [&] { return TracksOf(start).*track.input; };
    std::shared_ptr<AssetWriterInput> input = currentInput();
    if (!input)
        return;
    while (input->IsReadyForMoreMediaData()) {
        Samples sample;
        AskOnMainThread(start, [&](QZVideoRecorderDelegate& asked) { (asked.*track.request)(&sample); });
        if (HasEnded(start) || !sample) {
            input->MarkAsFinished();
            TrackHasFinished(start);
            return;
        }
        input->AppendSampleBuffer(sample);
        input = currentInput();
        if (!input)
            return;
    }
}

/// On the main thread, and not for a recording that another has followed.
void QZVideoRecorder::Recording::TrackHasFinished(unsigned start)
{
    MainQueue::Shared().Sync([this, start] {
        if (IsLatest(start))
            FinishedWithSamples();
    });
}
