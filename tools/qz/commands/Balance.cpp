// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Balance.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"

namespace QZ::Tool {

namespace {

struct Options {
    PictureOrMovie files;
    BalanceOptions balance;
};

std::string Describe(const Light& light)
{
    char text[160];
    const int length = std::snprintf(text, sizeof text, "white  XYZ %.4f %.4f %.4f   x %.4f   y %.4f   ",
                                     light.white.x, light.white.y, light.white.z, light.x, light.y);
    std::string line(text, static_cast<std::size_t>(length));
    if (!light.kelvin)
        return line + "no colour temperature: out of range\n";
    std::snprintf(text, sizeof text, "%.0f K\n", *light.kelvin);
    return line + text;
}

nlohmann::ordered_json Json(const Image& image, const Light& light)
{
    nlohmann::ordered_json document = {{"width", image.width},
                                       {"height", image.height},
                                       {"xyz", {light.white.x, light.white.y, light.white.z}},
                                       {"x", light.x},
                                       {"y", light.y},
                                       {"kelvin", nullptr}};
    if (light.kelvin)
        document["kelvin"] = *light.kelvin;
    return document;
}

// A picture without light, as a fade from black begins, stays as it is.
Status RunOnMovie(const Options& options, Context& context)
{
    if (options.balance.displayP3)
        throw Failure(Status::Usage, "--p3", "movies are written in sRGB", "leave it out");
    std::atomic<std::uint64_t> dark = 0;
    const auto balance = [&](Image& image) {
        try {
            BalanceWhite(options.balance, image);
        } catch (const Failure& failure) {
            if (failure.status != Status::Malformed)
                throw;
            ++dark;
        }
    };
    const Status status = options.files.WorkOnEach("balance", balance, context);
    if (dark > 0)
        context.Say("pictures without light, which stay as they are: " + std::to_string(dark));
    return status;
}

Status Run(const Options& options, Context& context)
{
    if (options.files.IsMovie())
        return RunOnMovie(options, context);
    Image image = options.files.Read(context);
    context.Progress("balancing");
    const Light light = BalanceWhite(options.balance, image);
    options.files.Write(image, context);
    if (context.json)
        context.PrintJson(Json(image, light));
    else
        context.Print(Describe(light));
    return Status::Done;
}

}   // namespace

void RegisterBalance(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command = line.Add(
        "balance", "Estimate the light of a picture and take its colour out.",
        {{"qz balance photo.jpg balanced.png", "the mean of the picture becomes grey"},
         {"qz balance photo.jpg balanced.png --method lsrs", "by local surfaces"},
         {"qz balance photo.jpg balanced.png --light 214,200,171", "what has this colour becomes grey"},
         {"qz balance photo.jpg balanced.png --p3", "into Display P3"},
         {"qz balance film.mp4 balanced.mov --light 214,200,171", "a movie, the same for each picture"}},
        [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    line.AddJson(command);
    BalanceOptions& balance = options->balance;
    using Method = BalanceOptions::Method;
    AddChoice(command, "--method", balance.method,
              {{"grey-world", Method::GreyWorld}, {"max-gray", Method::MaxGray}, {"lsrs", Method::LSRS}},
              "grey-world (the mean is grey), max-gray (the brightest is) or lsrs (grey-world)");
    command.AddFlag("--large-tiles", balance.largeTiles, "With lsrs: about 3 surfaces instead of 22");
    command.AddNumbers(
        "--light", 3,
        [&balance](const std::vector<float>& rgb) {
            if (std::ranges::any_of(rgb, [](float c) { return c < 0.0f || c > 255.0f; }))
                RefuseValue("--light: wants numbers from 0 to 255");
            balance.light = {rgb[0], rgb[1], rgb[2]};
        },
        "sRGB, 0 to 255, of what should be grey, in place of an estimate: R,G,B");
    AddIlluminant(command, balance.illuminant);
    command.AddFlag("--p3", balance.displayP3, "Write Display P3, with its profile");
}

}   // namespace QZ::Tool
