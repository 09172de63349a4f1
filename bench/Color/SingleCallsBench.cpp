// SPDX-License-Identifier: MIT

/// \file
/// One call for one colour, as hosts make it, beside the same formula over the C library's functions. Prints
/// the table of docs/performance.md.

#include <array>
#include <cstdio>

#include "bench/Color/SingleCalls.h"
#include "bench/Support/BestOfRuns.h"
#include "bench/Support/Photograph.h"

namespace {

using QZ::Bench::Color;
using QZ::Bench::Settings;
using QZ::Foundation::CColor;

constexpr std::size_t kColors = 4096;
using Colors = std::array<Color, kColors>;

/// The colours of a photograph in each space that a conversion starts from.
enum class Space { SRGB, LinearRGB, XYZ, Lab, Luv, Yxy, HSV, IPT, ICH, YIQ, YCbCr };

Color ToSpace(Space space, const Color& srgb)
{
    Color linear, xyz, out = srgb;
    CColor::NonlinearToLinearToneCurve(false, false, srgb, linear);
    CColor::LinearRGBToXYZ(CColor::eD65, linear, xyz);
    switch (space) {
        case Space::SRGB:
            break;
        case Space::LinearRGB:
            out = linear;
            break;
        case Space::XYZ:
            out = xyz;
            break;
        case Space::Lab:
            CColor::XYZtoLab(CColor::eD65, xyz, out);
            break;
        case Space::Luv:
            CColor::XYZtoLuv(CColor::eD65, xyz, out);
            break;
        case Space::Yxy:
            CColor::XYZToYxy(xyz, out);
            break;
        case Space::HSV:
            CColor::RGBToHSV(srgb, out);
            break;
        case Space::IPT:
            CColor::XYZToIPT(CColor::eD65, xyz, out);
            break;
        case Space::ICH:
            CColor::LinearRGBToICH(CColor::eD65, linear, out);
            break;
        case Space::YIQ:
            CColor::RGBToYIQ(srgb, out);
            break;
        case Space::YCbCr:
            CColor::SRGBToYCbCr(srgb, out);
            break;
    }
    return out;
}

Colors ColorsIn(Space space)
{
    static const auto photograph = QZ::Bench::MakePhotograph(64, 64);
    Colors colors;
    for (std::size_t i = 0; i < kColors; ++i) {
        const unsigned char* pixel = photograph.rgba.data() + 4 * i;
        const auto unit = [](unsigned char byte) { return static_cast<float>(byte) * 0.003921569f; };
        colors[i] = ToSpace(space, {unit(pixel[0]), unit(pixel[1]), unit(pixel[2])});
    }
    return colors;
}

struct Conversion {
    const char* name;
    Space space;
    void (*library)(const Settings&, const Colors&, Colors&);
    void (*plain)(const Settings&, const Colors&, Colors&);
};

#define QZ_CONVERSION(member, space, result, ...)                            \
    {#member, Space::space,                                                  \
     []([[maybe_unused]] const Settings& s, const Colors& in, Colors& out) { \
         for (std::size_t i = 0; i < kColors; ++i)                           \
             CColor::member(__VA_ARGS__ __VA_OPT__(, ) in[i], result);       \
     },                                                                      \
     [](const Settings& s, const Colors& in, Colors& out) {                  \
         for (std::size_t i = 0; i < kColors; ++i)                           \
             QZ::Bench::PlainCalls::member(s, in[i], out[i]);                \
     }},
#define QZ_COLOR(member, name, space, ...) QZ_CONVERSION(member, space, out[i] __VA_OPT__(, ) __VA_ARGS__)
#define QZ_NUMBER(member, name, space, ...) QZ_CONVERSION(member, space, out[i].x __VA_OPT__(, ) __VA_ARGS__)
#define QZ_CURVE(member, curve, space) QZ_CONVERSION(member, space, out[i])

constexpr Conversion kConversions[] = {QZ_SINGLE_CALLS(QZ_COLOR, QZ_NUMBER, QZ_CURVE)};

void Register(const Conversion& conversion)
{
    const auto run = [&conversion](auto convert) {
        return [&conversion, convert](benchmark::State& state) {
            const Colors in = ColorsIn(conversion.space);
            Colors out;
            Settings settings;
            benchmark::DoNotOptimize(settings);
            for (auto _ : state) {
                convert(settings, in, out);
                benchmark::DoNotOptimize(out);
            }
            state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kColors));
        };
    };
    benchmark::RegisterBenchmark((std::string("here/") + conversion.name).c_str(), run(conversion.library));
    benchmark::RegisterBenchmark((std::string("plain/") + conversion.name).c_str(), run(conversion.plain));
}

void PrintTable(const QZ::Bench::BestOfRuns& best)
{
    std::puts("\n| conversion | here, ns | plain, ns | ratio |\n|---|---:|---:|---:|");
    for (const Conversion& conversion : kConversions) {
        const auto library = best.Of(std::string("here/") + conversion.name);
        const auto plain = best.Of(std::string("plain/") + conversion.name);
        if (library && plain)
            std::printf("| `%s` | %.1f | %.1f | %.2f |\n", conversion.name, *library, *plain,
                        *plain / *library);
    }
}

}   // namespace

int main(int argc, char** argv)
{
    for (const Conversion& conversion : kConversions)
        Register(conversion);
    QZ::Bench::BestOfRuns best;
    if (!QZ::Bench::RunInTurn(argc, argv, best))
        return 1;
    PrintTable(best);
}
