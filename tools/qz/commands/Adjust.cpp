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

void AddCurves(CLI::App& command, Adjustments& adjustments)
{
    AddNumbers(
        command, "--hable", 4,
        [&adjustments](const std::vector<float>& v) {
            std::copy_n(v.begin(), 4, adjustments.hable.emplace().begin());
        },
        "Filmic curve ((B + A x) x) / ((A x + C) x + D) on linear light: A,B,C,D");
    AddNumbers(
        command, "--insomniac", 5,
        [&adjustments](const std::vector<float>& v) {
            adjustments.insomniac = {v[0], v[1], v[2], v[3], v[4]};
        },
        "Filmic curve of Insomniac Games on linear light: black,toe,crossover,shoulder,white");
    command.add_flag("--inverse", adjustments.inverse, "Run --insomniac backwards")->needs("--insomniac");
}

void AddMatrices(CLI::App& command, Adjustments& adjustments)
{
    using HueRotation = Adjustments::HueRotation;
    command.add_option("--hue", adjustments.hueDegrees, "Rotate the hues by so many degrees (0)")
        ->check(Finite())
        ->type_name("DEGREES");
    AddChoice(command, "--rotation", adjustments.rotation,
              {{"yiq", HueRotation::YIQ}, {"luminance", HueRotation::Luminance}, {"axis", HueRotation::Axis}},
              "How: in YIQ, keeping the luminance, or about the grey axis (yiq)");
    command.add_option("--saturation", adjustments.saturation, "0 is grey, 1 leaves the picture alone (1)")
        ->check(Finite())
        ->type_name("X");
    command.add_flag("--linear", adjustments.linear, "Mix linear light, not encoded values");
    AddIlluminant(command, adjustments.illuminant);
}

}   // namespace

void RegisterAdjust(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    CLI::App& command = line.Add(
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
    command.add_flag("--complementary", adjustments.complementary, "The opposite of each hue");
    command.add_flag("--equalize", adjustments.equalize, "Equalise the histogram of the luma");
    command.add_flag("--equalize-channels", adjustments.equalizeChannels,
                     "Equalise red, green and blue, each of its own");
}

}   // namespace QZ::Tool
