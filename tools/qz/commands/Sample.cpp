// SPDX-License-Identifier: MIT
#include <memory>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"
#include "tools/qz/scene/SampleScene.h"

namespace QZ::Tool {

namespace {

struct Options {
    Output out;
    int width = kSampleWidth;
};

Status Run(const Options& options, Context& context)
{
    context.pictureOnStdout = options.out.path == "-";
    CheckOutput(options.out, context);
    context.Progress("rendering the sample picture ...");
    const int height = std::max(1, options.width * kSampleHeight / kSampleWidth);
    WriteImage(RenderSampleScene(options.width, height), options.out, context);
    return Status::Done;
}

}   // namespace

void RegisterSample(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add("sample", "Render the sample picture, where no photograph is at hand.",
                               {{"qz sample fruit.png", "a bowl of fruit by a window"},
                                {"qz sample - --width 300 | qz palette -", "straight into another command"}},
                               [options](Context& context) { return Run(*options, context); });
    AddOutput(command, options->out);
    command.AddOption("--width", options->width, "In pixels, 16 to 8192 (900); the height is two thirds")
        .InRange(16, 8192)
        .TypeName("N");
}

}   // namespace QZ::Tool
