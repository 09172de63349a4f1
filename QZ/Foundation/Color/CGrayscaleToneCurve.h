// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Export.h"

namespace QZ::Foundation {

/// A tone curve from grey level to grey level, as a table: gamma, a toe that darkens the shadows, a shoulder
/// that lifts the highlights to white, and a black and a white point.
///
/// Toe and shoulder blend by the cubic smoothstep s(t) = (3 - 2t) t^2, t being clamped to 0 to 1 and NaN
/// counting as 0. Arithmetic is in single precision.
/// \code
///     CGrayscaleToneCurve curve;
///     curve.Compute(0.1f, 0.9f, 1.0f, 0.0f, 1.0f);   // black at 10 %, white at 90 %, straight in between
///     const int level = curve.lookupTable[128];
/// \endcode
class QZ_API CGrayscaleToneCurve {
public:
    std::vector<int> lookupTable;   ///< The output level of each of the 256 input levels.
    float shoulderStart = 0.0f;     ///< The value at which the shoulder begins; kept when it is not used.
    float toeScale = 0.0f;          ///< 1 / toe; kept when it is not used.
    float shoulderScale = 0.0f;     ///< 1 / (1 - shoulderStart); kept when it is not used.

    /// Fills the table with 256 levels.
    ///
    /// A level i stands for i / 255. The curve is (i / 255)^gamma; then x becomes s(x / toe) x, the toe, and
    /// of that (1 - S) s(x / toe) x + S with S = s((x - shoulder) / (1 - shoulder)), the shoulder. Black and
    /// white point rescale the input of that curve, rounded to a level.
    ///
    /// \param black, white  in the unit range; used if black > 0 or white < 1. Equal ones send everything to the
    ///                      ends of the curve.
    /// \param gamma         1 for none. A negative one gives levels above 255, which are not clamped; what is
    ///                      infinite or beyond an int becomes 255, and NaN 0.
    /// \param toe           used if 0 < toe <= 1.
    /// \param shoulder      used if 0 <= shoulder < 1.
    void Compute(float black, float white, float gamma, float toe, float shoulder);

    /// s(x * toeScale): the weight of the toe, 0 to 1.
    [[nodiscard]] float ToeSmoothstep(float x) const;
    /// s((x - shoulderStart) * shoulderScale): the weight of the shoulder, 0 to 1.
    [[nodiscard]] float ShoulderSmoothstep(float x) const;

private:
    void BendByToeAndShoulder(float toe, float shoulder, std::vector<float>& curve);
};

}   // namespace QZ::Foundation
