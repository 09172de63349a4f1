// SPDX-License-Identifier: MIT
#include "tools/qz/commands/PictureOptions.h"

#include <map>

namespace QZ::Tool {

void AddInput(CLI::App& command, std::string& path, Limits& limits)
{
    command.add_option("IN", path, "The picture: PNG, JPEG, WebP, TIFF or PNM; - reads standard input")
        ->required();
    // The library counts the bytes of a picture in 32 bits.
    command.add_option("--max-pixels", limits.pixels, "Refuse a larger picture (256000000)")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{(1u << 29) - 1}))
        ->type_name("N");
}

void AddOutput(CLI::App& command, Output& output)
{
    const std::map<std::string, FileFormat> formats = {{"png", FileFormat::PNG}, {"jpeg", FileFormat::JPEG}};
    command.add_option("OUT", output.path, "The result: .png or .jpg; - writes standard output")->required();
    command.add_option("--format", output.format, "png or jpeg (by the name of OUT)")
        ->transform(CLI::CheckedTransformer(formats, CLI::ignore_case).description(""))
        ->type_name("FORMAT");
    command.add_option("--quality", output.quality, "Of a JPEG, 1 to 100 (92)")
        ->check(CLI::Range(1, 100).description(""))
        ->type_name("N");
}

void AddIlluminant(CLI::App& command, Foundation::CColor::EIlluminant& illuminant)
{
    using Foundation::CColor;
    const std::map<std::string, CColor::EIlluminant> whites = {{"d50", CColor::eD50}, {"d65", CColor::eD65}};
    command.add_option("--illuminant", illuminant, "Reference white: d50 or d65 (d65)")
        ->transform(CLI::CheckedTransformer(whites, CLI::ignore_case).description(""))
        ->type_name("WHITE");
}

void PictureToPicture::AddTo(CLI::App& command)
{
    AddInput(command, in, limits);
    AddOutput(command, out);
}

Image PictureToPicture::Read(Context& context) const
{
    context.limits = limits;
    context.pictureOnStdout = out.path == "-";
    if (context.pictureOnStdout && context.json)
        throw Failure(Status::Usage, "--json", "standard output holds the picture already",
                      "write the picture to a file");
    CheckOutput(out, context);
    return ReadImage(in, context);
}

}   // namespace QZ::Tool
