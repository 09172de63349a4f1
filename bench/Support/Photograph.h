// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace QZ::Bench {

/// A picture for benchmarks: RGBA, 4 bytes a pixel.
struct Photograph {
    int width;
    int height;
    std::vector<unsigned char> rgba;

    [[nodiscard]] int Pixels() const { return width * height; }
};

/// 12 megapixels that load a table, a branch and a cache as a photograph does: smooth shading of changing
/// hue, darker towards the corners, with the noise of a sensor on top. Over a million different colours.
inline Photograph MakePhotograph(int width = 4000, int height = 3000)
{
    Photograph picture{
        width, height,
        std::vector<unsigned char>(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
    std::uint32_t state = 1;
    const auto noise = [&] {   // about normal, of deviation 1
        float sum = -2.0f;
        for (int i = 0; i < 4; ++i) {
            state = state * 1664525u + 1013904223u;
            sum += static_cast<float>(state >> 8) * 0x1p-24f;
        }
        return sum * 1.7f;
    };
    const auto byte = [&](float v) { return static_cast<unsigned char>(std::clamp(v, 0.0f, 255.0f)); };
    unsigned char* pixel = picture.rgba.data();
    for (int y = 0; y < height; ++y) {
        const float v = static_cast<float>(y) / static_cast<float>(height);
        for (int x = 0; x < width; ++x, pixel += 4) {
            const float u = static_cast<float>(x) / static_cast<float>(width);
            const float light = 1.0f - 0.8f * ((u - 0.4f) * (u - 0.4f) + (v - 0.6f) * (v - 0.6f));
            const float texture = 20.0f * std::sin(40.0f * u + 9.0f * v * v) * std::sin(31.0f * v);
            pixel[0] = byte(light * (90.0f + 150.0f * u) + texture + 6.0f * noise());
            pixel[1] = byte(light * (70.0f + 110.0f * v) + texture + 5.0f * noise());
            pixel[2] = byte(light * (200.0f - 140.0f * u * v) - texture + 7.0f * noise());
            pixel[3] = 255;
        }
    }
    return picture;
}

}   // namespace QZ::Bench
