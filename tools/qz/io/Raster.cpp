// SPDX-License-Identifier: MIT
#include "tools/qz/io/Raster.h"

#include <algorithm>
#include <limits>

#include "tools/qz/io/ColorTransform.h"
#include "tools/qz/io/Orientation.h"
#include "tools/qz/io/SampleRows.h"

namespace QZ::Tool {

int RasterHeader::ColorSamples() const
{
    switch (model) {
        case Model::Grey:
            return 1;
        case Model::RGB:
            return 3;
        case Model::CMYK:
            break;
    }
    return 4;
}

void CheckLimits(const Limits& limits, std::uint64_t width, std::uint64_t height, std::uint64_t bytesPerPixel)
{
    if (width == 0 || height == 0)
        throw Defect("the picture has no pixels");
    constexpr std::uint64_t kLongest = std::numeric_limits<std::int32_t>::max();
    const bool fits = width <= kLongest && height <= kLongest && width <= limits.pixels / height &&
                      width * height <= limits.Bytes() / bytesPerPixel;
    if (!fits)
        throw Defect("the picture of " + std::to_string(width) + " x " + std::to_string(height) +
                         " pixels is over the limit of " + std::to_string(limits.pixels) + " pixels or " +
                         std::to_string(limits.Bytes() >> 20) + " MiB",
                     "raise it with --max-pixels");
}

PictureBuilder::PictureBuilder(const Limits& limits) : m_limits(limits)
{}
PictureBuilder::~PictureBuilder() = default;

void PictureBuilder::Begin(RasterHeader header)
{
    CheckLimits(m_limits, header.width, header.height);
    m_header = std::move(header);
    m_image.width = static_cast<int>(m_header.width);
    m_image.height = static_cast<int>(m_header.height);
    m_image.pixels.resize(4 * m_image.Count());
    m_image.source = {m_header.format,
                      m_header.bitDepth,
                      m_header.alpha && !m_header.opaque,
                      m_header.orientation,
                      {},
                      std::move(m_header.remarks)};
    m_transform = ColorTransform::FromProfile(m_header, m_image.source);
}

void PictureBuilder::Row(std::uint64_t y, const unsigned char* samples)
{
    ConvertRow(samples, m_image.At(0, static_cast<int>(y)));
}

void PictureBuilder::ConvertRow(const unsigned char* samples, unsigned char* out)
{
    if (m_header.premultiplied && m_header.alpha) {
        DivideAlphaOut(m_header, samples, m_straight);
        samples = m_straight.data();
    }
    if (m_transform != nullptr) {
        m_transform->Row(samples, m_image.width, out);
        return;
    }
    if (m_header.bytesPerSample == 2) {
        NarrowRow(m_header, samples, m_narrow);
        samples = m_narrow.data();
    }
    ExpandRow(m_header, samples, out);
}

Image PictureBuilder::Finish()
{
    m_transform.reset();
    TurnUpright(m_header.orientation, m_image);
    return std::move(m_image);
}

}   // namespace QZ::Tool
