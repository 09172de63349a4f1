// SPDX-License-Identifier: MIT
#include "tools/qz/commands/GreyOptions.h"

#include <map>

#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

void AddGreyChoice(CLI::App& command, GreyChoice& choice)
{
    const std::map<std::string, GreyFrom> names = {{"lightness", GreyFrom::eLXX},
                                                   {"luminance", GreyFrom::eNonlinearY},
                                                   {"alpha", GreyFrom::eFourthChannel}};
    AddChoice(command, "--grey", choice.from, names,
              "What is grey: lightness, luminance or alpha (lightness)");
    AddIlluminant(command, choice.illuminant);
    command.add_flag("--mask-alpha", choice.maskFromAlpha, "Let a pixel count as much as it is opaque");
}

void AddToneCurve(CLI::App& command, ToneCurve& curve)
{
    const auto add = [&](const char* name, float& value, const CLI::Validator& range, const char* text) {
        command.add_option(name, value, text)->check(range)->type_name("X")->group("Tone curve");
    };
    add("--black", curve.black, Between(0, 1), "Input that becomes black, 0 to 1 (0)");
    add("--white", curve.white, Between(0, 1), "Input that becomes white, 0 to 1 (1)");
    add("--gamma", curve.gamma, Between(0.01, 100), "Power; above 1 darkens (1)");
    add("--toe", curve.toe, Between(0, 1), "Darken below this value (0: off)");
    add("--shoulder", curve.shoulder, Between(0, 1), "Lift to white from this value on (1: off)");
}

}   // namespace QZ::Tool
