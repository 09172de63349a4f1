// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "QZ/Math/Detail/Elementary.h"

namespace QZ::Math {

/// Coefficients of a sampled Gaussian, for smoothing evenly spaced values.
class CDiscreteGaussianFilter {
public:
    /// The Gaussian exp(-x^2 / (2 sigma^2)) sampled at multiples of the spacing, out to at least four
    /// deviations (what lies beyond weighs less than 1e-4), and scaled to the sum 1.
    ///
    /// \param standardDeviation  sigma. Zero, a negative value, NaN and infinity give the single coefficient 1,
    ///                           as does a sigma of more than 25 million spacings.
    /// \param spacing            distance between neighbouring samples, in the unit of sigma; what is not a
    ///                           positive finite number counts as 1.
    /// \param coefficients       what it held is replaced: an odd number of values, symmetric, the peak in the
    ///                           middle at index size / 2.
    static void CoefficientsByStandardDeviation1D(double standardDeviation, double spacing,
                                                  std::vector<double>& coefficients)
    {
        coefficients.assign(1, 1.0);
        const double deviation =
            spacing > 0.0 && !std::isinf(spacing) ? standardDeviation / spacing : standardDeviation;
        const double reach = std::ceil(kReachInDeviations * deviation);
        if (!(reach > 0.0 && reach < kMostReach))
            return;

        const auto radius = static_cast<std::size_t>(reach);
        coefficients.resize(2 * radius + 1);
        double sum = 0.0;
        for (std::size_t i = 0; i < coefficients.size(); ++i) {
            const double x = (static_cast<double>(i) - reach) / deviation;
            coefficients[i] = Detail::Exp(-0.5 * x * x);
            sum += coefficients[i];
        }
        for (double& coefficient : coefficients)
            coefficient /= sum;
    }

private:
    static constexpr double kReachInDeviations = 4.0;
    static constexpr double kMostReach = 1e8;   // about 1.6 GB of coefficients; a wider filter counts as none
};

}   // namespace QZ::Math
