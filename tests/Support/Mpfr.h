// SPDX-License-Identifier: MIT
#pragma once

#include <mpfr.h>

#include <algorithm>
#include <cmath>
#include <limits>

/// \file
/// References of high precision for the elementary functions, by MPFR.

namespace QZ::Test {

/// A number of 240 bits.
class Mpfr {
public:
    Mpfr() { mpfr_init2(m_value, 240); }
    explicit Mpfr(double x) : Mpfr() { mpfr_set_d(m_value, x, MPFR_RNDN); }
    Mpfr(const Mpfr& other) : Mpfr() { mpfr_set(m_value, other.m_value, MPFR_RNDN); }
    Mpfr& operator=(const Mpfr&) = delete;
    ~Mpfr() { mpfr_clear(m_value); }

    mpfr_ptr Get() { return m_value; }
    mpfr_srcptr Get() const { return m_value; }

private:
    mpfr_t m_value;
};

/// f(x), for a function of MPFR such as mpfr_exp.
template <class Function>
[[nodiscard]] Mpfr Exactly(Function f, double x)
{
    Mpfr result;
    f(result.Get(), Mpfr(x).Get(), MPFR_RNDN);
    return result;
}
template <class Function>
[[nodiscard]] Mpfr Exactly(Function f, double x, double y)
{
    Mpfr result;
    f(result.Get(), Mpfr(x).Get(), Mpfr(y).Get(), MPFR_RNDN);
    return result;
}

/// The float nearest x^e, ties to even, special values as C gives them.
[[nodiscard]] inline float NearestPow(float x, float e)
{
    return mpfr_get_flt(Exactly(mpfr_pow, static_cast<double>(x), static_cast<double>(e)).Get(), MPFR_RNDN);
}

/// How far a float or double lies from the exact value, in units of its last place; 0 when the two are the
/// same special value, infinite when only one of them is special.
template <class T>
[[nodiscard]] double UnitsOff(T value, const Mpfr& exact)
{
    if (mpfr_nan_p(exact.Get()) != 0 || std::isnan(value))
        return (mpfr_nan_p(exact.Get()) != 0) == std::isnan(value) ? 0.0 : HUGE_VAL;
    const auto nearest = static_cast<T>(mpfr_get_d(exact.Get(), MPFR_RNDN));
    if (std::isinf(value) || std::isinf(nearest))
        return value == nearest ? 0.0 : HUGE_VAL;
    if (value == T(0) && nearest == T(0))
        return std::signbit(value) == std::signbit(nearest) ? 0.0 : HUGE_VAL;
    const int exponent = nearest == T(0) ? std::numeric_limits<T>::min_exponent : std::ilogb(nearest) + 1;
    const int unit =
        std::max(exponent, std::numeric_limits<T>::min_exponent) - std::numeric_limits<T>::digits;
    Mpfr off;
    mpfr_sub_d(off.Get(), exact.Get(), static_cast<double>(value), MPFR_RNDN);
    mpfr_mul_2si(off.Get(), off.Get(), -unit, MPFR_RNDN);
    return std::fabs(mpfr_get_d(off.Get(), MPFR_RNDN));
}

}   // namespace QZ::Test
