// SPDX-License-Identifier: MIT
#include <vector>

#include "bench/Support/PerColour.h"

namespace QZ::Bench {

namespace {

void Highlights(benchmark::State& state)
{
    std::vector<unsigned char> lut;
    for (auto _ : state) {
        Color::Highlights(0.4f, 0.25f, lut);
        benchmark::DoNotOptimize(lut.data());
    }
}
BENCHMARK(Highlights);

/// One channel of a picture of a megapixel.
void GrayscaleHistogramEqualization(benchmark::State& state)
{
    std::mt19937 generator(1);
    std::vector<unsigned char> picture(4 << 20);
    for (unsigned char& byte : picture)
        byte = static_cast<unsigned char>(generator() >> 24);
    for (auto _ : state) {
        Color::GrayscaleHistogramEqualization(1024, 1024, 4, 1, picture.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(GrayscaleHistogramEqualization)->Unit(benchmark::kMillisecond);

}   // namespace

[[maybe_unused]] static const bool kAdjustments[] = {
    PerColour("ComplementaryColor", [](const Colour& c) { return Out(Color::ComplementaryColor, c); }),
    PerColour("HaeberliSaturationMatrix",
              [](const Colour& c) {
                  Math::CMatrix3<float> m;
                  Color::HaeberliSaturationMatrix(false, false, eD65, c.x, m);
                  return m;
              }),
    PerColour("HaeberliHueRotationMatrix/plain",
              [](const Colour& c) {
                  Math::CMatrix3<float> m;
                  Color::HaeberliHueRotationMatrix(false, false, eD65, c.x, false, m);
                  return m;
              }),
    PerColour("HaeberliHueRotationMatrix/luminance kept",
              [](const Colour& c) {
                  Math::CMatrix3<float> m;
                  Color::HaeberliHueRotationMatrix(false, false, eD65, c.x, true, m);
                  return m;
              }),
    PerColour("YIQHueRotation",
              [](const Colour& c) {
                  Math::CMatrix3<float> m;
                  Color::YIQHueRotation(c.x, m);
                  return m;
              }),
    PerColour("ColorCorrectionMethodPouli",
              [](const Colour& c) {
                  return Color::ColorCorrectionMethodPouli(false, false, eD65, Colour(0.5f, 0.25f, 0.1f), c);
              }),
    PerColour("ToneCurveModifiedHable",
              [](const Colour& c) { return Color::ToneCurveModifiedHable(0.22f, 0.3f, 0.5f, 0.06f, c.x); }),
    PerColour("ToneCurveInsomniacGames",
              [](const Colour& c) {
                  return Color::ToneCurveInsomniacGames({0.05f, 0.5f, 0.3f, 0.8f, 4.0f}, false, c.x);
              }),
};

}   // namespace QZ::Bench
