// SPDX-License-Identifier: MIT
#pragma once

extern "C" {
#include <libavutil/pixfmt.h>
}

#include <array>
#include <vector>

#include "QZ/Math/CMatrix3.h"

namespace QZ::Platform::Movie {

/// Turns encoded colours of other primaries into those of BT.709, in linear light by the sRGB curve. What
/// lies outside their gamut is cut off. Within one level of the exact value.
class PrimariesConversion {
public:
    /// Whether pictures of these primaries need converting: BT.601 (525 and 625 lines), BT.2020 and Display
    /// P3 do, BT.709 and what is not known do not.
    [[nodiscard]] static bool IsNeeded(AVColorPrimaries primaries);

    /// \param primaries  ones that need converting.
    explicit PrimariesConversion(AVColorPrimaries primaries);

    /// Converts BGRA pixels in place; alpha stays.
    void Convert(unsigned char* bgra, int count) const;

    /// Linear RGB of the primaries to linear RGB of BT.709.
    [[nodiscard]] const Math::CMatrix3<double>& Matrix() const { return m_matrix; }

private:
    [[nodiscard]] unsigned char Encoded(float linear) const;

    Math::CMatrix3<double> m_matrix;
    Math::CMatrix3<float> m_floatMatrix;
    std::array<float, 256> m_linear{};
    std::vector<unsigned char> m_encoded;   ///< of equally spaced linear values from 0 to 1
};

}   // namespace QZ::Platform::Movie
