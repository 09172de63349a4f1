// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace QZ::Test {

/// What a strict reader throws at the first thing that a movie file must not hold.
struct BoxError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A box of a movie file, with the boxes that it holds (read from ISO/IEC 14496-12:2015; shares nothing with
/// the writer).
struct BoxNode {
    std::string type;
    std::uint64_t offset = 0;          ///< of the header in the file
    std::vector<unsigned char> body;   ///< without the header; empty for mdat
    std::uint64_t bodyOffset = 0;
    std::uint64_t bodySize = 0;
    std::vector<BoxNode> children;

    /// The only child of this type; throws when there is none or several.
    [[nodiscard]] const BoxNode& Only(const std::string& childType) const;
    [[nodiscard]] std::vector<const BoxNode*> All(const std::string& childType) const;
    [[nodiscard]] bool Has(const std::string& childType) const { return !All(childType).empty(); }
    [[nodiscard]] std::uint64_t U(std::size_t position, std::size_t bytes) const;
    [[nodiscard]] std::int32_t I32(std::size_t position) const;
};

struct TrackSample {
    std::int64_t decode = 0;         ///< media time
    std::int64_t presentation = 0;   ///< media time
    std::int64_t duration = 0;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    bool sync = false;
};

struct TrackEdit {
    std::int64_t duration = 0, mediaTime = 0;
};

/// A track of a finished file, its tables spread out and checked against each other and the file.
struct TrackView {
    std::uint32_t id = 0;
    std::string handler;
    std::string format;   ///< type of its one sample entry
    std::int64_t timescale = 0, mediaDuration = 0, movieDuration = 0;
    double width = 0, height = 0;
    std::vector<std::int32_t> matrix;
    std::vector<TrackEdit> edits;
    std::vector<TrackSample> samples;
    std::vector<std::uint64_t> chunkOffsets;
    BoxNode entry;
};

struct MovieView {
    std::vector<BoxNode> boxes;
    std::int64_t timescale = 0, duration = 0;
    std::vector<TrackView> tracks;
    std::vector<std::pair<std::string, std::string>> tags;

    [[nodiscard]] std::vector<std::string> TopLevel() const;
    [[nodiscard]] const TrackView& Track(const std::string& handler) const;
};

/// Reads every box of a file.
[[nodiscard]] std::vector<BoxNode> ReadBoxes(const std::string& path);

/// Reads an ordinary movie file (index, then media data, no fragments).
[[nodiscard]] MovieView ReadMovie(const std::string& path);

[[nodiscard]] std::vector<unsigned char> ReadBytes(const std::string& path);

}   // namespace QZ::Test
