// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Compare.h"

#include <algorithm>
#include <cstdlib>

namespace QZ::Tool {

namespace {

const unsigned char* PixelOf(const Image& image, int x, int y)
{
    return x < image.width && y < image.height ? image.At(x, y) : nullptr;
}

int LargestDifference(const unsigned char* p, const unsigned char* q)
{
    int largest = 0;
    for (int channel = 0; channel < 4; ++channel)
        largest = std::max(largest, std::abs(p[channel] - q[channel]));
    return largest;
}

void Set(unsigned char* pixel, int red, int green, int blue)
{
    pixel[0] = static_cast<unsigned char>(red);
    pixel[1] = static_cast<unsigned char>(green);
    pixel[2] = static_cast<unsigned char>(blue);
}

// A single level must still be seen.
void SetDifferent(unsigned char* pixel, int difference)
{
    const int excess = std::min(255, 4 * difference);
    Set(pixel, 180 + 75 * excess / 255, 120 * excess / 255, 40 * excess / 255);
}

void SetEqual(unsigned char* pixel, const unsigned char* p)
{
    const int luma = (2 * p[0] + 7 * p[1] + p[2]) / 10;
    const int faint = 190 + luma / 4;
    Set(pixel, faint, faint, faint);
}

}   // namespace

Comparison Compare(const Image& a, const Image& b, int tolerance, Image* drawing)
{
    Comparison result;
    const int width = std::max(a.width, b.width), height = std::max(a.height, b.height);
    if (drawing)
        *drawing = Image(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const unsigned char* p = PixelOf(a, x, y);
            const unsigned char* q = PixelOf(b, x, y);
            if (!p && !q)
                continue;
            ++result.pixels;
            const int difference = p && q ? LargestDifference(p, q) : 256;
            const bool differs = difference > tolerance;
            result.different += differs ? 1 : 0;
            if (p && q)
                result.largest = std::max(result.largest, difference);
            if (!drawing)
                continue;
            if (!p || !q)
                Set(drawing->At(x, y), 70, 110, 220);
            else if (differs)
                SetDifferent(drawing->At(x, y), difference);
            else
                SetEqual(drawing->At(x, y), p);
        }
    }
    return result;
}

}   // namespace QZ::Tool
