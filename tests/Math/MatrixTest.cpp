// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "QZ/Math/CMatrix3.h"

using QZ::Math::CMatrix3;
using QZ::Math::CVector3;

TEST(Matrix, TakesItsElementsRowByRowAndVectorsAsColumns)
{
    const CMatrix3<float> m(1, 2, 3, 4, 5, 6, 7, 8, 9);
    EXPECT_EQ(m(0, 1), 2.0f);
    EXPECT_EQ(m(1, 0), 4.0f);
    const CVector3<float> v = m * CVector3<float>(1, 10, 100);
    EXPECT_EQ(v.x, 321.0f);
    EXPECT_EQ(v.y, 654.0f);
    EXPECT_EQ(v.z, 987.0f);
}
