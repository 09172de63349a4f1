// SPDX-License-Identifier: MIT

/// \file
/// Every power, exponential, sine and arc tangent of the library comes from here.

#if defined(QZ_FOUNDATION_COLOR_ELEMENTARY) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_ELEMENTARY
#undef QZ_FOUNDATION_COLOR_ELEMENTARY
#else
#define QZ_FOUNDATION_COLOR_ELEMENTARY
#endif

#include <cmath>

#include "QZ/Foundation/Color/Exponent.h"
#include "QZ/Foundation/Color/Lane.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

/// x to a fixed power, with the special values of std::pow.
template <Exponent exponent>
HWY_INLINE float Pow(float x)
{
    return std::pow(x, Value(exponent));
}

/// x to any power.
HWY_INLINE float Pow(float x, float exponent)
{
    return std::pow(x, exponent);
}

HWY_INLINE float Exp(float x)
{
    return std::exp(x);
}
HWY_INLINE float Exp2(float x)
{
    return std::exp2(x);
}
HWY_INLINE float Log(float x)
{
    return std::log(x);
}
HWY_INLINE float Sin(float x)
{
    return std::sin(x);
}
HWY_INLINE float Cos(float x)
{
    return std::cos(x);
}
HWY_INLINE float Atan2(float y, float x)
{
    return std::atan2(y, x);
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
