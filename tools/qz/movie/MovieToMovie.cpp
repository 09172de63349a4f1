// SPDX-License-Identifier: MIT
#include "tools/qz/movie/MovieToMovie.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>

#include "QZ/Foundation/Media/QZVideoRecorder.h"
#include "QZ/Platform/AssetWriter.h"
#include "QZ/Platform/MainQueue.h"
#include "tools/qz/io/Interrupt.h"
#include "tools/qz/movie/MovieFailure.h"
#include "tools/qz/movie/MovieFile.h"
#include "tools/qz/movie/MovieProgress.h"
#include "tools/qz/movie/PicturesAhead.h"
#include "tools/qz/movie/Pixels.h"

namespace QZ::Tool {

namespace {

using namespace Platform;

/// Hands the worked pictures and the sound to a recorder; keeps what went wrong.
class Supplier final : public QZVideoRecorderDelegate {
public:
    Supplier(MovieReader& movie, std::string name, const PicturesAhead::Operation& operation)
        : m_movie(movie), m_name(name), m_pictures(movie, std::move(name), operation)
    {}

    bool doesHaveAudio() override { return m_movie.Description().hasSound; }
    bool doesHaveMetadata() override { return false; }

    void getVideoFrame(QZVideoRecorderVideoFrame* frame) override
    {
        Guarded([&] {
            const std::optional<WorkedPicture> picture = m_pictures.Next();
            if (!picture)
                return;
            const Image& image = picture->image;
            for (int y = 0; y < image.height; ++y)
                SwapRedAndBlue(image.At(0, y), image.width,
                               frame->baseAddress + frame->bytesPerRow * static_cast<std::uint64_t>(y));
            frame->time = latest = picture->time;
            frame->holdFrame = false;
            frame->hasFrame = true;
            ++count;
        });
    }
    void getAudioSample(std::shared_ptr<SampleBuffer>* sample) override
    {
        Guarded([&] {
            MovieReadError error;
            *sample = m_movie.NextSound(error);
            if (error.kind != MovieReadError::Kind::None)
                throw MovieFailure(error, m_name);
        });
    }
    void getMetadataSample(std::shared_ptr<SampleBuffer>*) override {}

    void willFinishRecording() override {}
    void didFinishRecording(const std::string&) override
    {
        MainQueue::Shared().Post([this] { finished = true; });
    }

    void RethrowError() const
    {
        if (failure)
            std::rethrow_exception(failure);
    }

    bool finished = false;
    std::uint64_t count = 0;
    Time latest = TimeZero;
    std::exception_ptr failure;

private:
    // A recorder knows no exceptions: what asks for no more ends the movie, and the first reason is kept.
    template <class Work>
    void Guarded(Work work)
    {
        if (failure)
            return;
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    }

    MovieReader& m_movie;
    const std::string m_name;
    PicturesAhead m_pictures;
};

std::string CodecFor(const MovieToMovie& files, const MovieDescription& movie)
{
    const bool canWrite = movie.codec == "hevc" || movie.codec == "prores";
    return files.encoding.codec.value_or(canWrite ? movie.codec : "h264");
}

/// The movie's own transform, behind what makes its pixels square.
AffineTransform TransformOf(const MovieDescription& movie)
{
    AffineTransform transform = movie.transform;
    transform.a *= movie.pixelAspectRatio;
    transform.b *= movie.pixelAspectRatio;
    return transform;
}

int RateOf(const MovieDescription& movie)
{
    constexpr double kHighest = 1000.0, kUsual = 30.0;
    const double rate = movie.frameRate > 0.0 ? movie.frameRate : kUsual;
    return static_cast<int>(std::lround(std::clamp(rate, 1.0, kHighest)));
}

std::unique_ptr<MovieReader> Open(const MovieToMovie& files, const Context& context)
{
    context.Progress("opening " + files.in);
    MovieReadError error;
    std::unique_ptr<MovieReader> movie = MovieReader::Open(
        files.in, error,
        std::min(static_cast<std::int64_t>(context.limits.pixels), MovieReader::kMostPixels));
    if (!movie)
        throw MovieFailure(error, files.in);
    const MovieDescription& description = movie->Description();
    if (!description.soundCodec.empty() && !description.hasSound)
        context.Say(files.in + ": its sound (" + description.soundCodec +
                    ") cannot be passed through; the output is silent");
    return movie;
}

class Job {
public:
    Job(const MovieToMovie& files, MovieReader& movie, const std::string& doing,
        const std::function<void(Image&)>& operation, const Context& context)
        : m_files(files),
          m_description(movie.Description()),
          m_output(files.out, context.force),
          m_supplier(movie, files.in, operation),
          m_recorder(&m_supplier, std::nullopt),
          m_progress(context, doing)
    {}

    MovieSummary Run()
    {
        const AffineTransform transform = TransformOf(m_description);
        if (!m_recorder.startWithFrameRate(RateOf(m_description), m_files.encoding.bitRate.value_or(1.0),
                                           m_description.width, m_description.height, &transform, nullptr,
                                           CodecFor(m_files, m_description)))
            FailToRecord();
        const InterruptNote interruption;
        while (!m_supplier.finished) {
            // Until the next picture or, where the encoder is slow, for a moment.
            const std::uint64_t before = m_supplier.count;
            MainQueue::Shared().RunUntil([&] { return m_supplier.finished || m_supplier.count != before; },
                                         std::chrono::milliseconds(100));
            ShowProgress();
            if (interruption.Came())
                m_recorder.cancel();
        }
        if (m_supplier.failure || !m_recorder.failureReason().empty())
            FailToRecord();
        m_output.Keep();
        return {m_description.width, m_description.height, m_supplier.count,
                Seconds(),           m_progress.Seconds(), interruption.Came()};
    }

private:
    [[noreturn]] void FailToRecord()
    {
        m_supplier.RethrowError();
        throw Failure(Status::Output, m_files.out, "not written: " + m_recorder.failureReason(),
                      AssetWriterFactory::Shared() ? "" : kModuleRemedy);
    }

    /// Of the movie so far.
    [[nodiscard]] double Seconds() const
    {
        return m_description.frameRate > 0.0 ? TimeInSeconds(m_supplier.latest) + 1 / m_description.frameRate
                                             : TimeInSeconds(m_supplier.latest);
    }

    void ShowProgress()
    {
        while (m_progress.Pictures() < m_supplier.count)
            m_progress.Picture();
        const double duration = TimeInSeconds(m_description.duration);
        m_progress.Show(duration > 0.0 ? TimeInSeconds(m_supplier.latest) / duration : -1.0);
    }

    const MovieToMovie& m_files;
    const MovieDescription& m_description;
    MovieFile m_output;
    Supplier m_supplier;
    QZVideoRecorder m_recorder;   ///< before the supplier goes
    MovieProgress m_progress;
};

}   // namespace

MovieSummary MakeMovie(const MovieToMovie& files, const std::string& doing,
                       const std::function<void(Image&)>& operation, const Context& context)
{
    CheckMovieOutput(files.out, context.force);
    if (files.in == "-")
        throw Failure(Status::Usage, "standard input", "a movie is read at any place", "name a file");
    const std::unique_ptr<MovieReader> movie = Open(files, context);
    return Job(files, *movie, doing, operation, context).Run();
}

Status WorkOnMovie(const MovieToMovie& files, const std::string& doing,
                   const std::function<void(Image&)>& operation, Context& context)
{
    return Tell(MakeMovie(files, doing, operation, context), files.out, context);
}

}   // namespace QZ::Tool
