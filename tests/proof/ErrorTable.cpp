// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

#include "tests/proof/DeltaE2000.h"
#include "tests/proof/ExactConversions.h"
#include "tests/proof/HSLuvErrors.h"

// Writes the error table of docs/accuracy.md: every conversion of CColorRows in single precision against the
// same formula over numbers of 100 bits, for the colours of 8 bits.

namespace {

using QZ::Foundation::CColor;
using QZ::Foundation::CColorRows;
using namespace QZ::Proof;
using Conversion = QZ::Tool::Selftest::Conversion<CColorRows::Colors, CColorRows::ColorsOut>;

constexpr std::size_t kSamplesOfDeltaE = 16;

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

/// The same on a circle.
double OffByTurns(float value, const Exact& exact, double turn)
{
    const double off = Off(value, exact);
    return std::min(off, std::fabs(turn - off));
}

/// The largest error of a component. A hue counts by the arc that it turns the colour.
double Off(Space space, const Color& value, const ExactColor& exact)
{
    const double first = Off(value.x, exact.x);
    const double second = Off(value.y, exact.y);
    switch (space) {
        case Space::eLCh:
        case Space::eLChuv:
        case Space::eICH:
            return std::max(
                {first, second, exact.y.value.high * OffByTurns(value.z, exact.z, 2.0 * std::numbers::pi)});
        case Space::eHSV:
            return std::max({OffByTurns(value.x, exact.x, 1.0), second, Off(value.z, exact.z)});
        default:
            return std::max({first, second, Off(value.z, exact.z)});
    }
}

struct Worst {
    double units = 0.0;
    double deltaE = 0.0;
};

double DeltaE(Space space, const Settings& settings, const Color& value, const ExactColor& exact)
{
    const auto lab = [&](const ExactColor& v) {
        const ExactColor l = ToLab(space, settings, v);
        return LabColor{100.0 * l.x.value.high, 100.0 * l.y.value.high, 100.0 * l.z.value.high};
    };
    return DeltaE2000(lab({Exact(value.x), Exact(value.y), Exact(value.z)}), lab(exact));
}

/// Turns encoded colours into those of a space, by the conversions of single precision.
void Reach(Space space, CColor::EIlluminant white, std::vector<Color>& colors)
{
    const CColorRows::Colors in = colors;
    const CColorRows::ColorsOut out = colors;
    switch (space) {
        case Space::eLinear:
        case Space::eLinearDisplayP3:
            return CColorRows::NonlinearToLinearToneCurve(false, false, in, out);
        case Space::eXYZ:
            return CColorRows::SRGBToXYZ(false, false, white, in, out);
        case Space::eYxy:
            CColorRows::SRGBToXYZ(false, false, white, in, out);
            return CColorRows::XYZToYxy(in, out);
        case Space::eLab:
            return CColorRows::SRGBToLab(false, false, white, in, out);
        case Space::eLuv:
            return CColorRows::SRGBToLuv(false, false, white, in, out);
        case Space::eIPT:
            return CColorRows::SRGBToIPT(false, false, white, in, out);
        case Space::eICH:
            CColorRows::SRGBToIPT(false, false, white, in, out);
            return CColorRows::IPTToICH(in, out);
        case Space::eHSV:
            return CColorRows::RGBToHSV(in, out);
        case Space::eYIQ:
            return CColorRows::RGBToYIQ(in, out);
        case Space::eYCbCr:
            return CColorRows::SRGBToYCbCr(in, out);
        default:
            return;   // encoded as it is
    }
}

/// One conversion with one choice of its arguments, over every stride-th colour of 8 bits.
void Compare(const Conversion& conversion, const Settings& settings, std::size_t stride, Worst& worst)
{
    constexpr std::size_t kAll = std::size_t{1} << 24;
    constexpr std::size_t kBlock = 65536;
    const ExactConversion& exactly = ExactConversions().at(conversion.name);
    std::vector<Color> in;
    for (std::size_t first = 0; first < kAll; first += kBlock * stride) {
        in.clear();
        for (std::size_t i = first; i < std::min(kAll, first + kBlock * stride); i += stride)
            in.emplace_back(static_cast<float>(i >> 16) * 0.003921569f,
                            static_cast<float>((i >> 8) & 255) * 0.003921569f,
                            static_cast<float>(i & 255) * 0.003921569f);
        Reach(exactly.from, settings.white, in);
        std::vector<Color> out(in.size());
        conversion.row(settings, in, out);
        for (std::size_t i = 0; i < in.size(); ++i) {
            const ExactColor exact =
                exactly.convert(settings, {Exact(in[i].x), Exact(in[i].y), Exact(in[i].z)});
            const double size = std::max({std::fabs(exact.x.value.high), std::fabs(exact.y.value.high),
                                          std::fabs(exact.z.value.high), kLeastSize});
            worst.units = std::max(worst.units, Off(exactly.to, out[i], exact) / UnitOf(size));
            if ((i + first / kBlock) % kSamplesOfDeltaE == 0)
                worst.deltaE = std::max(worst.deltaE, DeltaE(exactly.to, settings, out[i], exact));
        }
    }
}

/// \param stride  of the colours for all but the plain choice of the arguments: no flag set, D65
void Report(const Conversion& conversion, std::size_t plainStride, std::size_t stride)
{
    Worst plain;
    Compare(conversion, {{false, false}, CColor::eD65}, plainStride, plain);
    Worst all = plain;
    for (int flags = 0; flags < 1 << conversion.numFlags; ++flags)
        for (const auto white : {CColor::eD50, CColor::eD65})
            if ((white == CColor::eD65 && flags != 0) || (white == CColor::eD50 && conversion.hasWhite))
                Compare(conversion, {{(flags & 1) != 0, (flags & 2) != 0}, white}, stride, all);
    std::printf("| `%s` | %.2f | %.1e | %.2f | %.1e |\n", conversion.name.c_str(), plain.units, plain.deltaE,
                all.units, all.deltaE);
    std::fflush(stdout);
}

}   // namespace

int main(int argc, char** argv)
{
    const std::size_t plainStride = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1;
    const std::size_t stride = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 61;
    if (plainStride == 0 || stride == 0 || argc > 3) {
        std::puts(
            "ErrorTable [PLAIN [OTHERS]]\n"
            "The largest errors of each conversion over the colours of 8 bits: of the plain choice of its "
            "arguments\n"
            "over every PLAINth colour (1), of the others, and of HSLuv in double precision, over every "
            "OTHERSth "
            "(61).");
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    std::puts(
        "| conversion | units, plain | Delta E 2000, plain | units, all | Delta E 2000, all |\n"
        "|---|---:|---:|---:|---:|");
    for (const Conversion& conversion : QZ::Tool::Selftest::ColorConversions())
        Report(conversion, plainStride, stride);
    ReportHSLuv(stride);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::fprintf(stderr, "%.0f seconds\n", seconds.count());
}
