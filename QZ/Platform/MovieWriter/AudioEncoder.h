// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QZ/Platform/MovieWriter/Codec.h"
#include "QZ/Platform/MovieWriter/SampleEntries.h"
#include "QZ/Platform/MovieWriter/VideoEncoder.h"

namespace QZ::Platform::Movie {

/// What the AAC encoder is asked for.
struct AudioEncoding {
    int sampleRate = 44100;
    int channels = 1;
    std::int64_t bitRate = 128000;
};

/// Encodes uncompressed sound of any rate, layout and number of channels as AAC-LC. The timescale of its
/// samples is the sample rate; time 0 is the first sound that was given, and the encoder's priming lies
/// before it.
class AudioEncoder {
public:
    bool Open(const AudioEncoding& encoding);

    /// Encodes a run of frames that follows what was given before.
    bool Encode(const PCMEntry& format, std::span<const unsigned char> frames, const SampleSink& sink);
    /// Encodes silence of so many frames of the encoder's sample rate, for a gap between two runs.
    bool EncodeSilence(std::int64_t frames, const SampleSink& sink);
    /// Gives out what is held back; the last call.
    bool Flush(const SampleSink& sink);

    /// Where the next run begins: the length of all that was given, in frames of the encoder's sample rate.
    [[nodiscard]] std::int64_t Position() const;
    [[nodiscard]] Bytes SampleEntry() const;
    [[nodiscard]] const std::string& Reason() const { return m_reason; }

private:
    bool Fail(const std::string& what);
    bool PrepareResampler(const PCMEntry& format);
    bool Resample(const float* frames, int count);
    bool DrainResampler();
    bool EncodeWaiting(std::size_t least, const SampleSink& sink);
    bool EncodePacket(std::size_t frames, const SampleSink& sink);
    bool Receive(const SampleSink& sink);

    AudioEncoding m_encoding;
    Owned<AVCodecContext> m_context;
    Owned<AVPacket> m_packet;
    Owned<SwrContext> m_resampler;
    int m_sourceRate = 0, m_sourceChannels = 0;
    std::int64_t m_sourceFrames = 0;             ///< given to this resampler
    std::int64_t m_base = 0;                     ///< position at which this resampler began
    std::vector<std::vector<float>> m_waiting;   ///< a channel each: sound that does not fill a packet yet
    std::int64_t m_encoded = 0;                  ///< frames sent to the encoder
    std::string m_reason;
};

}   // namespace QZ::Platform::Movie
