// SPDX-License-Identifier: MIT
#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <limits>

#include "QZ/Platform/ImageIO.h"

namespace QZ::Platform {

namespace {

// libpng reports errors by a jump to the nearest setjmp. So every object with a destructor lives in a
// function outside the one that calls setjmp, and nothing above it is touched on the way.
[[noreturn]] void OnError(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void OnWarning(png_structp, png_const_charp)
{}   // a library's host owns its standard error

std::size_t ByteCount(const ImageLayout& layout)
{
    return layout.bytesPerRow * static_cast<std::size_t>(layout.height);
}

struct Encoder {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, OnError, OnWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    std::vector<unsigned char> file;

    Encoder() = default;
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() { png_destroy_write_struct(&png, &info); }
};

void Append(png_structp png, png_bytep bytes, std::size_t count)
{
    auto& file = *static_cast<std::vector<unsigned char>*>(png_get_io_ptr(png));
    try {
        file.insert(file.end(), bytes, bytes + count);
        return;
    } catch (const std::bad_alloc&) {
    }
    png_error(png, "out of memory");
}

void Flush(png_structp)
{}

int ColorType(const ImageLayout& layout)
{
    return (layout.colorSpace == ImageColorSpace::DeviceGray ? 0 : PNG_COLOR_MASK_COLOR) |
           (layout.alpha == ImageAlpha::Last ? PNG_COLOR_MASK_ALPHA : 0);
}

bool Encode(Encoder& encoder, const ImageLayout& layout, const unsigned char* pixels)
{
    if (!encoder.info || setjmp(png_jmpbuf(encoder.png)))
        return false;
    png_set_write_fn(encoder.png, &encoder.file, Append, Flush);
    png_set_user_limits(encoder.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_IHDR(encoder.png, encoder.info, static_cast<png_uint_32>(layout.width),
                 static_cast<png_uint_32>(layout.height), 8, ColorType(layout), PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    const std::span<const unsigned char> profile = ICCProfileOf(layout.colorSpace);
    if (!profile.empty())
        png_set_iCCP(encoder.png, encoder.info,
                     layout.colorSpace == ImageColorSpace::SRGB ? "sRGB" : "Display P3",
                     PNG_COMPRESSION_TYPE_BASE, profile.data(), static_cast<png_uint_32>(profile.size()));
    png_write_info(encoder.png, encoder.info);
    for (int y = 0; y < layout.height; ++y)
        png_write_row(encoder.png, pixels + layout.bytesPerRow * static_cast<std::size_t>(y));
    png_write_end(encoder.png, nullptr);
    return true;
}

struct Decoder {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, OnError, OnWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    std::span<const unsigned char> rest;
    Image image;
    std::vector<png_bytep> rows;

    Decoder() = default;
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { png_destroy_read_struct(&png, &info, nullptr); }
};

void Take(png_structp png, png_bytep bytes, std::size_t count)
{
    auto& rest = *static_cast<std::span<const unsigned char>*>(png_get_io_ptr(png));
    if (count > rest.size())
        png_error(png, "the file ends early");
    std::copy_n(rest.data(), count, bytes);
    rest = rest.subspan(count);
}

ImageColorSpace ColorSpaceOf(png_structp png, png_infop info)
{
    if (!(png_get_color_type(png, info) & PNG_COLOR_MASK_COLOR))
        return ImageColorSpace::DeviceGray;
    png_charp name = nullptr;
    png_bytep bytes = nullptr;
    png_uint_32 size = 0;
    int compression = 0;
    const std::span<const unsigned char> displayP3 = ICCProfileOf(ImageColorSpace::DisplayP3);
    if (png_get_iCCP(png, info, &name, &compression, &bytes, &size) == PNG_INFO_iCCP &&
        std::ranges::equal(displayP3, std::span(bytes, size)))
        return ImageColorSpace::DisplayP3;
    return ImageColorSpace::SRGB;
}

/// Reads what stands before the pixels and has everything turned into 8 bits a component.
bool ReadHeader(Decoder& decoder)
{
    if (!decoder.info || setjmp(png_jmpbuf(decoder.png)))
        return false;
    png_set_read_fn(decoder.png, &decoder.rest, Take);
    png_set_user_limits(decoder.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_read_info(decoder.png, decoder.info);
    png_set_scale_16(decoder.png);
    png_set_expand(decoder.png);
    png_set_interlace_handling(decoder.png);
    png_read_update_info(decoder.png, decoder.info);

    ImageLayout& layout = decoder.image.layout;
    layout.width = static_cast<int>(png_get_image_width(decoder.png, decoder.info));
    layout.height = static_cast<int>(png_get_image_height(decoder.png, decoder.info));
    layout.colorSpace = ColorSpaceOf(decoder.png, decoder.info);
    layout.alpha = png_get_color_type(decoder.png, decoder.info) & PNG_COLOR_MASK_ALPHA ? ImageAlpha::Last
                                                                                        : ImageAlpha::None;
    layout.bytesPerRow = png_get_rowbytes(decoder.png, decoder.info);
    return ByteCount(layout) <= static_cast<std::size_t>(std::numeric_limits<int>::max());
}

bool ReadPixels(Decoder& decoder)
{
    if (setjmp(png_jmpbuf(decoder.png)))
        return false;
    png_read_image(decoder.png, decoder.rows.data());
    png_read_end(decoder.png, nullptr);
    return true;
}

}   // namespace

std::vector<unsigned char> EncodePNG(const ImageLayout& layout, const unsigned char* pixels)
{
    if (layout.width <= 0 || layout.height <= 0 ||
        layout.bytesPerRow / layout.BytesPerPixel() < static_cast<std::size_t>(layout.width))
        return {};
    Encoder encoder;
    if (!Encode(encoder, layout, pixels))
        return {};
    return std::move(encoder.file);
}

std::optional<Image> DecodePNG(std::span<const unsigned char> file)
{
    Decoder decoder;
    decoder.rest = file;
    if (!ReadHeader(decoder))
        return std::nullopt;
    Image& image = decoder.image;
    image.pixels.resize(ByteCount(image.layout));
    for (std::size_t y = 0; y < static_cast<std::size_t>(image.layout.height); ++y)
        decoder.rows.push_back(image.pixels.data() + y * image.layout.bytesPerRow);
    if (!ReadPixels(decoder))
        return std::nullopt;
    return std::move(image);
}

}   // namespace QZ::Platform
