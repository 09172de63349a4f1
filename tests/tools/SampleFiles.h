// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace QZ::Test {

using Bytes = std::vector<unsigned char>;

/// Samples of a test picture, row by row, the channels of a pixel together.
struct Samples {
    int width = 0;
    int height = 0;
    int channels = 0;
    int bits = 8;
    std::vector<std::uint16_t> values;

    [[nodiscard]] std::uint16_t At(int x, int y, int channel) const
    {
        const int index = (y * width + x) * channels + channel;
        return values[static_cast<std::size_t>(index)];
    }
};

/// A picture whose samples take many values, the least and the greatest among them; the same each time.
[[nodiscard]] Samples MakeSamples(int width, int height, int channels, int bits);

/// A block of EXIF data that says nothing but the orientation.
[[nodiscard]] Bytes MakeExif(int orientation, bool bigEndian);

/// What a file holds beside its samples.
struct FileOptions {
    bool interlaced = false;      ///< PNG: Adam7. JPEG: progressive.
    bool tiled = false;           ///< TIFF.
    bool separate = false;        ///< TIFF: one plane a sample.
    bool whiteIsZero = false;     ///< TIFF.
    bool premultiplied = false;   ///< TIFF: says that alpha is associated.
    bool bigEndian = false;       ///< TIFF.
    int compression = 1;          ///< TIFF: its own number for it.
    int orientation = 0;          ///< TIFF: its own tag; 0 for none.
    Bytes exif = {};              ///< PNG, JPEG, WebP.
    Bytes profile = {};
};

/// \name A file of each format
/// Written by the format's own library: what is checked is qz's reading.
/// \{
/// 1 channel is grey, 2 grey with alpha, 3 RGB, 4 RGBA; 1 to 16 bits.
[[nodiscard]] Bytes MakePNG(const Samples& samples, const FileOptions& options = {});
/// Bytes of palette indices with a palette of RGBA colours.
[[nodiscard]] Bytes MakePalettePNG(const Samples& indices, const Bytes& colors);
/// 1 channel is grey, 3 RGB (not subsampled), 4 inverted CMYK as Adobe writes it; quality 100.
[[nodiscard]] Bytes MakeJPEG(const Samples& samples, const FileOptions& options = {});
/// 3 or 4 channels, lossless.
[[nodiscard]] Bytes MakeWebP(const Samples& samples, const FileOptions& options = {});
/// 1 to 4 channels as in MakePNG.
[[nodiscard]] Bytes MakeTIFF(const Samples& samples, const FileOptions& options = {});
/// P5, P6 or P7 as the channels need.
[[nodiscard]] Bytes MakePNM(const Samples& samples);
/// \}

}   // namespace QZ::Test
