// SPDX-License-Identifier: MIT
#pragma once

namespace QZ::Foundation {

/// A curve of bytes before it is rounded, nearly: quartics over 32 intervals, for vectors that look up 32
/// floats by a permutation, which is quicker than a gather. What it says holds unless it lies near a step.
struct ByteEstimate {
    /// Added to an argument from 0 to 1, whose exponent and next two bits then tell the interval: from here
    /// on these do not vary without end, and the sRGB curve has its corner where an interval begins.
    static constexpr float kShift = 0x1.8p-7f - 0.0031308f;
    /// What the estimate may err by.
    static constexpr float kMargin = 0x1p-13f;

    /// Of t^0 to t^4, t the place in the interval, from -1/8 to 1/8; NaN where a quartic is not near enough.
    alignas(64) float coefficients[5][32];

    /// \param unitOf  the curve, to the unit range
    /// \param offset  added to 255 times it, so that it is to be rounded to the nearest integer
    ByteEstimate(float (*unitOf)(float), double offset);
};

}   // namespace QZ::Foundation
