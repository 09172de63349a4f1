// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Hues.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

using Foundation::CHueWeightedHistogram;

struct Options {
    PictureOrMovie files;
    HuesOptions hues;
};

std::string Describe(const Hues& result, const Context& context)
{
    if (result.colors.empty())
        return "no hues: the picture is grey\n";
    char grey[64];
    std::snprintf(grey, sizeof grey, "grey   %7.2f %%\n", result.greyShare * 100.0);
    return std::to_string(result.colors.size()) + (result.colors.size() == 1 ? " hue\n" : " hues\n") +
           PaletteText(result.colors, context) + grey;
}

nlohmann::ordered_json Json(const Image& image, const Hues& result)
{
    return {{"width", image.width},
            {"height", image.height},
            {"hues", PaletteAsJson(result.colors)["colors"]},
            {"grey", result.greyShare}};
}

Status Run(const Options& options, Context& context)
{
    if (options.files.IsMovie())
        return options.files.WorkOnEach(
            "hues", [&](Image& image) { ReduceToHues(options.hues, image); }, context);
    Image image = options.files.Read(context);
    context.Progress("finding the hues");
    const Hues result = ReduceToHues(options.hues, image);
    options.files.Write(image, context);
    if (context.json)
        context.PrintJson(Json(image, result));
    else
        context.Print(Describe(result, context));
    return Status::Done;
}

}   // namespace

void RegisterHues(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add(
        "hues", "Repaint a picture in a few hues; lightness stays.",
        {{"qz hues photo.jpg hues.png", "four hues"},
         {"qz hues photo.jpg hues.png --count 8 --min-angle 20", "at most eight, well apart"},
         {"qz hues photo.jpg hues.png --space luv --mode relative", "muted as the hues of the picture are"},
         {"qz hues photo.jpg hues.png --method median-cut", "by the number of pixels"},
         {"qz hues film.mp4 hues.mov", "each picture of a movie, with its sound"}},
        [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    line.AddJson(command);
    HuesOptions& hues = options->hues;
    using Method = HuesOptions::Method;
    command.AddOption("-n,--count", hues.count, "How many hues at most, 1 to 64 (4)")
        .InRange(1, 64)
        .TypeName("N");
    AddChoice(command, "--method", hues.method,
              {{"clusters", Method::Clusters}, {"median-cut", Method::MedianCut}},
              "clusters or median-cut (clusters)");
    AddIlluminant(command, hues.illuminant);
    AddChoice(command, "--space", hues.space,
              {{"lab", CHueWeightedHistogram::eLab},
               {"luv", CHueWeightedHistogram::eLuv},
               {"ipt", CHueWeightedHistogram::eIPT}},
              "Of the hues: lab, luv or ipt (ipt)");
    AddChoice(command, "--mode", hues.mode,
              {{"pair", HueQuantizer::eMeanPair},
               {"direction", HueQuantizer::eDirection},
               {"relative", HueQuantizer::eRelativeChroma}},
              "Chroma: direction keeps it, pair multiplies it by the mean of the hue, relative by the hue's "
              "share of the largest chroma, in luv (direction)");
    command.AddOption("--min-angle", hues.minAngle, "Join hues closer than so many degrees (0)")
        .Between(0, 180)
        .TypeName("X");
}

}   // namespace QZ::Tool
