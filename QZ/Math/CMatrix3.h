// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Math/CVector3.h"
#include "QZ/Math/Detail/Elementary.h"

namespace QZ::Math {

/// A 3 x 3 matrix, stored row by row. A vector it multiplies is a column: component i of m * v is row i . v.
///
/// Default construction gives zeros.
template <class T>
class CMatrix3 {
public:
    constexpr CMatrix3() = default;

    /// The nine elements row by row.
    constexpr CMatrix3(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
        : m_elements{m00, m01, m02, m10, m11, m12, m20, m21, m22}
    {}

    /// The nine elements row by row.
    constexpr void Set(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
    {
        *this = CMatrix3(m00, m01, m02, m10, m11, m12, m20, m21, m22);
    }

    /// The element at row and column, 0 to 2 each.
    constexpr T& operator()(int row, int column) { return m_elements[3 * row + column]; }
    constexpr const T& operator()(int row, int column) const { return m_elements[3 * row + column]; }

    /// Matrix times column.
    constexpr CVector3<T> operator*(const CVector3<T>& v) const
    {
        const auto row = [&](int i) {
            return (*this)(i, 0) * v.x + (*this)(i, 1) * v.y + (*this)(i, 2) * v.z;
        };
        return {row(0), row(1), row(2)};
    }

    /// Matrix product: (a * b) * v is a * (b * v).
    constexpr CMatrix3 operator*(const CMatrix3& b) const
    {
        CMatrix3 product;
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                product(row, column) = (*this)(row, 0) * b(0, column) + (*this)(row, 1) * b(1, column) +
                                       (*this)(row, 2) * b(2, column);
        return product;
    }

    /// Becomes the diagonal matrix of s.
    constexpr void Scale(const CVector3<T>& s) { Set(s.x, 0, 0, 0, s.y, 0, 0, 0, s.z); }

    /// Becomes the right-handed rotation of columns by an angle in radians about the X axis.
    void RotateX(T angle)
    {
        const T c = Cos(angle);
        const T s = Sin(angle);
        Set(1, 0, 0, 0, c, -s, 0, s, c);
    }

    /// Becomes the right-handed rotation of columns by an angle in radians about the Y axis.
    void RotateY(T angle)
    {
        const T c = Cos(angle);
        const T s = Sin(angle);
        Set(c, 0, s, 0, 1, 0, -s, 0, c);
    }

    /// Becomes the right-handed rotation of columns by an angle in radians about the Z axis.
    void RotateZ(T angle)
    {
        const T c = Cos(angle);
        const T s = Sin(angle);
        Set(c, -s, 0, s, c, 0, 0, 0, 1);
    }

    /// Becomes the shear x' = x + dx z, y' = y + dy z.
    constexpr void ShearZ(T dx, T dy) { Set(1, 0, dx, 0, 1, dy, 0, 0, 1); }

    constexpr void Transpose()
    {
        const CMatrix3 m = *this;
        Set(m(0, 0), m(1, 0), m(2, 0), m(0, 1), m(1, 1), m(2, 1), m(0, 2), m(1, 2), m(2, 2));
    }

private:
    static T Sin(T angle) { return static_cast<T>(Detail::Sin(static_cast<double>(angle))); }
    static T Cos(T angle) { return static_cast<T>(Detail::Cos(static_cast<double>(angle))); }

    T m_elements[9]{};
};

}   // namespace QZ::Math
