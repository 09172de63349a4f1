// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ByteCurve.h"

#include "QZ/Foundation/Color/Formulas/LXX.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

using Rounding = ByteCurve::Rounding;

namespace {

constexpr std::uint32_t kTwo = 0x40000000;   // the bits of 2

/// The bits of the least float whose byte is not below a given one.
template <class Function>
std::uint32_t FirstNotBelow(const Function& byteOf, unsigned byte)
{
    std::uint32_t below = 0;
    std::uint32_t notBelow = kTwo;
    while (notBelow - below > 1) {
        const std::uint32_t middle = below + (notBelow - below) / 2;
        (byteOf(std::bit_cast<float>(middle)) < byte ? below : notBelow) = middle;
    }
    return notBelow;
}

float EncodedSRGB(float c)
{
    return formula::LinearToNonlinear(false, c);
}

float Same(float c)
{
    return c;
}

}   // namespace

ByteCurve::ByteCurve(float (*unitOf)(float), Rounding rounding)
    : m_estimate(unitOf, rounding == Rounding::eNearest ? 0.0 : -0.5)
{
    const auto byteOf = [&](float x) {
        const float most = formula::ClampToUnit(unitOf(x)) * 255.0f;
        return static_cast<unsigned>(most + (rounding == Rounding::eNearest ? 0.5f : 0.0f));
    };
    std::uint32_t thresholds[256] = {};
    for (unsigned byte = 1; byte < 256; ++byte)
        thresholds[byte] = FirstNotBelow(byteOf, byte);
    m_first = (thresholds[1] >> 16) - 1;
    unsigned byte = 0;
    for (std::uint32_t cell = m_first; cell < kTwo >> 16; ++cell) {
        const std::uint32_t start = cell << 16;
        while (byte < 255 && thresholds[byte + 1] <= start)
            ++byte;
        const bool hasThreshold = byte < 255 && thresholds[byte + 1] < start + 0x10000u;
        const std::uint32_t offset = hasThreshold ? thresholds[byte + 1] - start : 0x10000u;
        m_cells.push_back((byte << 16) + (0x10000u - offset));
    }
}

const ByteCurve& EncodedByte(bool useGamma22)
{
    static const ByteCurve sRGB(EncodedSRGB, Rounding::eNearest);
    static const ByteCurve gamma22([](float c) { return formula::LinearToNonlinear(true, c); },
                                   Rounding::eNearest);
    return useGamma22 ? gamma22 : sRGB;
}

const ByteCurve& TruncatedSRGBByte()
{
    static const ByteCurve curve(EncodedSRGB, Rounding::eDown);
    return curve;
}

const ByteCurve& LightnessByte()
{
    static const ByteCurve curve([](float Y) { return formula::LinearYToLXX(Y); }, Rounding::eNearest);
    return curve;
}

const ByteCurve& UnitByte()
{
    static const ByteCurve curve(Same, Rounding::eNearest);
    return curve;
}

const ByteCurve& TruncatedUnitByte()
{
    static const ByteCurve curve(Same, Rounding::eDown);
    return curve;
}

}   // namespace QZ::Foundation
