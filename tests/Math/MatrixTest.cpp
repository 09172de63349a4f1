// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "QZ/Math/CMatrix3.h"
#include "tests/Support/Floats.h"

using QZ::Math::CMatrix3;
using Vector = QZ::Math::CVector3<float>;
using Matrix = CMatrix3<float>;

namespace {

const Matrix kCounting(1, 2, 3, 4, 5, 6, 7, 8, 9);

/// Each element within `tolerance`, which is 0 unless the test says why.
void ExpectMatrix(const Matrix& m, const float (&expected)[9], float tolerance = 0.0f)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_NEAR(m(row, column), expected[3 * row + column], tolerance) << row << ", " << column;
}
void ExpectVector(const Vector& v, float x, float y, float z, float tolerance = 0.0f)
{
    EXPECT_NEAR(v.x, x, tolerance);
    EXPECT_NEAR(v.y, y, tolerance);
    EXPECT_NEAR(v.z, z, tolerance);
}

// A sine or cosine that is rounded once, times 1.
constexpr float kHalfUlp = 0x1p-25f;
constexpr float kQuarterTurn = 1.57079633f;   // 4.4e-8 short of pi / 2, and the cosine shows it

}   // namespace

TEST(Matrix, TakesItsElementsRowByRowAndVectorsAsColumns)
{
    EXPECT_EQ(kCounting(0, 1), 2.0f);
    EXPECT_EQ(kCounting(1, 0), 4.0f);
    ExpectVector(kCounting * Vector(1, 10, 100), 321, 654, 987);
}

TEST(Matrix, StartsAtZeroAndIsSetRowByRow)
{
    Matrix m;
    ExpectMatrix(m, {0, 0, 0, 0, 0, 0, 0, 0, 0});
    m.Set(1, 2, 3, 4, 5, 6, 7, 8, 9);
    ExpectMatrix(m, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    m(2, 1) = 80;
    ExpectMatrix(m, {1, 2, 3, 4, 5, 6, 7, 80, 9});
}

// Worked by hand.
TEST(Matrix, MultipliesRowsByColumns)
{
    const Matrix b(0, 1, 0, 2, 0, 1, 1, 0, 3);
    ExpectMatrix(kCounting * b, {7, 1, 11, 16, 4, 23, 25, 7, 35});
    const Vector v(1, -1, 2);
    ExpectVector((kCounting * b) * v, 28, 58, 88);
    ExpectVector(kCounting * (b * v), 28, 58, 88);
}

TEST(Matrix, BecomesADiagonalWhateverItHeldBefore)
{
    Matrix m = kCounting;
    m.Scale({2, 3, 4});
    ExpectMatrix(m, {2, 0, 0, 0, 3, 0, 0, 0, 4});
}

TEST(Matrix, TransposesInPlace)
{
    Matrix m = kCounting;
    m.Transpose();
    ExpectMatrix(m, {1, 4, 7, 2, 5, 8, 3, 6, 9});
}

TEST(Matrix, ShearsXAndYByZAndTransposedZByXAndY)
{
    Matrix m = kCounting;
    m.ShearZ(2, 3);
    ExpectMatrix(m, {1, 0, 2, 0, 1, 3, 0, 0, 1});
    m.Transpose();
    ExpectVector(m * Vector(10, 100, 1), 10, 100, 321);
}

// A quarter turn carries each axis onto the next in the right-handed order x, y, z.
TEST(Matrix, RotatesRightHandedAboutEachAxis)
{
    Matrix m;
    m.RotateX(kQuarterTurn);
    ExpectVector(m * Vector(0, 1, 0), 0, 0, 1, 5e-8f);
    ExpectVector(m * Vector(1, 0, 0), 1, 0, 0);
    m.RotateY(kQuarterTurn);
    ExpectVector(m * Vector(0, 0, 1), 1, 0, 0, 5e-8f);
    ExpectVector(m * Vector(0, 1, 0), 0, 1, 0);
    m.RotateZ(kQuarterTurn);
    ExpectVector(m * Vector(1, 0, 0), 0, 1, 0, 5e-8f);
    ExpectVector(m * Vector(0, 0, 1), 0, 0, 1);
}

// cos 0.6 = 0.825335614909678, sin 0.6 = 0.564642473395035; 0.6f is 2.4e-8 above 0.6.
TEST(Matrix, HoldsTheCosineAndSineOfItsAngle)
{
    constexpr float c = 0.8253356f;
    constexpr float s = 0.5646425f;
    constexpr float tolerance = kHalfUlp + 2.4e-8f + 2.6e-8f;   // the element, the angle, the digits above
    Matrix m;
    m.RotateX(0.6f);
    ExpectMatrix(m, {1, 0, 0, 0, c, -s, 0, s, c}, tolerance);
    m.RotateY(0.6f);
    ExpectMatrix(m, {c, 0, s, 0, 1, 0, -s, 0, c}, tolerance);
    m.RotateZ(0.6f);
    ExpectMatrix(m, {c, -s, 0, s, c, 0, 0, 0, 1}, tolerance);
}

// tan of the second angle is 1 / sqrt(2): the colour adjustments rely on this pair.
TEST(Matrix, CarriesTheGreyAxisOntoZInTwoRotations)
{
    Matrix x;
    Matrix y;
    x.RotateX(0.785398163f);
    y.RotateY(-0.61547965f);
    ExpectVector((y * x) * Vector(1, 1, 1), 0, 0, std::sqrt(3.0f),
                 4e-7f);   // about six roundings of 1.2e-7 / 2
}

TEST(Matrix, RotationsKeepLengthsAndUndoEachOther)
{
    for (const float angle : QZ::Test::Randoms(50, -10.0f, 10.0f)) {
        Matrix there;
        Matrix back;
        there.RotateY(angle);
        back.RotateY(-angle);
        // Two products of rounded elements, each with an error of at most three half units of 1.
        ExpectMatrix(back * there, {1, 0, 0, 0, 1, 0, 0, 0, 1}, 6 * kHalfUlp);
        back = there;
        back.Transpose();
        ExpectMatrix(back * there, {1, 0, 0, 0, 1, 0, 0, 0, 1}, 6 * kHalfUlp);
    }
}
