// SPDX-License-Identifier: MIT
#include "tests/proof/HSLuvErrors.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "QZ/Foundation/Color/Formulas/HSLuv.h"
#include "tests/proof/DeltaE2000.h"
#include "tests/proof/ExactConversions.h"

namespace QZ::Proof {

namespace formula = Foundation::HSLuv;
using formula::Full;
using Colour = formula::Triple;
using ExactColour = formula::TripleOf<Exact>;

namespace {

/// What is nearer to black than a step of 8 bits counts as being of this size.
constexpr double kLeastSize = 0x1p-8;

struct Worst {
    double units = 0.0;
    double deltaE = 0.0;

    void See(double off, double size, double full, double difference)
    {
        const double unit = std::ldexp(1.0, std::ilogb(std::max(size, kLeastSize * full)) - 52);
        units = std::max(units, off / unit);
        deltaE = std::max(deltaE, difference);
    }
};

double Off(double value, Exact exact)
{
    return std::fabs((Exact(value) - exact).value.high);
}

LabColor LabOf(const ExactColour& rgb)
{
    const ExactColor lab =
        ToLab(Space::eSRGB, {{false, false}, Foundation::CColor::eD65}, {rgb.a, rgb.b, rgb.c});
    return {100.0 * lab.x.value.high, 100.0 * lab.y.value.high, 100.0 * lab.z.value.high};
}
ExactColour Exactly(const Colour& c)
{
    return {Exact(c.a), Exact(c.b), Exact(c.c)};
}

/// A hue counts by the arc that it turns the saturation.
template <Full full>
void CompareToHSL(const Colour& rgb, const Colour& hsl, Worst& worst)
{
    const ExactColour exact = formula::RGBToHSL<full>(Exactly(rgb));
    const double turned = Off(hsl.a, exact.a);
    const double arc = std::min(turned, std::fabs(360.0 - turned)) * std::numbers::pi / 180.0 * hsl.b;
    worst.See(
        std::max({arc, Off(hsl.b, exact.b), Off(hsl.c, exact.c)}), std::max(hsl.b, hsl.c), 100.0,
        DeltaE2000(LabOf(formula::HSLToRGB<full>(Exactly(hsl))), LabOf(formula::HSLToRGB<full>(exact))));
}
template <Full full>
void CompareToRGB(const Colour& hsl, const Colour& rgb, Worst& worst)
{
    const ExactColour exact = formula::HSLToRGB<full>(Exactly(hsl));
    worst.See(std::max({Off(rgb.a, exact.a), Off(rgb.b, exact.b), Off(rgb.c, exact.c)}),
              std::max({rgb.a, rgb.b, rgb.c}), 1.0, DeltaE2000(LabOf(Exactly(rgb)), LabOf(exact)));
}

template <Full full>
void Report(const char* to, const char* back, std::size_t stride)
{
    Worst toHSL;
    Worst toRGB;
    for (std::size_t i = 0; i < std::size_t{1} << 24; i += stride) {
        const Colour rgb = {static_cast<double>(i >> 16) / 255.0, static_cast<double>((i >> 8) & 255) / 255.0,
                            static_cast<double>(i & 255) / 255.0};
        const Colour hsl = formula::RGBToHSL<full>(rgb);
        CompareToHSL<full>(rgb, hsl, toHSL);
        CompareToRGB<full>(hsl, formula::HSLToRGB<full>(hsl), toRGB);
    }
    std::printf("| `%s` | %.1f | %.1e |\n| `%s` | %.1f | %.1e |\n", to, toHSL.units, toHSL.deltaE, back,
                toRGB.units, toRGB.deltaE);
    std::fflush(stdout);
}

}   // namespace

void ReportHSLuv(std::size_t stride)
{
    std::puts("\n| conversion | units | Delta E 2000 |\n|---|---:|---:|");
    Report<Full::eGamut>("rgbToHusl", "huslToRgb", stride);
    Report<Full::ePastel>("rgbToHuslp", "huslpToRgb", stride);
}

}   // namespace QZ::Proof
