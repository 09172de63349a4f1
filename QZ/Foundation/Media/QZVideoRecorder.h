// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QZ/Export.h"
#include "QZ/Platform/Geometry.h"
#include "QZ/Platform/MediaBuffers.h"
#include "QZ/Platform/Time.h"

/// A request for a picture: the recorder says where, the delegate paints and says when.
struct QZVideoRecorderVideoFrame {
    QZ::Platform::Time time = QZ::Platform::TimeZero;   ///< presentation time, from the delegate
    std::uint64_t bytesPerRow = 0;                      ///< of the picture
    bool hasFrame =
        false;   ///< the delegate sets it when it painted; false (as at each request) ends the movie
    /// The delegate sets it to be offered the same buffer once more before it is appended. Apart from the
    /// first request it keeps its value, so that the delegate writes it each time. Should the encoder have no
    /// room just then, the buffer is lost and the next request brings a new one.
    bool holdFrame = false;
    unsigned char* baseAddress = nullptr;   ///< of the picture: B, G, R, A, the top row first
};

/// Supplies a QZVideoRecorder. Not owned by it.
///
/// The first picture and the first samples are asked for by the start, on its thread; everything else comes
/// on the main thread, but for didFinishRecording. The recorder calls nothing any more once its destructor
/// has returned.
class QZ_API QZVideoRecorderDelegate {
public:
    virtual ~QZVideoRecorderDelegate();

    /// Whether the movie has sound or timed metadata; asked once a start.
    virtual bool doesHaveAudio() = 0;
    virtual bool doesHaveMetadata() = 0;

    /// Paints the next picture. Times must increase.
    virtual void getVideoFrame(QZVideoRecorderVideoFrame* frame) = 0;
    /// Stores the next samples, or leaves null at the end of the track.
    virtual void getAudioSample(std::shared_ptr<QZ::Platform::SampleBuffer>* sample) = 0;
    virtual void getMetadataSample(std::shared_ptr<QZ::Platform::SampleBuffer>* sample) = 0;

    /// Everything has been handed to the encoder, the recorder can start anew, and the file is being
    /// finished.
    virtual void willFinishRecording() = 0;
    /// The file is complete, or has failed (see QZVideoRecorder::failureReason). On a thread of the writer's:
    /// it must not wait for the main thread.
    virtual void didFinishRecording(const std::string& filename) = 0;
};

/// Writes a movie as fast as it can be encoded, from pictures, sound and timed metadata that it asks its
/// delegate for.
///
/// The file is "<bundle name>Edit.mov" in the temporary directory, made unique by QZFileUtility. It belongs
/// to the recorder: the next start and the destructor give it up for deletion, unless it is marked as in use
/// there.
///
/// Start, stop and destroy it on the main thread, which must drain Platform::MainQueue while a recording is
/// under way: the recorder waits for its delegate there. A recorder that is destroyed before
/// didFinishRecording loses its movie, unless the file is marked as in use.
class QZ_API QZVideoRecorder {
public:
    /// \param path  a file that the first start gives up for deletion; none for the default name. It names no movie:
    ///              each start takes a name of its own.
    QZVideoRecorder(QZVideoRecorderDelegate* delegate, std::optional<std::string> path);
    /// Stops, and gives the file up.
    virtual ~QZVideoRecorder();
    QZVideoRecorder(const QZVideoRecorder&) = delete;
    QZVideoRecorder& operator=(const QZVideoRecorder&) = delete;

    /// Starts a recording. The movie's time begins with the earliest of the first picture, sound and
    /// metadata; a track that is absent, or has no sample, counts as time zero.
    /// \param frameRate          pictures a second, for the bit rate and for a key frame a second. Unlike the real-time
    ///                           recorder this one takes any number at its word, -1 too.
    /// \param bitRateMultiplier  of the default bit rate; likewise.
    /// \param width,height       of the movie, in pixels
    /// \param transform          how the movie is turned when shown; may be null
    /// \param metadata           tags of the movie; may be null
    /// \param format  "hevc", "prores" (ProRes 422, which has its own bit rate), or else H.264
    /// \return  false when a recording is under way, and when it cannot start or the delegate has no first picture: then
    ///          failureReason says why.
    bool startWithFrameRate(int frameRate, double bitRateMultiplier, int width, int height,
                            const QZ::Platform::AffineTransform* transform,
                            const std::vector<QZ::Platform::MetadataItem>* metadata, std::string_view format);

    /// Ends every track after its next request: a shorter movie is finished, with both notifications. From
    /// any thread.
    void cancel();

    /// Abandons a recording that is under way, without a notification: the file stays as far as it was
    /// written.
    void stop();

    /// One track has come to its end; the recorder calls this on the main thread. After the last one the file
    /// is finished, the recorder stops, and the delegate hears willFinishRecording, later didFinishRecording.
    void finishedWithSamples();

    /// Path of the movie, also after it was stopped.
    [[nodiscard]] std::optional<std::string> filename() const;

    /// Why the latest start answered false, or its movie could not be written (a full disk, say), for a
    /// person to read; empty when nothing went wrong.
    [[nodiscard]] std::string failureReason() const;

private:
    struct Recording;
    const std::shared_ptr<Recording> m_recording;   ///< shared with what still runs after the destructor
};
