// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Adjust.h"

#include <memory>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    PictureToPicture files;
    Adjustments adjustments;
};

Status Run(const Options& options, Context& context)
{
    Image image = options.files.Read(context);
    Adjust(options.adjustments, image);
    options.files.Write(image, context);
    return Status::Done;
}

}   // namespace

void RegisterAdjust(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    CLI::App& command = line.Add("adjust", "Change the colours of a picture: saturation.",
                                 {{"qz adjust photo.jpg vivid.png --saturation 1.4", "stronger colours"},
                                  {"qz adjust - - --saturation 0 <a.png >b.png", "through a pipe"}},
                                 [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    command
        .add_option("--saturation", options->adjustments.saturation, "0 is grey, 1 leaves the picture alone")
        ->check(Finite())
        ->type_name("S");
}

}   // namespace QZ::Tool
