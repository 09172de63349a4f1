// SPDX-License-Identifier: MIT
#include "tests/Support/Targets.h"

#include <gtest/gtest.h>
#include <vector>

#include "QZ/Foundation/Color/CColorRows.h"

namespace {

/// Calls one of the library's kernels, for which it has to choose an instruction set.
void CallTheLibrary()
{
    std::vector<QZ::Math::CVector3<float>> color = {{0.25f, 0.5f, 0.75f}};
    QZ::Foundation::CColorRows::SRGBToLab(false, false, QZ::Foundation::CColor::eD65, color, color);
}

/// The place of a choice among targets in the library's tables of kernels.
std::size_t PlaceOf(std::int64_t targets)
{
    hwy::ChosenTarget choice;
    choice.Update(targets);
    return choice.GetIndex();
}

}   // namespace

// Run with each --target: the record of the choice is the library's own, empty until the library calls a
// kernel.
TEST(TargetOfRun, IsTheOneThatTheLibraryTakes)
{
    hwy::SetSupportedTargetsForTest(QZ::Test::targetOfRun);
    ASSERT_FALSE(hwy::GetChosenTarget().IsInitialized());
    CallTheLibrary();
    ASSERT_TRUE(hwy::GetChosenTarget().IsInitialized());
    EXPECT_EQ(hwy::GetChosenTarget().GetIndex(), PlaceOf(hwy::SupportedTargets()));
    if (QZ::Test::targetOfRun != 0) {
        EXPECT_EQ(hwy::GetChosenTarget().GetIndex(), PlaceOf(QZ::Test::targetOfRun));
    }
}

TEST(TargetOfRun, HasAPlaceOfItsOwnInTheTables)
{
    const std::vector<std::int64_t> targets = hwy::SupportedAndGeneratedTargets();
    for (std::size_t i = 1; i < targets.size(); ++i)
        EXPECT_NE(PlaceOf(targets[i - 1]), PlaceOf(targets[i])) << hwy::TargetName(targets[i]);
}
