// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// Every elementary function in double precision that the library calls. Those in single precision are in
/// Elementary.h.

#include <cmath>

namespace QZ::Foundation::Double {

inline double Pow(double x, double exponent)
{
    return std::pow(x, exponent);
}
inline double Sin(double x)
{
    return std::sin(x);
}
inline double Cos(double x)
{
    return std::cos(x);
}
inline double Acos(double x)
{
    return std::acos(x);
}
inline double Atan2(double y, double x)
{
    return std::atan2(y, x);
}

/// The upper half of the digits of x, exactly; |x| below 2^996 (T. J. Dekker, Numer. Math. 18, 1971).
inline double UpperHalf(double x)
{
    const double shifted = x * 134217729.0;   // 2^27 + 1
    return shifted - (shifted - x);
}

/// The error of the rounded product of a and b: a * b is exactly product + ProductError(a, b, product).
inline double ProductError(double a, double b, double product)
{
    const double aHigh = UpperHalf(a);
    const double bHigh = UpperHalf(b);
    const double aLow = a - aHigh;
    const double bLow = b - bHigh;
    return ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow;
}

/// x^3 as if it were worked to twice the precision and rounded once.
inline double Cube(double x)
{
    if (!(std::fabs(x) < 0x1p300))   // The cube, and the digits of the splitting, would overflow.
        return x * x * x;
    const double square = x * x;
    const double cube = square * x;
    return cube + (ProductError(square, x, cube) + ProductError(x, x, square) * x);
}

}   // namespace QZ::Foundation::Double
