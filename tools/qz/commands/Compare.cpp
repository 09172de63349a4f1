// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Compare.h"

#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    std::string a, b;
    Output out;
    int tolerance = 0;
    Limits limits;
};

std::string SizeOf(const Image& image)
{
    return std::to_string(image.width) + " x " + std::to_string(image.height);
}

std::string Describe(const Image& a, const Image& b, const Comparison& result)
{
    std::string text = std::to_string(result.different) + " of " + std::to_string(result.pixels) +
                       (result.different == 1 ? " pixels differs" : " pixels differ");
    if (result.different > 0 && result.largest > 0)
        text += ", by at most " + std::to_string(result.largest) + " of 255";
    if (a.width != b.width || a.height != b.height)
        text += "; the sizes are " + SizeOf(a) + " and " + SizeOf(b);
    return text + "\n";
}

nlohmann::ordered_json Json(const Image& a, const Image& b, const Comparison& result)
{
    using Size = std::array<int, 2>;
    return {{"different", result.different},
            {"pixels", result.pixels},
            {"largest", result.largest},
            {"sizes", std::array{Size{a.width, a.height}, Size{b.width, b.height}}}};
}

Status Run(const Options& options, Context& context)
{
    context.limits = options.limits;
    if (options.a == "-" && options.b == "-")
        throw Failure(Status::Usage, "standard input", "it holds one picture", "name a file for the other");
    const bool draws = !options.out.path.empty();
    context.pictureOnStdout = options.out.path == "-";
    if (draws)
        CheckOutput(options.out, context);
    const Image a = ReadImage(options.a, context), b = ReadImage(options.b, context);
    Image drawing;
    const Comparison result = Compare(a, b, options.tolerance, draws ? &drawing : nullptr);
    if (draws)
        WriteImage(drawing, options.out, context);
    if (context.json)
        context.PrintJson(Json(a, b, result));
    else
        context.Print(Describe(a, b, result));
    return result.different == 0 ? Status::Done : Status::Different;
}

}   // namespace

void RegisterCompare(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add(
        "compare",
        "Count the pixels in which two pictures differ. Exit status 0 when none does, 1 when\n"
        "some do, 2 and above when the pictures could not be compared.",
        {{"qz compare a.png b.png", "how many, and by how much"},
         {"qz compare a.png b.png --out differences.png", "and where: red in a faint picture of the first"},
         {"qz compare a.png b.jpg --tolerance 8", "but for small differences"}},
        [options](Context& context) { return Run(*options, context); });
    command.AddOption("A", options->a, "The first picture; - reads standard input").Required().TypeName("");
    command.AddOption("B", options->b, "The second picture; - reads standard input").Required().TypeName("");
    command.AddOption("-o,--out", options->out.path, "Also draw the differences: .png or .jpg")
        .TypeName("OUT");
    command
        .AddOption("--tolerance", options->tolerance,
                   "Levels by which each channel of equal pixels may differ, 0 to 255 (0)")
        .InRange(0, 255)
        .TypeName("N");
    AddMaxPixels(command, options->limits);
    line.AddJson(command);
}

}   // namespace QZ::Tool
