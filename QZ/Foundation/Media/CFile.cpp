// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/CFile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "QZ/Platform/ImageAssets.h"
#include "QZ/Platform/ImageIO.h"
#include "QZ/Platform/PhotoAlbum.h"

namespace QZ::Foundation {

using Platform::Image;
using Platform::ImageAlpha;
using Platform::ImageColorSpace;
using Platform::ImageLayout;

namespace {

using Bytes = std::vector<unsigned char>;

/// How many pixels a picture has; 0 where its size is not one that the savers take.
std::size_t PixelCount(int width, int height, int bytesPerPixel = 4)
{
    const std::int64_t count = std::int64_t{std::max(width, 0)} * std::max(height, 0);
    return count <= std::numeric_limits<int>::max() / bytesPerPixel ? static_cast<std::size_t>(count) : 0;
}

struct RGBAOptions {
    bool opaque, swapRB, displayP3;
};

Bytes PNGOfRGBA(int width, int height, RGBAOptions options, Bytes rgba)
{
    if (rgba.empty())
        return {};
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        if (options.opaque)
            rgba[i + 3] = 255;
        if (options.swapRB)
            std::swap(rgba[i], rgba[i + 2]);
    }
    const ImageLayout layout = {width, height,
                                options.displayP3 ? ImageColorSpace::DisplayP3 : ImageColorSpace::SRGB,
                                ImageAlpha::Last, static_cast<std::size_t>(width) * 4};
    return Platform::EncodePNG(layout, rgba.data());
}

void Save(const std::string& path, const Bytes& file)
{
    if (!file.empty())
        (void)Platform::WriteFileAtomically(path, file);
}

void SaveToAlbum(const Bytes& file)
{
    if (!file.empty())
        Platform::PhotoAlbum::SavePNG(file);
}

/// floor(255 value + 0.5), clamped; NaN gives 0.
unsigned char ToByte(float value)
{
    const float scaled = std::floor(value * 255.0f + 0.5f);
    return static_cast<unsigned char>(scaled > 0.0f ? std::min(scaled, 255.0f) : 0.0f);
}

Bytes ToBytes(const _Float16* values, std::size_t count)
{
    Bytes bytes(count);
    std::transform(values, values + count, bytes.begin(),
                   [](_Float16 value) { return ToByte(static_cast<float>(value)); });
    return bytes;
}

/// Opaque grey pixels of every `stride`-th value.
template <class Tone>
Bytes ToRRR255(const unsigned char* values, std::size_t count, std::size_t stride, Tone tone)
{
    Bytes rgba(count * 4, 255);
    for (std::size_t i = 0; i < count; ++i)
        std::fill_n(rgba.begin() + static_cast<std::ptrdiff_t>(i * 4), 3, tone(values[i * stride]));
    return rgba;
}

std::size_t PixelCountOf(const std::optional<Image>& image)
{
    return image ? static_cast<std::size_t>(image->layout.width) *
                       static_cast<std::size_t>(image->layout.height)
                 : 0;
}

/// Whether `size` bytes at an offset are equal; bytes beyond the end of a picture equal nothing.
bool SameBytes(const Bytes& a, std::size_t offsetA, const Bytes& b, std::size_t offsetB, std::size_t size)
{
    return offsetB + size <= b.size() && std::equal(&a[offsetA], &a[offsetA] + size, &b[offsetB]);
}

}   // namespace

void CFile::SaveRGBAToAlbum(int width, int height, bool opaque, bool swapRB, bool displayP3,
                            const unsigned char* rgba)
{
    const std::size_t count = PixelCount(width, height);
    SaveToAlbum(PNGOfRGBA(width, height, {opaque, swapRB, displayP3}, Bytes(rgba, rgba + count * 4)));
}

void CFile::SaveRGBAToAlbum(int width, int height, bool opaque, bool swapRB, bool displayP3,
                            const _Float16* rgba)
{
    const std::size_t count = PixelCount(width, height);
    SaveToAlbum(PNGOfRGBA(width, height, {opaque, swapRB, displayP3}, ToBytes(rgba, count * 4)));
}

void CFile::SaveRAsRRR255ToAlbum(int width, int height, bool displayP3, const unsigned char* rgba)
{
    const auto mask = [](unsigned char value) { return ToByte(value); };   // a byte taken for a 0 or a 1
    const Bytes grey = ToRRR255(rgba, PixelCount(width, height), 4, mask);
    if (!grey.empty())
        SaveRGBAToAlbum(width, height, false, false, displayP3, grey.data());
}

void CFile::SaveRGBAToFile(const std::string& path, int width, int height, bool opaque, bool swapRB,
                           bool displayP3, const unsigned char* rgba)
{
    const std::size_t count = PixelCount(width, height);
    Save(path, PNGOfRGBA(width, height, {opaque, swapRB, displayP3}, Bytes(rgba, rgba + count * 4)));
}

void CFile::SaveRGBAToFile(const std::string& path, int width, int height, bool opaque, bool swapRB,
                           bool displayP3, const _Float16* rgba)
{
    const std::size_t count = PixelCount(width, height);
    Save(path, PNGOfRGBA(width, height, {opaque, swapRB, displayP3}, ToBytes(rgba, count * 4)));
}

void CFile::SaveRToFile(const std::string& path, int width, int height, bool, const unsigned char* plane)
{
    if (PixelCount(width, height, 1) == 0)
        return;
    const ImageLayout layout = {width, height, ImageColorSpace::DeviceGray, ImageAlpha::None,
                                static_cast<std::size_t>(width)};
    Save(path, Platform::EncodePNG(layout, plane));
}

void CFile::SaveRToFile(const std::string& path, int width, int height, bool ignored, const _Float16* values)
{
    const Bytes bytes = ToBytes(values, PixelCount(width, height) * 4);
    if (!bytes.empty())
        SaveRToFile(path, width, height, ignored, bytes.data());
}

void CFile::SaveRAsRRR255ToFile(const std::string& path, int width, int height, bool displayP3,
                                const unsigned char* plane)
{
    const auto asItIs = [](unsigned char value) { return value; };
    const Bytes grey = ToRRR255(plane, PixelCount(width, height), 1, asItIs);
    if (!grey.empty())
        SaveRGBAToFile(path, width, height, false, false, displayP3, grey.data());
}

void CFile::SaveRGBAAsRToFile(const std::string& path, int width, int height, bool ignored,
                              const unsigned char* rgba)
{
    Bytes plane(PixelCount(width, height));
    for (std::size_t i = 0; i < plane.size(); ++i)
        plane[i] = rgba[i * 4];
    if (!plane.empty())
        SaveRToFile(path, width, height, ignored, plane.data());
}

unsigned int CFile::Compare(const std::string& a, const std::string& b)
{
    const std::optional<Image> imageA = Platform::ImageAssets::Named(a);
    const std::optional<Image> imageB = Platform::ImageAssets::Named(b);
    if (!imageA || !imageB)
        return static_cast<unsigned int>(PixelCountOf(imageA) + PixelCountOf(imageB));

    const ImageLayout &layoutA = imageA->layout, &layoutB = imageB->layout;
    const std::size_t size = layoutA.BytesPerPixel();
    unsigned int differing = 0;
    for (std::size_t y = 0; y < static_cast<std::size_t>(layoutA.height); ++y)
        for (std::size_t x = 0; x < static_cast<std::size_t>(layoutA.width); ++x)
            differing += !SameBytes(imageA->pixels, y * layoutA.bytesPerRow + x * size, imageB->pixels,
                                    y * layoutB.bytesPerRow + x * layoutB.BytesPerPixel(), size);
    return differing;
}

}   // namespace QZ::Foundation
