// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <cstddef>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/Formulas/HSV.h"
#include "QZ/Foundation/Color/Formulas/IPT.h"
#include "QZ/Math/CConstants.h"
#include "QZ/Math/CQuaternion.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;
using Matrix = Math::CMatrix3<float>;
using Vector = Math::CVector3<float>;

namespace {

/// The rotation that carries the grey axis (1, 1, 1) onto +Z, in its two steps.
struct GreyAxisRotation {
    Matrix x;
    Matrix y;

    GreyAxisRotation()
    {
        x.RotateX(static_cast<float>(Math::CConstants::DegreesToRadians * 45.0));
        y.RotateY(-0.61547965f);   // atan(1 / sqrt(2))
    }
};

/// x and y stay, z' = z + dx x + dy y.
Matrix ShearOntoZ(float dx, float dy)
{
    Matrix shear;
    shear.ShearZ(dx, dy);
    shear.Transpose();
    return shear;
}

/// Rotation about the grey axis that leaves the luminance of every colour as it is: a shear first makes the
/// luminance a function of Z alone (P. Haeberli, "Matrix Operations for Image Processing", 1993).
Matrix LuminanceKeepingRotation(const Vector& luminanceWeights, float angle)
{
    GreyAxisRotation toZ;
    Matrix rotation;
    rotation.RotateZ(angle);

    Matrix out = toZ.y * toZ.x;
    const Vector luminance = out * luminanceWeights;
    if (luminance.z > 0.0f) {
        const float inverse = 1.0f / luminance.z;
        const float dx = luminance.x * inverse;
        const float dy = inverse * luminance.y;
        out = ShearOntoZ(dx, dy) * out;
        out = rotation * out;
        out = ShearOntoZ(-dx, -dy) * out;
    } else {
        out = rotation * out;
    }

    toZ.y.Transpose();
    toZ.x.Transpose();
    out = toZ.y * out;
    return toZ.x * out;
}

}   // namespace

void CColor::ComplementaryColor(const Vector& rgb, Vector& out)
{
    out = formula::ComplementaryColor(formula::Vec3(rgb));
}

void CColor::HaeberliBrightnessMatrix(const Vector& scale, Matrix& out)
{
    out.Set(scale.x, 0.0f, 0.0f, 0.0f, scale.y, 0.0f, 0.0f, 0.0f, scale.z);
}

void CColor::HaeberliSaturationMatrix(bool luma, bool extendedRange, EIlluminant illuminant, float saturation,
                                      Matrix& out)
{
    const Vector a = (1.0f - saturation) * RGBLuminanceVec3(luma, extendedRange, illuminant);
    const Vector b = a + saturation;
    out.Set(b.x, a.x, a.x, a.y, b.y, a.y, a.z, a.z, b.z);
}

void CColor::HaeberliHueRotationMatrix(bool luma, bool extendedRange, EIlluminant illuminant, float angle,
                                       bool useHaeberli, Matrix& out)
{
    if (useHaeberli)
        out = LuminanceKeepingRotation(RGBLuminanceVec3(luma, extendedRange, illuminant), angle);
    else
        out = Math::CQuaternion<float>(Vector(1.0f, 1.0f, 1.0f), angle).Matrix();
}

void CColor::YIQHueRotation(float angle, Matrix& out)
{
    const auto [s, c] = formula::SinCos(angle);
    const Matrix toYIQ(0.299f, 0.587f, 0.114f, 0.596f, -0.274f, -0.321f, 0.211f, -0.523f, 0.311f);
    const Matrix rotation(1.0f, 0.0f, 0.0f, 0.0f, c, s, 0.0f, -s, c);
    const Matrix fromYIQ(1.0f, 0.956f, 0.621f, 1.0f, -0.272f, -0.647f, 1.0f, -1.107f, 1.705f);
    out = fromYIQ * (rotation * toYIQ);
}

void CColor::Highlights(float a, float b, std::vector<unsigned char>& lut)
{
    constexpr float kLog2E = 1.442695f;
    constexpr float kLogOfWeightAtBandEdge = -5.115996f;   // ln 0.006
    lut.resize(256);
    const float z = (1.0f - a) * 11.7f;
    const float k = kLog2E * z / b;
    const float c = b / (1.0f / (formula::Exp(-z) + 1.0f) - 0.5f);
    const float e = kLogOfWeightAtBandEdge / formula::Log(1.0f - b);
    for (int i = 0; i < 256; ++i) {
        const float x = static_cast<float>(i) * 0.003921569f;
        const float g = (1.0f / (formula::Exp2(-(x * k - k)) + 1.0f) - 0.5f) * c + 1.0f;
        const float p = formula::Pow(x, e);
        const float bent = g * p;
        const double kept = static_cast<double>(x) * (1.0 - static_cast<double>(p));
        const float r = static_cast<float>(kept + static_cast<double>(bent));
        lut[static_cast<std::size_t>(i)] = static_cast<unsigned char>(formula::ClampToUnit(r) * 255.0f);
    }
}

Vector CColor::ColorCorrectionMethodPouli(bool nonlinear, bool extendedRange, EIlluminant illuminant,
                                          const Vector& reference, const Vector& target)
{
    using Colour = formula::Vec3<float>;
    const auto toIPT = [&](const Colour& rgb) {
        const Colour linear = nonlinear ? formula::NonlinearToLinear(false, extendedRange, rgb) : rgb;
        return formula::XYZToIPT(illuminant, formula::LinearRGBToXYZ(illuminant, linear));
    };
    const Colour ipt1 = toIPT(Colour(reference));
    const Colour ipt2 = toIPT(Colour(target));

    const float C1 = formula::Hypotenuse(ipt1.y, ipt1.z);
    const float h = formula::IPTHue(ipt1);
    const float C2 = formula::Hypotenuse(ipt2.y, ipt2.z);
    const float Cs = C2 * ipt1.x / ipt2.x;
    // Not simplified: an achromatic target divides 0 by 0, and callers rely on the black that the clamp makes
    // of it.
    const float chroma = Cs * (C1 * formula::Hypotenuse(ipt2.x, Cs) / (Cs * formula::Hypotenuse(ipt1.x, C1)));

    const Colour ipt = formula::ICHToIPT(Colour(ipt2.x, chroma, h));
    const Colour rgb = formula::XYZToLinearRGB(false, illuminant, formula::IPTToXYZ(illuminant, ipt));
    return nonlinear ? formula::LinearToNonlinear(false, extendedRange, rgb) : rgb;
}

void CColor::GrayscaleHistogramEqualization(int width, int height, int step, int offset, unsigned char* data)
{
    const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(width) * height;
    if (n <= 0)
        return;
    const std::ptrdiff_t end = n * step;
    std::array<int, 256> counts{};
    for (std::ptrdiff_t i = offset; i < end; i += step)
        ++counts[data[i]];

    std::array<unsigned char, 256> map{};
    double cdf = 0.0;
    for (std::size_t level = 0; level < 256; ++level) {
        cdf += counts[level] * (1.0 / static_cast<double>(n));
        map[level] = static_cast<unsigned char>(cdf * 255.0 + 0.5);
    }
    for (std::ptrdiff_t i = offset; i < end; i += step)
        data[i] = map[data[i]];
}

float CColor::ToneCurveModifiedHable(float A, float B, float C, float D, float x)
{
    return ((B + A * x) * x) / ((A * x + C) * x + D);
}

float CColor::ToneCurveInsomniacGames(const sInsomniacGamesToneCurve& curve, bool inverse, float x)
{
    Math::CVector4<float> toe;
    Math::CVector4<float> shoulder;
    ToneCurveCoefficientsInsomniacGames(curve, toe, shoulder);
    if (!inverse) {
        const auto& [a, b, c, d] = curve.crossOverPoint > x ? toe : shoulder;
        return (a * x + c) / (b * x + d);
    }
    const auto& [a, b, c, d] =
        ToneCurveInsomniacGames(curve, false, curve.crossOverPoint) > x ? toe : shoulder;
    return (c - d * x) / (b * x - a);
}

void CColor::ToneCurveCoefficientsInsomniacGames(const sInsomniacGamesToneCurve& curve,
                                                 Math::CVector4<float>& toe, Math::CVector4<float>& shoulder)
{
    const auto& [p0, p1, p2, p3, p4] = curve;
    const float k = ((p2 - p0) * (1.0f - p1)) / ((p4 - p2) * (1.0f - p3) + (p2 - p0) * (1.0f - p1));
    toe.Set(k * (1.0f - p1), -p1, -k * (1.0f - p1) * p0, p2 - (1.0f - p1) * p0);
    const float m = p4 * (1.0f - p3) - p2;
    shoulder.Set(k * p3 + (1.0f - k), p3, k * m - (1.0f - k) * p2, m);
}

}   // namespace QZ::Foundation
