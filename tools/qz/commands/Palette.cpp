// SPDX-License-Identifier: MIT
#include "tools/qz/palette/Palette.h"

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    std::string in;
    std::string picture;
    Limits limits;
    PaletteOptions palette;
};

Status Run(const Options& options, Context& context)
{
    context.limits = options.limits;
    Output out;
    out.path = options.picture;
    if (!options.picture.empty()) {
        context.pictureOnStdout = options.picture == "-";
        CheckOutput(out, context);
    }
    const Image image = ReadImage(options.in, context);
    const auto palette = PaletteOf(image, options.palette);
    if (!options.picture.empty()) {
        const std::string name =
            options.in == "-" ? "standard input" : std::filesystem::path(options.in).filename().string();
        WriteImage(PaletteSheet(palette, "Palette of " + OneLine(name)), out, context);
    }
    if (context.json)
        context.PrintJson(PaletteAsJson(palette));
    else
        context.Print(PaletteText(palette, context));
    return Status::Done;
}

}   // namespace

void RegisterPalette(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command =
        line.Add("palette", "List the colours of a picture with their shares, the largest first.",
                 {{"qz palette photo.jpg", "a dozen colours, as text"},
                  {"qz palette photo.jpg --colors 24 --json", "more of them, for a script"},
                  {"qz palette photo.jpg --picture swatches.png", "also as a picture"}},
                 [options](Context& context) { return Run(*options, context); });
    AddInput(command, options->in, options->limits);
    command.AddOption("--picture", options->picture, "Also draw the swatches: .png or .jpg").TypeName("OUT");
    command.AddOption("--colors", options->palette.count, "At most, 1 to 64 (12)")
        .InRange(1, 64)
        .TypeName("N");
    command.AddOption("--hues", options->palette.hues, "Groups of hue, 1 to 32 (6)")
        .InRange(1, 32)
        .TypeName("N");
    command.AddOption("--tones", options->palette.tones, "Tones in a group, 1 to 16 (3)")
        .InRange(1, 16)
        .TypeName("N");
    command
        .AddOption("--saturation", options->palette.saturation,
                   "What is less saturated is grey, 0 to 1 (0.3)")
        .Between(0.0, 1.0)
        .TypeName("S");
    AddIlluminant(command, options->palette.illuminant);
    line.AddJson(command);
}

}   // namespace QZ::Tool
