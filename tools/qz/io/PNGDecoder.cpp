// SPDX-License-Identifier: MIT
#include <png.h>

#include <bit>
#include <csetjmp>
#include <cstring>
#include <string>

#include "tools/qz/io/Orientation.h"
#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

namespace {

// libpng over a file in memory. An error of libpng jumps back to the call that met it and becomes a Defect
// there.
class Decoder {
public:
    Decoder(const Bytes& file, PictureBuilder& picture) : m_file(file), m_picture(picture)
    {
        m_png =
            png_create_read_struct(PNG_LIBPNG_VER_STRING, this, OnError, [](png_structp, png_const_charp) {});
        m_info = m_png != nullptr ? png_create_info_struct(m_png) : nullptr;
        if (m_info == nullptr)
            throw std::bad_alloc();
        png_set_read_fn(m_png, this, OnRead);
        png_set_user_limits(m_png, PNG_UINT_31_MAX,
                            PNG_UINT_31_MAX);   // the builder's limits are the ones that count
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { png_destroy_read_struct(&m_png, &m_info, nullptr); }

    void Decode()
    {
        Guarded([this] { png_read_info(m_png, m_info); });
        const bool interlaced = png_get_interlace_type(m_png, m_info) != PNG_INTERLACE_NONE;
        RasterHeader header = ReadHeader();
        CheckLimits(m_picture.Limit(), header.width, header.height, interlaced ? 12 : 4);
        const std::uint64_t height = header.height;
        Guarded([this] { png_read_update_info(m_png, m_info); });
        m_rowBytes = png_get_rowbytes(m_png, m_info);
        m_picture.Begin(std::move(header));
        if (interlaced)
            ReadInterlaced(height);
        else
            ReadRows(height);
        Guarded([this] { png_read_end(m_png, nullptr); });
    }

private:
    // The lambda may hold nothing that needs a destructor: the jump passes over it.
    template <class Call>
    void Guarded(Call call)
    {
        if (setjmp(png_jmpbuf(m_png)) != 0)
            throw Defect("not a sound PNG file: " + m_error);
        call();
    }

    static void OnError(png_structp png, png_const_charp message)
    {
        static_cast<Decoder*>(png_get_error_ptr(png))->m_error = message;
        png_longjmp(png, 1);
    }

    static void OnRead(png_structp png, png_bytep out, std::size_t count)
    {
        auto* self = static_cast<Decoder*>(png_get_io_ptr(png));
        if (count > self->m_file.size() - self->m_position)
            png_error(png, "it is truncated");
        std::memcpy(out, self->m_file.data() + self->m_position, count);
        self->m_position += count;
    }

    // Asks libpng for 8 or 16 bits a sample of grey or RGB, palettes and transparent colours resolved.
    RasterHeader ReadHeader()
    {
        RasterHeader header;
        header.format = "PNG";
        header.width = png_get_image_width(m_png, m_info);
        header.height = png_get_image_height(m_png, m_info);
        header.bitDepth = png_get_bit_depth(m_png, m_info);
        const int type = png_get_color_type(m_png, m_info);
        header.model = (type & PNG_COLOR_MASK_COLOR) != 0 ? Model::RGB : Model::Grey;
        const bool transparent = png_get_valid(m_png, m_info, PNG_INFO_tRNS) != 0;
        header.alpha = (type & PNG_COLOR_MASK_ALPHA) != 0 || transparent;
        header.bytesPerSample = header.bitDepth == 16 ? 2 : 1;
        Guarded([this, &header] {
            png_set_expand(m_png);
            png_set_interlace_handling(m_png);
            if (header.bytesPerSample == 2 && std::endian::native == std::endian::little)
                png_set_swap(m_png);
        });
        ReadProfile(header);
        ReadOrientation(header);
        return header;
    }

    void ReadProfile(RasterHeader& header)
    {
        png_charp name = nullptr;
        int compression = 0;
        png_bytep profile = nullptr;
        png_uint_32 length = 0;
        if (png_get_iCCP(m_png, m_info, &name, &compression, &profile, &length) != 0)
            header.profile.assign(profile, profile + length);
    }

    void ReadOrientation(RasterHeader& header)
    {
        png_bytep exif = nullptr;
        png_uint_32 length = 0;
        if (png_get_eXIf_1(m_png, m_info, &length, &exif) != 0)
            header.orientation = ExifOrientation({exif, length});
    }

    void ReadRows(std::uint64_t height)
    {
        std::vector<unsigned char> row(m_rowBytes);
        for (std::uint64_t y = 0; y < height; ++y) {
            Guarded([this, &row] { png_read_row(m_png, row.data(), nullptr); });
            m_picture.Row(y, row.data());
        }
    }

    // An interlaced picture comes in seven passes, each of which needs the rows of those before.
    void ReadInterlaced(std::uint64_t height)
    {
        std::vector<unsigned char> rows(m_rowBytes * height);
        for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass)
            for (std::uint64_t y = 0; y < height; ++y)
                Guarded([&] { png_read_row(m_png, rows.data() + y * m_rowBytes, nullptr); });
        for (std::uint64_t y = 0; y < height; ++y)
            m_picture.Row(y, rows.data() + y * m_rowBytes);
    }

    const Bytes& m_file;
    PictureBuilder& m_picture;
    std::size_t m_position = 0;
    std::string m_error;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    std::size_t m_rowBytes = 0;
};

}   // namespace

void DecodePNG(const Bytes& file, PictureBuilder& picture)
{
    Decoder(file, picture).Decode();
}

}   // namespace QZ::Tool
