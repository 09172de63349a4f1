// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/TrackFormats.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

#include "QZ/Platform/MovieWriter/PCMSamples.h"

namespace QZ::Platform::Movie {

namespace {
constexpr std::uint32_t kPCM = FourCharacterCode("lpcm");
constexpr std::uint32_t kAAC = FourCharacterCode("aac ");
constexpr std::uint32_t kTimedMetadata = FourCharacterCode("mebx");

// What a movie's track header and sample entry can say.
constexpr int kLargestSide = 16384;

std::string WhyUnsuitable(const VideoSettings& settings)
{
    if (settings.width < 1 || settings.height < 1 || settings.width > kLargestSide ||
        settings.height > kLargestSide)
        return "a video track of " + std::to_string(settings.width) + " x " +
               std::to_string(settings.height) + " pixels cannot be made";
    return {};
}

std::string WhyUnsuitable(const AudioSettings& settings)
{
    if (settings.formatID != kAAC)
        return "sound can be encoded as AAC only";
    const bool isRate = settings.sampleRate >= 7350 && settings.sampleRate <= 96000 &&
                        settings.sampleRate == std::floor(settings.sampleRate);
    if (!isRate || settings.numberOfChannels < 1 || settings.numberOfChannels > 8 || settings.bitRate < 1)
        return "AAC has no such sample rate, number of channels or bit rate";
    return {};
}

/// Whether the packets' sizes, where they are given, make up all the bytes.
bool HasWholePackets(const SampleBuffer& buffer)
{
    const auto sum = std::accumulate(buffer.sampleSizes.begin(), buffer.sampleSizes.end(), std::uint64_t{0});
    return buffer.sampleSizes.empty() || sum == buffer.bytes.size();
}

bool IsUncompressed(const SampleBuffer& buffer)
{
    return buffer.format->subType == kPCM && IsReadable(PCMOf(*buffer.format)) &&
           buffer.bytes.size() % buffer.format->BytesPerFrame() == 0;
}

bool IsAAC(const SampleBuffer& buffer)
{
    const FormatDescription& format = *buffer.format;
    return format.subType == kAAC && !format.configuration.empty() && format.framesPerPacket > 0 &&
           format.channels > 0 && format.sampleRate >= 1 && format.sampleRate <= 768000 &&
           HasWholePackets(buffer);
}
}   // namespace

std::string WhyUnsuitable(MediaType type, const OutputSettings& output)
{
    if (const auto* video = std::get_if<VideoSettings>(&output))
        return type == MediaType::Video ? WhyUnsuitable(*video) : "these settings are for video";
    if (const auto* audio = std::get_if<AudioSettings>(&output))
        return type == MediaType::Audio ? WhyUnsuitable(*audio) : "these settings are for sound";
    return type == MediaType::Video ? "video does not pass through: it needs settings" : "";
}

PCMEntry PCMOf(const FormatDescription& format)
{
    return {format.sampleRate,
            format.channels,
            format.bitsPerChannel,
            format.isFloat,
            format.isBigEndian,
            format.isSigned,
            static_cast<int>(format.BytesPerFrame())};
}

bool SuitsTrack(const ChannelSettings& settings, const SampleBuffer& buffer)
{
    if (!buffer.format || buffer.format->mediaType != settings.type || buffer.bytes.empty() ||
        buffer.bytes.size() > std::numeric_limits<std::int32_t>::max())
        return false;
    switch (settings.type) {
        case MediaType::Audio:
            return IsUncompressed(buffer) ||
                   (std::holds_alternative<std::monostate>(settings.output) && IsAAC(buffer));
        case MediaType::Metadata:
            return buffer.format->subType == kTimedMetadata && !buffer.format->metadataKeys.empty();
        case MediaType::Video:
            break;
    }
    return false;
}

}   // namespace QZ::Platform::Movie
