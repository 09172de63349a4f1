// SPDX-License-Identifier: MIT
#include <array>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/HSLuv.h"
#include "tools/qz/selftest/Cases.h"
#include "tools/qz/selftest/Inputs.h"

namespace QZ::Tool::Selftest {

namespace {

using Foundation::CColor;
using Color = Math::CVector3<float>;
using Matrix = Math::CMatrix3<float>;
using White = CColor::EIlluminant;

constexpr std::size_t kInputs = std::size_t{1} << 20;

const std::vector<Color>& AllColors()
{
    static const std::vector<Color> colors = Colors(kInputs);
    return colors;
}

/// The flags and the white of the input with this number: all eight combinations in turn.
struct Flags {
    bool first;
    bool second;
    White white;

    explicit Flags(std::size_t i)
        : first((i & 1) != 0), second((i & 2) != 0), white((i & 4) != 0 ? CColor::eD65 : CColor::eD50)
    {}
};

void Add(Digest& digest, const Matrix& matrix)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            digest.Add(matrix(row, column));
}

/// A case that calls a function with flags and a colour for each input.
template <class Function>
Case ForColors(const char* name, Function function)
{
    return {std::string("CColor::") + name, [function](Digest& digest) {
                const auto& colors = AllColors();
                for (std::size_t i = 0; i < colors.size(); ++i)
                    digest.Add(function(Flags(i), colors[i]));
            }};
}

/// The scalar that a function writes through its last argument.
template <class Function>
float Written(Function&& function)
{
    float value = 0.0f;
    function(value);
    return value;
}

std::vector<Case> LuminanceCases()
{
    using C = CColor;
    return {
        ForColors("SRGBToLinearY",
                  [](Flags f, Color c) {
                      return Written([&](float& Y) { C::SRGBToLinearY(f.first, f.second, f.white, c, Y); });
                  }),
        ForColors("LinearRGBToLinearY",
                  [](Flags f, Color c) {
                      return Written([&](float& Y) { C::LinearRGBToLinearY(f.second, f.white, c, Y); });
                  }),
        ForColors("SRGBToNonlinearY",
                  [](Flags f, Color c) {
                      return Written(
                          [&](float& Y) { C::SRGBToNonlinearY(f.first, f.second, f.white, c, Y); });
                  }),
        ForColors("LinearRGBToNonlinearY",
                  [](Flags f, Color c) {
                      return Written(
                          [&](float& Y) { C::LinearRGBToNonlinearY(f.first, f.second, f.white, c, Y); });
                  }),
        ForColors("LinearDisplayP3ToLinearY",
                  [](Flags f, Color c) {
                      return Written([&](float& Y) { C::LinearDisplayP3ToLinearY(f.white, c, Y); });
                  }),
        ForColors("DisplayP3ToLinearY",
                  [](Flags f, Color c) {
                      return Written([&](float& Y) { C::DisplayP3ToLinearY(f.first, f.white, c, Y); });
                  }),
        ForColors("DisplayP3ToDisplayP3Y",
                  [](Flags f, Color c) {
                      return Written(
                          [&](float& y) { C::DisplayP3ToDisplayP3Y(f.first, f.second, f.white, c, y); });
                  }),
        ForColors("SRGBToLXX",
                  [](Flags f, Color c) {
                      return Written([&](float& L) { C::SRGBToLXX(f.first, f.second, c, L); });
                  }),
        ForColors("LinearRGBToLXX",
                  [](Flags, Color c) { return Written([&](float& L) { C::LinearRGBToLXX(c, L); }); }),
        ForColors("LinearYToLXX",
                  [](Flags, Color c) { return Written([&](float& L) { C::LinearYToLXX(c.x, L); }); }),
        ForColors("LXXToLinearY",
                  [](Flags, Color c) { return Written([&](float& Y) { C::LXXToLinearY(c.x, Y); }); }),
        ForColors(
            "SRGBYToLXX",
            [](Flags f, Color c) { return Written([&](float& L) { C::SRGBYToLXX(f.first, c.x, L); }); }),
        ForColors(
            "LXXToSRGBY",
            [](Flags f, Color c) { return Written([&](float& y) { C::LXXToSRGBY(f.first, c.x, y); }); }),
        ForColors("LinearYToIXX",
                  [](Flags, Color c) { return Written([&](float& I) { C::LinearYToIXX(c.x, I); }); }),
        ForColors("IPTToXXH", [](Flags, Color c) { return Written([&](float& H) { C::IPTToXXH(c, H); }); }),
        ForColors("NonlinearToLinearToneCurve (scalar)",
                  [](Flags f, Color c) {
                      return Written([&](float& v) { C::NonlinearToLinearToneCurve(f.first, c.x, v); });
                  }),
        ForColors("LinearToNonlinearToneCurve (scalar)",
                  [](Flags f, Color c) {
                      return Written([&](float& v) { C::LinearToNonlinearToneCurve(f.first, c.x, v); });
                  }),
    };
}

std::vector<Case> MeasureCases()
{
    return {
        ForColors("LChSaturation", [](Flags, Color c) { return CColor::LChSaturation(c); }),
        ForColors("LChuvSaturation", [](Flags, Color c) { return CColor::LChuvSaturation(c); }),
        ForColors("IPTSaturation", [](Flags, Color c) { return CColor::IPTSaturation(c); }),
        ForColors("ICHSaturation", [](Flags, Color c) { return CColor::ICHSaturation(c); }),
        ForColors("Clamp", [](Flags, Color c) { return CColor::Clamp(c, 0.25f, 0.75f); }),
        ForColors("DeltaESquaredLinearRGBLinearRGB",
                  [](Flags f, Color c) {
                      return CColor::DeltaESquaredLinearRGBLinearRGB(f.white, c, {c.z, c.x, c.y});
                  }),
        ForColors("DeltaESquaredLinearRGBLab",
                  [](Flags f, Color c) {
                      return CColor::DeltaESquaredLinearRGBLab(f.white, c, {c.z, c.x, c.y});
                  }),
    };
}

std::vector<Case> AdjustmentCases()
{
    return {
        ForColors("YToXYZ",
                  [](Flags f, Color c) {
                      Color out;
                      CColor::YToXYZ(f.white, c.x, out);
                      return out;
                  }),
        ForColors("XYZtoXYZWithModifiedY",
                  [](Flags f, Color c) {
                      Color out;
                      CColor::XYZtoXYZWithModifiedY(f.white, c, c.z, out);
                      return out;
                  }),
        ForColors("ComplementaryColor",
                  [](Flags, Color c) {
                      Color out;
                      CColor::ComplementaryColor(c, out);
                      return out;
                  }),
        ForColors("LimitLuvChroma",
                  [](Flags, Color c) {
                      CColor::LimitLuvChroma(c);
                      return c;
                  }),
        ForColors(
            "ColorCorrectionMethodPouli",
            [](Flags f, Color c) {
                return CColor::ColorCorrectionMethodPouli(f.first, f.second, f.white, c, {c.z, c.x, c.y});
            }),
        ForColors("ToneCurveModifiedHable",
                  [](Flags, Color c) { return CColor::ToneCurveModifiedHable(0.22f, c.x, 0.3f, c.y, c.z); }),
        ForColors("ToneCurveInsomniacGames",
                  [](Flags f, Color c) {
                      return CColor::ToneCurveInsomniacGames({0.0f, c.x, 0.3f, c.y, 4.0f}, f.first, c.z);
                  }),
    };
}

std::vector<Case> MatrixCases()
{
    constexpr std::size_t kMatrices = 4096;
    const auto forMatrices = [](const char* name, auto make) {
        return Case{std::string("CColor::") + name, [make](Digest& digest) {
                        const auto& colors = AllColors();
                        for (std::size_t i = 0; i < kMatrices; ++i) {
                            Matrix matrix;
                            make(Flags(i), colors[i], matrix);
                            Add(digest, matrix);
                        }
                    }};
    };
    return {
        forMatrices("ChromaticAdaptationMatrix",
                    [](Flags f, const Color& c, Matrix& out) {
                        out = CColor::ChromaticAdaptationMatrix(c, CColor::XYZReference(f.white));
                    }),
        forMatrices("HaeberliSaturationMatrix",
                    [](Flags f, const Color& c, Matrix& out) {
                        CColor::HaeberliSaturationMatrix(f.first, f.second, f.white, c.x, out);
                    }),
        forMatrices("HaeberliHueRotationMatrix",
                    [](Flags f, const Color& c, Matrix& out) {
                        CColor::HaeberliHueRotationMatrix(f.first, false, f.white, 6.0f * c.x, f.second, out);
                    }),
        forMatrices("YIQHueRotation",
                    [](Flags, const Color& c, Matrix& out) { CColor::YIQHueRotation(6.0f * c.x, out); }),
        {"CColor::Highlights",
         [](Digest& digest) {
             Numbers numbers(4);
             std::vector<unsigned char> lut;
             for (int i = 0; i < 1024; ++i) {
                 const float band = numbers.Unit();
                 CColor::Highlights(numbers.Unit(), band, lut);
                 digest.Add(lut);
             }
         }},
    };
}

/// A whole conversion of HSLuv over points of its unit cube, scaled.
Case HSLuvCase(const char* name, void (*convert)(double, double, double, double*, double*, double*),
               const std::array<double, 3>& scale)
{
    return {name, [=](Digest& digest) {
                Numbers numbers(5);
                for (std::size_t i = 0; i < kInputs; ++i) {
                    std::array<double, 3> in;
                    std::array<double, 3> out;
                    for (std::size_t c = 0; c < 3; ++c)
                        in[c] = scale[c] * static_cast<double>(numbers.Unit());
                    convert(in[0], in[1], in[2], &out[0], &out[1], &out[2]);
                    digest.Add(out);
                }
            }};
}

}   // namespace

std::vector<Case> SingleCases()
{
    std::vector<Case> cases = LuminanceCases();
    for (const auto& more : {MeasureCases(), AdjustmentCases(), MatrixCases()})
        cases.insert(cases.end(), more.begin(), more.end());
    cases.push_back(HSLuvCase("rgbToHusl", rgbToHusl, {1, 1, 1}));
    cases.push_back(HSLuvCase("rgbToHuslp", rgbToHuslp, {1, 1, 1}));
    cases.push_back(HSLuvCase("huslToRgb", huslToRgb, {360, 100, 100}));
    cases.push_back(HSLuvCase("huslpToRgb", huslpToRgb, {360, 100, 100}));
    return cases;
}

}   // namespace QZ::Tool::Selftest
