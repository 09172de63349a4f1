// SPDX-License-Identifier: MIT
#include <cstdio>

#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/HueAndGrayscaleQuantization.h"
#include "tools/qz/demo/Steps.h"

namespace QZ::Tool {

namespace {

using namespace Foundation;
using Linear = std::vector<Math::CVector3<float>>;

// Recolouring writes a luma into the alpha byte.
void KeepAlpha(const Image& before, Image& image)
{
    for (std::size_t i = 3; i < image.pixels.size(); i += 4)
        image.pixels[i] = before.pixels[i];
}

std::string ReduceHues(Image& image)
{
    const Image before = image;
    using Quantizer = CHueWeightedHistogramHierarchicalClusterQuantization;
    Quantizer quantizer;
    quantizer.Compute(360, 4, 0.0, CHueWeightedHistogram::eIPT, true, CColor::eD65, Quantizer::eDirection,
                      image.width, image.height, image.pixels.data());
    quantizer.Recolor(image.width, image.height, CColor::eD65, image.pixels.data());
    KeepAlpha(before, image);
    return std::to_string(quantizer.clusterColours.size()) + " hues";
}

std::string Posterize(Image& image)
{
    CHueAndGrayscaleQuantizationTest quantizer;
    quantizer.Compute(0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 4, 0.0, 3, 0.0, 0.5f, CGrayscaleWeightedHistogram::eLXX,
                      true, CColor::eD65, image.width, image.height, image.pixels.data());
    std::vector<unsigned char> greys(2 * image.Count());
    quantizer.Quantize(true, CColor::eD65, image.width, image.height, image.pixels.data(), greys.data());
    for (std::size_t i = 0; i < image.Count(); ++i)
        for (std::size_t channel = 0; channel < 3; ++channel)
            image.pixels[4 * i + channel] = greys[2 * i];
    return std::to_string(quantizer.palette.size()) + " greys in all";
}

using Estimator = void (*)(const Image& image, const Linear& linear, Math::CMatrix3<float>& matrix);

// The estimators return that matrix; its inverse carries the reference white back to the light.
Math::CVector3<float> LightOf(const Math::CMatrix3<float>& m)
{
    const Math::CVector3<float>& white = CColor::XYZReference(CColor::eD65);
    const auto cofactor = [&](int r, int c) {
        const int r1 = (r + 1) % 3, r2 = (r + 2) % 3, c1 = (c + 1) % 3, c2 = (c + 2) % 3;
        return m(r1, c1) * m(r2, c2) - m(r1, c2) * m(r2, c1);
    };
    const float determinant = m(0, 0) * cofactor(0, 0) + m(0, 1) * cofactor(0, 1) + m(0, 2) * cofactor(0, 2);
    Math::CVector3<float> light;
    for (int i = 0; i < 3; ++i)
        light[i] =
            (cofactor(0, i) * white.x + cofactor(1, i) * white.y + cofactor(2, i) * white.z) / determinant;
    return light;
}

std::string Balance(Image& image, Estimator estimate)
{
    const Image before = image;
    Linear linear;
    CWhiteBalance::UCharToCVector3fBuffer(true, image.width, image.height, image.pixels.data(), linear);
    Math::CMatrix3<float> matrix;
    estimate(image, linear, matrix);
    const Math::CVector3<float> light = LightOf(matrix);
    CWhiteBalance::Balance(CColor::eD65, true, false, light, image.width, image.height, linear,
                           image.pixels.data());
    KeepAlpha(before, image);
    Math::CVector3<float> yxy;
    CColor::XYZToYxy(light, yxy);
    char text[64];
    std::snprintf(text, sizeof text, "The light: x = %.4f, y = %.4f", static_cast<double>(yxy.y),
                  static_cast<double>(yxy.z));
    return text;
}

Step BalanceStep(const std::string& title, const std::string& text, const std::string& name,
                 Estimator estimate)
{
    return {"White balance",
            title,
            text,
            name,
            "",
            "",
            [estimate](Image& image) { return Balance(image, estimate); }};
}

}   // namespace

void AddColorSteps(std::vector<Step>& steps)
{
    steps.push_back({"Hues", "Four hues", "The hues join until four are left; lightness and chroma stay.",
                     "hues", "", "", ReduceHues});
    steps.push_back({"Hues", "Greys by hue",
                     "Each group of hues, and what has little colour, gets three greys of its own.",
                     "posterize", "", "", Posterize});
    steps.push_back(BalanceStep(
        "Grey world", "The mean colour of the picture is taken for the light.", "grey-world",
        [](const Image& image, const Linear& linear, Math::CMatrix3<float>& matrix) {
            CWhiteBalance::GrayWorld(CColor::eD65, true, false, image.width, image.height, linear, matrix);
        }));
    steps.push_back(BalanceStep(
        "Brightest", "The brightest red, green and blue are taken for the light.", "max-grey",
        [](const Image& image, const Linear& linear, Math::CMatrix3<float>& matrix) {
            CWhiteBalance::MaxGray(CColor::eD65, true, false, image.width, image.height, linear, matrix);
        }));
    steps.push_back(BalanceStep(
        "Local surfaces", "The light by which the parts of the picture agree (LSRS).", "lsrs",
        [](const Image& image, const Linear& linear, Math::CMatrix3<float>& matrix) {
            CWhiteBalance::LSRS(CColor::eD65, true, false, false, image.width, image.height, linear, matrix);
        }));
}

}   // namespace QZ::Tool
