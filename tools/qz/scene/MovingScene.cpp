// SPDX-License-Identifier: MIT
#include "tools/qz/scene/MovingScene.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"
#include "tools/qz/draw/Coverage.h"
#include "tools/qz/draw/Font.h"

namespace QZ::Tool {

namespace {

using Math::CVector3;

constexpr double kTurn = 2 * std::numbers::pi;
constexpr int kHues = 1024;
constexpr int kLightnesses = 96;
constexpr int kGreys = 11;

std::uint32_t Packed(const unsigned char (&bgra)[4])
{
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, bgra, 4);
    return pixel;
}

// CIE LChuv, as much chroma as every hue has room for and a bit less.
std::uint32_t ColourOf(int lightness, int hue)
{
    const auto L = static_cast<float>(0.35 + 0.45 * lightness / (kLightnesses - 1));
    const auto angle = static_cast<float>(kTurn * hue / kHues);
    CVector3<float> luv(L, std::cos(angle), std::sin(angle));
    const float chroma = 0.7f * Foundation::CLUVMaximumChromaMap::MaxChromaForLH(luv);
    luv = {L, luv.y * chroma, luv.z * chroma};
    CVector3<float> srgb;
    Foundation::CColor::LuvToSRGB(false, false, Foundation::CColor::eD65, luv, srgb);
    const auto byte = [](float value) {
        return static_cast<unsigned char>(std::clamp(value, 0.0f, 1.0f) * 255.0f + 0.5f);
    };
    return Packed({byte(srgb.z), byte(srgb.y), byte(srgb.x), 255});
}

Path Shadow(double x, double y, double radius)
{
    constexpr int kCorners = 48;
    std::vector<Point> corners;
    for (int i = 0; i < kCorners; ++i) {
        const double angle = kTurn * i / kCorners;
        corners.push_back({static_cast<float>(x + radius * std::cos(angle)),
                           static_cast<float>(y + 0.2 * radius * std::sin(angle))});
    }
    return Path::Polygon(corners);
}

void Blend(unsigned char* pixel, double level, double share)
{
    *pixel = static_cast<unsigned char>(*pixel + (level - *pixel) * share + 0.5);
}

}   // namespace

struct MovingScene::Target {
    unsigned char* base;
    std::uint64_t bytesPerRow;
    int width, height;

    [[nodiscard]] unsigned char* At(int x, int y) const
    {
        return base + static_cast<std::uint64_t>(y) * bytesPerRow + 4 * static_cast<std::ptrdiff_t>(x);
    }

    /// Fills a path with a grey level.
    void Fill(const Path& path, double level, double opacity) const
    {
        const Coverage coverage(path, width, height);
        std::vector<float> shares;
        for (int y = coverage.y0; y < coverage.y1; ++y) {
            coverage.Row(y, shares);
            for (int x = coverage.x0; x < coverage.x1; ++x)
                for (int channel = 0; channel < 3; ++channel)
                    Blend(At(x, y) + channel, level,
                          opacity * static_cast<double>(shares[static_cast<std::size_t>(x - coverage.x0)]));
        }
    }
};

MovingScene::MovingScene(int width, int height, int rate) : m_width(width), m_height(height), m_rate(rate)
{
    for (int lightness = 0; lightness < kLightnesses; ++lightness)
        for (int hue = 0; hue < kHues; ++hue)
            m_colours.push_back(ColourOf(lightness, hue));
    for (int x = 0; x < width; ++x) {
        const double place = static_cast<double>(x) / height;
        m_across.push_back(static_cast<int>(kHues * (0.45 * place + 0.06 * std::sin(3.1 * place))));
    }
    for (int y = 0; y < height; ++y) {
        const double place = static_cast<double>(y) / height;
        m_down.push_back(static_cast<int>(kHues * (0.2 * place + 0.08 * std::sin(5.3 * place))));
    }
}

void MovingScene::Paint(int number, unsigned char* base, std::uint64_t bytesPerRow) const
{
    const Target target = {base, bytesPerRow, m_width, m_height};
    const double seconds = static_cast<double>(number) / m_rate;
    PaintHues(target, seconds);
    PaintGreys(target);
    PaintBall(target, seconds);
    PaintClock(target, number);
}

void MovingScene::PaintHues(const Target& target, double seconds) const
{
    // Ten seconds for a turn; a whole number of turns from any start keeps the sum positive.
    const int drift = static_cast<int>(std::fmod(seconds / 10, 1.0) * kHues);
    for (int y = 0; y < m_height; ++y) {
        const int lightness = (kLightnesses - 1) * (m_height - 1 - y) / std::max(m_height - 1, 1);
        const std::uint32_t* colours = m_colours.data() + static_cast<std::ptrdiff_t>(lightness) * kHues;
        const int offset = m_down[static_cast<std::size_t>(y)] + drift;
        unsigned char* pixel = target.At(0, y);
        for (const int across : m_across) {
            std::memcpy(pixel, colours + (across + offset) % kHues, 4);
            pixel += 4;
        }
    }
}

void MovingScene::PaintGreys(const Target& target) const
{
    const int top = m_height - m_height / 10;
    for (int y = top; y < m_height; ++y)
        for (int x = 0; x < m_width; ++x)
            std::memset(target.At(x, y), 255 * (x * kGreys / m_width) / (kGreys - 1), 3);
}

void MovingScene::PaintBall(const Target& target, double seconds) const
{
    const double radius = 0.13 * m_height;
    const double floor = m_height - m_height / 20.0 - radius;
    const double bounce = std::fabs(std::cos(std::numbers::pi * seconds));
    const double centreX = m_width / 2.0 + (m_width / 2.0 - radius) * std::sin(kTurn * seconds / 7);
    const double centreY = floor - 0.55 * m_height * bounce;
    target.Fill(Shadow(centreX, floor + radius, radius), 0, 0.45 * (1 - 0.7 * bounce));
    constexpr double kLight[3] = {-0.48, -0.64, 0.60};
    constexpr double kBall[3] = {40, 120, 250};   // B, G, R
    for (int y = std::max(0, static_cast<int>(centreY - radius - 1));
         y < std::min(m_height, static_cast<int>(centreY + radius + 2)); ++y) {
        for (int x = std::max(0, static_cast<int>(centreX - radius - 1));
             x < std::min(m_width, static_cast<int>(centreX + radius + 2)); ++x) {
            const double u = (x + 0.5 - centreX) / radius, v = (y + 0.5 - centreY) / radius;
            const double distance = std::hypot(u, v);
            const double share = std::clamp(radius * (1 - distance) + 0.5, 0.0, 1.0);
            if (share <= 0)
                continue;
            const double w = std::sqrt(std::max(0.0, 1 - distance * distance));
            const double lit = std::max(0.0, u * kLight[0] + v * kLight[1] + w * kLight[2]);
            const double gloss = std::pow(lit, 40);
            for (int channel = 0; channel < 3; ++channel)
                Blend(target.At(x, y) + channel,
                      std::min(255.0, kBall[channel] * (0.25 + 0.75 * lit) + 190 * gloss), share);
        }
    }
}

void MovingScene::PaintClock(const Target& target, int number) const
{
    const int seconds = number / m_rate;
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d + %02d / %d", seconds / 60, seconds % 60, number % m_rate,
                  m_rate);
    const auto size = static_cast<float>(m_height) * 0.075f;
    const float margin = size * 0.6f;
    target.Fill(Path::RoundedRectangle({margin, margin}, TextWidth(Face::Bold, text, size) + 1.2f * size,
                                       1.7f * size, 0.4f * size),
                12, 0.55);
    target.Fill(TextOutline(Face::Bold, text, {margin + 0.6f * size, margin + 1.2f * size}, size), 250, 1);
}

}   // namespace QZ::Tool
