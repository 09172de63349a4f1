// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/ByteEstimate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace QZ::Foundation {

namespace {

constexpr std::size_t kTerms = 5;
using Quartic = std::array<double, kTerms>;

/// Where the polynomials of Chebyshev have their zeros, over an interval of 1/4.
constexpr Quartic kNodes = {-0.11888206453689419, -0.07347315653655914, 0.0, 0.07347315653655914,
                            0.11888206453689419};

/// The quartic through the values at the nodes (Newton's divided differences).
Quartic Through(Quartic values)
{
    for (std::size_t order = 1; order < kTerms; ++order)
        for (std::size_t i = kTerms - 1; i >= order; --i)
            values[i] = (values[i] - values[i - 1]) / (kNodes[i] - kNodes[i - order]);
    Quartic quartic{};
    for (std::size_t i = kTerms; i-- > 0;) {
        for (std::size_t k = kTerms - 1; k > 0; --k)
            quartic[k] = quartic[k - 1] - kNodes[i] * quartic[k];
        quartic[0] = values[i] - kNodes[i] * quartic[0];
    }
    return quartic;
}

double At(const Quartic& c, double t)
{
    return (((c[4] * t + c[3]) * t + c[2]) * t + c[1]) * t + c[0];
}

}   // namespace

ByteEstimate::ByteEstimate(float (*unitOf)(float), double offset) : coefficients()
{
    for (int cell = 0; cell < 32; ++cell) {
        const double start = std::ldexp(1.0 + cell % 4 / 4.0, cell / 4 - 7);
        const double scale = std::ldexp(1.0, cell / 4 - 7);
        const auto valueAt = [&](double t) {
            const double x = start + scale * (t + 0.125) - double{kShift};
            return 255.0 * double{unitOf(static_cast<float>(x))} + offset;
        };
        Quartic values{};
        std::transform(kNodes.begin(), kNodes.end(), values.begin(), valueAt);
        const Quartic quartic = Through(values);
        double most = 0.0;
        for (int i = 0; i <= 64; ++i) {
            const double t = (i - 32) / 256.0;
            const double off = std::fabs(At(quartic, t) - valueAt(t));
            most = off <= most ? most : off;   // NaN is no less
        }
        // The rest is for the roundings of floats.
        const bool isNear = most < double{kMargin} / 2.0;
        for (std::size_t k = 0; k < kTerms; ++k)
            coefficients[k][cell] =
                isNear ? static_cast<float>(quartic[k]) : std::numeric_limits<float>::quiet_NaN();
    }
}

}   // namespace QZ::Foundation
