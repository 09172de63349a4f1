// SPDX-License-Identifier: MIT
#pragma once

namespace QZ::Tool {

class CommandLine;

/// Each command adds itself with its options; its function lies in the file of its name.
void RegisterAdjust(CommandLine& line);
void RegisterBalance(CommandLine& line);
void RegisterChromaMap(CommandLine& line);
void RegisterColor(CommandLine& line);
void RegisterCompare(CommandLine& line);
void RegisterDemo(CommandLine& line);
void RegisterHistogram(CommandLine& line);
void RegisterHues(CommandLine& line);
void RegisterPalette(CommandLine& line);
void RegisterPosterize(CommandLine& line);
void RegisterRecord(CommandLine& line);
void RegisterSample(CommandLine& line);
void RegisterSelftest(CommandLine& line);
void RegisterThreeTone(CommandLine& line);
void RegisterThreshold(CommandLine& line);
void RegisterTones(CommandLine& line);

/// All of them, in the order in which the help lists them.
void RegisterCommands(CommandLine& line);

}   // namespace QZ::Tool
