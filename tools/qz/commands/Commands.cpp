// SPDX-License-Identifier: MIT
#include "tools/qz/commands/Commands.h"

namespace QZ::Tool {

void RegisterCommands(CommandLine& line)
{
    RegisterTones(line);
    RegisterThreshold(line);
    RegisterThreeTone(line);
    RegisterHues(line);
    RegisterPosterize(line);
    RegisterBalance(line);
    RegisterAdjust(line);
    RegisterHistogram(line);
    RegisterPalette(line);
    RegisterColor(line);
    RegisterChromaMap(line);
    RegisterCompare(line);
    RegisterSample(line);
    RegisterRecord(line);
    RegisterDemo(line);
    RegisterSelftest(line);
}

}   // namespace QZ::Tool
