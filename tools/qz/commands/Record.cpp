// SPDX-License-Identifier: MIT
#include <memory>

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

void TakeSize(const std::string& text, RecordOptions& options)
{
    const std::size_t by = text.find('x');
    int width = 0, height = 0;
    const bool isSize = by != std::string::npos && CLI::detail::lexical_cast(text.substr(0, by), width) &&
                        CLI::detail::lexical_cast(text.substr(by + 1), height);
    if (!isSize || width < kLeastSide || height < kLeastSide || width > kMostSide || height > kMostSide)
        throw CLI::ValidationError("--size", "wants WIDTHxHEIGHT, each from 16 to 8192");
    options.width = width;
    options.height = height;
}

}   // namespace

void RegisterRecord(CommandLine& line)
{
    const auto options = std::make_shared<RecordOptions>();
    CLI::App& command =
        line.Add("record", "Record a movie of a moving test scene, with a tone.",
                 {{"qz record test.mov", "five seconds of 1280 x 720, H.264"},
                  {"qz record test.mov --codec prores --size 1920x1080", "as ProRes 422"},
                  {"qz record test.mov --seconds 60 --live", "as it comes: does this machine keep up?"}},
                 [options](Context& context) { return Run(*options, context); });
    command.add_option("OUT", options->out, "The movie, .mov")->required()->type_name("");
    AddMovieEncoding(command, options->encoding, "h264");
    command
        .add_option_function<std::string>(
            "--size", [options](const std::string& text) { TakeSize(text, *options); },
            "In pixels (1280x720)")
        ->type_name("WxH");
    command.add_option("--rate", options->rate, "Pictures a second, 1 to 240 (30)")
        ->check(CLI::Range(1, 240).description(""))
        ->type_name("N");
    command.add_option("--seconds", options->seconds, "How long, 0.01 to 86400 (5)")
        ->check(Between(0.01, 86400))
        ->type_name("X");
    command.add_option("--turn", options->turn, "Shown turned clockwise by 0, 90, 180 or 270 degrees (0)")
        ->check(CLI::IsMember({0, 90, 180, 270}).description(""))
        ->type_name("DEGREES");
    command.add_flag("--live", options->isLive,
                     "A second takes a second; pictures for which the encoder has no room are dropped");
    line.AddJson(command);
}

}   // namespace QZ::Tool
