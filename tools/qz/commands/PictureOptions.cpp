// SPDX-License-Identifier: MIT
#include "tools/qz/commands/PictureOptions.h"

#include <cmath>

namespace QZ::Tool {

void AddNumbers(CLI::App& command, const std::string& option, std::size_t count,
                const std::function<void(const std::vector<float>&)>& take, const std::string& text)
{
    const auto parse = [option, count, take](const std::string& list) {
        std::vector<float> numbers;
        for (const std::string& word : CLI::detail::split(list, ',')) {
            float number = 0.0f;
            if (!CLI::detail::lexical_cast(word, number) || !std::isfinite(number))
                throw CLI::ValidationError(option, "'" + word + "' is not a number");
            numbers.push_back(number);
        }
        if (numbers.size() != count)
            throw CLI::ValidationError(option,
                                       "wants " + std::to_string(count) + " numbers parted by commas");
        take(numbers);
    };
    command.add_option_function<std::string>(option, parse, text)->type_name("LIST");
}

void AddMaxPixels(CLI::App& command, Limits& limits)
{
    // The library counts the bytes of a picture in 32 bits.
    command.add_option("--max-pixels", limits.pixels, "Refuse a larger picture (256000000)")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{(1u << 29) - 1}).description(""))
        ->type_name("N");
}

void AddInput(CLI::App& command, std::string& path, Limits& limits)
{
    command.add_option("IN", path, "The picture: PNG, JPEG, WebP, TIFF or PNM; - reads standard input")
        ->required()
        ->type_name("");
    AddMaxPixels(command, limits);
}

void AddOutput(CLI::App& command, Output& output)
{
    command.add_option("OUT", output.path, "The result: .png or .jpg; - writes standard output")
        ->required()
        ->type_name("");
    AddChoice(command, "--format", output.format,
              {{"png", FileFormat::PNG}, {"jpeg", FileFormat::JPEG}, {"jpg", FileFormat::JPEG}},
              "png or jpeg (by the name of OUT)");
    command.add_option("--quality", output.quality, "Of a JPEG, 1 to 100 (92)")
        ->check(CLI::Range(1, 100).description(""))
        ->type_name("N");
}

void AddIlluminant(CLI::App& command, Foundation::CColor::EIlluminant& illuminant)
{
    using Foundation::CColor;
    AddChoice(command, "--illuminant", illuminant, {{"d50", CColor::eD50}, {"d65", CColor::eD65}},
              "Reference white: d50 or d65 (d65)");
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

void PictureOrMovie::AddTo(CLI::App& command)
{
    PictureToPicture::AddTo(command);
    AddMovieEncoding(command, encoding, "that of IN, or h264");
    command.get_option("IN")->description(
        "The picture: PNG, JPEG, WebP, TIFF or PNM; - reads standard input. Or a movie");
    command.get_option("OUT")->description(
        "The result: .png or .jpg; - writes standard output. Of a movie: .mov");
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
