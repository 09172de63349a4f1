// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <numbers>

namespace QZ::Proof {

/// On the CIE scale, L from 0 to 100.
struct LabColor {
    double L, a, b;
};

/// The colour difference of CIE 142-2001, in the form of G. Sharma, W. Wu and E. N. Dalal, "The CIEDE2000
/// Color-Difference Formula", Color Research and Application 30(1), 2005, pp. 21-30.
inline double DeltaE2000(const LabColor& one, const LabColor& two)
{
    constexpr double kDegree = std::numbers::pi / 180.0;
    const double kPower = std::pow(25.0, 7.0);
    const double meanC = (std::hypot(one.a, one.b) + std::hypot(two.a, two.b)) / 2.0;
    const double G = 0.5 * (1.0 - std::sqrt(std::pow(meanC, 7.0) / (std::pow(meanC, 7.0) + kPower)));
    const double a1 = (1.0 + G) * one.a;
    const double a2 = (1.0 + G) * two.a;
    const double C1 = std::hypot(a1, one.b);
    const double C2 = std::hypot(a2, two.b);
    const auto hue = [](double b, double a) {
        const double h = std::atan2(b, a) / kDegree;
        return h < 0.0 ? h + 360.0 : h;
    };
    const double h1 = C1 == 0.0 ? 0.0 : hue(one.b, a1);
    const double h2 = C2 == 0.0 ? 0.0 : hue(two.b, a2);

    const bool isGrey = C1 * C2 == 0.0;
    double dh = isGrey ? 0.0 : h2 - h1;
    if (dh > 180.0)
        dh -= 360.0;
    else if (dh < -180.0)
        dh += 360.0;
    const double dL = two.L - one.L;
    const double dC = C2 - C1;
    const double dH = 2.0 * std::sqrt(C1 * C2) * std::sin(dh / 2.0 * kDegree);

    const double L = (one.L + two.L) / 2.0;
    const double C = (C1 + C2) / 2.0;
    double h = h1 + h2;
    if (!isGrey)
        h = std::fabs(h1 - h2) <= 180.0 ? h / 2.0 : h < 360.0 ? (h + 360.0) / 2.0 : (h - 360.0) / 2.0;
    const double T = 1.0 - 0.17 * std::cos((h - 30.0) * kDegree) + 0.24 * std::cos(2.0 * h * kDegree) +
                     0.32 * std::cos((3.0 * h + 6.0) * kDegree) - 0.20 * std::cos((4.0 * h - 63.0) * kDegree);
    const double turn = (h - 275.0) / 25.0;
    const double rotation = 60.0 * std::exp(-turn * turn) * kDegree;   // twice the angle of the formula
    const double RC = 2.0 * std::sqrt(std::pow(C, 7.0) / (std::pow(C, 7.0) + kPower));
    const double fromMiddle = (L - 50.0) * (L - 50.0);
    const double termL = dL / (1.0 + 0.015 * fromMiddle / std::sqrt(20.0 + fromMiddle));
    const double termC = dC / (1.0 + 0.045 * C);
    const double termH = dH / (1.0 + 0.015 * C * T);
    return std::sqrt(termL * termL + termC * termC + termH * termH - std::sin(rotation) * RC * termC * termH);
}

}   // namespace QZ::Proof
