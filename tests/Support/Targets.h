// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <hwy/targets.h>
#include <cstdint>
#include <string>

namespace QZ::Test {

/// The instruction set that the whole run is held to, by TargetMain.cpp; 0 for the best of the machine.
inline std::int64_t targetOfRun = 0;

/// A test that runs once for every instruction set of this machine, with that one chosen.
///
/// \code
///     QZ_INSTANTIATE_TARGETS(RowTest);
///     TEST_P(RowTest, GivesTheBitsOfTheSingleConversion) { ... }
/// \endcode
class TargetTest : public testing::TestWithParam<std::int64_t> {
protected:
    void SetUp() override { hwy::SetSupportedTargetsForTest(GetParam()); }
    void TearDown() override { hwy::SetSupportedTargetsForTest(targetOfRun); }
};

}   // namespace QZ::Test

#define QZ_INSTANTIATE_TARGETS(suite)                                                                      \
    INSTANTIATE_TEST_SUITE_P(OnEveryTarget, suite, testing::ValuesIn(hwy::SupportedAndGeneratedTargets()), \
                             [](const auto& test) { return std::string(hwy::TargetName(test.param)); })
