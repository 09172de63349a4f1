// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <climits>
#include <limits>
#include <numeric>
#include <random>

#include "QZ/Foundation/Analysis/COtsuMethod.h"

using QZ::Foundation::COtsuMethod;

namespace {

/// All four forms, which agree on histograms of small whole numbers.
void ExpectSolution(int expected, int total, const std::vector<int>& counts)
{
    const std::vector<float> weights(counts.begin(), counts.end());
    EXPECT_EQ((COtsuMethod<float, float>::Solution(total, weights)), expected);
    EXPECT_EQ((COtsuMethod<float, int>::Solution(total, counts)), expected);
    EXPECT_EQ((COtsuMethod<double, float>::Solution(total, weights)), expected);
    EXPECT_EQ((COtsuMethod<double, int>::Solution(total, counts)), expected);
}

/// A variance as an exact fraction; for small counts its parts fit.
struct Fraction {
    long long numerator = 0;
    long long denominator = 1;

    friend bool operator<(const Fraction& a, const Fraction& b)
    {
        return a.numerator * b.denominator < b.numerator * a.denominator;
    }
};

/// The variance between the bins up to `split` and those above, (nF sB - nB sF)^2 / (nB nF), each class
/// summed afresh; 0 if one of them is empty.
Fraction Variance(const std::vector<int>& counts, int split)
{
    long long nB = 0, nF = 0, sB = 0, sF = 0;
    for (int i = 0; i < static_cast<int>(counts.size()); ++i) {
        const long long count = counts[static_cast<std::size_t>(i)];
        (i <= split ? nB : nF) += count;
        (i <= split ? sB : sF) += count * i;
    }
    if (nB == 0 || nF == 0)
        return {};
    return {(nF * sB - nB * sF) * (nF * sB - nB * sF), nB * nF};
}

}   // namespace

TEST(OtsuMethod, SplitsTheExampleOfItsHeader)
{
    ExpectSolution(2, 16, {0, 7, 2, 0, 1, 6});
}

TEST(OtsuMethod, GivesZeroForAnEmptyHistogram)
{
    ExpectSolution(0, 0, {});
    ExpectSolution(0, 10, {});
}

TEST(OtsuMethod, GivesZeroWhenAllWeightIsInOneBin)
{
    std::vector<int> counts(256);
    counts[77] = 1000;
    ExpectSolution(0, 1000, counts);
    ExpectSolution(0, 5, {5});
    ExpectSolution(0, 0, std::vector<int>(256));
}

TEST(OtsuMethod, TakesTheLowestOfEquals)
{
    std::vector<int> counts(256);
    counts[10] = 50;
    counts[200] = 50;
    ExpectSolution(10, 100, counts);
}

TEST(OtsuMethod, NeverSplitsBelowTheFirstOccupiedBin)
{
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        std::vector<int> counts(32);
        for (std::size_t i = 5; i < counts.size(); ++i)
            counts[i] = static_cast<int>(random() % 4);
        counts[5] = 1;
        const int total = std::accumulate(counts.begin(), counts.end(), 0);
        const int threshold = COtsuMethod<double, int>::Solution(total, counts);
        EXPECT_TRUE(threshold == 0 || threshold >= 5);
    }
}

TEST(OtsuMethod, EndsTheScanWhereTheUpperClassIsEmpty)
{
    ExpectSolution(1, 4, {0, 2, 0, 2});
    // A total of 2 leaves the upper class empty after bin 1 already, which is then no candidate.
    ExpectSolution(0, 2, {0, 2, 0, 2});
}

// wF falls to -2 in the end. By hand, N = 2, S = 8: i = 1: wB 2, wF 0, the scan would stop; so N = 3:
// i = 1: wB 2, wF 1, means 1 and 6: 2 * 25 = 50; i = 2: the same; i = 3: wB 4, wF -1: a variance of -16.
TEST(OtsuMethod, ScansOnWhenTheTotalIsLessThanTheBinsHold)
{
    ExpectSolution(1, 3, {0, 2, 0, 2});
}

TEST(OtsuMethod, NeverTakesANaNVariance)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ((COtsuMethod<float, float>::Solution(10, {1.0f, nan, 5.0f})), 0);
    EXPECT_EQ((COtsuMethod<double, float>::Solution(10, {nan, 1.0f, 5.0f})), 0);
}

TEST(OtsuMethod, TakesAnyTotal)
{
    for (const int total : {INT_MIN, -1, 0, INT_MAX}) {
        const int threshold = COtsuMethod<double, int>::Solution(total, {3, 0, 4, 9});
        EXPECT_GE(threshold, 0);
        EXPECT_LE(threshold, 3);
    }
}

// Of splits that are equally good on paper, rounding may prefer any.
TEST(OtsuMethod, FindsABestOfAllSplits)
{
    std::mt19937 random(6);
    for (int round = 0; round < 1000; ++round) {
        std::vector<int> counts(2 + random() % 14);
        for (int& count : counts)
            count = random() % 4 == 0 ? 0 : static_cast<int>(random() % 8);
        const int total = std::accumulate(counts.begin(), counts.end(), 0);
        const Fraction found = Variance(counts, COtsuMethod<double, int>::Solution(total, counts));
        for (int split = 0; split < static_cast<int>(counts.size()); ++split)
            EXPECT_FALSE(found < Variance(counts, split)) << split;
    }
}

// In double the lone sample in bin 2 makes bin 1 a threshold. In single precision 2^24 + 1 is 2^24: the total
// is all in bin 1, the upper class is empty there, and the scan ends without a candidate.
TEST(OtsuMethod, KeepsTheRoundingOfItsType)
{
    const std::vector<int> counts = {0, 16777216, 1};
    EXPECT_EQ((COtsuMethod<float, int>::Solution(16777217, counts)), 0);
    EXPECT_EQ((COtsuMethod<double, int>::Solution(16777217, counts)), 1);
}

TEST(OtsuMethod, CanBeMadeAnObjectOf)
{
    const COtsuMethod<float, float> method;
    EXPECT_EQ(method.Solution(2, {1.0f, 1.0f}), 0);
}
