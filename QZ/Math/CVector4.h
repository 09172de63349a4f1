// SPDX-License-Identifier: MIT
#pragma once

namespace QZ::Math {

/// Four components, x, y, z and w, lying one after the other in memory. Default construction gives zeros.
template <class T>
struct CVector4 {
    T x{};
    T y{};
    T z{};
    T w{};

    constexpr CVector4() = default;
    constexpr CVector4(T x_, T y_, T z_, T w_) : x(x_), y(y_), z(z_), w(w_) {}

    constexpr void Set(T x_, T y_, T z_, T w_)
    {
        x = x_;
        y = y_;
        z = z_;
        w = w_;
    }

    /// The component by position, 0 to 3.
    constexpr T& operator[](int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    constexpr const T& operator[](int i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
};

}   // namespace QZ::Math
