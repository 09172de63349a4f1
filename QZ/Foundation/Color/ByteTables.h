// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "QZ/Math/CVector3.h"

/// \file
/// What depends on one byte of a pixel: tables of 256 floats, built once.

namespace QZ::Foundation {

/// The factor from a byte to the unit range: the float nearest 1/255. 255 of it round to 1.
inline constexpr float kByteToUnit = 0.003921569f;

/// A float for each byte, and once more as planes of the first to the fourth byte of all of them.
struct ByteTable {
    alignas(64) float values[256];
    alignas(64) unsigned char planes[4][256];

    float operator[](std::size_t byte) const { return values[byte]; }
};

/// Entry b is b * kByteToUnit.
const ByteTable& UnitOfByte();

/// Entry b is b * kByteToUnit decoded by the piecewise sRGB curve, with the bits of the single conversion.
const ByteTable& LinearOfSRGBByte();

/// Entry b is b * kByteToUnit decoded by the power 2.2.
const ByteTable& LinearOfGamma22Byte();

/// The linear value of each byte of a picture that holds encoded sRGB or linear RGB.
inline const ByteTable& LinearOfByte(bool isSRGB)
{
    return isSRGB ? LinearOfSRGBByte() : UnitOfByte();
}

/// A pixel's R, G and B through a table.
inline Math::CVector3<float> ColorOfPixel(const ByteTable& table, const unsigned char* pixel)
{
    return {table[pixel[0]], table[pixel[1]], table[pixel[2]]};
}

}   // namespace QZ::Foundation
