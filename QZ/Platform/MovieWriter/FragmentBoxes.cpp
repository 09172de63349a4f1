// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/FragmentBoxes.h"

#include <algorithm>
#include <vector>

namespace QZ::Platform::Movie {

namespace {
// ISO/IEC 14496-12, 8.8.3.1: sample flags
constexpr std::uint32_t kSyncSample = 0x02000000;        // depends on no other
constexpr std::uint32_t kDependentSample = 0x01010000;   // depends on others, not a sync sample

std::int64_t Announced(const Track& track, std::int64_t time)
{
    return Scale(time, track.announcedTimescale, track.timescale);
}

// ISO/IEC 14496-12, 8.8.7: Track Fragment Header Box
void TrackFragmentHeader(ByteWriter& out, const Track& track)
{
    FullBox box(out, "tfhd", 0, 0x020000);   // offsets count from the fragment's first byte
    out.U32(track.id);
}

// ISO/IEC 14496-12, 8.8.12: Track Fragment Base Media Decode Time Box
void BaseDecodeTime(ByteWriter& out, const Track& track, const Sample& first)
{
    FullBox box(out, "tfdt", 1, 0);
    out.I64(std::max<std::int64_t>(0, Announced(track, first.decodeTime) - track.announcedStart));
}

void RunEntry(ByteWriter& out, const Track& track, const Sample& sample, std::int64_t duration)
{
    out.U32(static_cast<std::uint32_t>(duration));
    out.U32(sample.size / sample.count);
    out.U32(sample.sync ? kSyncSample : kDependentSample);
    const std::int64_t offset =
        Announced(track, sample.presentationTime) - Announced(track, sample.decodeTime);
    out.I32(static_cast<std::int32_t>(offset));
}

// ISO/IEC 14496-12, 8.8.8: Track Fragment Run Box
// Returns the position of the data offset, which is known once the whole fragment is.
std::size_t TrackRun(ByteWriter& out, const Track& track, std::span<const Sample> samples)
{
    // Data offset, and of every sample its duration, size, flags and signed composition offset
    FullBox box(out, "trun", 1, 0x000F01);
    std::uint32_t count = 0;
    for (const Sample& sample : samples)
        count += sample.count;
    out.U32(count);
    const std::size_t position = out.Position();
    out.U32(0);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const Sample& sample = samples[i];
        const std::int64_t end =
            i + 1 < samples.size() ? samples[i + 1].decodeTime : sample.decodeTime + track.lastDuration;
        const std::int64_t whole = Announced(track, end) - Announced(track, sample.decodeTime);
        for (std::uint32_t frame = 1; frame < sample.count; ++frame)
            RunEntry(out, track, sample, 1);
        RunEntry(out, track, sample, whole - (sample.count - 1));
    }
    return position;
}

// ISO/IEC 14496-12, 8.8.6: Track Fragment Box
std::size_t TrackFragment(ByteWriter& out, const FragmentRun& run)
{
    Box box(out, "traf");
    TrackFragmentHeader(out, *run.track);
    BaseDecodeTime(out, *run.track, run.samples.front());
    return TrackRun(out, *run.track, run.samples);
}

// ISO/IEC 14496-12, 8.8.5: Movie Fragment Header Box
void FragmentHeader(ByteWriter& out, std::uint32_t sequence)
{
    FullBox box(out, "mfhd", 0, 0);
    out.U32(sequence);
}
}   // namespace

void WriteFragmentHead(ByteWriter& out, std::uint32_t sequence, std::span<const FragmentRun> runs,
                       std::uint64_t dataSize)
{
    constexpr std::size_t kMediaDataHeader = 8;
    const std::size_t start = out.Position();
    std::vector<std::size_t> offsets;
    {
        // ISO/IEC 14496-12, 8.8.4: Movie Fragment Box
        Box box(out, "moof");
        FragmentHeader(out, sequence);
        for (const FragmentRun& run : runs)
            offsets.push_back(TrackFragment(out, run));
    }
    std::size_t data = out.Position() - start + kMediaDataHeader;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        out.PatchU32(offsets[i], static_cast<std::uint32_t>(data));
        for (const Sample& sample : runs[i].samples)
            data += sample.size;
    }
    // ISO/IEC 14496-12, 8.1.1: Media Data Box
    out.U32(static_cast<std::uint32_t>(dataSize + kMediaDataHeader));
    out.Text("mdat");
}

}   // namespace QZ::Platform::Movie
