// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/PCMSamples.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace QZ::Platform::Movie {

namespace {
/// The sample's bytes as one number, whatever their order.
std::uint64_t Word(const unsigned char* bytes, std::size_t count, bool bigEndian)
{
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < count; ++i)
        word = word << 8 | bytes[bigEndian ? i : count - 1 - i];
    return word;
}

float FloatSample(std::uint64_t word, int bits)
{
    const double value = bits == 64 ? std::bit_cast<double>(word)
                                    : double{std::bit_cast<float>(static_cast<std::uint32_t>(word))};
    return std::isfinite(value) ? static_cast<float>(value) : 0.0f;
}

float IntegerSample(std::uint64_t word, int bits, bool isSigned)
{
    const std::int64_t half = std::int64_t{1} << (bits - 1);
    std::int64_t value = static_cast<std::int64_t>(word);
    if (!isSigned) {
        value -= half;
    } else if (value >= half) {
        value -= 2 * half;
    }
    return static_cast<float>(static_cast<double>(value) / static_cast<double>(half));
}
}   // namespace

bool IsReadable(const PCMEntry& format)
{
    const int bits = format.bitsPerChannel;
    const bool known =
        format.isFloat ? bits == 32 || bits == 64 : bits == 8 || bits == 16 || bits == 24 || bits == 32;
    return known && format.channels > 0 && format.channels <= 64 && format.sampleRate >= 1 &&
           format.sampleRate <= 768000 && format.bytesPerFrame == format.channels * bits / 8;
}

std::vector<float> ReadPCM(const PCMEntry& format, std::span<const unsigned char> frames)
{
    const std::size_t size = static_cast<std::size_t>(format.bitsPerChannel / 8);
    const std::size_t channels = static_cast<std::size_t>(format.channels);
    std::vector<float> samples(frames.size() / (size * channels) * channels);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::uint64_t word = Word(frames.data() + i * size, size, format.isBigEndian);
        samples[i] = format.isFloat ? FloatSample(word, format.bitsPerChannel)
                                    : IntegerSample(word, format.bitsPerChannel, format.isSigned);
    }
    return samples;
}

}   // namespace QZ::Platform::Movie
