// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/MovieBoxes.h"

#include <algorithm>
#include <limits>

#include "QZ/Platform/MovieWriter/SampleTables.h"
#include "QZ/Platform/MovieWriter/TrackBoxes.h"

namespace QZ::Platform::Movie {

namespace {
constexpr std::int64_t kLargest32 = std::numeric_limits<std::uint32_t>::max();

// ISO/IEC 14496-12, 4.3: File Type Box
void FileType(ByteWriter& out, std::span<const std::string_view> brands)
{
    Box box(out, "ftyp");
    out.Text("qt  ");
    out.U32(0x200);
    for (const std::string_view brand : brands)
        out.Text(brand);
}

// ISO/IEC 14496-12, 8.2.2: Movie Header Box. No creation time: equal recordings give equal files.
void MovieHeader(ByteWriter& out, const Movie& movie, std::int64_t duration)
{
    const unsigned version = duration > kLargest32 ? 1 : 0;
    FullBox box(out, "mvhd", version, 0);
    out.Sized(version, 0);   // creation and modification time
    out.Sized(version, 0);
    out.I32(movie.Timescale());
    out.Sized(version, duration);
    out.U32(0x10000);   // rate and volume: 1
    out.U16(0x100);
    out.Zeros(10);
    constexpr double identity[6] = {1, 0, 0, 1, 0, 0};
    Matrix(out, identity);
    out.Zeros(24);
    std::uint32_t next = 1;
    for (const Track& track : movie.tracks)
        next = std::max(next, track.id + 1);
    out.U32(next);
}

// ISO/IEC 14496-12, 8.8.3: Track Extends Box
void TrackExtends(ByteWriter& out, const Track& track)
{
    FullBox box(out, "trex", 0, 0);
    out.U32(track.id);
    out.U32(1);   // the one sample description
    out.Zeros(12);
}

// ISO/IEC 14496-12, 8.8.1: Movie Extends Box
void MovieExtends(ByteWriter& out, const Movie& movie)
{
    Box box(out, "mvex");
    for (const Track& track : movie.tracks)
        if (track.announced)
            TrackExtends(out, track);
}

// QuickTime File Format, "Metadata Item Keys Atom"
void TagKeys(ByteWriter& out, const Movie& movie)
{
    FullBox box(out, "keys", 0, 0);
    out.U32(static_cast<std::uint32_t>(movie.tags.size()));
    for (const auto& [key, value] : movie.tags) {
        Box entry(out, "mdta");
        out.Text(key);
    }
}

// QuickTime File Format, "Metadata Item Atom": named by the number of its key, from 1
void Tag(ByteWriter& out, std::uint32_t number, std::string_view value)
{
    Box item(out, FourBytes(number));
    Box data(out, "data");
    out.U32(1);   // UTF-8
    out.U32(0);   // any country and language
    out.Text(value);
}

// QuickTime File Format, "Metadata Atom" (not a full box there)
void Tags(ByteWriter& out, const Movie& movie)
{
    if (movie.tags.empty())
        return;
    Box box(out, "meta");
    Handler(out, "", "mdta", "");
    TagKeys(out, movie);
    Box items(out, "ilst");
    std::uint32_t number = 0;
    for (const auto& [key, value] : movie.tags)
        Tag(out, ++number, value);
}

// ISO/IEC 14496-12, 8.2.1: Movie Box, with every track of the finished file
void FinishedMovie(ByteWriter& out, const Movie& movie, std::span<const Chunk> chunks,
                   std::uint64_t mediaStart)
{
    Box box(out, "moov");
    const std::int32_t timescale = movie.Timescale();
    std::int64_t duration = 0;
    for (const Track& track : movie.tracks)
        if (!track.samples.empty())
            duration = std::max(duration, EditOf(track, movie.sessionStart, timescale).Duration());
    MovieHeader(out, movie, duration);
    for (std::size_t i = 0; i < movie.tracks.size(); ++i) {
        if (movie.tracks[i].samples.empty())
            continue;
        WriteTrack(out, movie.tracks[i], movie.sessionStart, timescale, true,
                   [&] { WriteSampleTables(out, movie.tracks[i], i, chunks, mediaStart); });
    }
    Tags(out, movie);
}

std::uint64_t MediaSize(std::span<const Chunk> chunks)
{
    return chunks.empty() ? 0 : chunks.back().offset + chunks.back().size;
}

// ISO/IEC 14496-12, 8.1.1: the header of a Media Data Box
void MediaDataHeader(ByteWriter& out, std::uint64_t size)
{
    const bool large = size + 8 > static_cast<std::uint64_t>(kLargest32);
    out.U32(large ? 1 : static_cast<std::uint32_t>(size + 8));
    out.Text("mdat");
    if (large)
        out.U64(size + 16);
}
/// Decides what the opening says of a track's clock. Of a track without a sample it does not know when the
/// first one will decode: its clock begins so many seconds before the session, and anything that decodes
/// earlier decodes then.
Track Announce(Track& track, const Moment& sessionStart)
{
    constexpr std::int32_t kUnknownTimescale = 90000;
    constexpr std::int64_t kSecondsBefore = 10;
    Track announced = track;
    if (track.samples.empty()) {
        announced.timescale = track.timescale > 0 ? track.timescale : kUnknownTimescale;
        announced.contentStart = sessionStart.In(announced.timescale);
        announced.samples.push_back(
            {.decodeTime = announced.contentStart - kSecondsBefore * announced.timescale});
    }
    track.announcedTimescale = announced.timescale;
    track.announcedStart = announced.MediaStart();
    return announced;
}
}   // namespace

void WriteOpening(ByteWriter& out, Movie& movie)
{
    constexpr std::string_view brands[] = {"qt  ", "iso6"};
    FileType(out, brands);
    Box box(out, "moov");
    MovieHeader(out, movie, 0);
    for (Track& track : movie.tracks) {
        track.announced = !track.sampleEntry.empty();
        if (!track.announced)
            continue;
        const Track announced = Announce(track, movie.sessionStart);
        WriteTrack(out, announced, movie.sessionStart, movie.Timescale(), false,
                   [&] { WriteEmptySampleTables(out, announced); });
    }
    MovieExtends(out, movie);
    Tags(out, movie);
}

void WriteFinishedHead(ByteWriter& out, const Movie& movie, std::span<const Chunk> chunks)
{
    constexpr std::string_view brands[] = {"qt  "};
    FileType(out, brands);
    const std::uint64_t size = MediaSize(chunks);
    // The index has the same size for every start of the media data, so that a first writing tells where it
    // starts.
    ByteWriter measured;
    FinishedMovie(measured, movie, chunks, 0);
    ByteWriter header;
    MediaDataHeader(header, size);
    FinishedMovie(out, movie, chunks, out.Position() + measured.Position() + header.Position());
    out.Append(header.Bytes());
}

}   // namespace QZ::Platform::Movie
