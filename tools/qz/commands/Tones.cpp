// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Tones.h"

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
    TonesOptions tones;
};

std::string Describe(const Tones& result)
{
    std::string text = std::to_string(result.tones.size()) + (result.tones.size() == 1 ? " tone" : " tones") +
                       " of " + std::to_string(result.levels) + (result.levels == 1 ? " level" : " levels") +
                       "\n  grey   share   levels\n";
    for (const Tone& tone : result.tones) {
        char line[64];
        std::snprintf(line, sizeof line, "  %4d  %5.1f %%   %d to %d\n", tone.grey, 100.0 * tone.share,
                      tone.first, tone.last);
        text += line;
    }
    return text;
}

nlohmann::ordered_json Json(const Image& image, const Tones& result)
{
    nlohmann::ordered_json tones = nlohmann::ordered_json::array();
    for (const Tone& tone : result.tones)
        tones.push_back(
            {{"grey", tone.grey}, {"share", tone.share}, {"first", tone.first}, {"last", tone.last}});
    return {{"width", image.width}, {"height", image.height}, {"levels", result.levels}, {"tones", tones}};
}

Status Run(const Options& options, Context& context)
{
    if (options.files.IsMovie())
        return options.files.WorkOnEach(
            "tones", [&](Image& image) { ReduceToTones(options.tones, image); }, context);
    Image image = options.files.Read(context);
    context.Progress("finding the tones");
    const Tones result = ReduceToTones(options.tones, image);
    options.files.Write(image, context);
    if (context.json)
        context.PrintJson(Json(image, result));
    else
        context.Print(Describe(result));
    return Status::Done;
}

}   // namespace

void RegisterTones(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command =
        line.Add("tones", "Reduce a picture to a few greys.",
                 {{"qz tones photo.jpg tones.png", "four tones"},
                  {"qz tones photo.jpg tones.png --count 6 --min-gap 12", "at most six, well apart"},
                  {"qz tones photo.jpg tones.png --gamma 1.4 --shoulder 0.8", "through a tone curve"},
                  {"qz tones film.mp4 tones.mov --codec hevc", "each picture of a movie, with its sound"},
                  {"qz tones - - <photo.jpg >tones.png", "through a pipe"}},
                 [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    line.AddJson(command);
    TonesOptions& tones = options->tones;
    using Method = TonesOptions::Method;
    command
        .AddOption("-n,--count", tones.count,
                   "How many tones, 1 to 256 (4); a picture has at most its levels")
        .InRange(1, 256)
        .TypeName("N");
    AddChoice(command, "--method", tones.method,
              {{"hierarchical", Method::Hierarchical}, {"median-cut", Method::MedianCut}},
              "hierarchical or median-cut (hierarchical)");
    command.AddOption("--min-gap", tones.minGap, "Merge tones that differ by at most so many levels (0)")
        .Between(0, 255)
        .TypeName("N");
    AddGreyChoice(command, tones.grey);
    AddToneCurve(command, tones.curve);
    command.AddOption("--highlights", tones.highlights, "Bend the highlights, above 0 and below 1 (1: off)")
        .Between(0.001, 1)
        .TypeName("X")
        .Group("Tone curve");
    command.AddOption("--highlights-band", tones.highlightsBand, "Width of that band (0.85)")
        .Between(0.001, 0.999)
        .TypeName("X")
        .Group("Tone curve");
}

}   // namespace QZ::Tool
