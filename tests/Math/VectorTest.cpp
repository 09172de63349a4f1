// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

#include "QZ/Math/CConstants.h"
#include "QZ/Math/CVector2.h"
#include "QZ/Math/CVector3.h"
#include "QZ/Math/CVector4.h"

using QZ::Math::CVector2;
using QZ::Math::CVector3;
using QZ::Math::CVector4;

namespace {

template <class Vector>
void ExpectVector(const Vector& v, double x, double y)
{
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
}
template <class Vector>
void ExpectVector(const Vector& v, double x, double y, double z)
{
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
    EXPECT_EQ(v.z, z);
}

template <class T>
class VectorOf : public testing::Test {};
using FloatAndDouble = testing::Types<float, double>;
TYPED_TEST_SUITE(VectorOf, FloatAndDouble);

}   // namespace

// Callers hand arrays of colours over as arrays of floats.
TEST(Vector, IsItsComponentsAndNothingElse)
{
    static_assert(sizeof(CVector2<float>) == 2 * sizeof(float));
    static_assert(sizeof(CVector3<float>) == 3 * sizeof(float));
    static_assert(sizeof(CVector4<float>) == 4 * sizeof(float));
    static_assert(std::is_trivially_copyable_v<CVector3<float>> &&
                  std::is_standard_layout_v<CVector3<float>>);
    const CVector3<float> colours[2] = {{1, 2, 3}, {4, 5, 6}};
    EXPECT_EQ(static_cast<const void*>(&colours[1]), static_cast<const void*>(&colours[0].x + 3));
}

TYPED_TEST(VectorOf, StartsAtZeroAndTakesItsComponentsInOrder)
{
    using T = TypeParam;
    ExpectVector(CVector2<T>(), 0, 0);
    ExpectVector(CVector3<T>(), 0, 0, 0);
    CVector2<T> two(T(1), T(2));
    CVector3<T> three(T(1), T(2), T(3));
    CVector4<T> four(T(1), T(2), T(3), T(4));
    ExpectVector(two, 1, 2);
    ExpectVector(three, 1, 2, 3);
    ExpectVector(four, 1, 2, 3);
    EXPECT_EQ(four.w, T(4));
    two.Set(T(5), T(6));
    three.Set(T(5), T(6), T(7));
    four.Set(T(5), T(6), T(7), T(8));
    ExpectVector(two, 5, 6);
    ExpectVector(three, 5, 6, 7);
    ExpectVector(four, 5, 6, 7);
    EXPECT_EQ(four.w, T(8));
    EXPECT_EQ(CVector4<T>().w, T(0));
}

TYPED_TEST(VectorOf, IsReadAndWrittenByPosition)
{
    using T = TypeParam;
    CVector2<T> two;
    CVector3<T> three;
    CVector4<T> four;
    for (int i = 0; i < 4; ++i) {
        if (i < 2)
            two[i] = T(i + 1);
        if (i < 3)
            three[i] = T(i + 1);
        four[i] = T(i + 1);
    }
    ExpectVector(two, 1, 2);
    ExpectVector(three, 1, 2, 3);
    const CVector2<T>& constTwo = two;
    const CVector3<T>& constThree = three;
    const CVector4<T>& constFour = four;
    EXPECT_EQ(constTwo[0] + constTwo[1], T(3));
    EXPECT_EQ(constThree[0] + 10 * constThree[1] + 100 * constThree[2], T(321));
    EXPECT_EQ(constFour[0] + 10 * constFour[1] + 100 * constFour[2] + 1000 * constFour[3], T(4321));
}

TYPED_TEST(VectorOf, TwoComponentsAddAndScale)
{
    using T = TypeParam;
    CVector2<T> v(T(3), T(-4));
    EXPECT_EQ(v.Magnitude(), T(5));
    EXPECT_EQ(v.Dot({T(2), T(1)}), T(2));
    ExpectVector(v * T(2), 6, -8);
    ExpectVector(T(2) * v, 6, -8);
    ExpectVector(v / T(2), 1.5, -2);
    ExpectVector(v + CVector2<T>(T(1), T(1)), 4, -3);
    ExpectVector(v - CVector2<T>(T(1), T(1)), 2, -5);
    ExpectVector(v *= T(2), 6, -8);
    ExpectVector(v /= T(4), 1.5, -2);
    ExpectVector(v += CVector2<T>(T(1), T(2)), 2.5, 0);
}

TYPED_TEST(VectorOf, ThreeComponentsAddMultiplyAndScale)
{
    using T = TypeParam;
    CVector3<T> v(T(2), T(-4), T(8));
    const CVector3<T> w(T(4), T(2), T(-2));
    EXPECT_EQ(v.Dot(w), T(-16));
    EXPECT_EQ(v.MagnitudeSquared(), T(84));
    EXPECT_EQ(CVector3<T>(T(2), T(3), T(6)).Magnitude(), T(7));
    ExpectVector(v + w, 6, -2, 6);
    ExpectVector(v + T(1), 3, -3, 9);
    ExpectVector(v - w, -2, -6, 10);
    ExpectVector(v * w, 8, -8, -16);
    ExpectVector(v / w, 0.5, -2, -4);
    ExpectVector(v * T(2), 4, -8, 16);
    ExpectVector(T(2) * v, 4, -8, 16);
    ExpectVector(v += w, 6, -2, 6);
    ExpectVector(v *= w, 24, -4, -12);
    ExpectVector(v *= T(2), 48, -8, -24);
    ExpectVector(v /= T(8), 6, -1, -3);
}

TYPED_TEST(VectorOf, NormalisesToUnitLengthAndLeavesZeroZero)
{
    using T = TypeParam;
    CVector2<T> two(T(3), T(4));
    two.Normalize();
    ExpectVector(two, T(3) / T(5), T(4) / T(5));
    CVector3<T> three(T(2), T(-3), T(6));
    three.Normalize();
    ExpectVector(three, T(2) / T(7), T(-3) / T(7), T(6) / T(7));
    CVector2<T> zero2;
    zero2.Normalize();
    ExpectVector(zero2, 0, 0);
    CVector3<T> zero3;
    zero3.Normalize();
    ExpectVector(zero3, 0, 0, 0);
}

// Pi to 21 digits, Abramowitz and Stegun, table 1.1. A literal is rounded once, so are the two quotients.
TEST(Constants, ArePiAndWhatFollowsFromIt)
{
    using QZ::Math::CConstants;
    static_assert(std::is_same_v<decltype(CConstants::PI), const double>);
    EXPECT_EQ(CConstants::PI, 3.14159265358979323846);
    EXPECT_EQ(CConstants::TwoPI, 6.28318530717958647693);
    EXPECT_EQ(CConstants::DegreesToRadians, 0.0174532925199432957692);
    EXPECT_EQ(CConstants::RadiansToDegrees, 57.2957795130823208768);
}
