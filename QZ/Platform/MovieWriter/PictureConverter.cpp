// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/PictureConverter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace QZ::Platform::Movie {

namespace {
constexpr int kBytesPerPixel = 4;

// Rows of fewer pixels are copied first: the library reads them in steps that may end behind the last one.
constexpr int kLeastWidth = 32;

struct Geometry {
    int sourceWidth, sourceHeight, width, height;
};

Owned<SwsContext> NewConverter(const Geometry& size, AVPixelFormat to)
{
    Owned<SwsContext> context(sws_alloc_context());
    if (!context)
        return nullptr;
    const auto set = [&](const char* name, std::int64_t value) {
        av_opt_set_int(context.get(), name, value, 0);
    };
    set("srcw", size.sourceWidth);
    set("srch", size.sourceHeight);
    set("dstw", size.width);
    set("dsth", size.height);
    set("src_format", AV_PIX_FMT_BGR0);
    set("dst_format", to);
    set("sws_flags", SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INP | SWS_BITEXACT);
    // Chroma samples in 1/256 of a luma sample from the top left one's: left, and half way down.
    set("dst_h_chr_pos", 0);
    set("dst_v_chr_pos", 128);
    const int* matrix = sws_getCoefficients(SWS_CS_ITU709);
    const bool isRGB = to == AV_PIX_FMT_BGR0;
    sws_setColorspaceDetails(context.get(), matrix, 1, matrix, isRGB ? 1 : 0, 0, 1 << 16, 1 << 16);
    return sws_init_context(context.get(), nullptr, nullptr) < 0 ? nullptr : std::move(context);
}

/// The length of source that fills `output` where the other direction decides the scale `otherSource /
/// otherOutput`.
int Crop(int source, int output, int otherSource, int otherOutput)
{
    const std::int64_t exact = (std::int64_t{output} * otherSource + otherOutput / 2) / otherOutput;
    return static_cast<int>(std::clamp<std::int64_t>(exact, 1, source));
}
}   // namespace

bool PictureConverter::Open(int sourceWidth, int sourceHeight, int width, int height, AVPixelFormat format)
{
    m_width = width;
    m_height = height;
    m_codedWidth = width + width % 2;
    m_codedHeight = height + height % 2;
    m_format = format;
    m_cropWidth = sourceWidth;
    m_cropHeight = sourceHeight;
    if (std::int64_t{sourceWidth} * height > std::int64_t{width} * sourceHeight) {
        m_cropWidth = Crop(sourceWidth, width, sourceHeight, height);
    } else {
        m_cropHeight = Crop(sourceHeight, height, sourceWidth, width);
    }
    m_cropX = (sourceWidth - m_cropWidth) / 2;
    m_cropY = (sourceHeight - m_cropHeight) / 2;
    if (m_cropWidth < kLeastWidth) {
        m_narrow = NewBGRA(m_cropWidth, m_cropHeight);
        if (!m_narrow)
            return false;
    }
    if (!IsPadded()) {
        m_convert = NewConverter({m_cropWidth, m_cropHeight, width, height}, format);
        return m_convert != nullptr;
    }
    m_convert = NewConverter({m_codedWidth, m_codedHeight, m_codedWidth, m_codedHeight}, format);
    m_padded = NewBGRA(m_codedWidth, m_codedHeight);
    if (!m_convert || !m_padded)
        return false;
    if (m_cropWidth == width && m_cropHeight == height)
        return true;
    m_scale = NewConverter({m_cropWidth, m_cropHeight, width, height}, AV_PIX_FMT_BGR0);
    return m_scale != nullptr;
}

Owned<AVFrame> PictureConverter::NewBGRA(int width, int height) const
{
    Owned<AVFrame> frame(av_frame_alloc());
    if (!frame)
        return nullptr;
    frame->format = AV_PIX_FMT_BGR0;
    frame->width = width;
    frame->height = height;
    return av_frame_get_buffer(frame.get(), 0) < 0 ? nullptr : std::move(frame);
}

void PictureConverter::CopyNarrow(const unsigned char*& bgra, int& bytesPerRow)
{
    const std::size_t row = static_cast<std::size_t>(m_cropWidth) * kBytesPerPixel;
    for (std::ptrdiff_t y = 0; y < m_cropHeight; ++y)
        std::memcpy(m_narrow->data[0] + y * m_narrow->linesize[0], bgra + y * bytesPerRow, row);
    bgra = m_narrow->data[0];
    bytesPerRow = m_narrow->linesize[0];
}

void PictureConverter::Pad(const unsigned char* bgra, int bytesPerRow)
{
    unsigned char* pixels = m_padded->data[0];
    const std::ptrdiff_t stride = m_padded->linesize[0];
    const std::size_t row = static_cast<std::size_t>(m_width) * kBytesPerPixel;
    if (m_scale) {
        sws_scale(m_scale.get(), &bgra, &bytesPerRow, 0, m_cropHeight, m_padded->data, m_padded->linesize);
    } else {
        for (std::ptrdiff_t y = 0; y < m_height; ++y)
            std::memcpy(pixels + y * stride, bgra + y * bytesPerRow, row);
    }
    if (m_codedWidth != m_width) {
        for (std::ptrdiff_t y = 0; y < m_height; ++y)
            std::memcpy(pixels + y * stride + row, pixels + y * stride + row - kBytesPerPixel,
                        kBytesPerPixel);
    }
    if (m_codedHeight != m_height) {
        unsigned char* last = pixels + (m_height - 1) * stride;
        std::memcpy(last + stride, last, static_cast<std::size_t>(m_codedWidth) * kBytesPerPixel);
    }
}

AVFrame* PictureConverter::FreePicture()
{
    for (const Owned<AVFrame>& picture : m_pictures)
        if (av_frame_is_writable(picture.get()) > 0)
            return picture.get();
    Owned<AVFrame> picture(av_frame_alloc());
    if (!picture)
        return nullptr;
    picture->format = m_format;
    picture->width = m_codedWidth;
    picture->height = m_codedHeight;
    if (av_frame_get_buffer(picture.get(), 0) < 0)
        return nullptr;
    m_pictures.push_back(std::move(picture));
    return m_pictures.back().get();
}

AVFrame* PictureConverter::Convert(const unsigned char* bgra, int bytesPerRow)
{
    AVFrame* picture = FreePicture();
    if (!picture)
        return nullptr;
    const unsigned char* source =
        bgra + std::ptrdiff_t{m_cropY} * bytesPerRow + std::ptrdiff_t{m_cropX} * kBytesPerPixel;
    int height = m_cropHeight;
    if (m_narrow)
        CopyNarrow(source, bytesPerRow);
    if (IsPadded()) {
        Pad(source, bytesPerRow);
        source = m_padded->data[0];
        bytesPerRow = m_padded->linesize[0];
        height = m_codedHeight;
    }
    sws_scale(m_convert.get(), &source, &bytesPerRow, 0, height, picture->data, picture->linesize);
    return picture;
}

}   // namespace QZ::Platform::Movie
