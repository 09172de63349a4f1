// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/SampleTables.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace QZ::Platform::Movie {

namespace {
/// Counts equal values that follow each other.
class RunLengths {
public:
    void Add(std::uint32_t count, std::int64_t value)
    {
        if (count == 0)
            return;
        if (m_runs.empty() || m_runs.back().second != value)
            m_runs.emplace_back(0, value);
        m_runs.back().first += count;
    }
    void Write(ByteWriter& out) const
    {
        out.U32(static_cast<std::uint32_t>(m_runs.size()));
        for (const auto& [count, value] : m_runs) {
            out.U32(count);
            out.U32(static_cast<std::uint32_t>(value));
        }
    }

private:
    std::vector<std::pair<std::uint32_t, std::int64_t>> m_runs;
};

// ISO/IEC 14496-12, 8.5.2: Sample Description Box
void SampleDescription(ByteWriter& out, const Track& track)
{
    FullBox box(out, "stsd", 0, 0);
    out.U32(1);
    out.Append(track.sampleEntry);
}

// ISO/IEC 14496-12, 8.6.1.2: Decoding Time to Sample Box
void DecodingTimes(ByteWriter& out, const Track& track)
{
    RunLengths durations;
    for (std::size_t i = 0; i < track.samples.size(); ++i) {
        const Sample& sample = track.samples[i];
        const std::int64_t whole = i + 1 < track.samples.size()
                                       ? track.samples[i + 1].decodeTime - sample.decodeTime
                                       : track.lastDuration;
        // A run's frames last a tick each; its last one also lasts until the next run.
        durations.Add(sample.count - 1, 1);
        durations.Add(1, whole - (sample.count - 1));
    }
    FullBox box(out, "stts", 0, 0);
    durations.Write(out);
}

// ISO/IEC 14496-12, 8.6.1.3: Composition Time to Sample Box; absent where every sample is shown as it decodes
void CompositionOffsets(ByteWriter& out, const Track& track)
{
    RunLengths offsets;
    bool any = false, negative = false;
    for (const Sample& sample : track.samples) {
        const std::int64_t offset = sample.presentationTime - sample.decodeTime;
        offsets.Add(sample.count, offset);
        any = any || offset != 0;
        negative = negative || offset < 0;
    }
    if (!any)
        return;
    FullBox box(out, "ctts", negative ? 1 : 0, 0);
    offsets.Write(out);
}

// ISO/IEC 14496-12, 8.6.2: Sync Sample Box; absent where every sample is one
void SyncSamples(ByteWriter& out, const Track& track)
{
    const auto isSync = [](const Sample& sample) { return sample.sync; };
    if (std::all_of(track.samples.begin(), track.samples.end(), isSync))
        return;
    FullBox box(out, "stss", 0, 0);
    out.U32(static_cast<std::uint32_t>(std::count_if(track.samples.begin(), track.samples.end(), isSync)));
    for (std::size_t i = 0; i < track.samples.size(); ++i)
        if (track.samples[i].sync)
            out.U32(static_cast<std::uint32_t>(i + 1));
}

// ISO/IEC 14496-12, 8.7.4: Sample To Chunk Box
void SamplesToChunks(ByteWriter& out, const Track& track, std::span<const Chunk> chunks)
{
    std::vector<std::pair<std::uint32_t, std::uint32_t>> runs;   // first chunk, samples a chunk
    std::uint32_t number = 0;
    for (const Chunk& chunk : chunks) {
        std::uint32_t samples = 0;
        for (std::size_t i = chunk.first; i < chunk.first + chunk.count; ++i)
            samples += track.samples[i].count;
        ++number;
        if (runs.empty() || runs.back().second != samples)
            runs.emplace_back(number, samples);
    }
    FullBox box(out, "stsc", 0, 0);
    out.U32(static_cast<std::uint32_t>(runs.size()));
    for (const auto& [first, samples] : runs) {
        out.U32(first);
        out.U32(samples);
        out.U32(1);   // the one sample description
    }
}

// ISO/IEC 14496-12, 8.7.3.2: Sample Size Box
void SampleSizes(ByteWriter& out, const Track& track)
{
    const auto frameSize = [](const Sample& sample) { return sample.size / sample.count; };
    const std::uint32_t common = frameSize(track.samples.front());
    const bool equal = std::all_of(track.samples.begin(), track.samples.end(),
                                   [&](const Sample& sample) { return frameSize(sample) == common; });
    std::uint32_t count = 0;
    for (const Sample& sample : track.samples)
        count += sample.count;
    FullBox box(out, "stsz", 0, 0);
    out.U32(equal ? common : 0);
    out.U32(count);
    if (equal)
        return;
    for (const Sample& sample : track.samples)
        for (std::uint32_t i = 0; i < sample.count; ++i)
            out.U32(frameSize(sample));
}

// ISO/IEC 14496-12, 8.7.5: Chunk Offset Box, of 64 bits where 32 may not do: the index itself takes room too
void ChunkOffsets(ByteWriter& out, std::span<const Chunk> own, bool large, std::uint64_t mediaStart)
{
    FullBox box(out, large ? "co64" : "stco", 0, 0);
    out.U32(static_cast<std::uint32_t>(own.size()));
    for (const Chunk& chunk : own) {
        const std::uint64_t offset = mediaStart + chunk.offset;
        if (large) {
            out.U64(offset);
        } else {
            out.U32(static_cast<std::uint32_t>(offset));
        }
    }
}

// The least media data for which offsets take 64 bits; 1 GiB below the end of 32 bits is more than any index
// takes.
constexpr std::uint64_t kLargeMedia = (std::uint64_t{1} << 32) - (std::uint64_t{1} << 30);
}   // namespace

void WriteSampleTables(ByteWriter& out, const Track& track, std::size_t index, std::span<const Chunk> chunks,
                       std::uint64_t mediaStart)
{
    std::vector<Chunk> own;
    std::copy_if(chunks.begin(), chunks.end(), std::back_inserter(own),
                 [index](const Chunk& chunk) { return chunk.track == index; });
    const bool large = chunks.back().offset + chunks.back().size > kLargeMedia;
    SampleDescription(out, track);
    DecodingTimes(out, track);
    CompositionOffsets(out, track);
    SyncSamples(out, track);
    SamplesToChunks(out, track, own);
    SampleSizes(out, track);
    ChunkOffsets(out, own, large, mediaStart);
}

void WriteEmptySampleTables(ByteWriter& out, const Track& track)
{
    SampleDescription(out, track);
    for (const std::string_view type : {"stts", "stsc"}) {
        FullBox box(out, type, 0, 0);
        out.U32(0);
    }
    {
        FullBox box(out, "stsz", 0, 0);
        out.Zeros(8);
    }
    FullBox box(out, "stco", 0, 0);
    out.U32(0);
}

}   // namespace QZ::Platform::Movie
