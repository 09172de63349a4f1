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

/// What a real-time recording shows: the host derives from it and paints. Called on the thread that records.
class QZ_API QZRealTimeVideoRecorderFrame {
public:
    QZRealTimeVideoRecorderFrame() = default;
    virtual ~QZRealTimeVideoRecorderFrame();
    QZRealTimeVideoRecorderFrame(const QZRealTimeVideoRecorderFrame&) = delete;
    QZRealTimeVideoRecorderFrame& operator=(const QZRealTimeVideoRecorderFrame&) = delete;

    /// Paints a picture: 4 bytes a pixel in the order B, G, R, A, the top row first.
    /// \return  whether it painted; false in this class.
    virtual bool sample(unsigned char* base, std::uint64_t bytesPerRow);

    /// Tells the presentation time of the picture that `sample` is about to paint.
    /// \return  whether there is a picture; this class writes zero and answers false.
    virtual bool sampleTime(QZ::Platform::Time* time);

    /// The time at which the movie shall start when sound arrives before the first picture.
    /// \return  the unset time -1/60, as in this class, to have sound wait for the first picture.
    virtual QZ::Platform::Time startTime();
};

/// Records a movie of pictures that the host paints as they come, with the sound that comes beside them.
///
/// The file is "<bundle name>Edit.mov" in the temporary directory, made unique by QZFileUtility. It belongs
/// to the recorder: the next start and the destructor give it up for deletion, unless it is marked as in use
/// there.
///
/// Start, stop and destroy on one thread, best the main one. recordFrame and recordAudio may be called from
/// other threads, also at the same time. The host drains Platform::MainQueue: the recorder is torn down
/// there.
/// \code
///     QZRealTimeVideoRecorder recorder;
///     if (!recorder.startWithFrameRate(30, 1.0, 1280, 720, nullptr, scene, true, nullptr, "hevc"))
///         Show(recorder.failureReason());
///     ...                      // for every displayed frame: recorder.recordFrame();
///     recorder.stop();         // and on the main thread, soon: MainQueue::Shared().Drain()
///     ...                      // once recorder.finishing() is false: Share(recorder.filename());
/// \endcode
class QZ_API QZRealTimeVideoRecorder {
public:
    QZRealTimeVideoRecorder();
    /// \param path  a file that the first start gives up for deletion; none for the default name. It names no movie:
    ///              each start takes a name of its own.
    explicit QZRealTimeVideoRecorder(std::optional<std::string> path);
    /// Stops, and gives the file up.
    virtual ~QZRealTimeVideoRecorder();
    QZRealTimeVideoRecorder(const QZRealTimeVideoRecorder&) = delete;
    QZRealTimeVideoRecorder& operator=(const QZRealTimeVideoRecorder&) = delete;

    /// startWithFrameRate with the encoder's own bit rate, as H.264.
    bool start(int width, int height, const QZ::Platform::AffineTransform* transform,
               std::shared_ptr<QZRealTimeVideoRecorderFrame> frame, bool audio,
               const std::vector<QZ::Platform::MetadataItem>* metadata);

    /// Starts a recording. The movie's time begins with its first picture, or with the frame provider's
    /// startTime when sound comes first.
    /// \param frameRate  pictures a second, for the bit rate and for a key frame a second; -1 leaves both to the encoder
    /// \param bitRateMultiplier  of the default bit rate; 0, negative or NaN leaves the bit rate to the encoder
    /// \param width,height  in pixels, of the pictures that the provider paints. The movie has this size or, when set,
    ///                      the preferred one in the orientation of this: pictures fill it, and what exceeds
    ///                      it is cropped.
    /// \param transform  how the movie is turned when shown; may be null
    /// \param frame      paints the pictures; kept alive until the teardown
    /// \param audio      whether there is a sound track: AAC, mono, 44.1 kHz, 128 kbit/s
    /// \param metadata   tags of the movie; may be null
    /// \param format     "hevc", "prores" (ProRes 422, which has its own bit rate), or else H.264
    /// \return  false when a recording is under way, and when it cannot start: then failureReason says why.
    bool startWithFrameRate(int frameRate, double bitRateMultiplier, int width, int height,
                            const QZ::Platform::AffineTransform* transform,
                            std::shared_ptr<QZRealTimeVideoRecorderFrame> frame, bool audio,
                            const std::vector<QZ::Platform::MetadataItem>* metadata, std::string_view format);

    /// Whether recordFrame would find room for a picture.
    [[nodiscard]] bool readyForAnotherFrame() const;
    /// Whether recordAudio would find room for sound; false without a sound track.
    [[nodiscard]] bool readyForMoreAudio() const;

    /// Has the provider paint a picture, and records it. It does not wait for the encoder.
    /// \return  false when not started, not ready, or without a picture. A picture that is not later than the latest is
    ///          dropped, and reported as recorded.
    bool recordFrame();

    /// Records sound, compressed or not.
    /// \return  false when not started, not ready, before the movie's time has begun, or for sound from before that.
    bool recordAudio(const std::shared_ptr<QZ::Platform::SampleBuffer>& sample);

    /// Has the file finished and returns. The rest happens on the main queue: until it has run, started()
    /// answers true and no other recording can start. The file name stays.
    void stop();

    /// Whether a file is being completed: from the stop on, until it is a whole movie or has failed.
    [[nodiscard]] bool finishing() const;

    /// Path of the movie, also after it was stopped.
    [[nodiscard]] std::optional<std::string> filename() const;

    /// Whether frames and sound are taken. The host may set it to pause.
    [[nodiscard]] bool started() const;
    void setStarted(bool started);

    /// The movie's size for the next start; 0 x 0, as at first, for that of the pictures.
    [[nodiscard]] QZ::Platform::Size preferredOutputSize() const;
    void setPreferredOutputSize(QZ::Platform::Size size);

    /// Why the latest start answered false, or its movie cannot be written (a full disk, say), for a person
    /// to read; empty when nothing went wrong.
    [[nodiscard]] std::string failureReason() const;

private:
    struct Recording;
    const std::shared_ptr<Recording> m_recording;   ///< shared with what still runs after the destructor
    QZ::Platform::Size m_preferredOutputSize = {0.0, 0.0};
};
