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

/// f of each float of a Lane.
template <class Function>
HWY_INLINE Lane OneByOne(Lane x, Function&& f)
{
    HWY_ALIGN float values[HWY_MAX_BYTES / sizeof(float)];
    hn::Store(x.vector, Lane::Tag(), values);
    for (std::size_t i = 0; i < Lane::Size(); ++i)
        values[i] = f(values[i]);
    return hn::Load(Lane::Tag(), values);
}

template <Exponent exponent>
HWY_INLINE Lane Pow(Lane x)
{
    return OneByOne(x, [](float v) { return Pow<exponent>(v); });
}
HWY_INLINE Lane Sin(Lane x)
{
    return OneByOne(x, [](float v) { return Sin(v); });
}
HWY_INLINE Lane Cos(Lane x)
{
    return OneByOne(x, [](float v) { return Cos(v); });
}
HWY_INLINE Lane Atan2(Lane y, Lane x)
{
    HWY_ALIGN float divisors[HWY_MAX_BYTES / sizeof(float)];
    hn::Store(x.vector, Lane::Tag(), divisors);
    std::size_t i = 0;
    return OneByOne(y, [&](float v) { return Atan2(v, divisors[i++]); });
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
