// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Demo.h"

#include <filesystem>
#include <memory>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"
#include "tools/qz/scene/SampleScene.h"

namespace QZ::Tool {

namespace {

struct Options {
    std::string folder;
    std::string picture;
    Limits limits;
};

Image PictureToShow(const Options& options, Context& context)
{
    if (!options.picture.empty())
        return ReadImage(options.picture, context);
    context.Progress("demo: rendering the sample picture ...");
    return RenderSampleScene(kSampleWidth, kSampleHeight);
}

std::string NameOf(const Options& options)
{
    if (options.picture.empty())
        return "sample.png";
    if (options.picture == "-")
        return "standard input";
    return OneLine(std::filesystem::path(options.picture).filename().string());
}

Status Run(const Options& options, Context& context)
{
    context.limits = options.limits;
    CheckFolder(options.folder, context.force);
    const Image image = PictureToShow(options, context);
    WriteFolder(options.folder, context.force, MakeDemo(image, NameOf(options), context));
    context.Say("open " + (std::filesystem::path(options.folder) / "index.html").string());
    return Status::Done;
}

}   // namespace

void RegisterDemo(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command =
        line.Add("demo",
                 "Run everything on one picture, and record a movie; the results come into a folder with\n"
                 "a page, index.html.",
                 {{"qz demo shown", "on a sample picture that qz renders"},
                  {"qz demo shown --image photo.jpg", "on your own"},
                  {"qz demo shown --image photo.jpg --force", "into a folder that holds files already"}},
                 [options](Context& context) { return Run(*options, context); });
    command.AddOption("DIR", options->folder, "The folder: a new or an empty one").Required();
    command.AddOption("--image", options->picture, "A picture of your own; - reads standard input")
        .TypeName("FILE");
    AddMaxPixels(command, options->limits);
}

}   // namespace QZ::Tool
