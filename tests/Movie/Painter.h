// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <vector>

namespace QZ::Test {

/// One channel of a smooth moving scene, from 0 to 255.
inline unsigned char Wave(double phase)
{
    return static_cast<unsigned char>(127.5 + 110 * std::sin(phase));
}

/// Paints picture number `index` of the scene as BGRA.
inline void PaintScene(unsigned char* bgra, std::uint64_t bytesPerRow, int width, int height, int index)
{
    for (int y = 0; y < height; ++y) {
        unsigned char* pixel = bgra + static_cast<std::uint64_t>(y) * bytesPerRow;
        for (int x = 0; x < width; ++x, pixel += 4) {
            pixel[0] = Wave(0.021 * x + 0.05 * index);
            pixel[1] = Wave(0.017 * y - 0.03 * index);
            pixel[2] = Wave(0.011 * (x + y) + 0.02 * index);
            pixel[3] = 255;
        }
    }
}

/// Peak signal-to-noise ratio in dB of the colours (not the alpha) of two BGRA pictures of one size.
inline double PSNR(const unsigned char* a, const unsigned char* b, std::size_t pixels)
{
    double sum = 0;
    for (std::size_t i = 0; i < pixels; ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            const double difference = static_cast<double>(a[4 * i + k]) - b[4 * i + k];
            sum += difference * difference;
        }
    }
    return 10 * std::log10(255.0 * 255.0 / (sum / (3.0 * static_cast<double>(pixels)) + 1e-9));
}

/// A sine tone, 16-bit little-endian, every channel the same.
inline std::vector<unsigned char> ToneBytes(double frequency, double sampleRate, int channels,
                                            std::int64_t first, std::int64_t count)
{
    std::vector<unsigned char> bytes;
    for (std::int64_t i = first; i < first + count; ++i) {
        const double time = static_cast<double>(i) / sampleRate;
        const int value = static_cast<int>(16000 * std::sin(2 * std::numbers::pi * frequency * time));
        for (int channel = 0; channel < channels; ++channel) {
            bytes.push_back(static_cast<unsigned char>(value & 0xFF));
            bytes.push_back(static_cast<unsigned char>(value >> 8 & 0xFF));
        }
    }
    return bytes;
}

}   // namespace QZ::Test
