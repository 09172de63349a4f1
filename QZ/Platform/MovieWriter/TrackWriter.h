// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "QZ/Platform/MovieWriter/Channel.h"
#include "QZ/Platform/MovieWriter/MovieFile.h"

namespace QZ::Platform::Movie {

/// Turns a channel's samples into those of a track. Opened by the thread that starts the recording, then used
/// by the writer's thread alone.
class TrackWriter {
public:
    virtual ~TrackWriter() = default;
    TrackWriter(const TrackWriter&) = delete;
    TrackWriter& operator=(const TrackWriter&) = delete;

    /// Opens the encoder and describes the track as far as that can be done without a sample.
    virtual bool Open() = 0;
    /// Takes a sample; what is encoded is added to the file.
    virtual bool Write(const QueuedSample& sample) = 0;
    /// Gives out what the encoder holds back.
    virtual bool Finish() = 0;

    [[nodiscard]] const std::string& Reason() const { return m_reason; }

    /// The writer of the file's track with this index, which exists already.
    [[nodiscard]] static std::unique_ptr<TrackWriter> Make(const ChannelSettings& settings, MovieFile& file,
                                                           std::size_t track);

protected:
    TrackWriter(MovieFile& file, std::size_t track) : m_file(file), m_index(track) {}
    [[nodiscard]] Track& TheTrack() { return m_file.movie.tracks[m_index]; }
    bool Fail(const std::string& reason)
    {
        m_reason = reason;
        return false;
    }

    MovieFile& m_file;
    std::size_t m_index;

private:
    std::string m_reason;
};

/// A time as ticks of its own timescale; the time is numeric.
[[nodiscard]] inline Moment MomentOf(const Time& time)
{
    return {time.value, time.timescale};
}

/// The moment in ticks of the track's timescale. The timescale becomes that of the track's first moment,
/// refined so that the session's start and every later moment are exact too, as long as that takes no more
/// than 31 bits.
[[nodiscard]] std::int64_t ExactTicks(Track& track, const Moment& moment, const Moment& sessionStart);

}   // namespace QZ::Platform::Movie
