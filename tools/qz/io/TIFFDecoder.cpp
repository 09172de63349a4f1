// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "tools/qz/io/SampleRows.h"
#include "tools/qz/io/TIFFFile.h"

namespace QZ::Tool {

namespace {

// What a page says of its samples.
struct Page {
    explicit Page(const TIFFFile& file)
        : width(file.Field<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0)),
          height(file.Field<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0)),
          bits(file.Field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1)),
          samples(file.Field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1)),
          sampleFormat(file.Field<std::uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT)),
          compression(file.Field<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE)),
          photometric(file.Field<std::uint16_t>(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK))
    {
        if (compression == COMPRESSION_JPEG && photometric == PHOTOMETRIC_YCBCR) {
            TIFFSetField(file.Handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);   // libjpeg converts
            photometric = PHOTOMETRIC_RGB;
        }
    }

    [[nodiscard]] std::uint16_t ColorSamples() const
    {
        switch (photometric) {
            case PHOTOMETRIC_RGB:
                return 3;
            case PHOTOMETRIC_SEPARATED:
                return 4;
            default:
                return 1;
        }
    }

    // Whether Unpacker reads it; the rest is left to libtiff's own conversion.
    [[nodiscard]] bool Plain() const
    {
        const bool knownBits = bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16;
        const bool knownColor = photometric == PHOTOMETRIC_MINISBLACK ||
                                photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_RGB ||
                                photometric == PHOTOMETRIC_PALETTE || photometric == PHOTOMETRIC_SEPARATED;
        return knownBits && knownColor && sampleFormat == SAMPLEFORMAT_UINT && samples >= ColorSamples();
    }

    std::uint32_t width, height;
    std::uint16_t bits, samples, sampleFormat, compression, photometric;
};

RasterHeader Header(const TIFFFile& file, const Page& page)
{
    RasterHeader header;
    header.format = "TIFF";
    header.width = page.width;
    header.height = page.height;
    header.bitDepth = page.bits;
    header.orientation = file.Field<std::uint16_t>(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    std::uint32_t length = 0;
    const unsigned char* profile = nullptr;
    if (TIFFGetField(file.Handle(), TIFFTAG_ICCPROFILE, &length, &profile) == 1)
        header.profile.assign(profile, profile + length);
    if (TIFFLastDirectory(file.Handle()) == 0)
        header.remarks.emplace_back("only the first of its pages was read");
    return header;
}

// Makes rows of 8- or 16-bit samples of grey, RGB or CMYK, with alpha, of packed rows of any depth.
class Unpacker {
public:
    Unpacker(const TIFFFile& file, const Page& page, RasterHeader& header) : m_page(page)
    {
        m_wide = page.bits == 16;
        if (page.photometric == PHOTOMETRIC_PALETTE)
            ReadPalette(file);
        header.bytesPerSample = m_wide ? 2 : 1;
        header.model = page.photometric == PHOTOMETRIC_SEPARATED          ? Model::CMYK
                       : page.photometric == PHOTOMETRIC_RGB || m_palette ? Model::RGB
                                                                          : Model::Grey;
        FindAlpha(file, header);
        m_samples = static_cast<std::size_t>(header.Samples());
        m_row.resize(page.width * header.BytesPerPixel());
    }

    const unsigned char* Row(TIFFRows& rows, std::uint32_t y)
    {
        const std::uint16_t inPlane = rows.Planes() == 1 ? m_page.samples : 1;
        for (std::uint16_t sample = 0; sample < m_page.samples; ++sample) {
            const int place = PlaceOf(sample);
            if (place < 0)
                continue;
            const unsigned char* packed = rows.Row(y, rows.Planes() == 1 ? 0 : sample);
            const std::size_t first = rows.Planes() == 1 ? sample : 0;
            for (std::size_t x = 0; x < m_page.width; ++x)
                Store(x, static_cast<std::size_t>(place), Value(packed, x * inPlane + first));
        }
        return m_row.data();
    }

private:
    // Where a sample of the file goes in the row; below 0 for one that is passed over.
    [[nodiscard]] int PlaceOf(std::uint16_t sample) const
    {
        if (sample < m_page.ColorSamples())
            return sample;
        return m_alpha && sample == *m_alpha ? static_cast<int>(m_samples) - 1 : -1;
    }

    void ReadPalette(const TIFFFile& file)
    {
        std::array<std::uint16_t*, 3> maps = {};
        if (m_page.bits > 8 ||
            TIFFGetField(file.Handle(), TIFFTAG_COLORMAP, &maps[0], &maps[1], &maps[2]) != 1)
            throw Defect("not a sound TIFF file: its palette is missing");
        const std::size_t count = std::size_t{1} << m_page.bits;
        m_palette.emplace();
        // Old writers give the palette in 8 bits.
        bool narrow = true;
        for (const std::uint16_t* map : maps)
            narrow = narrow && std::all_of(map, map + count, [](std::uint16_t value) { return value < 256; });
        for (std::size_t c = 0; c < 3; ++c)
            for (std::size_t i = 0; i < count; ++i)
                (*m_palette)[i][c] = narrow ? static_cast<unsigned char>(maps[c][i]) : Narrow(maps[c][i]);
    }

    void FindAlpha(const TIFFFile& file, RasterHeader& header)
    {
        std::uint16_t count = 0;
        const std::uint16_t* kinds = nullptr;
        if (TIFFGetFieldDefaulted(file.Handle(), TIFFTAG_EXTRASAMPLES, &count, &kinds) != 1)
            return;
        if (count > m_page.samples - m_page.ColorSamples())
            throw Defect("not a sound TIFF file: more extra samples than samples");
        for (std::uint16_t i = 0; i < count && !m_alpha; ++i)
            if (kinds[i] == EXTRASAMPLE_ASSOCALPHA || kinds[i] == EXTRASAMPLE_UNASSALPHA) {
                m_alpha = static_cast<std::uint16_t>(m_page.samples - count + i);
                header.alpha = true;
                header.premultiplied = kinds[i] == EXTRASAMPLE_ASSOCALPHA && !m_palette;
            }
    }

    [[nodiscard]] unsigned Value(const unsigned char* packed, std::size_t index) const
    {
        if (m_wide) {
            std::uint16_t value = 0;
            std::memcpy(&value, packed + 2 * index, 2);
            return value;
        }
        const std::size_t bit = index * m_page.bits;
        return packed[bit / 8] >> (8 - m_page.bits - bit % 8) & ((1u << m_page.bits) - 1);
    }

    void Store(std::size_t x, std::size_t place, unsigned value)
    {
        const std::size_t index = x * m_samples + place;
        if (m_palette && place == 0) {
            std::copy_n((*m_palette)[value].begin(), 3, m_row.begin() + static_cast<std::ptrdiff_t>(index));
            return;
        }
        const unsigned most = (1u << m_page.bits) - 1;
        if (m_page.photometric == PHOTOMETRIC_MINISWHITE && place == 0)
            value = most - value;
        if (m_wide) {
            const auto sample = static_cast<std::uint16_t>(value);
            std::memcpy(m_row.data() + 2 * index, &sample, 2);
        } else {
            m_row[index] =
                static_cast<unsigned char>(value * (255 / most));   // 255 is a multiple of 1, 3, 15
        }
    }

    const Page& m_page;
    bool m_wide = false;
    std::size_t m_samples = 0;
    std::optional<std::uint16_t> m_alpha;
    std::optional<std::array<std::array<unsigned char, 3>, 256>> m_palette;
    std::vector<unsigned char> m_row;
};

void DecodePlain(TIFFFile& file, const Page& page, PictureBuilder& picture)
{
    RasterHeader header = Header(file, page);
    CheckLimits(picture.Limit(), page.width, page.height);
    Unpacker unpacker(file, page, header);
    TIFFRows rows(file, picture.Limit());
    picture.Begin(std::move(header));
    for (std::uint32_t y = 0; y < page.height; ++y)
        picture.Row(y, unpacker.Row(rows, y));
}

// YCbCr, Lab and other rarities, by libtiff's conversion to premultiplied RGBA.
void DecodeConverted(TIFFFile& file, const Page& page, PictureBuilder& picture)
{
    std::array<char, 1024> reason{};
    if (page.bits > 8 || TIFFRGBAImageOK(file.Handle(), reason.data()) == 0)
        throw Defect("a TIFF of a kind that qz does not read: " + std::to_string(page.samples) +
                         " samples of " + std::to_string(page.bits) + " bits",
                     "convert it to 8 or 16 bits of grey, RGB or CMYK");
    CheckLimits(picture.Limit(), page.width, page.height, 8);   // the picture twice
    RasterHeader header = Header(file, page);
    header.alpha = true;
    header.premultiplied = true;
    std::vector<std::uint32_t> raster(std::size_t{page.width} * page.height);
    TIFFRGBAImage image;
    if (TIFFRGBAImageBegin(&image, file.Handle(), 1, reason.data()) == 0)
        file.Fail();
    image.req_orientation = image.orientation;   // as it lies in the file
    const int done = TIFFRGBAImageGet(&image, raster.data(), page.width, page.height);
    TIFFRGBAImageEnd(&image);
    if (done == 0)
        file.Fail();
    picture.Begin(std::move(header));
    std::vector<unsigned char> row(std::size_t{4} * page.width);
    for (std::uint32_t y = 0; y < page.height; ++y) {
        for (std::size_t x = 0; x < page.width; ++x) {
            const std::uint32_t pixel = raster[std::size_t{y} * page.width + x];
            row[4 * x] = static_cast<unsigned char>(TIFFGetR(pixel));
            row[4 * x + 1] = static_cast<unsigned char>(TIFFGetG(pixel));
            row[4 * x + 2] = static_cast<unsigned char>(TIFFGetB(pixel));
            row[4 * x + 3] = static_cast<unsigned char>(TIFFGetA(pixel));
        }
        picture.Row(y, row.data());
    }
}

}   // namespace

void DecodeTIFF(const Bytes& bytes, PictureBuilder& picture)
{
    TIFFFile file(bytes);
    const Page page(file);
    if (page.Plain())
        DecodePlain(file, page, picture);
    else
        DecodeConverted(file, page, picture);
}

}   // namespace QZ::Tool
