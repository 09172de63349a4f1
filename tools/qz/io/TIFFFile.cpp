// SPDX-License-Identifier: MIT
#include "tools/qz/io/TIFFFile.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace QZ::Tool {

TIFFFile::TIFFFile(const Bytes& file) : m_file(file)
{
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, OnError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(
        options, [](TIFF*, void*, const char*, const char*, va_list) { return 1; }, nullptr);
    m_tiff = TIFFClientOpenExt(
        "", "rm", this, Read, [](thandle_t, void*, tmsize_t) -> tmsize_t { return 0; }, Seek,
        [](thandle_t) { return 0; }, Size, [](thandle_t, void**, toff_t*) { return 0; },
        [](thandle_t, void*, toff_t) {}, options);
    TIFFOpenOptionsFree(options);
    if (m_tiff == nullptr)
        Fail();
}

TIFFFile::~TIFFFile()
{
    TIFFClose(m_tiff);
}

void TIFFFile::Fail() const
{
    throw Defect("not a sound TIFF file" + (m_error.empty() ? "" : ": " + m_error));
}

tmsize_t TIFFFile::Read(thandle_t self, void* out, tmsize_t count)
{
    auto& file = *static_cast<TIFFFile*>(self);
    if (count <= 0 || file.m_position >= file.m_file.size())
        return 0;
    const auto size = std::min(static_cast<std::uint64_t>(count), file.m_file.size() - file.m_position);
    std::memcpy(out, file.m_file.data() + file.m_position, size);
    file.m_position += size;
    return static_cast<tmsize_t>(size);
}

toff_t TIFFFile::Seek(thandle_t self, toff_t offset, int whence)
{
    auto& file = *static_cast<TIFFFile*>(self);
    const std::uint64_t base = whence == SEEK_SET   ? 0
                               : whence == SEEK_CUR ? file.m_position
                                                    : file.m_file.size();
    file.m_position = base + offset;   // unsigned: a negative offset wraps to what it means
    return file.m_position;
}

toff_t TIFFFile::Size(thandle_t self)
{
    return static_cast<TIFFFile*>(self)->m_file.size();
}

int TIFFFile::OnError(TIFF*, void* self, const char*, const char* format, va_list arguments)
{
    auto& file = *static_cast<TIFFFile*>(self);
    if (file.m_error.empty()) {
        std::array<char, 200> text{};
        std::vsnprintf(text.data(), text.size(), format, arguments);
        file.m_error = text.data();
    }
    return 1;
}

TIFFRows::TIFFRows(TIFFFile& file, const Limits& limits)
    : m_file(file),
      m_width(file.Field<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0)),
      m_height(file.Field<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0)),
      m_planes(1),
      m_tiled(TIFFIsTiled(file.Handle()) != 0)
{
    const auto samples = file.Field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    const auto bits = file.Field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    const bool separate =
        file.Field<std::uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    m_planes = separate ? samples : 1;
    m_rowBytes = (std::uint64_t{m_width} * bits * (separate ? 1u : samples) + 7) / 8;

    std::uint64_t tileBytes = 0;
    if (m_tiled) {
        m_bandRows = file.Field<std::uint32_t>(TIFFTAG_TILELENGTH, 0);
        tileBytes = TIFFTileSize64(file.Handle());
    } else if (separate) {
        m_bandRows = file.Field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP, m_height);
    }
    if (m_bandRows == 0 || (m_tiled && tileBytes == 0))
        file.Fail();
    m_bandRows = std::min(m_bandRows, m_height);
    const std::uint64_t bandBytes = m_rowBytes * m_bandRows * m_planes;
    if (bandBytes > limits.Bytes() || tileBytes > limits.Bytes())
        throw Defect("a TIFF in pieces over the limit of " + std::to_string(limits.Bytes() >> 20) + " MiB",
                     "raise it with --max-pixels");
    m_band.resize(bandBytes);
    m_tile.resize(tileBytes);
}

unsigned char* TIFFRows::BandRow(std::uint32_t row, std::uint16_t plane)
{
    return m_band.data() + (std::uint64_t{plane} * m_bandRows + row) * m_rowBytes;
}

const unsigned char* TIFFRows::Row(std::uint32_t y, std::uint16_t plane)
{
    const std::uint32_t start = y - y % m_bandRows;
    if (!m_bandRead || start != m_bandStart)
        ReadBand(start);
    return BandRow(y - start, plane);
}

void TIFFRows::ReadBand(std::uint32_t firstRow)
{
    const std::uint32_t rows = std::min(m_bandRows, m_height - firstRow);
    for (std::uint16_t plane = 0; plane < m_planes; ++plane) {
        if (m_tiled)
            ReadTiles(firstRow, rows, plane);
        else
            ReadStrip(firstRow, rows, plane);
    }
    m_bandStart = firstRow;
    m_bandRead = true;
}

void TIFFRows::ReadStrip(std::uint32_t firstRow, std::uint32_t rows, std::uint16_t plane)
{
    TIFF* tiff = m_file.Handle();
    if (m_planes == 1 && rows == 1) {
        // Row by row within a strip: a strip may be the whole picture.
        if (static_cast<std::uint64_t>(TIFFScanlineSize(tiff)) != m_rowBytes ||
            TIFFReadScanline(tiff, BandRow(0, plane), firstRow, plane) != 1)
            m_file.Fail();
        return;
    }
    const auto bytes = static_cast<tmsize_t>(rows * m_rowBytes);
    const std::uint32_t strip = TIFFComputeStrip(tiff, firstRow, plane);
    if (TIFFReadEncodedStrip(tiff, strip, BandRow(0, plane), bytes) != bytes)
        m_file.Fail();
}

void TIFFRows::ReadTiles(std::uint32_t firstRow, std::uint32_t rows, std::uint16_t plane)
{
    TIFF* tiff = m_file.Handle();
    const auto tileWidth = m_file.Field<std::uint32_t>(TIFFTAG_TILEWIDTH, 0);
    const auto tileRowBytes = static_cast<std::uint64_t>(TIFFTileRowSize(tiff));
    if (tileWidth == 0 || tileRowBytes == 0 || tileRowBytes * rows > m_tile.size())
        m_file.Fail();
    std::uint64_t offset = 0;   // of the tile's rows within those of the picture
    for (std::uint64_t x = 0; x < m_width && offset < m_rowBytes; x += tileWidth, offset += tileRowBytes) {
        if (TIFFReadTile(tiff, m_tile.data(), static_cast<std::uint32_t>(x), firstRow, 0, plane) < 0)
            m_file.Fail();
        const std::uint64_t bytes = std::min(tileRowBytes, m_rowBytes - offset);
        for (std::uint32_t row = 0; row < rows; ++row)
            std::memcpy(BandRow(row, plane) + offset, m_tile.data() + row * tileRowBytes, bytes);
    }
}

}   // namespace QZ::Tool
