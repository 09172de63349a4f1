// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

namespace QZ::Math {

/// Two components, x and y, lying one after the other in memory. T is float or double.
///
/// Arithmetic acts on each component by itself. Default construction gives zeros.
template <class T>
struct CVector2 {
    T x{};
    T y{};

    constexpr CVector2() = default;
    constexpr CVector2(T x_, T y_) : x(x_), y(y_) {}

    constexpr void Set(T x_, T y_)
    {
        x = x_;
        y = y_;
    }

    /// The component by position, 0 or 1.
    constexpr T& operator[](int i) { return i == 0 ? x : y; }
    constexpr const T& operator[](int i) const { return i == 0 ? x : y; }

    [[nodiscard]] constexpr T Dot(const CVector2& v) const { return x * v.x + y * v.y; }
    [[nodiscard]] constexpr T MagnitudeSquared() const { return Dot(*this); }
    [[nodiscard]] T Magnitude() const { return std::sqrt(MagnitudeSquared()); }

    /// Scales to unit length; a zero vector stays zero.
    void Normalize()
    {
        const T magnitude = Magnitude();
        if (magnitude != T(0))
            *this /= magnitude;
    }

    constexpr CVector2& operator+=(const CVector2& v) { return *this = *this + v; }
    constexpr CVector2& operator*=(T s) { return *this = *this * s; }
    constexpr CVector2& operator/=(T s) { return *this = *this / s; }

    friend constexpr CVector2 operator+(const CVector2& a, const CVector2& b)
    {
        return {a.x + b.x, a.y + b.y};
    }
    friend constexpr CVector2 operator-(const CVector2& a, const CVector2& b)
    {
        return {a.x - b.x, a.y - b.y};
    }
    friend constexpr CVector2 operator*(const CVector2& v, T s) { return {v.x * s, v.y * s}; }
    friend constexpr CVector2 operator*(T s, const CVector2& v) { return v * s; }
    friend constexpr CVector2 operator/(const CVector2& v, T s) { return {v.x / s, v.y / s}; }
};

}   // namespace QZ::Math
