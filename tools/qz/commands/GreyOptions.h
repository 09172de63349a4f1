// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qz/CommandLine.h"
#include "tools/qz/operations/Tones.h"

namespace QZ::Tool {

/// --grey, --illuminant and --mask-alpha.
void AddGreyChoice(CLI::App& command, GreyChoice& choice);

/// --black, --white, --gamma, --toe and --shoulder.
void AddToneCurve(CLI::App& command, ToneCurve& curve);

}   // namespace QZ::Tool
