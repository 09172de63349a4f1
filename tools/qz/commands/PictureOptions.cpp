// SPDX-License-Identifier: MIT
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

void AddMaxPixels(Command& command, Limits& limits)
{
    // The library counts the bytes of a picture in 32 bits.
    command.AddOption("--max-pixels", limits.pixels, "Refuse a larger picture (256000000)")
        .InRange(1, (1 << 29) - 1)
        .TypeName("N");
}

void AddInput(Command& command, std::string& path, Limits& limits)
{
    command.AddOption("IN", path, "The picture: PNG, JPEG, WebP, TIFF or PNM; - reads standard input")
        .Required()
        .TypeName("");
    AddMaxPixels(command, limits);
}

void AddOutput(Command& command, Output& output)
{
    command.AddOption("OUT", output.path, "The result: .png or .jpg; - writes standard output")
        .Required()
        .TypeName("");
    AddChoice(command, "--format", output.format,
              {{"png", FileFormat::PNG}, {"jpeg", FileFormat::JPEG}, {"jpg", FileFormat::JPEG}},
              "png or jpeg (by the name of OUT)");
    command.AddOption("--quality", output.quality, "Of a JPEG, 1 to 100 (92)").InRange(1, 100).TypeName("N");
}

void AddIlluminant(Command& command, Foundation::CColor::EIlluminant& illuminant)
{
    using Foundation::CColor;
    AddChoice(command, "--illuminant", illuminant, {{"d50", CColor::eD50}, {"d65", CColor::eD65}},
              "Reference white: d50 or d65 (d65)");
}

void PictureToPicture::AddTo(Command& command)
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

void PictureOrMovie::AddTo(Command& command)
{
    PictureToPicture::AddTo(command);
    AddMovieEncoding(command, encoding, "that of IN, or h264");
    command.Find("IN").Description(
        "The picture: PNG, JPEG, WebP, TIFF or PNM; - reads standard input. Or a movie");
    command.Find("OUT").Description("The result: .png or .jpg; - writes standard output. Of a movie: .mov");
}

Status PictureOrMovie::WorkOnEach(const std::string& doing, const std::function<void(Image&)>& operation,
                                  Context& context) const
{
    context.limits = limits;
    return WorkOnMovie({in, out.path, encoding}, doing, operation, context);
}

Image PictureOrMovie::Read(Context& context) const
{
    if (encoding.codec || encoding.bitRate)
        throw Failure(Status::Usage, encoding.codec ? "--codec" : "--bit-rate", "a picture has none",
                      "end OUT in .mov for a movie");
    return PictureToPicture::Read(context);
}

}   // namespace QZ::Tool
