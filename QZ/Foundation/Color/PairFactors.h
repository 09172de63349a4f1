// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "QZ/Foundation/Color/ElementaryTables.h"
#include "QZ/Foundation/Color/Exponent.h"
#include "QZ/Foundation/Color/PowerFactors.h"

/// \file
/// The constants of FloatPairs.h.

namespace QZ::Foundation {

/// Sixteen numbers, each the sum of two floats.
struct PairTable {
    float high[16];
    float low[16];

    constexpr explicit PairTable(const double (&numbers)[16]) : high(), low()
    {
        for (int i = 0; i < 16; ++i) {
            high[i] = static_cast<float>(numbers[i]);
            low[i] = static_cast<float>(numbers[i] - high[i]);
        }
    }
};

/// The factors of a fixed power in pairs of floats, for x from 2^-15 to 2. Where the exponent e is above 1,
/// x^e is x^2 x^(e - 2): of (1 + t)^p, p the power that is left, all but 1 + p t is then small.
template <Exponent exponent>
struct PairFactors {
    static constexpr const ElementaryTables::Power& power = PowerFactors<exponent>::power;
    static constexpr bool kHasSquare = Value(exponent) > 1.0f;
    static constexpr float kPower = Value(exponent) - (kHasSquare ? 2.0f : 0.0f);

    /// What the terms of (1 + t)^p from t^2 on may err by, relatively: their roundings, the series' own
    /// error, and that the low part of the scale is not multiplied with them.
    static constexpr double kSeriesMargin = (kHasSquare ? 12 : 10) * 0x1p-24;
    /// What all else may err by, the terms from t^7 on above all.
    static constexpr double kMargin = 0x1p-38;

    /// Together these terms have the sign of p (p - 1). Times this they are not above their exact sum.
    static constexpr double kLeastSeries = 1.0 + (kPower > 0.0f ? kSeriesMargin : -kSeriesMargin);
    /// From a lower bound to an upper.
    static constexpr float kMostSeries = static_cast<float>(1.0 - 2.0 * (kLeastSeries - 1.0));
    static constexpr float kMostSum = static_cast<float>(3.0 * kMargin);

    static constexpr PairTable Intervals()
    {
        double numbers[16];
        for (int i = 0; i < 16; ++i) {
            const double reciprocal = ElementaryTables::kReciprocals[i];
            const double square = kHasSquare ? reciprocal * reciprocal * 0x1p+30 : 1.0;
            numbers[i] = power.intervals[i] * power.binaryHigh[7] * square * (1.0 - kMargin);
        }
        return PairTable(numbers);
    }
    static constexpr PairTable Binary()
    {
        double numbers[16];
        double square = 1.0;
        for (int i = 0; i < 16; ++i, square *= kHasSquare ? 4.0 : 1.0)
            numbers[i] = power.binaryLow[i] / square;
        return PairTable(numbers);
    }
    /// The coefficients of t^2 to t^5. The term of t^6 is spread over those of t^2 and t^4 as a Chebyshev
    /// polynomial has it; what is lost is less than two roundings.
    static constexpr std::array<float, 4> Series()
    {
        constexpr double kSquare = 0.0390625 * 0.0390625;   // of the greatest t
        double c[7] = {1.0};
        for (int k = 1; k < 7; ++k)
            c[k] = c[k - 1] * (static_cast<double>(kPower) - (k - 1)) / k;
        const double coefficients[] = {c[2] - c[6] * kSquare * kSquare / 8.0, c[3], c[4] + c[6] * kSquare,
                                       c[5]};
        std::array<float, 4> series{};
        for (int i = 0; i < 4; ++i)
            series[i] = static_cast<float>(coefficients[i] * kLeastSeries);
        return series;
    }
    static constexpr PairTable kIntervals = Intervals();
    static constexpr PairTable kBinary = Binary();
    static constexpr std::array<float, 4> kSeries = Series();
};

/// What x^0.33333334 needs beside its pairs: a root's reciprocal, about 2^-13 off, by a line in each
/// interval. Margins are relative to the result.
struct RootFactors {
    /// What 0.33333334 is above 1 / 3: it turns a cube root into that power by a factor of 1 + kExcess ln x.
    static constexpr double kExcess = static_cast<double>(0.33333334f) - 1.0 / 3.0;
    /// The roundings of all terms but the leading one come to 2^-32.7 at most, the logarithm to 2^-33.4.
    static constexpr double kMargin = 0x1.1p-32;
    /// From a lower bound to an upper, which is rounded once more.
    static constexpr float kMost = static_cast<float>(2.0 * kMargin + 0x1p-35);

    static constexpr double InverseCubeRoot(double x)
    {
        double root = 0.5;
        for (int i = 0; i < 10; ++i)
            root *= (4.0 - x * root * root * root) / 3.0;
        return root;
    }
    static constexpr double LogOfMantissa(double m)
    {
        const double s = (m - 1.0) / (m + 1.0);
        double sum = 0.0;
        for (int k = 15; k > 0; k -= 2)
            sum = sum * s * s + 2.0 * s / k;
        return sum;
    }

    float constants[16] = {};   ///< the line of a mantissa's interval: constants + slopes m
    float slopes[16] = {};
    float binary[16] = {};       ///< 2^(-k / 3) for x = m 2^k, k from -15 to 0
    float logarithms[16] = {};   ///< kExcess (ln m - ln 2 (m - 1)) of an interval's middle, less the margin

    constexpr RootFactors()
    {
        constexpr double kRootOfHalf = 0.7071067811865476;
        constexpr double kBias = 127.0 * ElementaryTables::kLn2.high;
        // A line is cut off after 12 bits, so it aims half a unit above.
        constexpr double kAim = 1.0 + 0.8 * 0x1p-12;
        for (int i = 0; i < 16; ++i) {
            const double middle = 1.0 + (i + 0.5) / 16.0;
            const double distance = kRootOfHalf / 32.0;
            const double below = InverseCubeRoot(middle - distance);
            const double above = InverseCubeRoot(middle + distance);
            const double slope = (above - below) / (2.0 * distance);
            slopes[i] = static_cast<float>(slope * kAim);
            constants[i] = static_cast<float>((above - slope * (middle + distance)) * kAim);
            binary[i] = static_cast<float>(InverseCubeRoot(1 << (i % 3)) * (32 >> (i / 3)));
            const double log = LogOfMantissa(middle) - ElementaryTables::kLn2.high * (middle - 1.0);
            logarithms[i] = static_cast<float>(kExcess * (log - kBias) - kMargin);
        }
    }
};
inline constexpr RootFactors kRootFactors;

/// 2^(i / 16), times a factor.
constexpr PairTable SixteenthPowersOf2(double factor)
{
    double numbers[16];
    for (int i = 0; i < 16; ++i)
        numbers[i] = Math::Detail::kExp2[2 * i].high * factor;
    return PairTable(numbers);
}

/// What e^x needs in pairs of floats. The margins are those of PairFactors.
struct PairExp {
    static constexpr double kSeriesMargin = 6 * 0x1p-24;
    static constexpr double kMargin = 0x1p-36;
    static constexpr float kMostSeries = static_cast<float>(1.0 + 2.0 * kSeriesMargin);
    static constexpr float kMostSum = static_cast<float>(3.0 * kMargin);

    /// ln 2 / 16; the upper part so short that it times an integer below 256 is a float.
    static constexpr double kStep = ElementaryTables::kLn2.high / 16.0;
    static constexpr float kUpperStep = static_cast<float>(static_cast<int>(kStep * 0x1p20)) * 0x1p-20f;
    static constexpr float kLowerStep = static_cast<float>(kStep - kUpperStep);
    static constexpr float kStepsOf1 = static_cast<float>(1.0 / kStep);

    static constexpr PairTable kPowers = SixteenthPowersOf2(1.0 - kMargin);
    static constexpr float kSeries[] = {
        static_cast<float>(1.0 / 2.0 * (1.0 - kSeriesMargin)),
        static_cast<float>(1.0 / 6.0 * (1.0 - kSeriesMargin)),
        static_cast<float>(1.0 / 24.0 * (1.0 - kSeriesMargin)),
        static_cast<float>(1.0 / 120.0 * (1.0 - kSeriesMargin)),
    };
};

}   // namespace QZ::Foundation
