// SPDX-License-Identifier: MIT
#include <png.h>

#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "tools/qz/Failure.h"
#include "tools/qz/io/ImageWriter.h"
#include "tools/qz/io/Profile.h"

namespace QZ::Tool {

namespace {

// Of zlib's 1 to 9: twice as fast as its usual 6 on a picture of few tones, and 7 % larger.
constexpr int kCompressionLevel = 4;

struct Layout {
    bool grey;
    bool opaque = true;
    bool flat;   // most pixels equal the one before: filters would only blur what compresses well as it is

    // A profile of RGB asks for RGB, so that a grey in Display P3 is written as a colour.
    explicit Layout(const Image& image) : grey(image.colorSpace == ColorSpace::SRGB)
    {
        std::uint32_t previous = 0;
        std::size_t repeats = 0;
        for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
            const unsigned char* p = image.pixels.data() + i;
            grey = grey && p[0] == p[1] && p[0] == p[2];
            opaque = opaque && p[3] == 255;
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, p, sizeof pixel);
            repeats += pixel == previous ? 1 : 0;
            previous = pixel;
        }
        flat = repeats > image.Count() / 2;
    }

    [[nodiscard]] int PNGType() const
    {
        return (grey ? 0 : PNG_COLOR_MASK_COLOR) | (opaque ? 0 : PNG_COLOR_MASK_ALPHA);
    }
    [[nodiscard]] std::size_t Samples() const { return (grey ? 1u : 3u) + (opaque ? 0u : 1u); }

    void Row(const unsigned char* rgba, int width, unsigned char* out) const
    {
        for (int x = 0; x < width; ++x, rgba += 4) {
            *out++ = rgba[0];
            if (!grey) {
                *out++ = rgba[1];
                *out++ = rgba[2];
            }
            if (!opaque)
                *out++ = rgba[3];
        }
    }
};

class Encoder {
public:
    Encoder()
    {
        m_png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, OnError,
                                        [](png_structp, png_const_charp) {});
        m_info = m_png != nullptr ? png_create_info_struct(m_png) : nullptr;
        if (m_info == nullptr)
            throw std::bad_alloc();
        png_set_write_fn(m_png, this, OnWrite, nullptr);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() { png_destroy_write_struct(&m_png, &m_info); }

    std::vector<unsigned char> Encode(const Image& image)
    {
        const Layout layout(image);
        const std::vector<unsigned char> profile = MakeProfile(image.colorSpace);
        Guarded([&] { WriteHeader(image, layout, profile); });
        std::vector<unsigned char> row(layout.Samples() * static_cast<std::size_t>(image.width));
        for (int y = 0; y < image.height; ++y) {
            layout.Row(image.At(0, y), image.width, row.data());
            Guarded([&] { png_write_row(m_png, row.data()); });
        }
        Guarded([this] { png_write_end(m_png, nullptr); });
        return std::move(m_file);
    }

private:
    // The lambda may hold nothing that needs a destructor: the jump passes over it.
    template <class Call>
    void Guarded(Call call)
    {
        if (setjmp(png_jmpbuf(m_png)) != 0)
            throw Failure(Status::Encoder, "", "the PNG encoder refused the picture: " + m_error,
                          "try another format");
        call();
    }

    static void OnError(png_structp png, png_const_charp message)
    {
        static_cast<Encoder*>(png_get_error_ptr(png))->m_error = message;
        png_longjmp(png, 1);
    }

    static void OnWrite(png_structp png, png_bytep bytes, std::size_t count)
    {
        auto& file = static_cast<Encoder*>(png_get_io_ptr(png))->m_file;
        file.insert(file.end(), bytes, bytes + count);
    }

    void WriteHeader(const Image& image, const Layout& layout, const std::vector<unsigned char>& profile)
    {
        png_set_user_limits(m_png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_IHDR(m_png, m_info, static_cast<png_uint_32>(image.width),
                     static_cast<png_uint_32>(image.height), 8, layout.PNGType(), PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_filter(m_png, PNG_FILTER_TYPE_BASE, layout.flat ? PNG_FILTER_NONE : PNG_ALL_FILTERS);
        png_set_compression_level(m_png, kCompressionLevel);
        if (image.colorSpace == ColorSpace::SRGB)
            png_set_sRGB_gAMA_and_cHRM(m_png, m_info, PNG_sRGB_INTENT_PERCEPTUAL);
        else
            png_set_iCCP(m_png, m_info, "Display P3", PNG_COMPRESSION_TYPE_BASE, profile.data(),
                         static_cast<png_uint_32>(profile.size()));
        png_write_info(m_png, m_info);
    }

    std::vector<unsigned char> m_file;
    std::string m_error;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
};

}   // namespace

std::vector<unsigned char> EncodePNG(const Image& image)
{
    return Encoder().Encode(image);
}

}   // namespace QZ::Tool
