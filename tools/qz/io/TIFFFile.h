// SPDX-License-Identifier: MIT
#pragma once

#include <tiffio.h>

#include <cstdint>
#include <string>

#include "tools/qz/io/Raster.h"

namespace QZ::Tool {

/// libtiff over a file in memory, open at its first page.
class TIFFFile {
public:
    /// Throws Defect.
    explicit TIFFFile(const Bytes& file);
    TIFFFile(const TIFFFile&) = delete;
    TIFFFile& operator=(const TIFFFile&) = delete;
    ~TIFFFile();

    [[nodiscard]] TIFF* Handle() const { return m_tiff; }

    /// A field of the directory, or its default; `fallback` when it has neither.
    template <class T>
    [[nodiscard]] T Field(std::uint32_t tag, T fallback) const
    {
        T value = fallback;
        return TIFFGetFieldDefaulted(m_tiff, tag, &value) == 1 ? value : fallback;
    }

    /// Ends the reading with what libtiff complained of first.
    [[noreturn]] void Fail() const;

private:
    static tmsize_t Read(thandle_t self, void* out, tmsize_t count);
    static toff_t Seek(thandle_t self, toff_t offset, int whence);
    static toff_t Size(thandle_t self);
    static int OnError(TIFF* tiff, void* self, const char* module, const char* format, va_list arguments);

    const Bytes& m_file;
    std::uint64_t m_position = 0;
    std::string m_error;
    TIFF* m_tiff = nullptr;
};

/// The rows of a page as libtiff decodes them: samples packed to the file's bits, in one plane of all samples
/// of a pixel or in one plane a sample.
class TIFFRows {
public:
    /// Throws Defect when the page is of an impossible shape or over the limits.
    TIFFRows(TIFFFile& file, const Limits& limits);

    /// The packed row of a plane; valid until the next call. Rows are asked for in order. Throws Defect.
    [[nodiscard]] const unsigned char* Row(std::uint32_t y, std::uint16_t plane);

    [[nodiscard]] std::uint16_t Planes() const { return m_planes; }

private:
    void ReadBand(std::uint32_t firstRow);
    void ReadStrip(std::uint32_t firstRow, std::uint32_t rows, std::uint16_t plane);
    void ReadTiles(std::uint32_t firstRow, std::uint32_t rows, std::uint16_t plane);
    [[nodiscard]] unsigned char* BandRow(std::uint32_t row, std::uint16_t plane);

    TIFFFile& m_file;
    std::uint32_t m_width;
    std::uint32_t m_height;
    std::uint16_t m_planes;
    bool m_tiled;
    std::uint64_t m_rowBytes = 0;   // of one plane
    std::uint32_t m_bandRows = 1;   // rows decoded together
    std::uint32_t m_bandStart = 0;
    bool m_bandRead = false;
    std::vector<unsigned char> m_band;
    std::vector<unsigned char> m_tile;
};

}   // namespace QZ::Tool
