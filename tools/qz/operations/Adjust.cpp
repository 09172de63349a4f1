// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Adjust.h"

#include <algorithm>
#include <numbers>

#include "QZ/Foundation/Color/CColorRows.h"

namespace QZ::Tool {

using Foundation::CColor;
using Foundation::CColorRows;
using Math::CMatrix3;
using Math::CVector3;

namespace {

using Row = std::vector<CVector3<float>>;
using Table = std::array<float, 256>;

// NaN gives 0.
float Unit(float value)
{
    return std::min(1.0f, std::max(0.0f, value));
}

unsigned char ToByte(float value)
{
    return static_cast<unsigned char>(Unit(value) * 255.0f + 0.5f);
}

// The value of each byte after the tone curves: linear or encoded, as the matrices want it.
Table ToneTable(const Adjustments& adjustments)
{
    const bool curved = adjustments.hable || adjustments.insomniac;
    Table table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        float value = static_cast<float>(i) * 0.003921569f;
        if (curved || adjustments.linear) {
            float linear = 0.0f;
            CColor::NonlinearToLinearToneCurve(false, value, linear);
            if (const auto& hable = adjustments.hable)
                linear = Unit(CColor::ToneCurveModifiedHable((*hable)[0], (*hable)[1], (*hable)[2],
                                                             (*hable)[3], linear));
            if (const auto& insomniac = adjustments.insomniac)
                linear = Unit(CColor::ToneCurveInsomniacGames(*insomniac, adjustments.inverse, linear));
            value = linear;
            if (!adjustments.linear)
                CColor::LinearToNonlinearToneCurve(false, linear, value);
        }
        table[i] = value;
    }
    return table;
}

CMatrix3<float> Matrix(const Adjustments& adjustments)
{
    const bool luma = !adjustments.linear;
    const float angle = adjustments.hueDegrees * std::numbers::pi_v<float> / 180.0f;
    CMatrix3<float> matrix;
    matrix.Set(1, 0, 0, 0, 1, 0, 0, 0, 1);
    if (angle != 0.0f && adjustments.rotation == Adjustments::HueRotation::YIQ)
        CColor::YIQHueRotation(angle, matrix);
    else if (angle != 0.0f)
        CColor::HaeberliHueRotationMatrix(luma, false, adjustments.illuminant, angle,
                                          adjustments.rotation == Adjustments::HueRotation::Luminance,
                                          matrix);
    CMatrix3<float> saturation;
    CColor::HaeberliSaturationMatrix(luma, false, adjustments.illuminant, adjustments.saturation, saturation);
    saturation.Transpose();   // it is laid out for row vectors
    return saturation * matrix;
}

void AdjustPixels(const Adjustments& adjustments, Image& image)
{
    const Table tone = ToneTable(adjustments);
    const CMatrix3<float> matrix = Matrix(adjustments);
    const bool mixes = adjustments.hueDegrees != 0.0f || adjustments.saturation != 1.0f;
    Row row(static_cast<std::size_t>(image.width));
    for (int y = 0; y < image.height; ++y) {
        unsigned char* pixels = image.At(0, y);
        for (std::size_t x = 0; x < row.size(); ++x) {
            const unsigned char* p = pixels + 4 * x;
            row[x] = {tone[p[0]], tone[p[1]], tone[p[2]]};
            if (mixes)
                row[x] = CColor::Clamp(matrix * row[x], 0.0f, 1.0f);
        }
        if (adjustments.linear)
            CColorRows::LinearToNonlinearToneCurve(false, false, row, row);
        for (std::size_t x = 0; x < row.size(); ++x) {
            CVector3<float> color = row[x];
            if (adjustments.complementary)
                CColor::ComplementaryColor(row[x], color);
            unsigned char* p = pixels + 4 * x;
            p[0] = ToByte(color.x);
            p[1] = ToByte(color.y);
            p[2] = ToByte(color.z);
        }
    }
}

void EqualizeLuma(Image& image)
{
    std::vector<unsigned char> luma(image.Count());
    Row row(static_cast<std::size_t>(image.width));
    const auto toYCbCr = [&](int y) {
        for (int x = 0; x < image.width; ++x) {
            const unsigned char* p = image.At(x, y);
            row[static_cast<std::size_t>(x)] = CVector3<float>(p[0], p[1], p[2]) * 0.003921569f;
        }
        CColorRows::SRGBToYCbCr(row, row);
    };
    for (int y = 0; y < image.height; ++y) {
        toYCbCr(y);
        for (std::size_t x = 0; x < row.size(); ++x)
            luma[static_cast<std::size_t>(y) * row.size() + x] = ToByte(row[x].x);
    }
    CColor::GrayscaleHistogramEqualization(image.width, image.height, 1, 0, luma.data());
    for (int y = 0; y < image.height; ++y) {
        toYCbCr(y);
        for (std::size_t x = 0; x < row.size(); ++x)
            row[x].x = static_cast<float>(luma[static_cast<std::size_t>(y) * row.size() + x]) * 0.003921569f;
        CColorRows::YCbCrToSRGB(row, row);
        for (std::size_t x = 0; x < row.size(); ++x) {
            unsigned char* p = image.At(static_cast<int>(x), y);
            p[0] = ToByte(row[x].x);
            p[1] = ToByte(row[x].y);
            p[2] = ToByte(row[x].z);
        }
    }
}

}   // namespace

void Adjust(const Adjustments& adjustments, Image& image)
{
    AdjustPixels(adjustments, image);
    if (adjustments.equalize)
        EqualizeLuma(image);
    for (int channel = 0; channel < 3 && adjustments.equalizeChannels; ++channel)
        CColor::GrayscaleHistogramEqualization(image.width, image.height, 4, channel, image.pixels.data());
}

}   // namespace QZ::Tool
