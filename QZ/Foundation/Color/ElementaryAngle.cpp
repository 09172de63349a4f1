// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include "QZ/Foundation/Color/ElementaryDouble.h"
#include "QZ/Foundation/Color/ElementaryTables.h"
#include "QZ/Foundation/Color/QuickAngle.h"
#include "QZ/Math/Detail/Elementary.h"

namespace QZ::Foundation::Double {

using namespace ElementaryTables;

namespace {

/// atan(y / x) for 0 <= y <= x and x > 0 of ordinary size.
DoubleDouble AtanOfQuotient(DoubleDouble y, DoubleDouble x)
{
    const int i = static_cast<int>(y.high / x.high * 32.0 + 0.5);
    const double c = i / 32.0;
    const DoubleDouble z = (y - x * c) / (x + y * c);
    const DoubleDouble minusZ2 = -(z * z);
    DoubleDouble series = kInverseOdd[9];
    for (int j = 8; j >= 0; --j)
        series = series * minusZ2 + kInverseOdd[j];
    return kAtanOf[i] + z * series;
}

/// The angle of a point above the x axis, at a distance of ordinary size.
double AngleOfPoint(DoubleDouble y, DoubleDouble x)
{
    const DoubleDouble ax = x.high < 0.0 ? -x : x;
    const DoubleDouble first = y.high <= ax.high ? AtanOfQuotient(y, ax) : kHalfPi - AtanOfQuotient(ax, y);
    return x.high < 0.0 ? (kPi - first).high : first.high;
}

/// atan2 of finite numbers that are not 0, y > 0.
double AngleOfFinite(double y, double x)
{
    if (x > 0.0 && y < x * 0x1p-60)
        return y / x;   // the cubic term is below 2^-120 of it
    int exponent = 0;
    static_cast<void>(std::frexp(std::fmax(y, std::fabs(x)), &exponent));
    return AngleOfPoint({std::ldexp(y, -exponent), 0.0}, {std::ldexp(x, -exponent), 0.0});
}

}   // namespace

double Sin(double x)
{
    return Math::Detail::Sin(x);
}

double Cos(double x)
{
    return Math::Detail::Cos(x);
}

double InPairs::Acos(double x)
{
    if (!(std::fabs(x) <= 1.0))
        return std::numeric_limits<double>::quiet_NaN();
    const DoubleDouble sine2 = TwoSum(1.0, -x) * TwoSum(1.0, x);
    if (sine2.high == 0.0)
        return x > 0.0 ? 0.0 : kPi.high;
    // One step of Newton's, in pairs of doubles, from the root in double.
    const double root = std::sqrt(sine2.high);
    const DoubleDouble rest = sine2 - TwoProduct(root, root);
    return AngleOfPoint(FastTwoSum(root, rest.high / (2.0 * root)), {x, 0.0});
}

double InPairs::Atan2(double y, double x)
{
    if (std::isnan(x) || std::isnan(y))
        return x + y;
    if (std::isinf(x) && std::isinf(y))
        return std::copysign(x > 0.0 ? kQuarterPi.high : (kPi - kQuarterPi).high, y);
    if (y == 0.0 || std::isinf(x))
        return std::copysign(std::signbit(x) ? kPi.high : 0.0, y);
    if (x == 0.0 || std::isinf(y))
        return std::copysign(kHalfPi.high, y);
    return std::copysign(AngleOfFinite(std::fabs(y), x), y);
}

double Acos(double x)
{
    const Math::Detail::Bracket quick = QuickAcos(x);
    return quick.IsSure() ? quick.below : InPairs::Acos(x);
}

double Atan2(double y, double x)
{
    const Math::Detail::Bracket quick = QuickAngle(std::fabs(y), x, 0.0);
    return quick.IsSure() ? std::copysign(quick.below, y) : InPairs::Atan2(y, x);
}

}   // namespace QZ::Foundation::Double
