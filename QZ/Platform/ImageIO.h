// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "QZ/Export.h"

namespace QZ::Platform {

/// What the components of a pixel mean. DeviceGray is a grey of no stated curve.
enum class ImageColorSpace { SRGB, DisplayP3, DeviceGray };

/// Whether an alpha byte follows the components of a pixel. It is not premultiplied.
enum class ImageAlpha { None, Last };

/// How 8-bit pixels lie in memory.
struct ImageLayout {
    int width = 0;
    int height = 0;
    ImageColorSpace colorSpace = ImageColorSpace::SRGB;
    ImageAlpha alpha = ImageAlpha::None;
    std::size_t bytesPerRow = 0;   ///< from a pixel to the one below

    /// 1 for grey, 3 for colours, and one more with alpha.
    [[nodiscard]] std::size_t BytesPerPixel() const noexcept
    {
        return (colorSpace == ImageColorSpace::DeviceGray ? 1u : 3u) + (alpha == ImageAlpha::Last ? 1u : 0u);
    }
};

/// A picture of its own memory.
struct Image {
    ImageLayout layout;
    std::vector<unsigned char> pixels;   ///< height rows of bytesPerRow bytes
};

/// A PNG file of the pixels (ISO/IEC 15948): 8 bits a component, the colour space as an ICC profile (iCCP
/// chunk), grey untagged. The same pixels give the same bytes at any time.
/// \return empty when a size is not positive, a row is too short for its pixels, or memory is short.
[[nodiscard]] QZ_API std::vector<unsigned char> EncodePNG(const ImageLayout& layout,
                                                          const unsigned char* pixels);

/// The picture in a PNG file, as 8 bits a component: 16 bits are rounded, palettes and smaller depths
/// widened, transparent colours turned into alpha. Rows are packed. Colours that are not tagged with the
/// Display P3 profile count as sRGB.
/// \return none when the bytes are no PNG file, are damaged, or describe more than 2^31 - 1 bytes of pixels.
[[nodiscard]] QZ_API std::optional<Image> DecodePNG(std::span<const unsigned char> file);

/// The ICC profile of a colour space; empty for DeviceGray. It is always the same memory.
[[nodiscard]] QZ_API std::span<const unsigned char> ICCProfileOf(ImageColorSpace space) noexcept;

/// Writes a file so that its path always shows the old content or the whole new one, a crash included:
/// through a temporary file in the same folder that is flushed to the disk and renamed. A file that exists
/// keeps its permissions; a symbolic link is replaced.
/// \return false when that fails; then nothing is left behind.
[[nodiscard]] QZ_API bool WriteFileAtomically(const std::string& path, std::span<const unsigned char> bytes);

/// As WriteFileAtomically, but for a path at which nothing exists yet.
/// \return false when something exists there, or the writing fails.
[[nodiscard]] QZ_API bool WriteNewFileAtomically(const std::string& path,
                                                 std::span<const unsigned char> bytes);

/// The bytes of a file; none when it cannot be read.
[[nodiscard]] QZ_API std::optional<std::vector<unsigned char>> ReadFile(const std::string& path);

}   // namespace QZ::Platform
