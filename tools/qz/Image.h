// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace QZ::Tool {

/// The primaries of a picture's encoded values; both have the D65 white and the sRGB curve.
enum class ColorSpace { SRGB, DisplayP3 };

/// What a file said of itself.
struct Source {
    std::string format = "none";        ///< "PNG", "JPEG", ...; "none" for a picture that no file holds.
    int bitDepth = 8;                   ///< Bits a sample in the file.
    bool hasAlpha = false;              ///< Whether the file holds an alpha channel or a transparent colour.
    int orientation = 1;                ///< EXIF orientation, 1 to 8, already applied.
    std::string profile;                ///< Name of the ICC profile, already converted from; empty for none.
    std::vector<std::string> remarks;   ///< What a reader should know: a profile passed over and the like.
};

/// A picture: encoded RGBA, 8 bits a channel, alpha not premultiplied, rows from the top without gaps.
struct Image {
    Image() = default;

    /// Opaque black.
    Image(int pictureWidth, int pictureHeight) : width(pictureWidth), height(pictureHeight)
    {
        pixels.resize(4 * Count());
        for (std::size_t i = 3; i < pixels.size(); i += 4)
            pixels[i] = 255;
    }

    /// Number of pixels.
    [[nodiscard]] std::size_t Count() const
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }

    /// The four bytes of a pixel.
    [[nodiscard]] unsigned char* At(int x, int y)
    {
        return pixels.data() + 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(x));
    }
    [[nodiscard]] const unsigned char* At(int x, int y) const { return const_cast<Image*>(this)->At(x, y); }

    int width = 0;
    int height = 0;
    std::vector<unsigned char> pixels;
    ColorSpace colorSpace = ColorSpace::SRGB;
    Source source;
};

}   // namespace QZ::Tool
