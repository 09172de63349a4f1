// SPDX-License-Identifier: MIT
#include "tools/qz/commands/GreyOptions.h"

#include <map>

#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

void AddGreyChoice(Command& command, GreyChoice& choice)
{
    const std::map<std::string, GreyFrom> names = {{"lightness", GreyFrom::eLXX},
                                                   {"luminance", GreyFrom::eNonlinearY},
                                                   {"alpha", GreyFrom::eFourthChannel}};
    AddChoice(command, "--grey", choice.from, names,
              "What is grey: lightness, luminance or alpha (lightness)");
    AddIlluminant(command, choice.illuminant);
    command.AddFlag("--mask-alpha", choice.maskFromAlpha, "Let a pixel count as much as it is opaque");
}

void AddToneCurve(Command& command, ToneCurve& curve)
{
    const auto add = [&](const char* name, float& value, double low, double high, const char* text) {
        command.AddOption(name, value, text).Between(low, high).TypeName("X").Group("Tone curve");
    };
    add("--black", curve.black, 0, 1, "Input that becomes black, 0 to 1 (0)");
    add("--white", curve.white, 0, 1, "Input that becomes white, 0 to 1 (1)");
    add("--gamma", curve.gamma, 0.01, 100, "Power; above 1 darkens (1)");
    add("--toe", curve.toe, 0, 1, "Darken below this value (0: off)");
    add("--shoulder", curve.shoulder, 0, 1, "Lift to white from this value on (1: off)");
}

}   // namespace QZ::Tool
