// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "tests/Support/Reference.h"

using namespace QZ::Test;

namespace {

void ExpectMatrix(const Matrix& actual, const Matrix& expected, float tolerance)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_NEAR(actual(row, column), expected(row, column), tolerance) << row << ", " << column;
}

const Matrix kIdentity(1, 0, 0, 0, 1, 0, 0, 0, 1);

}   // namespace

TEST(ChromaticAdaptation, AgreesWithTheReference)
{
    ExpectReference("ChromaticAdaptation",
                    {{"ChromaticAdaptationMatrix", [](const ReferenceRow& r) {
                          return List(Color::ChromaticAdaptationMatrix(r.ColourAt(0), r.ColourAt(1)));
                      }}});
}

// B. Lindbloom's table of Bradford-adapted matrices, D65 to D50 and back; his D50 is (0.96422, 1, 0.82521).
TEST(ChromaticAdaptation, GivesThePublishedMatricesBetweenD65AndD50)
{
    const Colour d65(0.95047f, 1.0f, 1.08883f);
    const Colour d50(0.96422f, 1.0f, 0.82521f);
    constexpr float sevenDecimals = 4e-7f;   // the published digits, and some six roundings
    ExpectMatrix(Color::ChromaticAdaptationMatrix(d65, d50),
                 Matrix(1.0478112f, 0.0228866f, -0.0501270f, 0.0295424f, 0.9904844f, -0.0170491f, -0.0092345f,
                        0.0150436f, 0.7521316f),
                 sevenDecimals);
    ExpectMatrix(Color::ChromaticAdaptationMatrix(d50, d65),
                 Matrix(0.9555766f, -0.0230393f, 0.0631636f, -0.0282895f, 1.0099416f, 0.0210077f, 0.0122982f,
                        -0.0204830f, 1.3299098f),
                 sevenDecimals);
}

// The Bradford matrix and its inverse are rounded to four and seven decimals.
TEST(ChromaticAdaptation, IsTheIdentityBetweenEqualWhites)
{
    for (const Colour& w :
         {Color::XYZReference(Color::eD50), Color::XYZReference(Color::eD65), Colour(1, 1, 1)})
        ExpectMatrix(Color::ChromaticAdaptationMatrix(w, w), kIdentity, 5e-7f);
}

TEST(ChromaticAdaptation, CarriesOneWhiteToTheOther)
{
    for (const Colour& source : RandomColours(50, 0.5f, 1.2f))
        for (const Colour& destination : RandomColours(5, 0.5f, 1.2f, 2)) {
            const Colour carried = Color::ChromaticAdaptationMatrix(source, destination) * source;
            for (int i = 0; i < 3; ++i)
                EXPECT_NEAR(carried[i], destination[i], 4e-6f);   // some ten roundings of numbers up to 3
        }
}

TEST(ChromaticAdaptation, IsNotFiniteForAWhiteWithoutAConeResponse)
{
    const Matrix m = Color::ChromaticAdaptationMatrix({0, 0, 0}, {1, 1, 1});
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_FALSE(std::isfinite(m(row, column)));
    EXPECT_TRUE(std::isnan(Color::ChromaticAdaptationMatrix({kNaN, 1, 1}, {1, 1, 1})(0, 0)));
}
