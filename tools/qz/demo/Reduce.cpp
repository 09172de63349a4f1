// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Reduce.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Tool {

namespace {

using Foundation::CColor;

const std::array<float, 256>& LightOfByte()
{
    static const std::array<float, 256> light = [] {
        std::array<float, 256> table{};
        for (std::size_t i = 0; i < table.size(); ++i)
            CColor::NonlinearToLinearToneCurve(false, static_cast<float>(i) / 255.0f, table[i]);
        return table;
    }();
    return light;
}

unsigned char Byte(float value)
{
    return static_cast<unsigned char>(std::clamp(value * 255.0f + 0.5f, 0.0f, 255.0f));
}

// Pixels [from, to) of one side that stand for pixel i of `count`.
struct Span {
    int from, to;
};

Span SpanOf(int i, int count, int length)
{
    const auto edge = [&](int k) { return static_cast<int>(static_cast<long long>(k) * length / count); };
    return {edge(i), std::max(edge(i) + 1, edge(i + 1))};
}

void Average(const Image& image, Span across, Span down, unsigned char* out)
{
    const auto& light = LightOfByte();
    Math::CVector3<float> sum;
    float weight = 0.0f;
    for (int y = down.from; y < down.to; ++y)
        for (int x = across.from; x < across.to; ++x) {
            const unsigned char* p = image.At(x, y);
            const float alpha = static_cast<float>(p[3]) / 255.0f;
            sum += Math::CVector3<float>(light[p[0]], light[p[1]], light[p[2]]) * alpha;
            weight += alpha;
        }
    Math::CVector3<float> encoded;
    if (weight > 0.0f)
        CColor::LinearToNonlinearToneCurve(false, false, sum * (1.0f / weight), encoded);
    out[0] = Byte(encoded.x);
    out[1] = Byte(encoded.y);
    out[2] = Byte(encoded.z);
    out[3] = Byte(weight / static_cast<float>((across.to - across.from) * (down.to - down.from)));
}

}   // namespace

Image Reduced(const Image& image, int side)
{
    const int longer = std::max(image.width, image.height);
    if (longer <= side)
        return image;
    const auto scaled = [&](int length) {
        return std::max(1, static_cast<int>(static_cast<long long>(length) * side / longer));
    };
    Image small(scaled(image.width), scaled(image.height));
    small.colorSpace = image.colorSpace;
    for (int y = 0; y < small.height; ++y)
        for (int x = 0; x < small.width; ++x)
            Average(image, SpanOf(x, small.width, image.width), SpanOf(y, small.height, image.height),
                    small.At(x, y));
    return small;
}

}   // namespace QZ::Tool
