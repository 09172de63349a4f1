// SPDX-License-Identifier: MIT
#include <memory>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"
#include "tools/qz/plots/ChromaMap.h"

namespace QZ::Tool {

namespace {

Status Run(const Output& out, Context& context)
{
    context.pictureOnStdout = out.path == "-";
    CheckOutput(out, context);
    WriteImage(ChromaMapSheet(), out, context);
    return Status::Done;
}

}   // namespace

void RegisterChromaMap(CommandLine& line)
{
    const auto out = std::make_shared<Output>();
    Command command =
        line.Add("chroma-map", "Draw the largest chroma that sRGB holds, by lightness and hue in Luv.",
                 {{"qz chroma-map map.png", "the table of the library, with axes"}},
                 [out](Context& context) { return Run(*out, context); });
    AddOutput(command, *out);
}

}   // namespace QZ::Tool
