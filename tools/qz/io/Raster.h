// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/qz/Context.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

/// What is wrong with the bytes of a picture, and what to try. The reader adds the file's name.
class Defect : public std::runtime_error {
public:
    explicit Defect(const std::string& what, std::string whatToTry = "try another copy of the file")
        : std::runtime_error(what), remedy(std::move(whatToTry))
    {}

    std::string remedy;
};

/// The colour samples of a pixel, before a possible alpha sample.
enum class Model { Grey, RGB, CMYK };

/// How a file holds its pixels, as far as a decoder does not undo it.
struct RasterHeader {
    std::string format;
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    Model model = Model::RGB;
    bool alpha = false;                   ///< One more sample follows those of the colour.
    bool opaque = false;                  ///< The alpha sample is full throughout: the file holds none.
    bool premultiplied = false;           ///< The colour is multiplied by alpha.
    bool inverted = false;                ///< CMYK: 0 is full ink.
    int bytesPerSample = 1;               ///< 1, or 2 in the byte order of the machine.
    int bitDepth = 8;                     ///< Bits a sample in the file.
    int orientation = 1;                  ///< EXIF, 1 to 8.
    std::vector<unsigned char> profile;   ///< The ICC profile; empty for none.
    std::vector<std::string> remarks;

    [[nodiscard]] int ColorSamples() const;
    [[nodiscard]] int Samples() const { return ColorSamples() + (alpha ? 1 : 0); }
    [[nodiscard]] std::size_t BytesPerPixel() const
    {
        return static_cast<std::size_t>(Samples()) * static_cast<std::size_t>(bytesPerSample);
    }
};

/// Refuses a picture over the limits before anything is allocated for it.
/// \param bytesPerPixel  the most that its decoding holds at once, for each pixel.
/// Throws Defect.
void CheckLimits(const Limits& limits, std::uint64_t width, std::uint64_t height,
                 std::uint64_t bytesPerPixel = 4);

class ColorTransform;

/// Builds the picture from the rows that a decoder delivers: 8 bits, RGBA, sRGB, upright.
class PictureBuilder {
public:
    explicit PictureBuilder(const Limits& limits);
    ~PictureBuilder();
    PictureBuilder(const PictureBuilder&) = delete;
    PictureBuilder& operator=(const PictureBuilder&) = delete;

    [[nodiscard]] const Limits& Limit() const { return m_limits; }

    /// Takes the header; checks the limits and allocates. Throws Defect.
    void Begin(RasterHeader header);
    /// Takes row y: width pixels of header.BytesPerPixel() bytes each. Of a picture of 8-bit RGB with alpha
    /// the row may lie in Rows() already.
    void Row(std::uint64_t y, const unsigned char* samples);
    /// The picture's own memory, four bytes a pixel, for a decoder that has to write all of it at once.
    [[nodiscard]] std::span<unsigned char> Rows() { return m_image.pixels; }
    /// The picture, turned upright.
    [[nodiscard]] Image Finish();

private:
    void ConvertRow(const unsigned char* samples, unsigned char* out);

    Limits m_limits;
    RasterHeader m_header;
    Image m_image;
    std::unique_ptr<ColorTransform> m_transform;
    std::vector<unsigned char> m_straight;   // a row with the alpha divided out
    std::vector<unsigned char> m_narrow;     // a row reduced to 8 bits
};

/// \name One decoder a format
/// Each reads a whole file from memory, calls Begin() once and Row() for every row, and throws Defect for a
/// file that is truncated, corrupt, of a kind not read, or over a limit.
/// \{
using Bytes = std::vector<unsigned char>;
void DecodePNG(const Bytes& file, PictureBuilder& picture);
void DecodeJPEG(const Bytes& file, PictureBuilder& picture);
void DecodeWebP(const Bytes& file, PictureBuilder& picture);
void DecodeTIFF(const Bytes& file, PictureBuilder& picture);
void DecodePNM(const Bytes& file, PictureBuilder& picture);
/// \}

}   // namespace QZ::Tool
