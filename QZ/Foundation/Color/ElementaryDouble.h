// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// Every elementary function in double precision that the library calls, worked to some 65 bits, and in pairs
/// of doubles where these do not tell the nearest double: the same bits on every machine, whatever its
/// mathematics library. Those in single precision are in Elementary.h.

namespace QZ::Foundation::Double {

/// \name Within 0.5001 units in the last place, 0.75 where a power is subnormal; special values as the
/// functions of std give them.
/// \{
[[nodiscard]] double Pow(double x, double exponent);
[[nodiscard]] double Sin(double x);
[[nodiscard]] double Cos(double x);
[[nodiscard]] double Acos(double x);
[[nodiscard]] double Atan2(double y, double x);
/// x^3 as if it were worked to twice the precision and rounded once.
[[nodiscard]] double Cube(double x);
/// \}

/// The functions worked in pairs of doubles from the start, for any argument; those of the sine and cosine
/// are in QZ/Math/Detail/Elementary.h.
namespace InPairs {
[[nodiscard]] double Pow(double x, double exponent);
[[nodiscard]] double Acos(double x);
[[nodiscard]] double Atan2(double y, double x);
}   // namespace InPairs

/// x^exponent of floats, correctly rounded; special values as std::pow gives them. Slow beside the powers of
/// Elementary.h, which turn to it where a result lies close to the middle between two floats.
///
/// The pair of doubles errs by less than 2^-90. A result that lies midway between two floats is recognised as
/// such. That no other result comes within 2^-90 of a midpoint is shown by trial of every float for the
/// exponents that docs/accuracy.md lists; for others it is likely and no more.
[[nodiscard]] float PowRounded(float x, float exponent);

}   // namespace QZ::Foundation::Double
