// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Balance.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "tools/qz/Failure.h"
#include "tools/qz/operations/Alpha.h"

namespace QZ::Tool {

using namespace Foundation;
using Math::CVector3;

namespace {

using Linear = std::vector<CVector3<float>>;
using Matrix = Math::CMatrix3<float>;

// The colour temperature's point on the Planckian locus in (u, v) of 1960, 1000 to 15000 K: M. Krystek, "An
// algorithm to calculate correlated colour temperature", Color Research and Application 10, 1985, pp. 38-40.
double DistanceFromLocus(double kelvin, double u, double v)
{
    const double T = kelvin;
    const double uT = (0.860117757 + 1.54118254e-4 * T + 1.28641212e-7 * T * T) /
                      (1.0 + 8.42420235e-4 * T + 7.08145163e-7 * T * T);
    const double vT = (0.317398726 + 4.22806245e-5 * T + 4.20481691e-8 * T * T) /
                      (1.0 - 2.89741816e-5 * T + 1.61456053e-7 * T * T);
    return std::hypot(u - uT, v - vT);
}

// The estimators return the matrix that carries the light to the reference white: its inverse carries that
// white back. A singular matrix gives NaN or infinity.
CVector3<double> SourceOf(const Matrix& matrix, const CVector3<float>& reference)
{
    const auto m = [&](int row, int column) { return static_cast<double>(matrix(row, column)); };
    const auto cofactor = [&](int row, int column) {
        const int r1 = (row + 1) % 3, r2 = (row + 2) % 3, c1 = (column + 1) % 3, c2 = (column + 2) % 3;
        return m(r1, c1) * m(r2, c2) - m(r1, c2) * m(r2, c1);
    };
    const auto [X, Y, Z] = std::array{static_cast<double>(reference.x), static_cast<double>(reference.y),
                                      static_cast<double>(reference.z)};
    const auto component = [&](int i) {
        return cofactor(0, i) * X + cofactor(1, i) * Y + cofactor(2, i) * Z;
    };
    // The determinant would divide all three alike.
    return CVector3<double>(component(0), component(1), component(2)) * (1.0 / component(1));
}

Failure NoLight(const std::string& why)
{
    return {Status::Malformed, "", why, "give the light with --light"};
}

CVector3<double> Estimate(const BalanceOptions& options, const Image& image, const Linear& linear)
{
    const auto isBlack = [](const CVector3<float>& c) { return c.x == 0.0f && c.y == 0.0f && c.z == 0.0f; };
    if (std::ranges::all_of(linear, isBlack))
        throw NoLight("the picture is black throughout: it shows no light");
    const CColor::EIlluminant illuminant = options.illuminant;
    const int width = image.width, height = image.height;
    Matrix matrix;
    switch (options.method) {
        case BalanceOptions::Method::GreyWorld:
            CWhiteBalance::GrayWorld(illuminant, true, false, width, height, linear, matrix);
            break;
        case BalanceOptions::Method::MaxGray:
            CWhiteBalance::MaxGray(illuminant, true, false, width, height, linear, matrix);
            break;
        case BalanceOptions::Method::LSRS:
            if (CWhiteBalance::LSRSTileDimension(options.largeTiles, width, height) < 1)
                throw NoLight("the picture is too small for the tiles of LSRS");
            CWhiteBalance::LSRS(illuminant, true, false, options.largeTiles, width, height, linear, matrix);
            break;
    }
    return SourceOf(matrix, CColor::XYZReference(illuminant));
}

CVector3<double> GivenLight(const BalanceOptions& options)
{
    const CVector3<float> srgb = *options.light * (1.0f / 255.0f);
    if (srgb.x == 0.0f && srgb.y == 0.0f && srgb.z == 0.0f)
        throw Failure(Status::Usage, "--light", "black is no light", "take the colour of something grey");
    CVector3<float> rgb, white;
    CColor::NonlinearToLinearToneCurve(false, false, srgb, rgb);
    CWhiteBalance::SourceIlluminant(rgb, options.illuminant, false, white);
    return {static_cast<double>(white.x), static_cast<double>(white.y), static_cast<double>(white.z)};
}

bool IsLight(const CVector3<double>& white)
{
    return std::isfinite(white.x) && std::isfinite(white.y) && std::isfinite(white.z) && white.x >= 0.0 &&
           white.z >= 0.0;
}

}   // namespace

std::optional<double> CorrelatedColorTemperature(double x, double y)
{
    const double n = (x - 0.3320) / (0.1858 - y);
    const double kelvin = ((449.0 * n + 3525.0) * n + 6823.3) * n + 5520.33;
    if (!(kelvin >= 2000.0 && kelvin <= 12500.0))
        return std::nullopt;
    const double denominator = -2.0 * x + 12.0 * y + 3.0;
    const double distance = DistanceFromLocus(kelvin, 4.0 * x / denominator, 6.0 * y / denominator);
    return distance <= 0.05 ? std::optional(kelvin) : std::nullopt;
}

Light LightOf(const CVector3<double>& xyz)
{
    Light light;
    light.white = xyz * (1.0 / xyz.y);
    const double sum = xyz.x + xyz.y + xyz.z;
    light.x = xyz.x / sum;
    light.y = xyz.y / sum;
    light.kelvin = CorrelatedColorTemperature(light.x, light.y);
    return light;
}

Light BalanceWhite(const BalanceOptions& options, Image& image)
{
    Linear linear;
    CWhiteBalance::UCharToCVector3fBuffer(true, image.width, image.height, image.pixels.data(), linear);
    const CVector3<double> source = options.light ? GivenLight(options) : Estimate(options, image, linear);
    if (!IsLight(source))
        throw NoLight("no light can be told from the picture");
    const CVector3<float> white(static_cast<float>(source.x), static_cast<float>(source.y),
                                static_cast<float>(source.z));
    const std::vector<unsigned char> alpha = AlphaOf(image);
    CWhiteBalance::Balance(options.illuminant, true, options.displayP3, white, image.width, image.height,
                           linear, image.pixels.data());
    SetAlpha(alpha, image);
    if (options.displayP3)
        image.colorSpace = ColorSpace::DisplayP3;
    return LightOf(source);
}

}   // namespace QZ::Tool
