// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

#include "QZ/Foundation/Color/Exponent.h"

namespace QZ::Bench {

/// A float whose powers, exponentials and angles are the C library's: what the formulas cost as one would
/// write them without this library's elementary functions. Another number type of the formula templates.
struct Plain {
    float value;

    Plain() = default;
    Plain(float x) : value(x) {}
};

inline Plain operator+(Plain a, Plain b)
{
    return a.value + b.value;
}
inline Plain operator-(Plain a, Plain b)
{
    return a.value - b.value;
}
inline Plain operator*(Plain a, Plain b)
{
    return a.value * b.value;
}
inline Plain operator/(Plain a, Plain b)
{
    return a.value / b.value;
}
inline Plain operator-(Plain a)
{
    return -a.value;
}
inline bool operator<(Plain a, Plain b)
{
    return a.value < b.value;
}
inline bool operator>(Plain a, Plain b)
{
    return a.value > b.value;
}
inline bool operator<=(Plain a, Plain b)
{
    return a.value <= b.value;
}
inline bool operator>=(Plain a, Plain b)
{
    return a.value >= b.value;
}
inline bool operator==(Plain a, Plain b)
{
    return a.value == b.value;
}
inline bool operator!=(Plain a, Plain b)
{
    return a.value != b.value;
}

inline Plain Select(bool mask, Plain a, Plain b)
{
    return mask ? a : b;
}
template <class A, class B>
Plain Choose(bool mask, Plain x, A&& a, B&& b)
{
    return mask ? a(x) : b(x);
}
inline Plain Abs(Plain x)
{
    return std::fabs(x.value);
}
inline Plain Sqrt(Plain x)
{
    return std::sqrt(x.value);
}
inline Plain Floor(Plain x)
{
    return std::floor(x.value);
}
inline bool IsNegative(Plain x)
{
    return std::signbit(x.value);
}
inline Plain CopySign(Plain x, Plain sign)
{
    return std::copysign(x.value, sign.value);
}
template <class V, class Function>
V Each(const V& v, Function&& f)
{
    return {f(v.x), f(v.y), f(v.z)};
}

template <Foundation::Exponent exponent>
Plain Pow(Plain x)
{
    return std::pow(x.value, Foundation::Value(exponent));
}
struct PlainSineAndCosine {
    Plain sine;
    Plain cosine;
};
inline PlainSineAndCosine SinCos(Plain x)
{
    return {std::sin(x.value), std::cos(x.value)};
}
inline Plain Atan2(Plain y, Plain x)
{
    return std::atan2(y.value, x.value);
}

}   // namespace QZ::Bench
