// SPDX-License-Identifier: MIT
#include "tools/qz/io/Orientation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace QZ::Tool {

namespace {

// Where the pixels of an upright row come from in the file's picture.
struct Walk {
    std::size_t start;
    std::ptrdiff_t alongRow;
    std::ptrdiff_t downRows;
};

Walk WalkOf(int orientation, std::ptrdiff_t width, std::ptrdiff_t height)
{
    const auto at = [&](std::ptrdiff_t x, std::ptrdiff_t y) {
        return static_cast<std::size_t>(y * width + x);
    };
    switch (orientation) {
        case 2:
            return {at(width - 1, 0), -1, width};
        case 3:
            return {at(width - 1, height - 1), -1, -width};
        case 4:
            return {at(0, height - 1), 1, -width};
        case 5:
            return {at(0, 0), width, 1};
        case 6:
            return {at(0, height - 1), -width, 1};
        case 7:
            return {at(width - 1, height - 1), -width, -1};
        default:   // 8
            return {at(width - 1, 0), width, -1};
    }
}

// A TIFF structure in memory that answers 0 for what lies outside.
class TiffBlock {
public:
    explicit TiffBlock(std::span<const unsigned char> bytes) : m_bytes(bytes)
    {
        m_bigEndian = !bytes.empty() && bytes[0] == 'M';
    }

    [[nodiscard]] std::uint32_t Number(std::size_t offset, std::size_t length) const
    {
        if (offset > m_bytes.size() || length > m_bytes.size() - offset)
            return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < length; ++i)
            value = value << 8 | m_bytes[offset + (m_bigEndian ? i : length - 1 - i)];
        return value;
    }

private:
    std::span<const unsigned char> m_bytes;
    bool m_bigEndian = false;
};

}   // namespace

void TurnUpright(int orientation, Image& image)
{
    if (orientation < 2 || orientation > 8)
        return;
    const Walk walk = WalkOf(orientation, image.width, image.height);
    Image upright;
    upright.width = image.width;
    upright.height = image.height;
    if (orientation >= 5)
        std::swap(upright.width, upright.height);
    upright.pixels.resize(image.pixels.size());
    upright.colorSpace = image.colorSpace;
    upright.source = std::move(image.source);
    for (int y = 0; y < upright.height; ++y) {
        auto from = static_cast<std::ptrdiff_t>(walk.start) + y * walk.downRows;
        unsigned char* to = upright.At(0, y);
        for (int x = 0; x < upright.width; ++x, from += walk.alongRow, to += 4)
            std::memcpy(to, image.pixels.data() + 4 * from, 4);
    }
    image = std::move(upright);
}

int ExifOrientation(std::span<const unsigned char> exif)
{
    constexpr std::array<unsigned char, 6> kPrefix = {'E', 'x', 'i', 'f', 0, 0};
    if (exif.size() >= kPrefix.size() && std::equal(kPrefix.begin(), kPrefix.end(), exif.begin()))
        exif = exif.subspan(kPrefix.size());
    const TiffBlock block(exif);
    if (block.Number(2, 2) != 42)
        return 1;
    constexpr std::uint32_t kOrientationTag = 0x0112;
    constexpr std::uint32_t kShort = 3;
    const std::size_t directory = block.Number(4, 4);
    const std::size_t count = block.Number(directory, 2);
    for (std::size_t entry = directory + 2; entry < directory + 2 + 12 * count; entry += 12) {
        if (block.Number(entry, 2) != kOrientationTag || block.Number(entry + 2, 2) != kShort)
            continue;
        const std::uint32_t orientation = block.Number(entry + 8, 2);
        return orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
    }
    return 1;
}

}   // namespace QZ::Tool
