// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace QZ::Platform::Movie {

/// value * numerator / denominator to the nearest integer, halves away from zero; saturates at the ends of
/// the 64-bit range. The denominator is positive.
[[nodiscard]] std::int64_t Scale(std::int64_t value, std::int64_t numerator, std::int64_t denominator);

/// The least common multiple of two timescales, or nothing when it does not fit into 31 bits.
[[nodiscard]] std::optional<std::int32_t> CommonTimescale(std::int32_t a, std::int32_t b);

/// A moment as ticks of a timescale (ticks a second, positive).
struct Moment {
    std::int64_t ticks = 0;
    std::int32_t timescale = 1;

    [[nodiscard]] std::int64_t In(std::int32_t other) const
    {
        return timescale == other ? ticks : Scale(ticks, other, timescale);
    }
    [[nodiscard]] double Seconds() const { return static_cast<double>(ticks) / timescale; }
};

/// One stored sample; for uncompressed sound a run of `count` frames of equal size and a duration of one tick
/// each. Times are ticks of the track's timescale on the caller's clock, not yet relative to the movie's
/// start.
struct Sample {
    std::int64_t decodeTime = 0;
    std::int64_t presentationTime = 0;
    std::uint64_t offset = 0;   ///< of its first byte in the recorded file
    std::uint32_t size = 0;     ///< bytes, of all frames of a run together
    std::uint32_t count = 1;
    bool sync = true;   ///< decodes without any other sample
};

enum class Media { Video, Audio, Metadata };

/// What a movie knows of one track: how it looks, and every sample that was stored.
struct Track {
    Media media = Media::Video;
    std::uint32_t id = 0;         ///< from 1
    std::int32_t timescale = 0;   ///< of every time in this record; 0 until the first sample tells
    std::vector<unsigned char> sampleEntry;
    std::uint32_t describedTrack = 0;   ///< the track that timed metadata speaks of, or 0

    double width = 0, height = 0;   ///< as displayed, before the matrix
    double matrix[6] = {1, 0, 0, 1, 0, 0};

    std::vector<Sample> samples;     ///< in decoding order
    std::int64_t contentStart = 0;   ///< presentation time of what is heard or seen first: behind any priming
    std::int64_t contentEnd = 0;     ///< where the last sample's presentation ends
    std::int64_t lastDuration = 1;   ///< of the last sample in decoding order, at least 1
    bool announced = false;          ///< stands in the index that opens the recorded file
    std::int32_t announcedTimescale = 0;
    std::int64_t announcedStart = 0;   ///< decode time that the recorded file counts from, in that timescale

    /// Changes the timescale to a multiple of itself, keeping every time exact; does nothing and returns
    /// false when a time would not fit any more.
    bool Refine(std::int32_t multiple);

    [[nodiscard]] std::int64_t MediaStart() const
    {
        return samples.empty() ? contentStart : samples.front().decodeTime;
    }
};

/// A movie: its tracks, the moment that becomes its zero, and its tags.
struct Movie {
    std::vector<Track> tracks;
    Moment sessionStart;
    std::vector<std::pair<std::string, std::string>> tags;   ///< key, value

    /// The movie's own timescale: the least common multiple of all its clocks, so that edits are exact; where
    /// that does not fit, the finest of them.
    [[nodiscard]] std::int32_t Timescale() const;
};

}   // namespace QZ::Platform::Movie
