// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

/// \file
/// Pictures for tests: four bytes a pixel, R, G, B and a fourth that serves as alpha, rows without gaps.

namespace QZ::Test {

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> rgba;

    [[nodiscard]] int Pixels() const { return width * height; }
};

/// A picture of one row.
inline Picture RowOf(const std::vector<std::vector<int>>& pixels)
{
    Picture picture{static_cast<int>(pixels.size()), 1, {}};
    for (const std::vector<int>& pixel : pixels)
        for (std::size_t i = 0; i < 4; ++i)
            picture.rgba.push_back(static_cast<unsigned char>(i < pixel.size() ? pixel[i] : 255));
    return picture;
}

/// What a camera might see: a muted gradient lit from one side, three saturated discs with soft shading, a
/// shadow, and the noise of a sensor over all of it; alpha fades from left to right.
inline Picture Photograph(int width, int height, unsigned seed = 1)
{
    struct Disc {
        double x, y, radius, red, green, blue;
    };
    constexpr Disc discs[] = {{0.25, 0.3, 0.18, 0.85, 0.10, 0.12},
                              {0.55, 0.6, 0.22, 0.10, 0.35, 0.80},
                              {0.80, 0.3, 0.15, 0.90, 0.75, 0.08}};
    std::mt19937 random(seed);
    const auto noise = [&random] { return (static_cast<double>(random() % 2048) / 1024.0 - 1.0) * 0.03; };

    Picture picture{width, height, {}};
    picture.rgba.reserve(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            const double x = (column + 0.5) / width;
            const double y = (row + 0.5) / height;
            double color[3] = {0.55 - 0.2 * y, 0.5 - 0.1 * x, 0.45 + 0.15 * y};
            double light = 0.35 + 0.65 * x;
            if (x + y > 1.5)
                light *= 0.3;
            for (const Disc& disc : discs) {
                const double distance = std::hypot(x - disc.x, y - disc.y) / disc.radius;
                if (distance >= 1.0)
                    continue;
                color[0] = disc.red;
                color[1] = disc.green;
                color[2] = disc.blue;
                light = 0.15 + 0.95 * std::sqrt(1.0 - distance * distance);
            }
            for (const double channel : color)
                picture.rgba.push_back(static_cast<unsigned char>(
                    std::clamp(channel * light + noise(), 0.0, 1.0) * 255.0 + 0.5));
            picture.rgba.push_back(static_cast<unsigned char>(255.0 * (1.0 - x)));
        }
    }
    return picture;
}

/// The picture turned by a quarter, clockwise.
inline Picture Turned(const Picture& picture)
{
    Picture turned{picture.height, picture.width, {}};
    turned.rgba.reserve(picture.rgba.size());
    for (int column = 0; column < picture.width; ++column) {
        for (int row = picture.height - 1; row >= 0; --row) {
            const auto pixel = picture.rgba.begin() + 4 * (row * picture.width + column);
            turned.rgba.insert(turned.rgba.end(), pixel, pixel + 4);
        }
    }
    return turned;
}

}   // namespace QZ::Test
