// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/MovieFile.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "QZ/Platform/MovieWriter/Box.h"
#include "QZ/Platform/MovieWriter/FragmentBoxes.h"
#include "QZ/Platform/MovieWriter/Layout.h"
#include "QZ/Platform/MovieWriter/MovieBoxes.h"

namespace QZ::Platform::Movie {

namespace {
/// The name under which the ordinary file grows: hidden, and in the same folder, so that a rename puts it in
/// place.
std::string NameBeside(const std::string& path)
{
    const std::filesystem::path target(path);
    return (target.parent_path() / ("." + target.filename().string() + ".finishing")).string();
}

/// Runs of uncompressed sound stand alone: what lies between two of them is not a frame's duration.
bool Continues(const Track& track, const Sample& last)
{
    return track.media != Media::Audio || last.count == 1;
}
}   // namespace

bool MovieFile::Create(const std::string& path)
{
    m_path = path;
    KeepBeside(path);
    if (m_file.Create(path))
        return true;
    m_reason = m_file.Reason();
    return false;
}

void MovieFile::Add(std::size_t track, const Sample& sample, std::vector<unsigned char> bytes)
{
    std::vector<Sample>& samples = movie.tracks[track].samples;
    const double seconds = Moment{sample.decodeTime, movie.tracks[track].timescale}.Seconds();
    m_earliest = m_pending.empty() ? seconds : std::min(m_earliest, seconds);
    m_latest = m_pending.empty() ? seconds : std::max(m_latest, seconds);
    m_pendingBytes += bytes.size();
    m_pending.push_back({track, samples.size(), std::move(bytes)});
    samples.push_back(sample);
}

double MovieFile::PendingSeconds() const
{
    return m_pending.empty() ? 0 : m_latest - m_earliest;
}

bool MovieFile::Flush()
{
    if (m_pending.empty())
        return m_reason.empty();
    ByteWriter out;
    if (!m_opened) {
        WriteOpening(out, movie);
        m_opened = true;
    }
    // Announced tracks first, so that the data of each run follow each other and the rest follows them.
    std::stable_sort(m_pending.begin(), m_pending.end(), [this](const Pending& a, const Pending& b) {
        const bool first = movie.tracks[a.track].announced, second = movie.tracks[b.track].announced;
        return first != second ? first : a.track < b.track;
    });
    std::vector<FragmentRun> runs;
    for (std::size_t i = 0; i < m_pending.size(); ++i) {
        const Pending& pending = m_pending[i];
        const Track& track = movie.tracks[pending.track];
        const Sample& sample = track.samples[pending.sample];
        if (!track.announced)
            break;
        const bool sameTrack = i > 0 && m_pending[i - 1].track == pending.track;
        if (sameTrack && Continues(track, sample) && Continues(track, runs.back().samples.back())) {
            runs.back().samples = {runs.back().samples.data(), runs.back().samples.size() + 1};
        } else {
            runs.push_back({&track, {&sample, 1}});
        }
    }
    WriteFragmentHead(out, ++m_fragments, runs, m_pendingBytes);
    for (const Pending& pending : m_pending) {
        movie.tracks[pending.track].samples[pending.sample].offset = m_file.Size() + out.Position();
        out.Append(pending.bytes);
    }
    if (!m_file.Append(out.Bytes())) {
        m_reason = m_file.Reason();
        return false;
    }
    m_pending.clear();
    m_pendingBytes = 0;
    return true;
}

bool MovieFile::CopyMedia(File& to, const std::vector<Chunk>& chunks)
{
    constexpr std::size_t kBlock = std::size_t{1} << 20;
    std::vector<unsigned char> block;
    block.reserve(kBlock);
    for (const Chunk& chunk : chunks) {
        const std::vector<Sample>& samples = movie.tracks[chunk.track].samples;
        for (std::size_t i = chunk.first; i < chunk.first + chunk.count; ++i) {
            const std::size_t begin = block.size();
            block.resize(begin + samples[i].size);
            if (!m_file.Read(samples[i].offset, std::span(block).subspan(begin))) {
                m_reason = m_path + " cannot be read back";
                return false;
            }
            if (block.size() < kBlock)
                continue;
            if (!to.Append(block))
                return false;
            block.clear();
        }
    }
    return to.Append(block);
}

bool MovieFile::WriteBeside(const std::string& path)
{
    File beside;
    const std::vector<Chunk> chunks = Interleave(movie);
    ByteWriter head;
    WriteFinishedHead(head, movie, chunks);
    const bool written =
        beside.Replace(path) && beside.Append(head.Bytes()) && CopyMedia(beside, chunks) && beside.Sync();
    if (m_reason.empty())
        m_reason = beside.Reason();
    return written;
}

bool MovieFile::Finish()
{
    if (!Flush())
        return false;
    const bool empty = std::all_of(movie.tracks.begin(), movie.tracks.end(),
                                   [](const Track& track) { return track.samples.empty(); });
    if (empty) {
        m_reason = m_path + " holds no sample";
        Abandon();
        return false;
    }
    const std::string beside = NameBeside(m_path);
    if (WriteBeside(beside)) {
        m_reason = m_file.IsAtItsPath() ? RenameDurably(beside, m_path)
                                        : m_path + " was removed or replaced while it was recorded";
    }
    if (!m_reason.empty())
        ::unlink(beside.c_str());
    m_file.Close();
    return m_reason.empty();
}

void MovieFile::Abandon()
{
    const bool unused = m_file.Descriptor() >= 0 && m_file.Size() == 0;
    m_file.Close();
    if (unused)
        ::unlink(m_path.c_str());
}

}   // namespace QZ::Platform::Movie
