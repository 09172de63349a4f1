// SPDX-License-Identifier: MIT
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/color/ColorValue.h"
#include "tools/qz/color/Swatch.h"
#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    std::string value;
    CColor::EIlluminant white = CColor::eD65;
};

Status Run(const Options& options, const Context& context)
{
    const Triple linear = ParseColor(options.value, options.white);
    if (context.json) {
        context.PrintJson(ColorAsJson(linear));
        return Status::Done;
    }
    std::string text;
    if (const std::string patch = Swatch(context, SRGBBytes(linear).data(), 16); !patch.empty())
        text = patch + "\n" + patch + "\n";
    context.Print(text + DescribeColor(linear));
    return Status::Done;
}

}   // namespace

void RegisterColor(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add(
        "color",
        "Show one colour in every space of the library, under D50 and D65.\n"
        "Lab and Luv are a hundredth of their CIE values and hue angles are radians; the hue of HSV is\n"
        "a fraction of a turn; HSLuv and HPLuv have degrees and values from 0 to 100.",
        {{"qz color '#c86432'", "an sRGB colour"},
         {"qz color 'lab(0.6, 0.1, -0.2)' --illuminant d50", "a value of any space"},
         {"qz color 'hsluv(250 80 60)' --json", "for a script"}},
        [options](Context& context) { return Run(*options, context); });
    command.AddOption("VALUE", options->value, "#rrggbb, or space(a, b, c)").Required();
    AddIlluminant(command, options->white);
    line.AddJson(command);
}

}   // namespace QZ::Tool
