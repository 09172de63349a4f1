// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Foundation/Color/ElementaryTables.h"
#include "QZ/Foundation/Color/QuickPower.h"
#include "QZ/Math/Detail/Elementary.h"

namespace QZ::Foundation::Double {

using namespace ElementaryTables;
using Math::Detail::Exp;
using Math::Detail::Scaled;

namespace {

/// The natural logarithm of a positive finite x; the relative error is below 2^-98.
DoubleDouble Log(double x)
{
    int k = 0;
    double m = 2.0 * std::frexp(x, &k);   // from 1 to 2
    --k;
    const int i = static_cast<int>((m - 1.0) * 32.0 + 0.5);
    if (i == 32) {
        m *= 0.5;
        ++k;
    }
    const double centre = i == 32 ? 1.0 : 1.0 + i / 32.0;

    // log(m / centre) = 2 atanh(s)
    const DoubleDouble s = DoubleDouble{m - centre, 0.0} / TwoSum(m, centre);
    const DoubleDouble s2 = s * s;
    DoubleDouble series = kInverseOdd[8];
    for (int j = 7; j >= 0; --j)
        series = series * s2 + kInverseOdd[j];
    const DoubleDouble atanh = s * series;
    return kLn2 * static_cast<double>(k) + (kLog[i] + atanh * 2.0);
}

template <class T>
bool IsInteger(T x)
{
    return std::floor(x) == x;
}

template <class T>
bool IsOddInteger(T x)
{
    return IsInteger(x) && !IsInteger(x / 2);
}

/// What needs no arithmetic: a zero, an infinity, a NaN, a negative base with a broken exponent, and 1.
template <class T>
bool IsSpecial(T x, T e)
{
    return !std::isfinite(x) || !std::isfinite(e) || x == 0 || e == 0 || x == 1 || (x < 0 && !IsInteger(e));
}

template <class T>
T PowOfSpecial(T x, T e)
{
    constexpr T kInfinity = std::numeric_limits<T>::infinity();
    if (e == 0 || x == 1)
        return 1;
    if (std::isnan(x) || std::isnan(e))
        return x + e;
    if (std::isinf(e) && x == -1)
        return 1;
    if (std::isinf(e))
        return (std::fabs(x) > 1) == (e > 0) ? kInfinity : T(0);
    if (x == 0 || std::isinf(x)) {
        const T magnitude = (x == 0) == (e > 0) ? T(0) : kInfinity;
        return IsOddInteger(e) ? std::copysign(magnitude, x) : magnitude;
    }
    return std::numeric_limits<T>::quiet_NaN();
}

/// Whether x^e, x > 0, has at most 26 significant bits, so that it can lie midway between two floats.
bool IsShortPower(float x, float e)
{
    int k = 0;
    double m = static_cast<double>(std::frexp(x, &k));
    for (; !IsInteger(m); m *= 2.0)
        --k;
    if (!IsInteger(static_cast<double>(k) * static_cast<double>(e)))
        return false;   // m is odd, and stays so: 2^(k e) has to be a number by itself
    if (m == 1.0)
        return true;
    constexpr double kLimit = 67108864.0;   // 2^26
    double n = static_cast<double>(e);
    if (n < 0.0 || n > 26.0)
        return false;
    for (; !IsInteger(n); n *= 2.0) {   // 3^16 is above 2^24: ends after three steps
        m = std::sqrt(m);
        if (!IsInteger(m))
            return false;
    }
    double power = 1.0;
    for (; n > 0.0 && power < kLimit; --n)
        power *= m;
    return power < kLimit;
}

/// The nearest number of 26 significant bits.
double ToShort(double x)
{
    int k = 0;
    const double m = std::frexp(x, &k);
    return std::ldexp(std::floor(m * 67108864.0 + 0.5), k - 26);
}

}   // namespace

float PowRounded(float x, float exponent)
{
    if (IsSpecial(x, exponent))
        return PowOfSpecial(x, exponent);
    const bool negative = x < 0.0f && IsOddInteger(exponent);
    const float magnitude = std::fabs(x);
    const DoubleDouble log = Log(static_cast<double>(magnitude)) * static_cast<double>(exponent);
    // Beyond 150 lies nothing but overflow and underflow.
    const double clamped = std::fmin(std::fmax(log.high, -150.0), 150.0);
    const Scaled power = Exp(clamped == log.high ? log : DoubleDouble{clamped, 0.0});
    double odd = std::ldexp(RoundToOdd(power.value), power.exponent);
    if (std::fabs(power.value.high - ToShort(power.value.high) + power.value.low) < 0x1p-88 &&
        IsShortPower(magnitude, exponent))
        odd = std::ldexp(ToShort(power.value.high), power.exponent);
    return static_cast<float>(negative ? -odd : odd);
}

double InPairs::Pow(double x, double exponent)
{
    if (IsSpecial(x, exponent))
        return PowOfSpecial(x, exponent);
    const bool negative = x < 0.0 && IsOddInteger(exponent);
    // The least logarithm but 0 is 2^-53, so that 1e20 times any overflows or underflows already.
    const double e = std::fmin(std::fmax(exponent, -1e20), 1e20);
    const DoubleDouble log = Log(std::fabs(x)) * e;
    const double clamped = std::fmin(std::fmax(log.high, -1000.0), 1000.0);
    const Scaled power = Exp(clamped == log.high ? log : DoubleDouble{clamped, 0.0});
    const double magnitude = std::ldexp(power.value.high, power.exponent);
    return negative ? -magnitude : magnitude;
}

double Pow(double x, double exponent)
{
    const Math::Detail::Bracket quick = QuickPow(x, exponent);
    return quick.IsSure() ? quick.below : InPairs::Pow(x, exponent);
}

double Cube(double x)
{
    if (!(std::fabs(x) < 0x1p300))   // the cube, and the digits of the splitting, would overflow
        return x * x * x;
    return (TwoProduct(x, x) * x).high;
}

}   // namespace QZ::Foundation::Double
