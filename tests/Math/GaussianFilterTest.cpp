// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "QZ/Math/CDiscreteGaussianFilter.h"

namespace {

std::vector<double> Coefficients(double deviation, double spacing = 1.0)
{
    std::vector<double> coefficients = {9.0, 9.0};
    QZ::Math::CDiscreteGaussianFilter::CoefficientsByStandardDeviation1D(deviation, spacing, coefficients);
    return coefficients;
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const std::vector<double> kSingle = {1.0};

}   // namespace

// exp(-x^2 / 2) for x = 0 to 4, over their sum on both sides, 2.5066208; worked with 30 digits.
TEST(GaussianFilter, SamplesTheBellAtTheSpacing)
{
    const std::vector<double> c = Coefficients(1.0);
    ASSERT_EQ(c.size(), 9u);
    const double expected[] = {0.3989434693560977, 0.2419714456566007, 0.0539911274207044,
                               0.004431861620031265, 0.0001338306246147418};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_NEAR(c[4 + i], expected[i], 1e-15) << i;   // an exponential, nine sums and a division
}

TEST(GaussianFilter, IsSymmetricOddAndSumsToOneWithThePeakInTheMiddle)
{
    for (const double deviation : {1e-300, 1e-3, 0.2, 0.25, 1.0 / 3, 1.0, 2.5, 7.0, 64.0, 1000.0}) {
        const std::vector<double> c = Coefficients(deviation);
        ASSERT_EQ(c.size() % 2, 1u) << deviation;
        const std::size_t middle = c.size() / 2;
        EXPECT_GE(static_cast<double>(middle), deviation);
        // Each of n coefficients has a relative error of about 2^-52, and so has their sum.
        EXPECT_NEAR(std::accumulate(c.begin(), c.end(), 0.0), 1.0, 1e-13) << deviation;
        for (std::size_t i = 1; i <= middle; ++i) {
            EXPECT_EQ(c[middle - i], c[middle + i]) << deviation;
            EXPECT_LT(c[middle + i], c[middle + i - 1] + (c[middle + i - 1] == 0.0 ? 1.0 : 0.0)) << deviation;
        }
    }
}

TEST(GaussianFilter, MeasuresTheDeviationInSpacings)
{
    EXPECT_EQ(Coefficients(3.0, 2.0), Coefficients(1.5, 1.0));
    EXPECT_EQ(Coefficients(1.5, 0.0), Coefficients(1.5));
    EXPECT_EQ(Coefficients(1.5, -2.0), Coefficients(1.5));
    EXPECT_EQ(Coefficients(1.5, kNaN), Coefficients(1.5));
    EXPECT_EQ(Coefficients(1.5, kInfinity), Coefficients(1.5));
}

TEST(GaussianFilter, IsTheSingleCoefficientOneForADeviationThatIsNoWidth)
{
    for (const double deviation : {0.0, -0.0, -1.0, -kInfinity, kInfinity, kNaN, 1e12})
        EXPECT_EQ(Coefficients(deviation), kSingle) << deviation;
}

// The quotient of deviation and spacing underflows to 0, or overflows.
TEST(GaussianFilter, IsTheSingleCoefficientOneForAQuotientOutOfRange)
{
    EXPECT_EQ(Coefficients(1e-200, 1e200), kSingle);
    EXPECT_EQ(Coefficients(1e200, 1e-200), kSingle);
}
