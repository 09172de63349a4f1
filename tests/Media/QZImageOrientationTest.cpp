// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZImageOrientation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using QZ::Platform::AffineTransform;

namespace {

struct Result {
    bool known;
    std::int64_t orientation;
    bool operator==(const Result&) const = default;
};

Result Of(const AffineTransform& transform)
{
    Result result = {false, -1};
    result.known = QZImageOrientation::fromTransform(&transform, &result.orientation);
    return result;
}

}   // namespace

TEST(QZImageOrientation, KnowsTheFourRightAngledRotations)
{
    EXPECT_EQ(Of({0, 1, -1, 0, 0, 0}), (Result{true, 3}));
    EXPECT_EQ(Of({0, -1, 1, 0, 0, 0}), (Result{true, 2}));
    EXPECT_EQ(Of({-1, 0, 0, -1, 0, 0}), (Result{true, 1}));
    EXPECT_EQ(Of({1, 0, 0, 1, 0, 0}), (Result{true, 0}));
}

TEST(QZImageOrientation, IgnoresTheTranslation)
{
    EXPECT_EQ(Of({0, 1, -1, 0, 1080, -7.5}), (Result{true, 3}));
    EXPECT_EQ(Of({1, 0, 0, 1, std::nan(""), 1e300}), (Result{true, 0}));
}

TEST(QZImageOrientation, TakesANegativeZeroForZero)
{
    EXPECT_EQ(Of({-0.0, 1, -1, -0.0, 0, 0}), (Result{true, 3}));
}

TEST(QZImageOrientation, CallsEverythingElseUpAndUnknown)
{
    const double s = std::sqrt(0.5);
    EXPECT_EQ(Of({s, s, -s, s, 0, 0}), (Result{false, 0}));
    EXPECT_EQ(Of({-1, 0, 0, 1, 0, 0}), (Result{false, 0}));   // a reflection
    EXPECT_EQ(Of({2, 0, 0, 2, 0, 0}), (Result{false, 0}));
    EXPECT_EQ(Of({std::nextafter(1.0, 2.0), 0, 0, 1, 0, 0}), (Result{false, 0}));
    EXPECT_EQ(Of({std::nan(""), 0, 0, 1, 0, 0}), (Result{false, 0}));
    EXPECT_EQ(Of({0, 0, 0, 0, 0, 0}), (Result{false, 0}));
}
