// SPDX-License-Identifier: MIT
#include "tools/qz/commands/Commands.h"

namespace QZ::Tool {

void RegisterCommands(CommandLine& line)
{
    RegisterTones(line);
    RegisterThreshold(line);
    RegisterThreeTone(line);
    RegisterAdjust(line);
    RegisterHistogram(line);
    RegisterColor(line);
    RegisterChromaMap(line);
    RegisterSample(line);
}

}   // namespace QZ::Tool
