// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/Layout.h"

#include <algorithm>

namespace QZ::Platform::Movie {

namespace {
constexpr std::int64_t kChunksPerSecond = 2;

/// Which half second of the clock a sample decodes in.
std::int64_t Window(const Track& track, const Sample& sample)
{
    return Scale(sample.decodeTime, kChunksPerSecond, track.timescale);
}

void AppendChunks(const Track& track, std::size_t index, std::vector<Chunk>& chunks)
{
    for (std::size_t i = 0; i < track.samples.size();) {
        Chunk chunk{.track = index, .first = i};
        const std::int64_t window = Window(track, track.samples[i]);
        for (; i < track.samples.size() && Window(track, track.samples[i]) == window; ++i) {
            chunk.size += track.samples[i].size;
            ++chunk.count;
        }
        chunks.push_back(chunk);
    }
}
}   // namespace

std::vector<Chunk> Interleave(const Movie& movie)
{
    std::vector<Chunk> chunks;
    for (std::size_t i = 0; i < movie.tracks.size(); ++i)
        AppendChunks(movie.tracks[i], i, chunks);
    const auto window = [&movie](const Chunk& chunk) {
        const Track& track = movie.tracks[chunk.track];
        return Window(track, track.samples[chunk.first]);
    };
    std::stable_sort(chunks.begin(), chunks.end(),
                     [&](const Chunk& a, const Chunk& b) { return window(a) < window(b); });
    std::uint64_t offset = 0;
    for (Chunk& chunk : chunks) {
        chunk.offset = offset;
        offset += chunk.size;
    }
    return chunks;
}

}   // namespace QZ::Platform::Movie
