// SPDX-License-Identifier: MIT
#include "tools/qz/operations/ThreeTone.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/GreyOptions.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    PictureOrMovie files;
    ThreeToneOptions tones;
};

Status Run(const Options& options, Context& context)
{
    if (options.files.IsMovie())
        return options.files.WorkOnEach(
            "three-tone", [&](Image& image) { ReduceToThreeTones(options.tones, image); }, context);
    Image image = options.files.Read(context);
    const ThreeTone result = ReduceToThreeTones(options.tones, image);
    options.files.Write(image, context);
    if (context.json)
        context.PrintJson({{"width", image.width},
                           {"height", image.height},
                           {"low", result.low},
                           {"high", result.high},
                           {"mid", result.mid}});
    else
        context.Print("black below " + std::to_string(result.low) + ", grey " + std::to_string(result.mid) +
                      ", white from " + std::to_string(result.high) + "\n");
    return Status::Done;
}

}   // namespace

void RegisterThreeTone(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add("three-tone", "Reduce a picture to black, one grey and white.",
                               {{"qz three-tone photo.jpg three.png", "shadow, mid tone, highlight"},
                                {"qz three-tone photo.jpg three.png --tone-exponent 0.8", "a lighter grey"},
                                {"qz three-tone photo.jpg three.png --threshold-exponent 1.5", "less black"}},
                               [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    line.AddJson(command);
    ThreeToneOptions& tones = options->tones;
    command
        .AddOption("-n,--count", tones.clusters,
                   "Clusters of levels, 2 to 5 (4); the middle ones are the grey")
        .InRange(2, 5)
        .TypeName("N");
    command.AddOption("--threshold-exponent", tones.thresholdExponent, "Power of both thresholds (1)")
        .Between(0.01, 100)
        .TypeName("X");
    command.AddOption("--tone-exponent", tones.toneExponent, "Power of the grey (1)")
        .Between(0.01, 100)
        .TypeName("X");
    AddGreyChoice(command, tones.grey);
    AddToneCurve(command, tones.curve);
}

}   // namespace QZ::Tool
