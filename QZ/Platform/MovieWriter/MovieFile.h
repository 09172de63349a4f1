// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "QZ/Platform/MovieWriter/File.h"
#include "QZ/Platform/MovieWriter/Track.h"

namespace QZ::Platform::Movie {

/// A movie file that plays at every moment of its making. While recording, it is an index without samples and
/// then a fragment for each flush, handed to the kernel in one write; Finish puts an ordinary file with the
/// index in front in its place. Used by one thread.
class MovieFile {
public:
    /// The tracks may still be added to and described until the first flush.
    Movie movie;

    /// Creates the file. What exists at the path is kept beside it under a free name.
    bool Create(const std::string& path);

    /// Keeps a sample for the next flush. Its offset and the track's lists of samples are this object's to
    /// set.
    void Add(std::size_t track, const Sample& sample, std::vector<unsigned char> bytes);

    [[nodiscard]] bool IsOpened() const { return m_opened; }
    [[nodiscard]] std::uint64_t PendingBytes() const { return m_pendingBytes; }
    /// Seconds between the earliest decode time of the samples that wait and the latest.
    [[nodiscard]] double PendingSeconds() const;

    /// Writes what waits as one fragment; the first time, the opening before it. A track whose format is
    /// unknown at that time is absent from the file until Finish.
    bool Flush();

    /// Flushes, writes the ordinary file beside, and moves it into place. Where that fails, the recorded file
    /// stays.
    bool Finish();

    /// Leaves the recorded file as it is, or removes it when nothing was written.
    void Abandon();

    [[nodiscard]] int Descriptor() const { return m_file.Descriptor(); }
    [[nodiscard]] const std::string& Reason() const { return m_reason; }

private:
    struct Pending {
        std::size_t track = 0;
        std::size_t sample = 0;   ///< index into the track's samples
        std::vector<unsigned char> bytes;
    };

    bool WriteBeside(const std::string& path);
    bool CopyMedia(File& to, const std::vector<struct Chunk>& chunks);

    File m_file;
    std::string m_path;
    std::string m_reason;
    std::vector<Pending> m_pending;
    std::uint64_t m_pendingBytes = 0;
    double m_earliest = 0, m_latest = 0;
    std::uint32_t m_fragments = 0;
    bool m_opened = false;
};

}   // namespace QZ::Platform::Movie
