// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/CGrayscaleToneCurve.h"

#include <cmath>
#include <cstddef>
#include <iterator>

#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/Elementary.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

namespace {

constexpr std::size_t kLevels = 256;

/// The cubic smoothstep of t clamped to 0 to 1.
float Smoothstep(float t)
{
    const float u = formula::ClampToUnit(t);
    return (3.0f - u - u) * (u * u);
}

/// A level from a rounded value: as it is, but that what no int can hold ends in 0 to 255.
int ToLevel(float rounded)
{
    if (std::fabs(rounded) < 2147483648.0f)
        return static_cast<int>(rounded);
    return rounded > 0.0f ? 255 : 0;
}

std::size_t ToIndex(float rounded)
{
    if (rounded >= 255.0f)
        return 255;
    return rounded > 0.0f ? static_cast<std::size_t>(rounded) : 0;   // NaN too
}

/// The curve read through a black and a white point.
std::vector<float> Rescale(const std::vector<float>& curve, float black, float white)
{
    const float scale = 1.0f / (white - black);
    const float offset = black * scale;
    std::vector<float> rescaled(kLevels);
    for (std::size_t i = 0; i < kLevels; ++i) {
        const float x = (static_cast<float>(i) * kByteToUnit) * scale - offset;
        rescaled[i] = curve[ToIndex(std::floor(x * 255.0f + 0.5f))];
    }
    return rescaled;
}

}   // namespace

float CGrayscaleToneCurve::ToeSmoothstep(float x) const
{
    return Smoothstep(x * toeScale);
}

float CGrayscaleToneCurve::ShoulderSmoothstep(float x) const
{
    return Smoothstep((x - shoulderStart) * shoulderScale);
}

void CGrayscaleToneCurve::BendByToeAndShoulder(float toe, float shoulder, std::vector<float>& curve)
{
    const bool hasToe = 0.0f < toe && toe <= 1.0f;
    const bool hasShoulder = 0.0f <= shoulder && shoulder < 1.0f;
    if (hasToe)
        toeScale = 1.0f / toe;
    if (hasShoulder) {
        shoulderStart = shoulder;
        // The last bit differs with and without a toe, and callers' tables with it.
        shoulderScale = hasToe ? static_cast<float>(1.0 / (1.0 - static_cast<double>(shoulder)))
                               : 1.0f / (1.0f - shoulder);
    }
    for (float& value : curve) {
        const float x = value;
        if (hasToe)
            value = ToeSmoothstep(x) * x;
        if (hasShoulder) {
            const float S = ShoulderSmoothstep(x);
            value = (1.0f - S) * value + S;
        }
    }
}

void CGrayscaleToneCurve::Compute(float black, float white, float gamma, float toe, float shoulder)
{
    const ByteTable& units = UnitOfByte();
    std::vector<float> curve(std::begin(units.values), std::end(units.values));
    curve[255] = 1.0f;
    if (gamma != 1.0f)
        for (float& value : curve)
            value = formula::Pow(value, gamma);
    BendByToeAndShoulder(toe, shoulder, curve);
    if (black > 0.0f || white < 1.0f)
        curve = Rescale(curve, black, white);

    lookupTable.resize(kLevels);
    for (std::size_t i = 0; i < kLevels; ++i)
        lookupTable[i] = ToLevel(std::floor(curve[i] * 255.0f + 0.5f));
}

}   // namespace QZ::Foundation
