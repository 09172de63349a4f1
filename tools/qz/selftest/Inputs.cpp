// SPDX-License-Identifier: MIT
#include "tools/qz/selftest/Inputs.h"

#include <bit>
#include <functional>

namespace QZ::Tool::Selftest {

namespace {

using Byte = unsigned char;

/// \param color  R, G and B of the pixel at x and y.
Picture Paint(int width, int height, const std::function<void(int x, int y, Byte* rgb)>& color)
{
    Picture picture{width, height,
                    std::vector<Byte>(std::size_t{4} * static_cast<std::size_t>(width * height))};
    Byte* pixel = picture.rgba.data();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x, pixel += 4) {
            color(x, y, pixel);
            pixel[3] = static_cast<Byte>(x * 7 + y * 3);
        }
    return picture;
}

}   // namespace

std::vector<Math::CVector3<float>> Colors(std::size_t n)
{
    Numbers numbers(1);
    const auto component = [&](std::uint32_t kind) {
        if (kind < 6)
            return numbers.Unit();
        if (kind == 6)
            return 2.0f * numbers.Unit() - 0.5f;
        return std::bit_cast<float>(numbers.Bits());
    };
    std::vector<Math::CVector3<float>> colors(n);
    for (auto& color : colors) {
        const std::uint32_t kind = numbers.Bits() >> 29;
        color.x = component(kind);
        color.y = component(kind);
        color.z = component(kind);
    }
    return colors;
}

std::vector<Picture> Pictures()
{
    Numbers numbers(2);
    return {
        Paint(257, 129,
              [&](int, int, Byte* rgb) {
                  for (int c = 0; c < 3; ++c)
                      rgb[c] = static_cast<Byte>(numbers.Bits() >> 24);
              }),
        Paint(320, 200,
              [&](int x, int y, Byte* rgb) {
                  const int grain = static_cast<int>(numbers.Bits() >> 29);
                  rgb[0] = static_cast<Byte>(x * 3 / 4 + grain);
                  rgb[1] = static_cast<Byte>(40 + y + grain);
                  rgb[2] = static_cast<Byte>(240 - (x + y) * 2 / 5 + grain);
              }),
        Paint(64, 48,
              [](int x, int y, Byte* rgb) {
                  const int patch = x / 16 + 4 * (y / 16);
                  rgb[0] = static_cast<Byte>(patch * 21);
                  rgb[1] = static_cast<Byte>(255 - patch * 13);
                  rgb[2] = static_cast<Byte>(patch * patch);
              }),
        Paint(100, 7,
              [](int x, int y, Byte* rgb) { rgb[0] = rgb[1] = rgb[2] = static_cast<Byte>(x * 2 + y * 5); }),
        Paint(1, 1,
              [](int, int, Byte* rgb) {
                  rgb[0] = 200;
                  rgb[1] = 30;
                  rgb[2] = 90;
              }),
    };
}

}   // namespace QZ::Tool::Selftest
