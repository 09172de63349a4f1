// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/Elementary.h"

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "QZ/Math/Detail/Elementary.h"
#include "tests/Support/Mpfr.h"

// The largest error of each elementary function in units of the last place, over random arguments and those
// that are known to be hard, against MPFR with 240 bits.

namespace {

namespace Double = QZ::Foundation::Double;
namespace elementary = QZ::Foundation::QZ_TARGET;
using QZ::Test::Exactly;
using QZ::Test::UnitsOff;

/// Half a unit is what rounding alone costs; the rest is the error before it.
constexpr double kMost = 0.5001;

/// Random arguments, the same in every run. The distributions of <random> differ from library to library:
/// bits are taken as they are.
class Arguments {
public:
    explicit Arguments(std::uint64_t seed) : m_generator(seed) {}

    std::uint64_t Bits() { return m_generator(); }
    /// From -1 to 1.
    double Unit() { return static_cast<double>(static_cast<std::int64_t>(Bits())) * 0x1p-63; }
    /// Any number, but no NaN or infinity.
    template <class T>
    T Any()
    {
        using Word = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        for (;;) {
            const auto x = std::bit_cast<T>(static_cast<Word>(Bits()));
            if (std::isfinite(x))
                return x;
        }
    }
    /// At a relative distance of 2^-13 to 2^-52 from a multiple of pi / 2.
    double NearQuarterTurn()
    {
        const auto turns = static_cast<double>(Bits() >> 44);
        return (turns * 1.5707963267948966) * (1.0 + std::ldexp(Unit(), -static_cast<int>(Bits() % 40) - 13));
    }
    /// An angle: half of them within a turn, a quarter near the zeros, the rest any number.
    template <class T>
    T Angle()
    {
        switch (Bits() % 4) {
            case 0:
                return Any<T>();
            case 1:
                return static_cast<T>(NearQuarterTurn());
            default:
                return static_cast<T>(6.5 * Unit());
        }
    }
    /// Half from 0 to 1, half any positive number.
    double Base() { return std::fabs(Bits() % 2 == 0 ? Unit() : Any<double>()); }
    /// A third each from the unit square, near a line through the origin, and any.
    template <class T>
    std::pair<T, T> Point()
    {
        const auto x = static_cast<T>(Unit());
        switch (Bits() % 3) {
            case 0:
                return {static_cast<T>(Unit()), x};
            case 1:
                return {static_cast<T>(static_cast<double>(x) * (1.0 + Unit() * 0x1p-40)), x};
            default:
                return {Any<T>(), Any<T>()};
        }
    }

private:
    std::mt19937_64 m_generator;
};

struct Error {
    double units;
    double x;
    double y;
};

struct Function {
    const char* name;
    std::function<Error(Arguments&)> atRandom;
    std::vector<Error> hard;
};

/// The error of a function of one argument.
template <class T, class F, class M>
Function Of(const char* name, F f, M exactly, T (*argument)(Arguments&), const std::vector<T>& hard)
{
    const auto error = [=](T x) {
        return Error{UnitsOff(f(x), Exactly(exactly, static_cast<double>(x))), static_cast<double>(x), 0.0};
    };
    Function function{name, [=](Arguments& arguments) { return error(argument(arguments)); }, {}};
    for (const T x : hard)
        for (const T either : {x, -x})
            function.hard.push_back(error(either));
    return function;
}

template <class T, class F>
Function OfPoint(const char* name, F atan2)
{
    const auto error = [=](T y, T x) {
        const auto exact = Exactly(mpfr_atan2, static_cast<double>(y), static_cast<double>(x));
        return Error{UnitsOff(atan2(y, x), exact), static_cast<double>(y), static_cast<double>(x)};
    };
    Function function{name,
                      [=](Arguments& arguments) {
                          const auto [y, x] = arguments.Point<T>();
                          return error(y, x);
                      },
                      {}};
    constexpr T kSmall = std::numeric_limits<T>::min();
    constexpr T kEpsilon = std::numeric_limits<T>::epsilon();
    const std::vector<T> hard = {
        kSmall,       1 / kSmall, kEpsilon, 1, 1 + kEpsilon,  1 - kEpsilon / 2,
        kEpsilon * 4, T(1) / 32,  T(1) / 3, 3, T(0.41421356), std::numeric_limits<T>::max()};
    for (const T y : hard)
        for (const T x : hard)
            for (const T sign : {T(1), T(-1)})
                function.hard.push_back(error(y, sign * x));
    return function;
}

Function OfPower(const char* name, double exponent)
{
    const auto error = [=](double x) {
        return Error{UnitsOff(Double::Pow(x, exponent), Exactly(mpfr_pow, x, exponent)), x, exponent};
    };
    // A subnormal power is rounded twice.
    const auto normal = [=](Arguments& arguments) {
        for (;;) {
            const double x = arguments.Base();
            if (x > 0.0 && std::fabs(Double::Pow(x, exponent)) >= std::numeric_limits<double>::min())
                return error(x);
        }
    };
    Function function{name, normal, {}};
    for (int i = 1; i < 4096; ++i)   // short numbers, and those around them: nearly exact powers
        for (const double x : {1.0 * i, i / 4096.0, std::pow(i, 3.0), std::pow(i, 5.0)})
            for (const double near : {x, std::nextafter(x, 0.0), std::nextafter(x, HUGE_VAL)})
                function.hard.push_back(error(near));
    return function;
}

template <class T>
T AngleOf(Arguments& arguments)
{
    return arguments.Angle<T>();
}

/// The floats and doubles nearest to multiples of pi / 2 for their size (J.-M. Muller, "Elementary
/// Functions", 3rd ed., 2016, 11.2), and the hardest to round near 0 (V. Lefevre and J.-M. Muller, "Worst
/// Cases for Correct Rounding of the Elementary Functions in Double Precision", ARITH-15, 2001).
template <class T>
std::vector<T> HardAngles()
{
    std::vector<T> angles = {std::numeric_limits<T>::max(), std::numeric_limits<T>::denorm_min(),
                             std::numeric_limits<T>::min()};
    if constexpr (sizeof(T) == 4)
        angles.push_back(std::ldexp(16367173.0f, 72));
    else
        for (const double x : {std::ldexp(6381956970095103.0, 797), 0x1.e0000000001c2p-20})
            angles.push_back(x);
    for (int i = 1; i < 4096; ++i) {
        const auto turn = static_cast<T>(i * 1.5707963267948966);
        for (const T near : {turn, std::nextafter(turn, T(0)), std::nextafter(turn, T(1e9))})
            angles.push_back(near);
    }
    return angles;
}

float ExponentOfE(Arguments& arguments)
{
    return static_cast<float>(89.0 * arguments.Unit());
}
float ExponentOf2(Arguments& arguments)
{
    return static_cast<float>(128.0 * arguments.Unit());
}
float PositiveFloat(Arguments& arguments)
{
    return std::fabs(arguments.Bits() % 2 == 0 ? static_cast<float>(2.0 * arguments.Unit())
                                               : arguments.Any<float>());
}

std::vector<Function> Functions()
{
    const std::vector<float> smallExponents = {0x1p-149f, 0x1p-30f,       0x1p-25f,      0x1p-24f,
                                               0x1p-23f,  0x1.62e42ep-1f, 0x1.62e43p-1f, 87.0f,
                                               88.72283f, 1.0f,           0.5f};
    return {
        Of<float>("Exp of a float", elementary::Exp<float>, mpfr_exp, ExponentOfE, smallExponents),
        Of<float>("Exp2 of a float", elementary::Exp2, mpfr_exp2, ExponentOf2, smallExponents),
        Of<float>("Log of a float", elementary::Log, mpfr_log, PositiveFloat,
                  {1.0f, 0x1.000002p0f, 0x1.fffffep-1f, 0x1.6a09e6p-1f, 0x1.6a09e8p-1f, 0x1p-149f}),
        Of<float>(
            "Sin of a float", [](float x) { return elementary::SinCos(x).sine; }, mpfr_sin, AngleOf<float>,
            HardAngles<float>()),
        Of<float>(
            "Cos of a float", [](float x) { return elementary::SinCos(x).cosine; }, mpfr_cos, AngleOf<float>,
            HardAngles<float>()),
        OfPoint<float>("Atan2 of floats", elementary::Atan2<float>),
        OfPower("Pow of doubles, 1 / 3", 0.3333333333333333),
        OfPower("Pow of doubles, 1 / 2.4", 0.4166666666666667),
        OfPower("Pow of doubles, 2.4", 2.4),
        Of<double>("Sin of a double", Double::Sin, mpfr_sin, AngleOf<double>, HardAngles<double>()),
        Of<double>("Cos of a double", Double::Cos, mpfr_cos, AngleOf<double>, HardAngles<double>()),
        OfPoint<double>("Atan2 of doubles", Double::Atan2),
        Of<double>(
            "Exp of a double", [](double x) { return QZ::Math::Detail::Exp(x); }, mpfr_exp,
            [](Arguments& a) { return a.Unit() * 708.0; },
            {0x1p-53, 0x1p-54, 0x1p-40, 0.5, 1.0, 0x1.62e42fefa39efp-1}),
        Of<double>("Acos of a double", Double::Acos, mpfr_acos, [](Arguments& a) { return a.Unit(); },
                   {0.0, 0.5, 0.7071067811865476, 1.0, 1.0 - 0x1p-53, 1.0 - 0x1p-52, 0x1p-60}),
        Of<double>(
            "Cube of a double", Double::Cube,
            [](mpfr_ptr out, mpfr_srcptr x, mpfr_rnd_t round) { return mpfr_pow_ui(out, x, 3, round); },
            [](Arguments& a) { return a.Unit() * 8.0; }, {1.0, 1.0 + 0x1p-52, 1.0 - 0x1p-53, 0x1p-90}),
    };
}

/// \return  whether the function stays within the bound.
bool Report(const Function& function, std::uint64_t count)
{
    const auto start = std::chrono::steady_clock::now();
    Error worst{};
    const auto take = [&worst](const Error& error) {
        if (!(error.units <= worst.units))
            worst = error;
    };
    for (const Error& error : function.hard)
        take(error);
    Arguments arguments(1);
    for (std::uint64_t i = 0; i < count; ++i)
        take(function.atRandom(arguments));
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::printf("| %s | %llu | %zu | %.7f | %a, %a | %.0f |\n", function.name,
                static_cast<unsigned long long>(count), function.hard.size(), worst.units, worst.x, worst.y,
                seconds.count());
    std::fflush(stdout);
    return worst.units <= kMost;
}

int Usage()
{
    std::puts(
        "ElementaryErrors [--count N] [--only TEXT]\n"
        "The largest error of each elementary function against MPFR, over hard arguments and random ones; "
        "fails\n"
        "above 0.5001 units in the last place.\n"
        "  --count N    so many arguments at random: 10000000 unless told\n"
        "  --only TEXT  the functions whose names hold the text");
    return 2;
}

}   // namespace

int main(int argc, char** argv)
{
    std::uint64_t count = 10000000;
    std::string only;
    for (int i = 1; i < argc; i += 2) {
        const std::string option = argv[i];
        if (i + 1 == argc || (option != "--count" && option != "--only"))
            return Usage();
        if (option == "--count")
            count = std::strtoull(argv[i + 1], nullptr, 10);
        else
            only = argv[i + 1];
    }
    std::puts(
        "| function | at random | hard | units in the last place | at | seconds "
        "|\n|---|---:|---:|---:|---|---:|");
    bool isWithin = true;
    bool isAny = false;
    for (const Function& function : Functions())
        if (std::string(function.name).find(only) != std::string::npos) {
            isAny = true;
            isWithin = Report(function, count) && isWithin;
        }
    return isAny && isWithin ? 0 : 1;
}
