// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "QZ/Export.h"
#include "QZ/Platform/Geometry.h"
#include "QZ/Platform/MediaBuffers.h"
#include "QZ/Platform/Time.h"

/// \file
/// Writing a movie: a writer for the file, an input for each track, and for video an adaptor that takes
/// pictures.
///
/// The classes are abstract. What makes them is AssetWriterFactory::Shared(): the movie-writer module that is
/// installed beside the library, or a factory of the host's (a test's that records every call).
///
/// A movie is written in this order: MakeWriter, SetMetadata, MakeInput and AddInput for every track,
/// StartWriting, StartSessionAtSourceTime, the samples, MarkAsFinished on every input, FinishWriting. Every
/// member may be called from any thread and at any time; one called out of order changes nothing but, where
/// it says so, the answer.

namespace QZ::Platform {

class DispatchQueue;

enum class FileType { QuickTimeMovie };

enum class VideoCodec { H264, HEVC, ProRes422 };

/// How pictures of another size than the output's are fitted into it.
enum class VideoScalingMode {
    ResizeAspectFill
};   ///< fill the output, crop what exceeds it equally on both sides

struct VideoCompression {
    int averageBitRate = 0;        ///< bits a second; zero or less leaves the choice to the encoder
    int maxKeyFrameInterval = 0;   ///< frames; zero or less leaves the choice to the encoder

    bool operator==(const VideoCompression&) const = default;
};

/// How a video track is encoded. What is absent is the encoder's choice.
struct VideoSettings {
    VideoCodec codec = VideoCodec::H264;
    int width = 0;
    int height = 0;
    std::optional<VideoScalingMode> scalingMode;   ///< absent counts as ResizeAspectFill too
    std::optional<VideoCompression> compression;

    bool operator==(const VideoSettings&) const = default;
};

/// Which loudspeakers the channels are meant for: 32 bytes.
struct AudioChannelLayout {
    std::uint32_t tag = 0;
    std::uint32_t bitmap = 0;
    std::uint32_t numberOfDescriptions = 0;
    std::uint32_t description[5] = {};

    bool operator==(const AudioChannelLayout&) const = default;
};
static_assert(sizeof(AudioChannelLayout) == 32);
inline constexpr std::uint32_t kChannelLayoutMono = 100u << 16 | 1u;

/// How an audio track is encoded.
struct AudioSettings {
    std::uint32_t formatID = 0;   ///< four-character code; "aac " is MPEG-4 AAC
    double sampleRate = 0;
    int numberOfChannels = 0;
    int bitRate = 0;   ///< bits a second
    AudioChannelLayout channelLayout;

    bool operator==(const AudioSettings&) const = default;
};

/// Settings of an input; none (std::monostate): samples pass through in the format that they come in.
using OutputSettings = std::variant<std::monostate, VideoSettings, AudioSettings>;

/// One track of a movie.
///
/// An input that expects its data in real time never blocks who appends: samples wait in a bounded queue
/// until the writer's own thread encodes them, and a full queue turns IsReadyForMoreMediaData to false.
class QZ_API AssetWriterInput {
public:
    virtual ~AssetWriterInput();
    AssetWriterInput(const AssetWriterInput&) = delete;
    AssetWriterInput& operator=(const AssetWriterInput&) = delete;

    /// False by default. Before StartWriting only.
    virtual void SetExpectsMediaDataInRealTime(bool realTime) = 0;
    /// How the track is turned and placed when shown. Before StartWriting only.
    virtual void SetTransform(const AffineTransform& transform) = 0;

    /// Whether a sample may be appended now: the writer is writing (its session may be yet to start), the
    /// queue is not full, and the input is not finished. An input of a writer that has failed is ready too,
    /// so that who waits to append goes on and learns from the answer.
    [[nodiscard]] virtual bool IsReadyForMoreMediaData() const = 0;

    /// Appends a sample; each track's times must increase.
    /// \return false, with nothing appended, for a null or mismatched buffer, before the session has started,
    ///         when not ready, out of order, after the finish, and when the writer has failed.
    virtual bool AppendSampleBuffer(const std::shared_ptr<SampleBuffer>& sample) = 0;

    /// No more samples will come. Harmless at any time and more than once.
    virtual void MarkAsFinished() = 0;

    /// Asks for samples: whenever the input is ready, `block` runs on `queue`, never twice at a time, and
    /// again as soon as it has returned and the input is (again) ready; until MarkAsFinished or the release
    /// of the writer, which let go of the block. The block appends until the input is not ready any more.
    virtual void RequestMediaDataWhenReady(const std::shared_ptr<DispatchQueue>& queue,
                                           std::function<void()> block) = 0;

protected:
    AssetWriterInput() = default;
};

/// Takes pictures for a video input.
class QZ_API PixelBufferAdaptor {
public:
    virtual ~PixelBufferAdaptor();
    PixelBufferAdaptor(const PixelBufferAdaptor&) = delete;
    PixelBufferAdaptor& operator=(const PixelBufferAdaptor&) = delete;

    /// A pool of buffers with the adaptor's source attributes; null until StartWriting has answered true.
    [[nodiscard]] virtual std::shared_ptr<PixelBufferPool> Pool() const = 0;

    /// Appends a picture. The writer holds a reference until it has encoded it and does not copy: who appends
    /// does not write into it again. An ICC profile that the first picture carries becomes the track's.
    /// \return as AppendSampleBuffer.
    virtual bool AppendPixelBuffer(const std::shared_ptr<PixelBuffer>& buffer,
                                   const Time& presentationTime) = 0;

protected:
    PixelBufferAdaptor() = default;
};

/// Where a writer stands: not started, started, finished, or failed.
enum class AssetWriterStatus { Unknown, Writing, Completed, Failed };

/// Writes one movie file.
///
/// While it is being written the file plays up to about the last second, whatever becomes of the process. A
/// writer that is released before it has finished leaves it so.
class QZ_API AssetWriter {
public:
    virtual ~AssetWriter();
    AssetWriter(const AssetWriter&) = delete;
    AssetWriter& operator=(const AssetWriter&) = delete;

    /// Tags of the movie. Before StartWriting only.
    virtual void SetMetadata(const std::vector<MetadataItem>& items) = 0;
    /// Adds a track. Before StartWriting only.
    virtual void AddInput(const std::shared_ptr<AssetWriterInput>& input) = 0;

    /// Opens the file and the encoders. What an earlier process left at the path is not overwritten: it is
    /// kept beside it under a free name.
    /// \return false when that fails (then the status is Failed and Reason says why) or it was called before.
    virtual bool StartWriting() = 0;

    /// This time of the samples is the movie's zero; samples before it are not shown. Once, after
    /// StartWriting. A time that is not numeric starts no session.
    virtual void StartSessionAtSourceTime(const Time& time) = 0;

    /// Encodes what is queued, completes the file, and then calls `completion` once, on a thread of the
    /// writer's. Without a successful StartWriting, or after a failure, the completion is called all the
    /// same. The writer lives until then, whoever releases it. A file that was deleted or replaced at its
    /// path meanwhile stays so: finishing does not bring it back.
    virtual void FinishWriting(std::function<void()> completion) = 0;

    [[nodiscard]] virtual AssetWriterStatus Status() const = 0;
    /// Why the status is Failed, for a person to read; empty otherwise.
    [[nodiscard]] virtual std::string Reason() const = 0;

protected:
    AssetWriter() = default;
};

/// Makes the objects above.
class QZ_API AssetWriterFactory {
public:
    virtual ~AssetWriterFactory();
    AssetWriterFactory(const AssetWriterFactory&) = delete;
    AssetWriterFactory& operator=(const AssetWriterFactory&) = delete;

    /// \return null when no writer can be made for the path.
    [[nodiscard]] virtual std::shared_ptr<AssetWriter> MakeWriter(const std::string& path, FileType type) = 0;
    /// \return null when the settings do not suit the media type or cannot be met.
    [[nodiscard]] virtual std::shared_ptr<AssetWriterInput> MakeInput(MediaType type,
                                                                      const OutputSettings& settings) = 0;
    /// \return null for a null input, one that is not video, or attributes that cannot be met.
    [[nodiscard]] virtual std::shared_ptr<PixelBufferAdaptor> MakeAdaptor(
        const std::shared_ptr<AssetWriterInput>& input, const PixelBufferAttributes& attributes) = 0;

    /// Why the latest of the three answers given on the calling thread was null; empty when it was not.
    [[nodiscard]] virtual std::string Reason() const = 0;

    /// The factory that SetShared gave or, without one, that of the movie-writer module, which is loaded at
    /// the first call and tried for again at the next one while it is missing.
    /// \return null when there is none: SharedReason says why.
    [[nodiscard]] static std::shared_ptr<AssetWriterFactory> Shared();
    /// Replaces the shared factory; null goes back to the module's.
    static void SetShared(std::shared_ptr<AssetWriterFactory> factory);
    /// Why Shared last gave null: every file that was tried, with the loader's words; empty when it did not.
    [[nodiscard]] static std::string SharedReason();

    /// The only folder in which the module is looked for from now on, or none for the usual search: beside
    /// the library, then in the folder named by the environment variable QZ_MOVIE_WRITER_PATH. A module that
    /// is loaded already stays.
    static void SetModuleFolder(std::optional<std::string> folder);

protected:
    AssetWriterFactory() = default;
};

}   // namespace QZ::Platform
