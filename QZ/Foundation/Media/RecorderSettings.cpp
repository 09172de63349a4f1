// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/RecorderSettings.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "QZ/Platform/Application.h"

namespace QZ::Foundation {

std::string DefaultMoviePath()
{
    return Platform::Application::TemporaryDirectory() + Platform::Application::BundleName() + "Edit.mov";
}

Platform::VideoCodec CodecOfFormat(std::string_view format)
{
    if (format == "hevc")
        return Platform::VideoCodec::HEVC;
    if (format == "prores")
        return Platform::VideoCodec::ProRes422;
    return Platform::VideoCodec::H264;
}

int Truncate(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (value <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

Platform::VideoCompression CompressionFor(int width, int height, int frameRate, double bitRateMultiplier)
{
    const std::uint32_t pixels = static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(frameRate) *
                                 static_cast<std::uint32_t>(height);
    const double wrapped = static_cast<std::int32_t>(pixels);
    return {Truncate(wrapped * bitRateMultiplier * 0.61728395061728 + 0.5), frameRate};
}

Platform::PixelBufferAttributes SourceAttributes(int width, int height)
{
    Platform::PixelBufferAttributes attributes;
    attributes.width = width;
    attributes.height = height;
    return attributes;
}

std::string ReasonOf(const std::shared_ptr<Platform::AssetWriterFactory>& factory,
                     const std::shared_ptr<Platform::AssetWriter>& writer)
{
    if (!factory)
        return Platform::AssetWriterFactory::SharedReason();
    if (writer && writer->Status() == Platform::AssetWriterStatus::Failed)
        return writer->Reason();
    return factory->Reason();
}

}   // namespace QZ::Foundation
