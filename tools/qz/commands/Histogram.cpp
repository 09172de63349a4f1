// SPDX-License-Identifier: MIT
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/qz/commands/Commands.h"
#include "tools/qz/commands/PictureOptions.h"
#include "tools/qz/plots/Histograms.h"

namespace QZ::Tool {

namespace {

using Foundation::CGrayscaleWeightedHistogram;
using Foundation::CHueWeightedHistogram;

struct Options {
    PictureToPicture files;
    HistogramOptions histogram;
};

Status Run(const Options& options, Context& context)
{
    const Image image = options.files.Read(context);
    const PictureHistograms histograms = MeasureHistograms(image, options.histogram);
    const std::string name = options.files.in == "-"
                                 ? "standard input"
                                 : std::filesystem::path(options.files.in).filename().string();
    const std::string size = std::to_string(image.width) + " \xC3\x97 " + std::to_string(image.height);
    options.files.Write(HistogramSheet(histograms, OneLine(name) + ", " + size), context);
    if (context.json)
        context.PrintJson(HistogramsAsJson(histograms));
    return Status::Done;
}

}   // namespace

void RegisterHistogram(CommandLine& line)
{
    const auto options = std::make_shared<Options>();
    Command command =
        line.Add("histogram", "Plot the greys and hues of a picture: counts, density, weights, hue circle.",
                 {{"qz histogram photo.jpg plots.png", "four plots on one sheet"},
                  {"qz histogram photo.jpg plots.png --grey lightness --space ipt", "other measures"},
                  {"qz histogram photo.jpg plots.png --json", "also print every bin"}},
                 [options](Context& context) { return Run(*options, context); });
    options->files.AddTo(command);
    const std::map<std::string, CGrayscaleWeightedHistogram::EGrayscaleFrom> sources = {
        {"luminance", CGrayscaleWeightedHistogram::eNonlinearY},
        {"lightness", CGrayscaleWeightedHistogram::eLXX},
        {"alpha", CGrayscaleWeightedHistogram::eFourthChannel}};
    AddChoice(command, "--grey", options->histogram.from, sources,
              "Grey: luminance, lightness or alpha (luminance)")
        .TypeName("GREY");
    const std::map<std::string, CHueWeightedHistogram::EHueColorSpace> spaces = {
        {"lab", CHueWeightedHistogram::eLab},
        {"luv", CHueWeightedHistogram::eLuv},
        {"ipt", CHueWeightedHistogram::eIPT}};
    AddChoice(command, "--space", options->histogram.space, spaces, "Hue: lab, luv or ipt (luv)")
        .TypeName("SPACE");
    command.AddOption("--bins", options->histogram.hueBins, "Of the hue circle, 3 to 1441 (121)")
        .InRange(3, 1441)
        .TypeName("N");
    AddIlluminant(command, options->histogram.illuminant);
    line.AddJson(command);
}

}   // namespace QZ::Tool
