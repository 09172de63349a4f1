// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/TrackBoxes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace QZ::Platform::Movie {

namespace {
constexpr std::int64_t kLargest32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t kLargestSigned32 = std::numeric_limits<std::int32_t>::max();

/// 16.16 fixed point, nearest; saturates, and NaN becomes 0.
std::int32_t Fixed16(double value)
{
    const double scaled = std::nearbyint(value * 65536.0);
    if (!(scaled == scaled))
        return 0;
    if (scaled >= 2147483647.0)
        return std::numeric_limits<std::int32_t>::max();
    if (scaled <= -2147483648.0)
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(scaled);
}

// ISO/IEC 14496-12, 8.3.2: Track Header Box
void TrackHeader(ByteWriter& out, const Track& track, std::int64_t duration)
{
    const unsigned version = duration > kLargest32 ? 1 : 0;
    FullBox box(out, "tkhd", version, 0xF);   // enabled, in movie, in preview, in poster
    out.Sized(version, 0);                    // creation and modification time
    out.Sized(version, 0);
    out.U32(track.id);
    out.U32(0);
    out.Sized(version, duration);
    out.Zeros(8);
    out.U16(0);   // layer
    out.U16(0);   // alternate group
    out.U16(track.media == Media::Audio ? 0x100 : 0);
    out.U16(0);
    Matrix(out, track.matrix);
    out.I32(Fixed16(track.width));
    out.I32(Fixed16(track.height));
}

// QuickTime File Format, "Track Clean Aperture Dimensions Atom" and its two companions. They keep a player
// that derives the picture's size from the coded one from showing padding.
void ApertureDimensions(ByteWriter& out, const Track& track)
{
    if (track.media != Media::Video)
        return;
    Box box(out, "tapt");
    for (const std::string_view type : {"clef", "prof", "enof"}) {
        FullBox dimensions(out, type, 0, 0);
        out.I32(Fixed16(track.width));
        out.I32(Fixed16(track.height));
    }
}

void EditEntry(ByteWriter& out, unsigned version, std::int64_t duration, std::int64_t mediaTime)
{
    out.Sized(version, duration);
    out.Sized(version, mediaTime);
    out.U32(0x10000);   // rate 1
}

// ISO/IEC 14496-12, 8.6.5 and 8.6.6: Edit Box and Edit List Box
void Edits(ByteWriter& out, const Edit& edit, bool finished)
{
    Box box(out, "edts");
    const std::int64_t shown = finished ? edit.shown : 0;
    const bool large = edit.gap > kLargest32 || shown > kLargest32 || edit.mediaTime > kLargestSigned32;
    const unsigned version = large ? 1 : 0;
    FullBox list(out, "elst", version, 0);
    out.U32(edit.gap > 0 ? 2 : 1);
    if (edit.gap > 0)
        EditEntry(out, version, edit.gap, -1);
    EditEntry(out, version, shown, edit.mediaTime);
}

// QuickTime File Format, "Track Reference Atom" with a content description
void Reference(ByteWriter& out, const Track& track)
{
    if (track.describedTrack == 0)
        return;
    Box box(out, "tref");
    Box kind(out, "cdsc");
    out.U32(track.describedTrack);
}

// ISO/IEC 14496-12, 8.4.2: Media Header Box
void MediaHeader(ByteWriter& out, const Track& track, std::int64_t duration)
{
    const unsigned version = duration > kLargest32 ? 1 : 0;
    FullBox box(out, "mdhd", version, 0);
    out.Sized(version, 0);
    out.Sized(version, 0);
    out.I32(track.timescale);
    out.Sized(version, duration);
    out.U16(0x55C4);   // language: undetermined
    out.U16(0);
}

// ISO/IEC 14496-12, 12.1.2: Video Media Header Box
void VideoMediaHeader(ByteWriter& out)
{
    FullBox box(out, "vmhd", 0, 1);
    out.Zeros(8);
}

// ISO/IEC 14496-12, 12.2.2: Sound Media Header Box
void SoundMediaHeader(ByteWriter& out)
{
    FullBox box(out, "smhd", 0, 0);
    out.Zeros(4);
}

// QuickTime File Format, "Base Media Information Header Atom"
void BaseMediaHeader(ByteWriter& out)
{
    Box box(out, "gmhd");
    FullBox information(out, "gmin", 0, 0);
    out.U16(0x40);   // graphics mode: copy with dithering, the format's default
    out.U16(0x8000);
    out.U16(0x8000);
    out.U16(0x8000);
    out.Zeros(4);
}

// ISO/IEC 14496-12, 8.7.1 and 8.7.2: Data Information Box, all samples in this file
void DataInformation(ByteWriter& out)
{
    Box box(out, "dinf");
    FullBox references(out, "dref", 0, 0);
    out.U32(1);
    FullBox self(out, "url ", 0, 1);
}

// ISO/IEC 14496-12, 8.4.4: Media Information Box
void MediaInformation(ByteWriter& out, const Track& track, const std::function<void()>& sampleTables)
{
    Box box(out, "minf");
    switch (track.media) {
        case Media::Video:
            VideoMediaHeader(out);
            break;
        case Media::Audio:
            SoundMediaHeader(out);
            break;
        case Media::Metadata:
            BaseMediaHeader(out);
            break;
    }
    Handler(out, "dhlr", "url ", "DataHandler");
    DataInformation(out);
    Box tables(out, "stbl");
    sampleTables();
}

std::string_view HandlerType(Media media)
{
    switch (media) {
        case Media::Video:
            return "vide";
        case Media::Audio:
            return "soun";
        case Media::Metadata:
            break;
    }
    return "meta";
}

std::string_view HandlerName(Media media)
{
    switch (media) {
        case Media::Video:
            return "VideoHandler";
        case Media::Audio:
            return "SoundHandler";
        case Media::Metadata:
            break;
    }
    return "MetadataHandler";
}

// ISO/IEC 14496-12, 8.4.1: Media Box
void MediaBox(ByteWriter& out, const Track& track, bool finished, const std::function<void()>& sampleTables)
{
    Box box(out, "mdia");
    const std::int64_t duration =
        finished ? track.samples.back().decodeTime + track.lastDuration - track.MediaStart() : 0;
    MediaHeader(out, track, duration);
    Handler(out, "mhlr", HandlerType(track.media), HandlerName(track.media));
    MediaInformation(out, track, sampleTables);
}
}   // namespace

Edit EditOf(const Track& track, const Moment& sessionStart, std::int32_t movieTimescale)
{
    // In the track's ticks, so that sound whose start was rounded to a frame of sound leaves no gap of less
    // than one.
    const std::int64_t sessionTicks = sessionStart.In(track.timescale);
    const std::int64_t shownFrom = std::max(track.contentStart, sessionTicks);
    Edit edit;
    if (track.contentStart > sessionTicks)
        edit.gap =
            Scale(track.contentStart, movieTimescale, track.timescale) - sessionStart.In(movieTimescale);
    edit.mediaTime = shownFrom - track.MediaStart();
    edit.shown =
        std::max<std::int64_t>(0, Scale(track.contentEnd - shownFrom, movieTimescale, track.timescale));
    return edit;
}

void WriteTrack(ByteWriter& out, const Track& track, const Moment& sessionStart, std::int32_t movieTimescale,
                bool finished, const std::function<void()>& sampleTables)
{
    // ISO/IEC 14496-12, 8.3.1: Track Box
    Box box(out, "trak");
    const Edit edit = EditOf(track, sessionStart, movieTimescale);
    TrackHeader(out, track, finished ? edit.Duration() : 0);
    ApertureDimensions(out, track);
    Edits(out, edit, finished);
    Reference(out, track);
    MediaBox(out, track, finished, sampleTables);
}

// ISO/IEC 14496-12, 8.2.2: the matrix { a, b, u, c, d, v, x, y, w } of the movie and track headers
void Matrix(ByteWriter& out, const double (&matrix)[6])
{
    for (int row = 0; row < 3; ++row) {
        out.I32(Fixed16(matrix[2 * row]));
        out.I32(Fixed16(matrix[2 * row + 1]));
        out.U32(row == 2 ? 0x40000000 : 0);   // 2.30 fixed point
    }
}

// QuickTime File Format, "Handler Reference Atoms": the name is a counted string
void Handler(ByteWriter& out, std::string_view component, std::string_view type, std::string_view name)
{
    FullBox box(out, "hdlr", 0, 0);
    if (component.empty()) {
        out.U32(0);
    } else {
        out.Text(component);
    }
    out.Text(type);
    out.Zeros(12);
    out.U8(static_cast<std::uint32_t>(name.size()));
    out.Text(name);
}

}   // namespace QZ::Platform::Movie
