// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "QZ/Foundation/Color/CColor.h"
#include "tests/Support/Pictures.h"

/// \file
/// Scenes under lights that are known, and how far an estimate is from them.

namespace QZ::Test {

using LinearPicture = std::vector<Math::CVector3<float>>;

/// A light, as the factors of the three Bradford cone responses against D65.
struct Light {
    std::string name;
    Math::CVector3<float> gains;
};

inline const std::vector<Light>& Lights()
{
    static const std::vector<Light> lights = {
        {"lamp", {1.25f, 0.92f, 0.38f}}, {"shade", {0.93f, 1.0f, 1.32f}}, {"tube", {0.98f, 1.06f, 0.80f}}};
    return lights;
}

/// Linear sRGB under D65 to linear sRGB under the light: a diagonal in Bradford's cone space.
inline Math::CVector3<float> Lit(const Light& light, const Math::CVector3<float>& rgb)
{
    using Foundation::CColor;
    const Math::CMatrix3<float> toCones(0.8951f, 0.2664f, -0.1614f, -0.7502f, 1.7135f, 0.0367f, 0.0389f,
                                        -0.0685f, 1.0296f);
    const Math::CMatrix3<float> fromCones(0.9869929f, -0.1470543f, 0.1599627f, 0.4323053f, 0.5183603f,
                                          0.0492912f, -0.0085287f, 0.0400428f, 0.9684867f);
    Math::CVector3<float> xyz;
    CColor::LinearRGBToXYZ(CColor::eD65, rgb, xyz);
    Math::CVector3<float> lit;
    CColor::XYZToLinearRGB(true, CColor::eD65, fromCones * ((toCones * xyz) * light.gains), lit);
    return lit;
}

struct Scene {
    std::string name;
    int width = 0;
    int height = 0;
    LinearPicture linear;   ///< Under D65.
};

/// Patches of even lightness steps and random colours, `muted` towards grey, each with a little noise.
inline Scene Patches(const std::string& name, unsigned seed, float muted, const Math::CVector3<float>& tint,
                     bool hasWhite)
{
    constexpr int kPatches = 8;
    constexpr int kSide = 16;
    std::mt19937 random(seed);
    const auto unit = [&] { return static_cast<float>(random() % 4096) / 4096.0f; };
    std::vector<Math::CVector3<float>> patches;
    for (int i = 0; i < kPatches * kPatches; ++i) {
        const float grey = 0.05f + 0.7f * unit();
        const float blue = unit();
        const float green = unit();
        const Math::CVector3<float> color(unit(), green, blue);
        patches.push_back((color * (1.0f - muted) + Math::CVector3<float>(grey, grey, grey) * muted) * tint);
    }
    if (hasWhite)
        patches[27].Set(1.0f, 1.0f, 1.0f);

    Scene scene{name, kPatches * kSide, kPatches * kSide, {}};
    for (int y = 0; y < scene.height; ++y) {
        for (int x = 0; x < scene.width; ++x) {
            const int patch = y / kSide * kPatches + x / kSide;
            const float noise = 0.98f + 0.02f * unit();
            scene.linear.push_back(patches[static_cast<std::size_t>(patch)] * noise);
        }
    }
    return scene;
}

inline Scene PhotographScene()
{
    const Picture picture = Photograph(160, 120);
    Scene scene{"photograph", picture.width, picture.height, {}};
    Foundation::CWhiteBalance::UCharToCVector3fBuffer(true, picture.width, picture.height,
                                                      picture.rgba.data(), scene.linear);
    return scene;
}

inline std::vector<Scene> Scenes()
{
    return {Patches("bright patches and a white one", 1, 0.0f, {0.8f, 0.8f, 0.8f}, true),
            Patches("muted patches", 2, 0.7f, {1.0f, 1.0f, 1.0f}, false),
            Patches("meadow", 3, 0.5f, {0.75f, 1.0f, 0.6f}, false), PhotographScene()};
}

inline Scene Lit(const Light& light, Scene scene)
{
    for (Math::CVector3<float>& pixel : scene.linear)
        pixel = Lit(light, pixel);
    return scene;
}

/// The angle in degrees between two lights in linear sRGB.
inline double AngularError(const Math::CVector3<float>& a, const Math::CVector3<float>& b)
{
    const auto cross =
        Math::CVector3<double>(double{a.y} * b.z - double{a.z} * b.y, double{a.z} * b.x - double{a.x} * b.z,
                               double{a.x} * b.y - double{a.y} * b.x);
    const double dot = double{a.x} * b.x + double{a.y} * b.y + double{a.z} * b.z;
    return std::atan2(cross.Magnitude(), dot) * 180.0 / 3.14159265358979323846;
}

/// The light that an estimator's matrix removes: what the matrix takes to the white, solved by Cramer's rule.
inline Math::CVector3<float> LightOf(const Math::CMatrix3<float>& matrix)
{
    using Foundation::CColor;
    const Math::CVector3<float>& white = CColor::XYZReference(CColor::eD65);
    const auto column = [&](int c) {
        return Math::CVector3<double>(matrix(0, c), matrix(1, c), matrix(2, c));
    };
    const auto determinant = [](const Math::CVector3<double>& a, const Math::CVector3<double>& b,
                                const Math::CVector3<double>& c) {
        return a.x * (b.y * c.z - b.z * c.y) - b.x * (a.y * c.z - a.z * c.y) + c.x * (a.y * b.z - a.z * b.y);
    };
    const Math::CVector3<double> target(white.x, white.y, white.z);
    const double whole = determinant(column(0), column(1), column(2));
    const Math::CVector3<float> xyz(static_cast<float>(determinant(target, column(1), column(2)) / whole),
                                    static_cast<float>(determinant(column(0), target, column(2)) / whole),
                                    static_cast<float>(determinant(column(0), column(1), target) / whole));
    Math::CVector3<float> rgb;
    CColor::XYZToLinearRGB(true, CColor::eD65, xyz, rgb);
    return rgb;
}

struct Estimator {
    std::string name;
    Math::CMatrix3<float> (*matrix)(const Scene&);
};

inline const std::vector<Estimator>& Estimators()
{
    using Foundation::CColor;
    using Foundation::CWhiteBalance;
    using Matrix = Math::CMatrix3<float>;
    static const std::vector<Estimator> estimators = {
        {"GrayWorld",
         [](const Scene& s) {
             Matrix matrix;
             CWhiteBalance::GrayWorld(CColor::eD65, true, false, s.width, s.height, s.linear, matrix);
             return matrix;
         }},
        {"MaxGray",
         [](const Scene& s) {
             Matrix matrix;
             CWhiteBalance::MaxGray(CColor::eD65, true, false, s.width, s.height, s.linear, matrix);
             return matrix;
         }},
        {"LSRS, small tiles",
         [](const Scene& s) {
             Matrix matrix;
             CWhiteBalance::LSRS(CColor::eD65, true, false, false, s.width, s.height, s.linear, matrix);
             return matrix;
         }},
        {"LSRS, large tiles", [](const Scene& s) {
             Matrix matrix;
             CWhiteBalance::LSRS(CColor::eD65, true, false, true, s.width, s.height, s.linear, matrix);
             return matrix;
         }}};
    return estimators;
}

/// How far an estimator is from the light of a scene, in degrees.
inline double RecoveryError(const Estimator& estimator, const Light& light, const Scene& scene)
{
    return AngularError(LightOf(estimator.matrix(Lit(light, scene))),
                        Lit(light, Math::CVector3<float>(1.0f, 1.0f, 1.0f)));
}

}   // namespace QZ::Test
