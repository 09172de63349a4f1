// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/qz/selftest/Digest.h"

/// \file
/// What the self-test computes: each case adds the results of one function over fixed inputs to a digest.

namespace QZ::Tool::Selftest {

struct Case {
    std::string name;
    std::function<void(Digest&)> run;
};

/// Every conversion of CColorRows, over all flags and both whites: 2^20 inputs each.
[[nodiscard]] std::vector<Case> RowCases();
/// The members of CColor that have no row: luminance, saturation, differences, adjustments.
[[nodiscard]] std::vector<Case> SingleCases();
/// Every class of the analysis, over fixed pictures.
[[nodiscard]] std::vector<Case> AnalysisCases();

}   // namespace QZ::Tool::Selftest
