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
    if (ending == ".jpg" || ending == ".jpeg")
        return FileFormat::JPEG;
    throw Failure(Status::Usage, output.path, "the name tells no format that qz writes",
                  "end it in .png or .jpg, or say --format");
}

bool HasTransparency(const Image& image)
{
    for (std::size_t i = 3; i < image.pixels.size(); i += 4)
        if (image.pixels[i] != 255)
            return true;
    return false;
}

std::vector<unsigned char> Encode(const Image& image, const Output& output, const Context& context)
{
    if (FormatOf(output) == FileFormat::PNG)
        return EncodePNG(image);
    if (HasTransparency(image))
        context.Say(output.path + ": a JPEG has no transparency; the picture was put on white");
    return EncodeJPEG(image, output.quality);
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
    WriteOutput(output.path, context.force, Encode(image, output, context));
    context.Progress({});
}

}   // namespace QZ::Tool
