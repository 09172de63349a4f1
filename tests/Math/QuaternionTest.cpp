// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "QZ/Math/CQuaternion.h"
#include "tests/Support/Floats.h"

using Vector = QZ::Math::CVector3<float>;
using Matrix = QZ::Math::CMatrix3<float>;
using Quaternion = QZ::Math::CQuaternion<float>;

namespace {

/// An element is 1 less twice a sum of two products of once-rounded values: some five roundings below 2^-24.
constexpr float kTolerance = 3e-7f;

void ExpectMatrix(const Matrix& m, const Matrix& expected, float tolerance)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_NEAR(m(row, column), expected(row, column), tolerance) << row << ", " << column;
}

}   // namespace

// A third of a turn about (1, 1, 1) carries x to y, y to z and z to x.
TEST(Quaternion, PermutesTheAxesByAThirdOfATurnAboutTheirDiagonal)
{
    const Matrix m = Quaternion({1, 1, 1}, 2.09439510f).Matrix();
    ExpectMatrix(m, Matrix(0, 0, 1, 1, 0, 0, 0, 1, 0), kTolerance);
}

TEST(Quaternion, NormalisesItsAxis)
{
    for (const float length : {1e-30f, 0.1f, 3.0f, 1e30f}) {
        const Matrix m = Quaternion({length, length, length}, 0.7f).Matrix();
        ExpectMatrix(m, Quaternion({1, 1, 1}, 0.7f).Matrix(), kTolerance);
    }
}

TEST(Quaternion, AgreesWithTheRotationsAboutTheAxes)
{
    for (const float angle : QZ::Test::Randoms(20, -7.0f, 7.0f)) {
        Matrix m;
        m.RotateX(angle);
        ExpectMatrix(Quaternion({2, 0, 0}, angle).Matrix(), m, kTolerance);
        m.RotateY(angle);
        ExpectMatrix(Quaternion({0, 2, 0}, angle).Matrix(), m, kTolerance);
        m.RotateZ(angle);
        ExpectMatrix(Quaternion({0, 0, 2}, angle).Matrix(), m, kTolerance);
    }
}

TEST(Quaternion, IsTheIdentityForNoAngleOrNoAxis)
{
    const Matrix identity(1, 0, 0, 0, 1, 0, 0, 0, 1);
    ExpectMatrix(Quaternion({1, 1, 1}, 0.0f).Matrix(), identity, 0.0f);
    ExpectMatrix(Quaternion({0, 0, 0}, 1.0f).Matrix(), identity, 0.0f);
}
