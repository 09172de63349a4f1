// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Adjust.h"

#include <algorithm>
#include <memory>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    PictureOrMovie files;
    Adjustments adjustments;
};

Status Run(const Options& options, Context& context)
{
    if (options.files.IsMovie())
        return options.files.WorkOnEach(
            "adjust", [&](Image& image) { Adjust(options.adjustments, image); }, context);
    Image image = options.files.Read(context);
    context.Progress("adjusting");
    Adjust(options.adjustments, image);
    options.files.Write(image, context);
    return Status::Done;
}

void AddCurves(Command& command, Adjustments& adjustments)
{
    command.AddNumbers(
        "--hable", 4,
        [&adjustments](const std::vector<float>& v) {
            std::copy_n(v.begin(), 4, adjustments.hable.emplace().begin());
        },
        "Filmic curve ((B + A x) x) / ((A x + C) x + D) on linear light: A,B,C,D");
    command.AddNumbers(
        "--insomniac", 5,
        [&adjustments](const std::vector<float>& v) {
            adjustments.insomniac = {v[0], v[1], v[2], v[3], v[4]};
        },
        "Filmic curve of Insomniac Games on linear light: black,toe,crossover,shoulder,white");
    command.AddFlag("--inverse", adjustments.inverse, "Run --insomniac backwards").Needs("--insomniac");
}

void AddMatrices(Command& command, Adjustments& adjustments)
{
    using HueRotation = Adjustments::HueRotation;
    command.AddOption("--hue", adjustments.hueDegrees, "Rotate the hues by so many degrees (0)")
        .Finite()
        .TypeName("DEGREES");
    AddChoice(command, "--rotation", adjustments.rotation,
              {{"yiq", HueRotation::YIQ}, {"luminance", HueRotation::Luminance}, {"axis", HueRotation::Axis}},
              "How: in YIQ, keeping the luminance, or about the grey axis (yiq)");
    command.AddOption("--saturation", adjustments.saturation, "0 is grey, 1 leaves the picture alone (1)")
        .Finite()
        .TypeName("X");
    command.AddFlag("--linear", adjustments.linear, "Mix linear light, not encoded values");
    AddIlluminant(command, adjustments.illuminant);
}

}   // namespace

void RegisterAdjust(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add(
        "adjust",
        "Change the colours of a picture. Whatever the order of the options: curves first, then hue and\n"
        "saturation, the complementary colour, equalising.",
        {{"qz adjust photo.jpg vivid.png --saturation 1.4", "stronger colours"},
         {"qz adjust photo.jpg shifted.png --hue 120 --rotation luminance", "other hues, the same luminance"},
         {"qz adjust photo.jpg even.png --equalize", "every luma as frequent as the next"},
         {"qz adjust photo.jpg film.png --insomniac 0,0.3,0.2,0.5,1", "a filmic curve"}},
        [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    Adjustments& adjustments = options->adjustments;
    AddCurves(command, adjustments);
    AddMatrices(command, adjustments);
    command.AddFlag("--complementary", adjustments.complementary, "The opposite of each hue");
    command.AddFlag("--equalize", adjustments.equalize, "Equalise the histogram of the luma");
    command.AddFlag("--equalize-channels", adjustments.equalizeChannels,
                    "Equalise red, green and blue, each of its own");
}

}   // namespace QZ::Tool
