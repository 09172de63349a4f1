// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qz/Command.h"
#include "tools/qz/operations/Tones.h"

namespace QZ::Tool {

/// --grey, --illuminant and --mask-alpha.
void AddGreyChoice(Command& command, GreyChoice& choice);

/// --black, --white, --gamma, --toe and --shoulder.
void AddToneCurve(Command& command, ToneCurve& curve);

}   // namespace QZ::Tool
