// SPDX-License-Identifier: MIT
// The code that the comments of the interface and docs/color show, as it stands there.
#include <gtest/gtest.h>

#include "QZ/Foundation/Color/CColor.h"

using QZ::Foundation::CColor;
using QZ::Math::CVector3;

namespace {

/// To the three or four decimals that the snippets' comments state.
void ExpectStated(const CVector3<float>& actual, const CVector3<float>& stated, float halfADigit)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], stated[i], halfADigit) << "component " << i;
}

}   // namespace

TEST(Snippets, OfTheInterfaceDoWhatTheySay)
{
    CVector3<float> lab;
    CColor::SRGBToLab(false, false, CColor::eD65, {1.0f, 0.0f, 0.0f}, lab);   // (0.532, 0.801, 0.672)
    ExpectStated(lab, {0.532f, 0.801f, 0.672f}, 5e-4f);
    CVector3<float> p3;
    CColor::LabToDisplayP3(false, CColor::eD65, lab, p3);   // (0.918, 0.200, 0.139)
    ExpectStated(p3, {0.918f, 0.200f, 0.139f}, 5e-4f);
}

TEST(Snippets, OfTheToneCurvesPageDoWhatTheySay)
{
    CVector3<float> linear;
    CColor::NonlinearToLinearToneCurve(false, false, {0.18f, 0.5f, 1.0f}, linear);   // 0.0272, 0.2140, 1
    ExpectStated(linear, {0.0272f, 0.2140f, 1.0f}, 5e-5f);
}

TEST(Snippets, OfTheAdaptationPageDoWhatTheySay)
{
    const CVector3<float> underD65 = CColor::XYZReference(CColor::eD65);
    const auto m = CColor::ChromaticAdaptationMatrix(CColor::XYZReference(CColor::eD65),
                                                     CColor::XYZReference(CColor::eD50));
    const auto underD50 = m * underD65;
    ExpectStated(underD50, CColor::XYZReference(CColor::eD50), 1e-6f);
}
