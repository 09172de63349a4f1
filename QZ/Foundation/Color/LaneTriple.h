// SPDX-License-Identifier: MIT

/// \file
/// Three Lanes as one number type of the formulas: a curve of each component of a colour, worked together.

#if defined(QZ_FOUNDATION_COLOR_LANETRIPLE) == defined(HWY_TARGET_TOGGLE)
#ifdef QZ_FOUNDATION_COLOR_LANETRIPLE
#undef QZ_FOUNDATION_COLOR_LANETRIPLE
#else
#define QZ_FOUNDATION_COLOR_LANETRIPLE
#endif

#include "QZ/Foundation/Color/Lane.h"

HWY_BEFORE_NAMESPACE();
namespace QZ::Foundation::QZ_TARGET {

using LaneTriple = Vec3<Lane>;

struct TripleMask {
    LaneMask x;
    LaneMask y;
    LaneMask z;
};

HWY_INLINE LaneTriple operator+(const LaneTriple& a, const LaneTriple& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
HWY_INLINE LaneTriple operator-(const LaneTriple& a, const LaneTriple& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
HWY_INLINE LaneTriple operator*(const LaneTriple& a, const LaneTriple& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
HWY_INLINE LaneTriple operator-(const LaneTriple& a)
{
    return {-a.x, -a.y, -a.z};
}
HWY_INLINE TripleMask operator>(const LaneTriple& a, const LaneTriple& b)
{
    return {a.x > b.x, a.y > b.y, a.z > b.z};
}
HWY_INLINE TripleMask operator>=(const LaneTriple& a, const LaneTriple& b)
{
    return {a.x >= b.x, a.y >= b.y, a.z >= b.z};
}
HWY_INLINE LaneTriple Abs(const LaneTriple& a)
{
    return {Abs(a.x), Abs(a.y), Abs(a.z)};
}
HWY_INLINE LaneTriple Select(const TripleMask& mask, const LaneTriple& a, const LaneTriple& b)
{
    return {Select(mask.x, a.x, b.x), Select(mask.y, a.y, b.y), Select(mask.z, a.z, b.z)};
}
template <class A, class B>
HWY_INLINE LaneTriple Choose(const TripleMask& mask, const LaneTriple& x, A&& a, B&& b)
{
    return Select(mask, a(Select(mask, x, LaneTriple(1.0f))), b(x));
}

}   // namespace QZ::Foundation::QZ_TARGET
HWY_AFTER_NAMESPACE();

#endif
