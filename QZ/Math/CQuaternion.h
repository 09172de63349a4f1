// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Math/CMatrix3.h"
#include "QZ/Math/CVector3.h"
#include "QZ/Math/Detail/Elementary.h"

namespace QZ::Math {

/// A rotation, as a unit quaternion.
template <class T>
class CQuaternion {
public:
    /// Right-handed rotation by an angle in radians about an axis of any length; a zero axis gives the
    /// identity, whatever the angle.
    CQuaternion(const CVector3<T>& axis, T angle)
    {
        CVector3<double> unit(axis.x, axis.y, axis.z);
        unit.Normalize();
        const double half = 0.5 * static_cast<double>(angle);
        const CVector3<double> v = unit * Detail::Sin(half);
        m_vector = {static_cast<T>(v.x), static_cast<T>(v.y), static_cast<T>(v.z)};
        m_scalar = static_cast<T>(Detail::Cos(half));
    }

    /// The rotation as a matrix for column vectors.
    [[nodiscard]] CMatrix3<T> Matrix() const
    {
        const auto [x, y, z] = m_vector;
        const T w = m_scalar;
        return {1 - 2 * (y * y + z * z), 2 * (x * y - w * z),     2 * (x * z + w * y),
                2 * (x * y + w * z),     1 - 2 * (x * x + z * z), 2 * (y * z - w * x),
                2 * (x * z - w * y),     2 * (y * z + w * x),     1 - 2 * (x * x + y * y)};
    }

private:
    CVector3<T> m_vector;
    T m_scalar{};
};

}   // namespace QZ::Math
