// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "QZ/Foundation/Color/CColorRows.h"
#include "bench/Support/Photograph.h"

// Conversions of a row of pixels, in items (pixels) a second: row against one colour after the other.

namespace QZ::Bench {
namespace {

using Foundation::CColor;
using Foundation::CColorRows;
using Color = Math::CVector3<float>;
using Colors = std::vector<Color>;

constexpr auto kWhite = CColor::eD65;

/// A part of a photograph, whose 64 kB of pixels and results stay in the second cache.
struct Row {
    std::vector<unsigned char> rgba = MakePhotograph(128, 128).rgba;
    Colors in = Colors(rgba.size() / 4);
    Colors out = Colors(rgba.size() / 4);

    Row()
    {
        for (std::size_t i = 0; i < in.size(); ++i)
            in[i] = {static_cast<float>(rgba[4 * i]) * 0.003921569f,
                     static_cast<float>(rgba[4 * i + 1]) * 0.003921569f,
                     static_cast<float>(rgba[4 * i + 2]) * 0.003921569f};
    }
};

template <class Body>
bool Register(const char* name, Body body)
{
    benchmark::RegisterBenchmark(name, [body](benchmark::State& state) {
        Row row;
        for (auto _ : state) {
            body(row);
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(row.in.size()));
    });
    return true;
}

/// The single conversion for each colour of the row.
template <class Convert>
void OneByOne(Row& row, Convert&& convert)
{
    for (std::size_t i = 0; i < row.in.size(); ++i)
        convert(row.in[i], row.out[i]);
}

/// A loop that the compiler leaves without vectors: it would run slowly with dirty upper halves of registers.
void PlainCode(Row& row)
{
    float sum = 0.0f;
    for (const Color& color : row.in)
        sum = sum * 0.5f + color.x * color.y;
    benchmark::DoNotOptimize(sum);
}

[[maybe_unused]] const bool kRegistered[] = {
    Register("PlainCode/before", PlainCode),
    Register("PlainCode/after a kernel of one pixel",
             [](Row& row) {
                 CColorRows::SRGBToLab(false, false, kWhite, CColorRows::Pixels(row.rgba).first(4),
                                       CColorRows::ColorsOut(row.out).first(1));
                 PlainCode(row);
             }),
    Register("NonlinearToLinear/row",
             [](Row& r) { CColorRows::NonlinearToLinearToneCurve(false, false, r.in, r.out); }),
    Register("NonlinearToLinear/single",
             [](Row& r) {
                 OneByOne(r, [](const Color& in, Color& out) {
                     CColor::NonlinearToLinearToneCurve(false, false, in, out);
                 });
             }),
    Register("SRGBToLab/row", [](Row& r) { CColorRows::SRGBToLab(false, false, kWhite, r.in, r.out); }),
    Register("SRGBToLab/pixels", [](Row& r) { CColorRows::SRGBToLab(false, false, kWhite, r.rgba, r.out); }),
    Register("SRGBToLab/single",
             [](Row& r) {
                 OneByOne(r, [](const Color& in, Color& out) {
                     CColor::SRGBToLab(false, false, kWhite, in, out);
                 });
             }),
    Register("SRGBToLuv/row", [](Row& r) { CColorRows::SRGBToLuv(false, false, kWhite, r.in, r.out); }),
    Register("SRGBToLuv/pixels", [](Row& r) { CColorRows::SRGBToLuv(false, false, kWhite, r.rgba, r.out); }),
    Register("SRGBToLuv/single",
             [](Row& r) {
                 OneByOne(r, [](const Color& in, Color& out) {
                     CColor::SRGBToLuv(false, false, kWhite, in, out);
                 });
             }),
    Register("SRGBToIPT/row", [](Row& r) { CColorRows::SRGBToIPT(false, false, kWhite, r.in, r.out); }),
    Register("SRGBToIPT/pixels", [](Row& r) { CColorRows::SRGBToIPT(false, false, kWhite, r.rgba, r.out); }),
    Register("SRGBToIPT/single",
             [](Row& r) {
                 OneByOne(r, [](const Color& in, Color& out) {
                     CColor::SRGBToIPT(false, false, kWhite, in, out);
                 });
             }),
    Register("LabToSRGB/row", [](Row& r) { CColorRows::LabToSRGB(false, false, kWhite, r.in, r.out); }),
    Register("LabToSRGB/pixels", [](Row& r) { CColorRows::LabToSRGB(false, false, kWhite, r.in, r.rgba); }),
    Register("LabToSRGB/single",
             [](Row& r) {
                 OneByOne(r, [](const Color& in, Color& out) {
                     CColor::LabToSRGB(false, false, kWhite, in, out);
                 });
             }),
    Register("LabToLCh/row", [](Row& r) { CColorRows::LabToLCh(r.in, r.out); }),
    Register("LabToLCh/single", [](Row& r) { OneByOne(r, CColor::LabToLCh); }),
    Register("RGBToHSV/row", [](Row& r) { CColorRows::RGBToHSV(r.in, r.out); }),
    Register("RGBToHSV/single", [](Row& r) { OneByOne(r, CColor::RGBToHSV); }),
    Register("DisplayP3ToSRGB/row",
             [](Row& r) { CColorRows::DisplayP3ToSRGB(false, false, kWhite, r.in, r.out); }),
    Register("DisplayP3ToSRGB/single",
             [](Row& r) {
                 OneByOne(r, [](const Color& in, Color& out) {
                     CColor::DisplayP3ToSRGB(false, false, kWhite, in, out);
                 });
             }),
};

}   // namespace
}   // namespace QZ::Bench
