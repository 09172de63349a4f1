// SPDX-License-Identifier: MIT
#include <charconv>
#include <memory>
#include <string_view>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"
#include "tools/qz/movie/RecordMovie.h"

namespace QZ::Tool {

namespace {

constexpr int kLeastSide = 16;
constexpr int kMostSide = 8192;

Status Run(const RecordOptions& options, Context& context)
{
    const Recorded recorded = RecordScene(options, context);
    if (recorded.dropped > 0)
        context.Say("dropped, as the encoder had no room: " + std::to_string(recorded.dropped));
    return Tell(recorded.summary, options.out, context);
}

bool ReadWhole(std::string_view text, int& number)
{
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && last == end;
}

void TakeSize(std::string_view text, RecordOptions& options)
{
    const std::size_t by = text.find('x');
    int width = 0, height = 0;
    const bool isSize = by != std::string::npos && ReadWhole(text.substr(0, by), width) &&
                        ReadWhole(text.substr(by + 1), height);
    if (!isSize || width < kLeastSide || height < kLeastSide || width > kMostSide || height > kMostSide)
        RefuseValue("--size: wants WIDTHxHEIGHT, each from 16 to 8192");
    options.width = width;
    options.height = height;
}

}   // namespace

void RegisterRecord(CommandLine& line)
{
    const auto options = std::make_shared<RecordOptions>();
    Command command =
        line.Add("record", "Record a movie of a moving test scene, with a tone.",
                 {{"qz record test.mov", "five seconds of 1280 x 720, H.264"},
                  {"qz record test.mov --codec prores --size 1920x1080", "as ProRes 422"},
                  {"qz record test.mov --seconds 60 --live", "as it comes: does this machine keep up?"}},
                 [options](Context& context) { return Run(*options, context); });
    command.AddOption("OUT", options->out, "The movie, .mov").Required().TypeName("");
    AddMovieEncoding(command, options->encoding, "h264");
    command
        .AddText(
            "--size", [options](const std::string& text) { TakeSize(text, *options); },
            "In pixels (1280x720)")
        .TypeName("WxH");
    command.AddOption("--rate", options->rate, "Pictures a second, 1 to 240 (30)")
        .InRange(1, 240)
        .TypeName("N");
    command.AddOption("--seconds", options->seconds, "How long, 0.01 to 86400 (5)")
        .Between(0.01, 86400)
        .TypeName("X");
    command.AddOption("--turn", options->turn, "Shown turned clockwise by 0, 90, 180 or 270 degrees (0)")
        .OneOf({"0", "90", "180", "270"})
        .TypeName("DEGREES");
    command.AddFlag("--live", options->isLive,
                    "A second takes a second; pictures for which the encoder has no room are dropped");
    line.AddJson(command);
}

}   // namespace QZ::Tool
