// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "QZ/Foundation/Color/CColorRows.h"
#include "QZ/Foundation/Color/Formulas/DisplayP3.h"
#include "QZ/Foundation/Color/Formulas/HSV.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"
#include "QZ/Foundation/Color/Formulas/YIQ.h"
#include "QZ/Foundation/Color/Formulas/Yxy.h"
#include "tests/proof/DeltaE2000.h"
#include "tests/proof/PowerReference.h"

// Prints the error table of docs/accuracy.md: the conversions in single precision against the same formulas
// over a number type of 100 bits, for every colour of 8 bits.

namespace QZ::Foundation::QZ_TARGET {

/// A pair of doubles as the number type of the formulas.
struct Exact {
    DoubleDouble value;

    Exact() = default;
    Exact(float x) : value{static_cast<double>(x), 0.0} {}
    Exact(DoubleDouble v) : value(v) {}

    friend Exact operator+(Exact a, Exact b) { return a.value + b.value; }
    friend Exact operator-(Exact a, Exact b) { return a.value - b.value; }
    friend Exact operator*(Exact a, Exact b) { return a.value * b.value; }
    friend Exact operator/(Exact a, Exact b) { return a.value / b.value; }
    friend Exact operator-(Exact a) { return -a.value; }
    friend bool operator<(Exact a, Exact b) { return (a - b).value.high < 0.0; }
    friend bool operator>(Exact a, Exact b) { return b < a; }
    friend bool operator>=(Exact a, Exact b) { return !(a < b); }
    friend bool operator==(Exact a, Exact b) { return (a - b).value.high == 0.0; }
};

inline Exact Select(bool mask, Exact a, Exact b)
{
    return mask ? a : b;
}

inline Exact Abs(Exact x)
{
    return x < 0.0f ? -x : x;
}

template <Exponent exponent>
Exact Pow(Exact x)
{
    if (x == 0.0f)
        return x;
    static const Proof::PowerReference reference(exponent);
    // The encoded values are 256: most powers were worked a moment ago.
    static std::array<std::pair<Exact, Exact>, 4096> known{};
    auto& [base, power] = known[(std::bit_cast<std::uint64_t>(x.value.high) * 0x9e3779b97f4a7c15u) >> 52];
    if (base.value.high != x.value.high || base.value.low != x.value.low) {
        base = x;
        power = reference.Power(x.value);
    }
    return power;
}

}   // namespace QZ::Foundation::QZ_TARGET

namespace {

using namespace QZ::Foundation;
namespace formula = QZ_TARGET;
using formula::Exact;
using Color = QZ::Math::CVector3<float>;
using ExactColor = formula::Vec3<Exact>;

constexpr auto kWhite = CColor::eD65;
constexpr int kSamplesOfDeltaE = 16;

/// Smaller colours, nearer to black than a step of 8 bits, count as being of this size.
constexpr double kLeastSize = 0x1p-8;

/// The unit in the last place of a normal float of this size.
double UnitOf(double x)
{
    return std::ldexp(1.0, std::ilogb(x) - 23);
}

double Off(float value, const Exact& exact)
{
    return std::fabs((Exact(value) - exact).value.high);
}

struct Worst {
    double units = 0.0;
    double deltaE = 0.0;
};

/// \param toLab  null where the space has no way to Lab.
template <class ToLab>
void Compare(const Color& value, const ExactColor& exact, bool withDeltaE, const ToLab& toLab, Worst& worst)
{
    const double size = std::max({std::fabs(exact.x.value.high), std::fabs(exact.y.value.high),
                                  std::fabs(exact.z.value.high), kLeastSize});
    const double off = std::max({Off(value.x, exact.x), Off(value.y, exact.y), Off(value.z, exact.z)});
    worst.units = std::max(worst.units, off / UnitOf(size));
    if (!withDeltaE)
        return;
    const auto lab = [&](const ExactColor& v) {
        const ExactColor l = toLab(v);
        return QZ::Proof::LabColor{100.0 * l.x.value.high, 100.0 * l.y.value.high, 100.0 * l.z.value.high};
    };
    const ExactColor rounded(Exact(value.x), Exact(value.y), Exact(value.z));
    worst.deltaE = std::max(worst.deltaE, QZ::Proof::DeltaE2000(lab(rounded), lab(exact)));
}

/// One row of the table: a conversion of every 8-bit colour, or of what a first conversion makes of it.
template <class First, class Row, class Formula, class ToLab>
void Report(const char* name, First&& first, Row&& row, Formula&& exactly, ToLab&& toLab)
{
    constexpr std::size_t n = 65536;
    std::vector<Color> in(n);
    std::vector<Color> out(n);
    Worst worst;
    for (int red = 0; red < 256; ++red) {
        for (std::size_t i = 0; i < n; ++i)
            in[i] = {static_cast<float>(red) * 0.003921569f, static_cast<float>(i >> 8) * 0.003921569f,
                     static_cast<float>(i & 255) * 0.003921569f};
        first(in);
        row(in, out);
        for (std::size_t i = 0; i < n; ++i) {
            const ExactColor exact = exactly(ExactColor(Exact(in[i].x), Exact(in[i].y), Exact(in[i].z)));
            Compare(out[i], exact, (i + static_cast<std::size_t>(red)) % kSamplesOfDeltaE == 0, toLab, worst);
        }
    }
    std::printf("| `%s` | %.2f | %.1e |\n", name, worst.units, worst.deltaE);
    std::fflush(stdout);
}

using In = const std::vector<Color>&;
using Out = std::vector<Color>&;

void AsIs(std::vector<Color>&)
{}

ExactColor LabOfLinearRGB(const ExactColor& v)
{
    return formula::LinearRGBToLab(kWhite, v);
}
ExactColor LabOfSRGB(const ExactColor& v)
{
    return formula::SRGBToLab(false, true, kWhite, v);
}
ExactColor LabOfXYZ(const ExactColor& v)
{
    return formula::XYZToLab(kWhite, v);
}

void ReportFromSRGB()
{
    Report(
        "NonlinearToLinearToneCurve", AsIs,
        [](In in, Out out) { CColorRows::NonlinearToLinearToneCurve(false, false, in, out); },
        [](const ExactColor& v) { return formula::NonlinearToLinear(false, false, v); }, LabOfLinearRGB);
    Report(
        "SRGBToXYZ", AsIs, [](In in, Out out) { CColorRows::SRGBToXYZ(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::SRGBToXYZ(false, false, kWhite, v); }, LabOfXYZ);
    Report(
        "SRGBToLab", AsIs, [](In in, Out out) { CColorRows::SRGBToLab(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::SRGBToLab(false, false, kWhite, v); },
        [](const ExactColor& v) { return v; });
    Report(
        "SRGBToLuv", AsIs, [](In in, Out out) { CColorRows::SRGBToLuv(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::SRGBToLuv(false, false, kWhite, v); },
        [](const ExactColor& v) { return LabOfXYZ(formula::LuvToXYZ(kWhite, v)); });
    Report(
        "SRGBToIPT", AsIs, [](In in, Out out) { CColorRows::SRGBToIPT(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::SRGBToIPT(false, false, kWhite, v); },
        [](const ExactColor& v) { return LabOfXYZ(formula::IPTToXYZ(kWhite, v)); });
    Report(
        "SRGBToDisplayP3", AsIs,
        [](In in, Out out) { CColorRows::SRGBToDisplayP3(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::SRGBToDisplayP3(false, false, kWhite, v); },
        [](const ExactColor& v) { return formula::DisplayP3ToLab(false, kWhite, v); });
    Report(
        "SRGBToYCbCr", AsIs, [](In in, Out out) { CColorRows::SRGBToYCbCr(in, out); },
        [](const ExactColor& v) { return formula::SRGBToYCbCr(v); },
        [](const ExactColor& v) { return LabOfSRGB(formula::YCbCrToSRGB(v)); });
    Report(
        "RGBToYIQ", AsIs, [](In in, Out out) { CColorRows::RGBToYIQ(in, out); },
        [](const ExactColor& v) { return formula::RGBToYIQ(v); },
        [](const ExactColor& v) { return LabOfSRGB(formula::YIQToRGB(v)); });
}

void ReportToSRGB()
{
    Report(
        "LabToSRGB", [](Out in) { CColorRows::SRGBToLab(false, false, kWhite, in, in); },
        [](In in, Out out) { CColorRows::LabToSRGB(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::LabToSRGB(false, false, kWhite, v); }, LabOfSRGB);
    Report(
        "LuvToSRGB", [](Out in) { CColorRows::SRGBToLuv(false, false, kWhite, in, in); },
        [](In in, Out out) { CColorRows::LuvToSRGB(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::LuvToSRGB(false, false, kWhite, v); }, LabOfSRGB);
    Report(
        "IPTToSRGB", [](Out in) { CColorRows::SRGBToIPT(false, false, kWhite, in, in); },
        [](In in, Out out) { CColorRows::IPTToSRGB(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::IPTToSRGB(false, false, kWhite, v); }, LabOfSRGB);
    Report(
        "DisplayP3ToSRGB", AsIs,
        [](In in, Out out) { CColorRows::DisplayP3ToSRGB(false, false, kWhite, in, out); },
        [](const ExactColor& v) { return formula::DisplayP3ToSRGB(false, false, kWhite, v); }, LabOfSRGB);
}

}   // namespace

int main()
{
    std::puts("| conversion | units in the last place | Delta E 2000 |\n|---|---:|---:|");
    ReportFromSRGB();
    ReportToSRGB();
}
