// SPDX-License-Identifier: MIT
#include "tests/tools/SampleFiles.h"

#include <cstdio>   // jpeglib.h needs it

#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <bit>
#include <cstdlib>
#include <cstring>
#include <random>
#include <stdexcept>

#include "tests/tools/TemporaryFolder.h"

namespace QZ::Test {

namespace {

// A row packed from the top bit of each byte, 16 bits in the byte order of the machine.
Bytes PackedRow(const Samples& samples, int y, int channel = -1)
{
    Bytes row;
    unsigned bits = 0;
    int filled = 0;
    for (int x = 0; x < samples.width; ++x)
        for (int c = 0; c < samples.channels; ++c) {
            if (channel >= 0 && c != channel)
                continue;
            const unsigned value = samples.At(x, y, c);
            if (samples.bits == 16) {
                const auto sample = static_cast<std::uint16_t>(value);
                const auto* bytes = reinterpret_cast<const unsigned char*>(&sample);
                row.insert(row.end(), bytes, bytes + 2);
                continue;
            }
            bits = bits << samples.bits | value;
            filled += samples.bits;
            if (filled == 8) {
                row.push_back(static_cast<unsigned char>(bits));
                bits = 0;
                filled = 0;
            }
        }
    if (filled > 0)
        row.push_back(static_cast<unsigned char>(bits << (8 - filled)));
    return row;
}

Bytes WholePacked(const Samples& samples)
{
    Bytes all;
    for (int y = 0; y < samples.height; ++y) {
        const Bytes row = PackedRow(samples, y);
        all.insert(all.end(), row.begin(), row.end());
    }
    return all;
}

void AppendBytes(png_structp png, png_bytep bytes, std::size_t count)
{
    auto* file = static_cast<Bytes*>(png_get_io_ptr(png));
    file->insert(file->end(), bytes, bytes + count);
}

int PNGType(int channels)
{
    return (channels >= 3 ? PNG_COLOR_MASK_COLOR : 0) | (channels % 2 == 0 ? PNG_COLOR_MASK_ALPHA : 0);
}

Bytes WritePNG(const Samples& samples, int type, const FileOptions& options, const Bytes& palette)
{
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, AppendBytes, nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(samples.width), static_cast<png_uint_32>(samples.height),
                 samples.bits, type, options.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!options.profile.empty())
        png_set_iCCP(png, info, "profile", PNG_COMPRESSION_TYPE_BASE, options.profile.data(),
                     static_cast<png_uint_32>(options.profile.size()));
    Bytes exif = options.exif;
    if (!exif.empty())
        png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), exif.data());
    std::vector<png_color> colors;
    Bytes alphas;
    for (std::size_t i = 0; i < palette.size(); i += 4) {
        colors.push_back({palette[i], palette[i + 1], palette[i + 2]});
        alphas.push_back(palette[i + 3]);
    }
    if (!colors.empty()) {
        png_set_PLTE(png, info, colors.data(), static_cast<int>(colors.size()));
        png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), nullptr);
    }
    png_write_info(png, info);
    if (samples.bits == 16 && std::endian::native == std::endian::little)
        png_set_swap(png);
    std::vector<Bytes> rows;
    std::vector<png_bytep> pointers;
    for (int y = 0; y < samples.height; ++y)
        rows.push_back(PackedRow(samples, y));
    for (Bytes& row : rows)
        pointers.push_back(row.data());
    png_write_image(png, pointers.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

void SetTIFFTags(TIFF* tiff, const Samples& samples, const FileOptions& options)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, samples.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, samples.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, samples.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples.channels);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, options.compression);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 options.compression == COMPRESSION_JPEG ? PHOTOMETRIC_YCBCR
                 : samples.channels >= 3                 ? PHOTOMETRIC_RGB
                 : options.whiteIsZero                   ? PHOTOMETRIC_MINISWHITE
                                                         : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, options.separate ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    if (options.compression == COMPRESSION_JPEG)
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    if (samples.channels % 2 == 0) {
        const std::uint16_t kind = options.premultiplied ? EXTRASAMPLE_ASSOCALPHA : EXTRASAMPLE_UNASSALPHA;
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind);
    }
    if (options.orientation != 0)
        TIFFSetField(tiff, TIFFTAG_ORIENTATION, options.orientation);
    if (!options.profile.empty())
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(options.profile.size()),
                     options.profile.data());
}

// Tiles of 16 x 16; what lies beyond the picture repeats its last column and row.
void WriteTiles(TIFF* tiff, const Samples& samples, int channel, int plane)
{
    constexpr int kTile = 16;
    for (int top = 0; top < samples.height; top += kTile)
        for (int left = 0; left < samples.width; left += kTile) {
            Samples tile = {kTile, kTile, samples.channels, samples.bits, {}};
            for (int y = top; y < top + kTile; ++y)
                for (int x = left; x < left + kTile; ++x)
                    for (int c = 0; c < samples.channels; ++c)
                        tile.values.push_back(
                            samples.At(std::min(x, samples.width - 1), std::min(y, samples.height - 1), c));
            Bytes packed;
            for (int y = 0; y < kTile; ++y) {
                const Bytes row = PackedRow(tile, y, channel);
                packed.insert(packed.end(), row.begin(), row.end());
            }
            TIFFWriteTile(tiff, packed.data(), static_cast<std::uint32_t>(left),
                          static_cast<std::uint32_t>(top), 0, static_cast<std::uint16_t>(plane));
        }
}

}   // namespace

Samples MakeSamples(int width, int height, int channels, int bits)
{
    Samples samples = {width, height, channels, bits, {}};
    const unsigned most = (1u << bits) - 1;
    std::mt19937 random(20240229);
    samples.values.resize(static_cast<std::size_t>(width * height * channels));
    for (std::size_t i = 0; i < samples.values.size(); ++i)
        samples.values[i] = static_cast<std::uint16_t>(i % 7 == 0    ? most
                                                       : i % 11 == 0 ? 0
                                                                     : random() % (most + 1));
    return samples;
}

Bytes MakeExif(int orientation, bool bigEndian)
{
    const auto value = static_cast<unsigned char>(orientation);
    if (bigEndian)
        return {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1, 0x01, 0x12, 0, 3, 0, 0, 0, 1, 0, value, 0, 0, 0, 0, 0, 0};
    return {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0, 0x12, 0x01, 3, 0, 1, 0, 0, 0, value, 0, 0, 0, 0, 0, 0, 0};
}

Bytes MakePNG(const Samples& samples, const FileOptions& options)
{
    return WritePNG(samples, PNGType(samples.channels), options, {});
}

Bytes MakePalettePNG(const Samples& indices, const Bytes& colors)
{
    return WritePNG(indices, PNG_COLOR_TYPE_PALETTE, {}, colors);
}

Bytes MakeJPEG(const Samples& samples, const FileOptions& options)
{
    jpeg_compress_struct jpeg = {};
    jpeg_error_mgr errors = {};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &bytes, &size);
    jpeg.image_width = static_cast<JDIMENSION>(samples.width);
    jpeg.image_height = static_cast<JDIMENSION>(samples.height);
    jpeg.input_components = samples.channels;
    jpeg.in_color_space = samples.channels == 1 ? JCS_GRAYSCALE : samples.channels == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 100, TRUE);
    jpeg.comp_info[0].h_samp_factor = 1;
    jpeg.comp_info[0].v_samp_factor = 1;
    if (options.interlaced)
        jpeg_simple_progression(&jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    if (!options.exif.empty()) {
        Bytes marker = {'E', 'x', 'i', 'f', 0, 0};
        marker.insert(marker.end(), options.exif.begin(), options.exif.end());
        jpeg_write_marker(&jpeg, JPEG_APP0 + 1, marker.data(), static_cast<unsigned>(marker.size()));
    }
    if (!options.profile.empty())
        jpeg_write_icc_profile(&jpeg, options.profile.data(), static_cast<unsigned>(options.profile.size()));
    for (int y = 0; y < samples.height; ++y) {
        Bytes row = PackedRow(samples, y);
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&jpeg, rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    Bytes file(bytes, bytes + size);
    jpeg_destroy_compress(&jpeg);
    std::free(bytes);
    return file;
}

Bytes MakeWebP(const Samples& samples, const FileOptions& options)
{
    const Bytes pixels = WholePacked(samples);
    std::uint8_t* bytes = nullptr;
    const int stride = samples.width * samples.channels;
    const std::size_t size =
        samples.channels == 4
            ? WebPEncodeLosslessRGBA(pixels.data(), samples.width, samples.height, stride, &bytes)
            : WebPEncodeLosslessRGB(pixels.data(), samples.width, samples.height, stride, &bytes);
    WebPMux* mux = WebPMuxNew();
    const WebPData image = {bytes, size};
    WebPMuxSetImage(mux, &image, 1);
    const WebPData profile = {options.profile.data(), options.profile.size()};
    if (profile.size > 0)
        WebPMuxSetChunk(mux, "ICCP", &profile, 1);
    const WebPData exif = {options.exif.data(), options.exif.size()};
    if (exif.size > 0)
        WebPMuxSetChunk(mux, "EXIF", &exif, 1);
    WebPData assembled = {};
    WebPMuxAssemble(mux, &assembled);
    Bytes file(assembled.bytes, assembled.bytes + assembled.size);
    WebPDataClear(&assembled);
    WebPMuxDelete(mux);
    WebPFree(bytes);
    return file;
}

Bytes MakeTIFF(const Samples& samples, const FileOptions& options)
{
    const TemporaryFolder folder;
    const std::string path = folder / "a.tif";
    TIFF* tiff = TIFFOpen(path.c_str(), options.bigEndian ? "wb" : "wl");
    SetTIFFTags(tiff, samples, options);
    const int planes = options.separate ? samples.channels : 1;
    if (options.tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
        for (int plane = 0; plane < planes; ++plane)
            WriteTiles(tiff, samples, planes == 1 ? -1 : plane, plane);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
        for (int plane = 0; plane < planes; ++plane)
            for (int y = 0; y < samples.height; ++y)
                TIFFWriteScanline(tiff, PackedRow(samples, y, planes == 1 ? -1 : plane).data(),
                                  static_cast<std::uint32_t>(y), static_cast<std::uint16_t>(plane));
    }
    TIFFClose(tiff);
    const std::string text = folder.Read("a.tif");
    return {text.begin(), text.end()};
}

Bytes MakePNM(const Samples& samples)
{
    const std::string size = std::to_string(samples.width) + " " + std::to_string(samples.height);
    const unsigned most = (1u << samples.bits) - 1;
    std::string header;
    if (samples.channels == 1 || samples.channels == 3)
        header = (samples.channels == 1 ? "P5\n" : "P6\n") + size + "\n" + std::to_string(most) + "\n";
    else
        header = "P7\nWIDTH " + std::to_string(samples.width) + "\nHEIGHT " + std::to_string(samples.height) +
                 "\nDEPTH " + std::to_string(samples.channels) + "\nMAXVAL " + std::to_string(most) +
                 "\nTUPLTYPE " + (samples.channels == 2 ? "GRAYSCALE_ALPHA" : "RGB_ALPHA") + "\nENDHDR\n";
    Bytes file(header.begin(), header.end());
    for (const std::uint16_t value : samples.values) {
        if (samples.bits > 8)
            file.push_back(static_cast<unsigned char>(value >> 8));
        file.push_back(static_cast<unsigned char>(value & 0xFF));
    }
    return file;
}

}   // namespace QZ::Test
