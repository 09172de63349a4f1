// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Platform/MovieWriter/TrackWriter.h"

namespace QZ::Platform::Movie {

/// Sound and timed metadata that are stored as they come. Sound counts in its sample rate; a buffer that
/// begins within a tick of the last one's end, or before it, is taken to follow it.
class PassThroughTrack final : public TrackWriter {
public:
    PassThroughTrack(MovieFile& file, std::size_t track) : TrackWriter(file, track) {}
    bool Open() override { return true; }
    bool Write(const QueuedSample& sample) override;
    bool Finish() override { return true; }

private:
    void Describe(const FormatDescription& format);
    void WriteSound(const SampleBuffer& buffer, std::int64_t time);
    void WriteMetadata(const SampleBuffer& buffer, std::int64_t time);
};

}   // namespace QZ::Platform::Movie
