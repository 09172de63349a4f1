// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/Recolor.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "QZ/Foundation/Analysis/HueBins.h"
#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/CColorRows.h"

namespace QZ::Foundation {

using Color = Math::CVector3<float>;

namespace {

constexpr std::size_t kRow = 256;   // pixels at a time

unsigned char RoundedByte(float value)
{
    return static_cast<unsigned char>(TruncateToRange(value + 0.5f, 0, 255));
}

void WritePixel(const Color& rgb, unsigned char* pixel)
{
    pixel[0] = RoundedByte(rgb.x * 255.0f);
    pixel[1] = RoundedByte(rgb.y * 255.0f);
    pixel[2] = RoundedByte(rgb.z * 255.0f);
    pixel[3] = RoundedByte(0.114f * static_cast<float>(pixel[2]) + 0.587f * static_cast<float>(pixel[1]) +
                           0.299f * static_cast<float>(pixel[0]));
}

}   // namespace

void RecolorPicture(const std::vector<Math::CVector2<float>>& binColours, int width, int height,
                    CColor::EIlluminant illuminant, bool isEncoded, unsigned char* rgba)
{
    const int size = WrappingMultiply(WrappingMultiply(width, height), 4);
    if (binColours.empty() || size < 1)
        return;
    const ByteTable& linear = isEncoded ? LinearOfGamma22Byte() : UnitOfByte();
    const HueBins binOf(static_cast<int>(binColours.size()));
    std::array<Color, kRow> colors;
    for (std::size_t left = static_cast<std::size_t>(size) / 4; left > 0;) {
        const std::span<Color> row(colors.data(), std::min(kRow, left));
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = ColorOfPixel(linear, rgba + 4 * i);
        CColorRows::LinearRGBToIPT(illuminant, row, row);
        CColorRows::IPTToICH(row, row);
        for (Color& color : row) {
            const auto& direction = binColours[static_cast<std::size_t>(binOf(color.z))];
            color.Set(color.x, direction.x * color.y, direction.y * color.y);
        }
        if (isEncoded)
            CColorRows::IPTToSRGB(true, false, illuminant, row, row);
        else
            CColorRows::IPTToLinearRGB(false, illuminant, row, row);
        for (const Color& color : row) {
            WritePixel(color, rgba);
            rgba += 4;
        }
        left -= row.size();
    }
}

}   // namespace QZ::Foundation
