// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Posterize.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/GreyOptions.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    PictureOrMovie files;
    Output palette;
    PosterizeOptions posterize;
};

std::string Count(std::size_t n, const std::string& noun)
{
    return std::to_string(n) + " " + noun + (n == 1 ? "" : "s");
}

std::string Describe(const Posterized& result, const Context& context)
{
    return Count(result.tones.size(), "tone") + " in " +
           Count(static_cast<std::size_t>(result.groups), "group") + "\n" +
           PaletteText(result.tones, context);
}

nlohmann::ordered_json Json(const Image& image, const Posterized& result)
{
    nlohmann::ordered_json tones = nlohmann::ordered_json::array();
    for (const PaletteColor& tone : result.tones)
        tones.push_back({{"grey", tone.rgb[0]}, {"share", tone.share}});
    return {{"width", image.width}, {"height", image.height}, {"groups", result.groups}, {"tones", tones}};
}

void CheckPalette(const Options& options, const Context& context)
{
    const std::string& path = options.palette.path;
    if (path == "-" || path == options.files.out.path)
        throw Failure(Status::Usage, "--palette", "it wants a file of its own", "name a .png or .jpg");
    CheckOutput(options.palette, context);
}

Status RunOnMovie(const Options& options, Context& context)
{
    if (!options.palette.path.empty())
        throw Failure(Status::Usage, "--palette", "each picture of a movie has tones of its own",
                      "take it of one picture");
    return options.files.WorkOnEach(
        "posterize", [&](Image& image) { Posterize(options.posterize, image); }, context);
}

Status Run(const Options& options, Context& context)
{
    if (options.files.IsMovie())
        return RunOnMovie(options, context);
    const bool draws = !options.palette.path.empty();
    if (draws)
        CheckPalette(options, context);
    Image image = options.files.Read(context);
    context.Progress("finding hues and greys");
    const Posterized result = Posterize(options.posterize, image);
    options.files.Write(image, context);
    if (draws)
        WriteImage(PaletteSheet(result.tones, "Tones"), options.palette, context);
    if (context.json)
        context.PrintJson(Json(image, result));
    else
        context.Print(Describe(result, context));
    return Status::Done;
}

}   // namespace

void RegisterPosterize(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add(
        "posterize", "Reduce a picture to a few greys for each of its hues, which so stay apart.",
        {{"qz posterize photo.jpg poster.png", "four groups of hue and one of little colour"},
         {"qz posterize photo.jpg poster.png --hues 6 --greys 2", "more groups, fewer greys in each"},
         {"qz posterize photo.jpg poster.png --palette tones.png", "the tones as a picture too"},
         {"qz posterize film.mp4 poster.mov", "each picture of a movie, with its sound"}},
        [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    line.AddJson(command);
    PosterizeOptions& posterize = options->posterize;
    command.AddOption("--palette", options->palette.path, "Also draw the tones: .png or .jpg")
        .TypeName("OUT");
    command.AddOption("--hues", posterize.hues, "Groups of hue at most, 1 to 32 (4)")
        .InRange(1, 32)
        .TypeName("N");
    command.AddOption("--greys", posterize.greys, "Greys of each group at most, 1 to 32 (3)")
        .InRange(1, 32)
        .TypeName("N");
    command
        .AddOption("--saturation", posterize.saturation,
                   "What is less saturated belongs to no hue, 0 to 1 (0.5)")
        .Between(0, 1)
        .TypeName("S");
    command.AddOption("--min-angle", posterize.minAngle, "Join hues closer than so many degrees (0)")
        .Between(0, 180)
        .TypeName("X");
    command
        .AddOption("--min-gap", posterize.minGap,
                   "Merge greys of a group that differ by at most so many levels (0)")
        .Between(0, 255)
        .TypeName("N");
    AddIlluminant(command, posterize.illuminant);
    AddToneCurve(command, posterize.curve);
}

}   // namespace QZ::Tool
