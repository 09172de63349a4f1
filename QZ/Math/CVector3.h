// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

namespace QZ::Math {

/// Three components, x, y and z, lying one after the other in memory: an array of CVector3<float> is an array
/// of floats. CVector3<float> is the colour type of the library; its components follow the name of the space.
///
/// Arithmetic acts on each component by itself. Default construction gives zeros.
template <class T>
struct CVector3 {
    T x{};
    T y{};
    T z{};

    constexpr CVector3() = default;
    constexpr CVector3(T x_, T y_, T z_) : x(x_), y(y_), z(z_) {}

    constexpr void Set(T x_, T y_, T z_)
    {
        x = x_;
        y = y_;
        z = z_;
    }

    /// The component by position, 0 to 2.
    constexpr T& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
    constexpr const T& operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }

    [[nodiscard]] constexpr T Dot(const CVector3& v) const { return x * v.x + y * v.y + z * v.z; }
    [[nodiscard]] constexpr T MagnitudeSquared() const { return Dot(*this); }
    [[nodiscard]] T Magnitude() const { return std::sqrt(MagnitudeSquared()); }

    /// Scales to unit length; a zero vector stays zero.
    void Normalize()
    {
        const T magnitude = Magnitude();
        if (magnitude != T(0))
            *this /= magnitude;
    }

    constexpr CVector3& operator+=(const CVector3& v) { return *this = *this + v; }
    constexpr CVector3& operator*=(const CVector3& v) { return *this = *this * v; }
    constexpr CVector3& operator*=(T s) { return *this = *this * s; }
    constexpr CVector3& operator/=(T s) { return *this = {x / s, y / s, z / s}; }

    friend constexpr CVector3 operator+(const CVector3& a, const CVector3& b)
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr CVector3 operator+(const CVector3& v, T s) { return {v.x + s, v.y + s, v.z + s}; }
    friend constexpr CVector3 operator-(const CVector3& a, const CVector3& b)
    {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr CVector3 operator*(const CVector3& a, const CVector3& b)
    {
        return {a.x * b.x, a.y * b.y, a.z * b.z};
    }
    friend constexpr CVector3 operator/(const CVector3& a, const CVector3& b)
    {
        return {a.x / b.x, a.y / b.y, a.z / b.z};
    }
    friend constexpr CVector3 operator*(const CVector3& v, T s) { return {v.x * s, v.y * s, v.z * s}; }
    friend constexpr CVector3 operator*(T s, const CVector3& v) { return v * s; }
};

}   // namespace QZ::Math
