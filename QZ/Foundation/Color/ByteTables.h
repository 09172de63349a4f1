// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "QZ/Math/CVector3.h"

/// \file
/// What depends on one byte of a pixel: tables of 256 floats, built once.

namespace QZ::Foundation {

/// The factor from a byte to the unit range: the float nearest 1/255. 255 of it round to 1.
inline constexpr float kByteToUnit = 0.003921569f;

using ByteTable = std::array<float, 256>;

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
