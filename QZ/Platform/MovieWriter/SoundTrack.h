// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Platform/MovieWriter/AudioEncoder.h"
#include "QZ/Platform/MovieWriter/TrackWriter.h"

namespace QZ::Platform::Movie {

/// Sound, encoded as AAC. It keeps to the times of its buffers: a gap between two becomes silence, and what
/// overlaps is left out, in both cases beyond 5 ms, which clocks of capture devices waver by.
class SoundTrack final : public TrackWriter {
public:
    SoundTrack(const AudioSettings& settings, MovieFile& file, std::size_t track);
    bool Open() override;
    bool Write(const QueuedSample& sample) override;
    bool Finish() override;

private:
    void Add(EncodedSample encoded);
    bool Encode(const SampleBuffer& buffer, std::size_t skippedFrames);

    AudioSettings m_settings;
    AudioEncoder m_encoder;
    SampleSink m_sink = [this](EncodedSample encoded) { Add(std::move(encoded)); };
    bool m_first = true;
};

}   // namespace QZ::Platform::Movie
