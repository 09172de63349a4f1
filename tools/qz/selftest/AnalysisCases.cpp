// SPDX-License-Identifier: MIT
#include "tools/qz/selftest/Cases.h"
#include "tools/qz/selftest/Inputs.h"

namespace QZ::Tool::Selftest {

std::vector<Case> AnalysisCases()
{
    return {};
}

}   // namespace QZ::Tool::Selftest
