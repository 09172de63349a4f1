// SPDX-License-Identifier: MIT
#include "tools/qz/io/ImageWriter.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/qz/Failure.h"
#include "tools/qz/io/OutputFile.h"

namespace QZ::Tool {

namespace {

FileFormat FormatOf(const Output& output)
{
    if (output.format)
        return *output.format;
    if (output.path == "-")
        return FileFormat::PNG;
    std::string ending = std::filesystem::path(output.path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (ending == ".png")
        return FileFormat::PNG;
    throw Failure(Status::Usage, output.path, "the name tells no format that qz writes",
                  "end it in .png or .jpg, or say --format");
}

}   // namespace

void CheckOutput(const Output& output, const Context& context)
{
    (void)FormatOf(output);
    CheckOutput(output.path, context.force);
}

void WriteImage(const Image& image, const Output& output, const Context& context)
{
    context.Progress("writing " + output.path);
    WriteOutput(output.path, context.force, EncodePNG(image));
    context.Progress({});
}

}   // namespace QZ::Tool
