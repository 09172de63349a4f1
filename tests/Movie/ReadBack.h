// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/Movie/Painter.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Test {

/// The decoded pictures as BGRA, one behind the other, not turned by the display matrix.
inline std::vector<unsigned char> Decode(const std::string& path)
{
    const std::string raw = Output(
        "ffmpeg -v fatal -noautorotate -i '" + path +
        "' -map 0:v -vsync passthrough -sws_flags accurate_rnd+full_chroma_int+full_chroma_inp+bicubic "
        "-f rawvideo -pix_fmt bgra -");
    return {raw.begin(), raw.end()};
}

/// Packet times of the streams of a kind ("v", "a", "d"), sorted.
inline std::vector<double> Times(const std::string& path, const std::string& kind)
{
    const std::string text = Output("ffprobe -v fatal -select_streams " + kind +
                                    " -show_entries packet=pts_time -of csv=p=0 '" + path + "'");
    std::vector<double> times;
    std::size_t position = 0;
    while (position < text.size()) {
        if (text[position] == '-' || (text[position] >= '0' && text[position] <= '9'))
            times.push_back(std::strtod(text.c_str() + position, nullptr));
        position = text.find('\n', position);
        position = position == std::string::npos ? text.size() : position + 1;
    }
    std::sort(times.begin(), times.end());
    return times;
}

/// Expects the movie to show the first `count` pictures of the painter's scene, each with more than so many
/// dB.
inline void ExpectScene(const std::string& path, int width, int height, int count, double leastPSNR)
{
    const std::vector<unsigned char> decoded = Decode(path);
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    ASSERT_EQ(decoded.size(), pixels * 4 * static_cast<std::size_t>(count));
    std::vector<unsigned char> painted(pixels * 4);
    double worst = 1000;
    for (int i = 0; i < count; ++i) {
        PaintScene(painted.data(), static_cast<std::uint64_t>(width) * 4, width, height, i);
        worst = std::min(worst, PSNR(painted.data(),
                                     decoded.data() + static_cast<std::size_t>(i) * painted.size(), pixels));
    }
    EXPECT_GT(worst, leastPSNR);
    std::printf("    worst picture: %.1f dB\n", worst);
}

}   // namespace QZ::Test
