// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "QZ/Foundation/Analysis/HueBins.h"
#include "QZ/Foundation/Color/ByteCurve.h"
#include "QZ/Foundation/Color/ByteTables.h"
#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Math/CMatrix3.h"
#include "QZ/Math/CVector2.h"

/// \file
/// The analysis classes' work on whole pixels, a row at a time by SIMD. Each result has the bits of the
/// formula on one pixel; only the accumulation into bins is left to the callers, in the order of the pixels.

namespace QZ::Foundation {

/// Pixels that a kernel takes at a time, at most.
inline constexpr std::size_t kRowOfPixels = 256;

/// f(first, n) for the rows of a picture, n up to kRowOfPixels.
template <class Function>
void ForEachRow(std::size_t pixels, Function&& f)
{
    for (std::size_t first = 0; first < pixels; first += kRowOfPixels)
        f(first, std::min(kRowOfPixels, pixels - first));
}

/// The linear colour of each pixel, for any n.
void LinearRow(const ByteTable& linear, const unsigned char* rgba, std::size_t n, Math::CVector3<float>* out);

/// The grey level of each pixel: a curve of the weighted sum of its linear values.
struct GreyArguments {
    const ByteTable& linear;
    const Math::CVector3<float>& weights;
    const ByteCurve& levelOf;
};
void GreyRow(const GreyArguments& arguments, const unsigned char* rgba, std::size_t n, unsigned char* levels);

/// The sums of a hue bin, to all of which a pixel adds: of the weights, of the weights times the second and
/// the third component, and of the weights times the linear luminance.
struct HueSums {
    alignas(32) double of[4];
};
enum class HueSpace { Lab, Luv, IPT };
struct HueArguments {
    HueSpace space;
    CColor::EIlluminant illuminant;
    const ByteTable& linear;
    HueBins binOf;
};
/// Adds each pixel to its bin's sums.
void WeighHues(const HueArguments& arguments, const unsigned char* rgba, std::size_t n, HueSums* sums);

/// The hue bin of each pixel in IPT and its P and T.
struct PTRow {
    std::array<int, kRowOfPixels> bin;
    std::array<float, kRowOfPixels> P;
    std::array<float, kRowOfPixels> T;
};
/// The space of the arguments is not read.
void FindPT(const HueArguments& arguments, const unsigned char* rgba, std::size_t n, PTRow& row);

/// Each pixel in the colour of its hue bin, its intensity and chroma kept, its luma in the fourth byte.
struct RecolorArguments {
    CColor::EIlluminant illuminant;
    const ByteTable& linear;
    const ByteCurve& encode;
    HueBins binOf;
    const Math::CVector2<float>* binColours;   ///< P and T of unit length or less
};
void RecolorRow(const RecolorArguments& arguments, unsigned char* rgba, std::size_t n);

/// Linear RGB to XYZ, adapted, and to the bytes of another RGB. The fourth byte is 255.
struct BalanceArguments {
    const Math::CMatrix3<float>& toXYZ;
    const Math::CMatrix3<float>& adaptation;
    const Math::CMatrix3<float>& toRGB;
    const ByteCurve& encode;
    bool isClamped;   ///< whether the RGB is clamped to 0 to 1 before it is encoded
};
/// For any n.
void BalanceRow(const BalanceArguments& arguments, const Math::CVector3<float>* linear, std::size_t n,
                unsigned char* rgba);

}   // namespace QZ::Foundation
