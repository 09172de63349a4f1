// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"
#include "QZ/Math/CVector3.h"

namespace QZ::Foundation {

/// The largest chroma that a Luv colour of a given lightness and hue has within the gamut of sRGB.
///
/// On the hundredth scale: L from 0 to 1, u, v and chroma a hundredth of their CIE values. The gamut's sides
/// are those of HSLuv (HSLuv.h). Every function may be called from any thread.
/// \code
///     const QZ::Math::CVector3<float> red(0.53f, 1.75f, 0.38f);
///     const float chroma = CLUVMaximumChromaMap::MaxChromaForLH(red);   // about 1.78
/// \endcode
class QZ_API CLUVMaximumChromaMap {
public:
    /// The largest chroma at the lightness and the hue of a colour, evaluated directly.
    /// \param luv  u and v only set the hue; (0, 0) has the hue 0.
    /// \return  0 at black and white; infinity for NaN.
    [[nodiscard]] static float MaxChromaForLH(const Math::CVector3<float>& luv);

    /// A table of maximum chromas over lightness and hue.
    /// \return  hueCount * lightnessCount values, the one of row i and column j at i * hueCount + j. Row i is
    ///          L = i / (lightnessCount - 1), the last one exactly 1; column j is the hue
    ///          (j + 0.5) * 360 / hueCount - 180 degrees. No value is below 0 or NaN. Empty when a count is
    ///          0; as many zeros as their product says when both are negative.
    /// \throws std::length_error  when the product of the counts is negative.
    [[nodiscard]] static std::vector<float> Compute(int hueCount, int lightnessCount);

    /// Compute(256, 256) as IEEE 754 binary16, rounded to nearest, ties to even.
    /// \return  32768 words of two values each, the one with the even index in the low 16 bits. Constant
    /// data,
    ///          valid for the life of the process.
    [[nodiscard]] static const unsigned int* PreComputedHalfFloatsAsUnsignedInts();
};

}   // namespace QZ::Foundation
