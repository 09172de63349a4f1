// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/Analysis/LitScenes.h"

namespace {

using QZ::Foundation::CColor;
using QZ::Foundation::CWhiteBalance;
namespace Math = QZ::Math;
using namespace QZ::Test;

std::vector<unsigned char> Balanced(const Scene& scene, const Light& light)
{
    Math::CVector3<float> white;
    CWhiteBalance::SourceIlluminant(Lit(light, Math::CVector3<float>(1.0f, 1.0f, 1.0f)), CColor::eD65, false,
                                    white);
    std::vector<unsigned char> rgba(4 * scene.linear.size());
    CWhiteBalance::Balance(CColor::eD65, true, false, white, scene.width, scene.height, scene.linear,
                           rgba.data());
    return rgba;
}

}   // namespace

TEST(LightRecovery, IsExactWhereTheAssumptionHolds)
{
    const Scene scene = Scenes().front();   // has a white patch
    Scene grey = scene;                     // each pixel beside its complement: the mean is grey
    for (std::size_t i = 0; i + 1 < grey.linear.size(); i += 2) {
        const Math::CVector3<float> one(1.0f, 1.0f, 1.0f);
        grey.linear[i + 1] = one - grey.linear[i];
    }
    for (const Light& light : Lights()) {
        // Matrices of seven digits, and sums in single precision: a hundredth of a degree.
        EXPECT_LT(RecoveryError(Estimators()[1], light, scene), 0.05) << light.name;
        EXPECT_LT(RecoveryError(Estimators()[0], light, grey), 0.01) << light.name;
    }
}

TEST(LightRecovery, IsWithinFourDegreesOfAVariedScene)
{
    for (const Scene& scene : {Scenes()[0], Scenes()[1]})
        for (const Light& light : Lights())
            for (const Estimator& estimator : Estimators())
                EXPECT_LT(RecoveryError(estimator, light, scene), 4.0) << estimator.name << light.name;
}

TEST(LightRecovery, BringsTheSceneBackUnderItsTrueLight)
{
    const Light none{"none", {1.0f, 1.0f, 1.0f}};
    for (const Scene& scene : Scenes()) {
        const std::vector<unsigned char> expected = Balanced(scene, none);
        for (const Light& light : Lights()) {
            // The white is brought to luminance 1, so the luminance of the light goes by itself.
            Scene lit = Lit(light, scene);
            Math::CVector3<float> white;
            CColor::LinearRGBToXYZ(CColor::eD65, Lit(light, Math::CVector3<float>(1.0f, 1.0f, 1.0f)), white);
            for (Math::CVector3<float>& pixel : lit.linear)
                pixel *= 1.0f / white.y;
            const std::vector<unsigned char> actual = Balanced(lit, light);
            int worst = 0;
            for (std::size_t i = 0; i < actual.size(); ++i)
                worst = std::max(worst, std::abs(actual[i] - expected[i]));
            EXPECT_LE(worst, 1) << light.name;   // one level, where the error crosses a boundary
        }
    }
}
