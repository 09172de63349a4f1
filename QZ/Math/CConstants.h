// SPDX-License-Identifier: MIT
#pragma once

namespace QZ::Math {

/// Numeric constants, in double precision.
struct CConstants {
    static constexpr double PI = 3.14159265358979323846;
    static constexpr double TwoPI = 6.28318530717958647693;
    static constexpr double DegreesToRadians = PI / 180.0;
    static constexpr double RadiansToDegrees = 180.0 / PI;
};

}   // namespace QZ::Math
