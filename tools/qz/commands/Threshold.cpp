// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Threshold.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/GreyOptions.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    PictureOrMovie files;
    ThresholdOptions threshold;
};

std::string Describe(const Threshold& result)
{
    char text[96];
    std::snprintf(text, sizeof text, "threshold %d: %.1f %% dark, %.1f %% light\n", result.level,
                  100.0 * result.darkShare, 100.0 * (1.0 - result.darkShare));
    return text;
}

Status Run(const Options& options, Context& context)
{
    if (options.files.IsMovie())
        return options.files.WorkOnEach(
            "threshold", [&](Image& image) { ApplyThreshold(options.threshold, image); }, context);
    Image image = options.files.Read(context);
    const Threshold result = ApplyThreshold(options.threshold, image);
    options.files.Write(image, context);
    if (context.json)
        context.PrintJson({{"width", image.width},
                           {"height", image.height},
                           {"threshold", result.level},
                           {"dark", result.darkShare},
                           {"light", 1.0 - result.darkShare}});
    else
        context.Print(Describe(result));
    return Status::Done;
}

}   // namespace

void RegisterThreshold(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add("threshold", "Make a picture black and white by Otsu's threshold.",
                               {{"qz threshold page.jpg page.png", "dark is black, light is white"},
                                {"qz threshold page.jpg mask.png --invert", "dark is white"},
                                {"qz threshold page.jpg page.png --json", "the threshold for a script"}},
                               [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    line.AddJson(command);
    command.AddFlag("--invert", options->threshold.invert, "Make the dark white");
    AddGreyChoice(command, options->threshold.grey);
}

}   // namespace QZ::Tool
