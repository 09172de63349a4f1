// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>

#include "QZ/Foundation/Media/QZVideoRecorder.h"
#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/DispatchQueue.h"

/// \file
/// What a QZVideoRecorder shares with the pumps and completions that may outlive it (internal).

/// The platform's objects of one recording.
struct VideoRecordingTracks {
    std::shared_ptr<QZ::Platform::AssetWriter> writer;
    std::shared_ptr<QZ::Platform::AssetWriterInput> video;
    std::shared_ptr<QZ::Platform::AssetWriterInput> audio;
    std::shared_ptr<QZ::Platform::AssetWriterInput> metadata;
    std::shared_ptr<QZ::Platform::PixelBufferAdaptor> adaptor;
    std::shared_ptr<QZ::Platform::DispatchQueue> queue;
    std::shared_ptr<QZVideoRecorderVideoFrame> frame;   ///< used by the start, then by the video pump

    void Release();
};

struct VideoRecordingRequest {
    QZ::Platform::VideoSettings video;
    QZ::Platform::PixelBufferAttributes source;
    const QZ::Platform::AffineTransform* transform;
    const std::vector<QZ::Platform::MetadataItem>* metadata;
};

struct QZVideoRecorder::Recording : std::enable_shared_from_this<Recording> {
    using Samples = std::shared_ptr<QZ::Platform::SampleBuffer>;
    /// A track of samples: where its input is kept, and what asks the delegate for one.
    struct SampleTrack {
        std::shared_ptr<QZ::Platform::AssetWriterInput> VideoRecordingTracks::*input;
        void (QZVideoRecorderDelegate::*request)(Samples*);
    };

    explicit Recording(QZVideoRecorderDelegate* theDelegate) : delegate(theDelegate) {}

    std::recursive_mutex
        delegateMutex;   ///< held during every call of the delegate, so that it can be forgotten
    QZVideoRecorderDelegate* delegate;

    mutable std::mutex mutex;   ///< guards what follows; never held during a call of the delegate
    std::optional<std::string> filename;
    VideoRecordingTracks tracks;
    std::string failureReason;
    int numToFinish = 0;
    unsigned starts = 0;   ///< tells the recording that a pump belongs to from a later one

    std::atomic<bool> cancelled = false;

    [[nodiscard]] VideoRecordingTracks CurrentTracks() const;
    void ForgetDelegate();
    bool Start(const VideoRecordingRequest& request);
    void Stop();
    void FinishedWithSamples();

private:
    struct FirstSamples {
        std::shared_ptr<QZ::Platform::PixelBuffer> picture;
        Samples audio, metadata;
    };

    template <class Call>
    void AskDelegate(Call call)
    {
        const std::lock_guard lock(delegateMutex);
        if (delegate)
            call(*delegate);
    }
    void Fail(std::string reason);
    bool MakeTracks(const VideoRecordingRequest& request, bool audio, bool metadata);
    bool AskForFirst(FirstSamples& first);
    void AppendFirst(const FirstSamples& first);
    void StartPumps();

    [[nodiscard]] static std::shared_ptr<QZ::Platform::PixelBuffer> NextPicture(
        const VideoRecordingTracks& tracks);
    [[nodiscard]] VideoRecordingTracks TracksOf(unsigned start) const;
    [[nodiscard]] bool IsLatest(unsigned start) const;
    [[nodiscard]] bool HasEnded(unsigned start) const;
    template <class Call>
    void AskOnMainThread(unsigned start, Call call);
    void PumpVideo(unsigned start);
    bool PumpPictures(unsigned start, std::shared_ptr<QZ::Platform::PixelBuffer>& held);
    void PumpSamples(unsigned start, const SampleTrack& track);
    void TrackHasFinished(unsigned start);
};
