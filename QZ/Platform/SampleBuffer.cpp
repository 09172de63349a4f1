// SPDX-License-Identifier: MIT
#include "QZ/Platform/MediaBuffers.h"

namespace QZ::Platform {

namespace {

void AppendBigEndian(std::vector<unsigned char>& bytes, std::size_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<unsigned char>(value >> shift));
}

}   // namespace

std::size_t FormatDescription::BytesPerFrame() const noexcept
{
    if (subType != FourCharacterCode("lpcm") || channels <= 0 || bitsPerChannel <= 0)
        return 0;
    return static_cast<std::size_t>(channels) * (static_cast<std::size_t>(bitsPerChannel) / 8);
}

std::shared_ptr<const FormatDescription> FormatDescription::LinearPCM16(double sampleRate, int channels)
{
    auto format = std::make_shared<FormatDescription>();
    format->mediaType = MediaType::Audio;
    format->subType = FourCharacterCode("lpcm");
    format->sampleRate = sampleRate;
    format->channels = channels;
    format->bitsPerChannel = 16;
    return format;
}

std::shared_ptr<SampleBuffer> SampleBuffer::MakeMetadata(const std::vector<MetadataItem>& items, Time time,
                                                         Time duration)
{
    auto format = std::make_shared<FormatDescription>();
    format->mediaType = MediaType::Metadata;
    format->subType = FourCharacterCode("mebx");

    auto sample = std::make_shared<SampleBuffer>();
    std::uint32_t localID = 0;
    for (const MetadataItem& item : items) {
        MetadataKey key;
        key.localID = ++localID;
        key.key = item.key;
        format->metadataKeys.push_back(std::move(key));
        AppendBigEndian(sample->bytes, item.value.size() + 8);
        AppendBigEndian(sample->bytes, localID);
        sample->bytes.insert(sample->bytes.end(), item.value.begin(), item.value.end());
    }
    sample->format = std::move(format);
    sample->presentationTime = time;
    sample->duration = duration;
    return sample;
}

}   // namespace QZ::Platform
