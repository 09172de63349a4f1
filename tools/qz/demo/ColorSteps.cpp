// SPDX-License-Identifier: MIT
#include <cstdio>

#include "tools/qz/Failure.h"
#include "tools/qz/demo/Steps.h"
#include "tools/qz/operations/Balance.h"
#include "tools/qz/operations/Hues.h"
#include "tools/qz/operations/Posterize.h"

namespace QZ::Tool {

namespace {

std::string DescribeLight(const Light& light)
{
    char text[96];
    std::snprintf(text, sizeof text, "The light: x = %.4f, y = %.4f", light.x, light.y);
    std::string line = text;
    if (light.kelvin) {
        std::snprintf(text, sizeof text, ", %.0f K", *light.kelvin);
        line += text;
    }
    return line;
}

// A picture without light is shown as it is.
std::string Balanced(const BalanceOptions& options, Image& image)
{
    try {
        return DescribeLight(BalanceWhite(options, image));
    } catch (const Failure& failure) {
        return failure.what();
    }
}

Step BalanceStep(const std::string& title, const std::string& text, const std::string& name,
                 BalanceOptions::Method method)
{
    BalanceOptions options;
    options.method = method;
    return {"White balance", title, text, name, "balance", "--method " + name, [options](Image& image) {
                return Balanced(options, image);
            }};
}

}   // namespace

void AddColorSteps(std::vector<Step>& steps)
{
    using Method = BalanceOptions::Method;
    steps.push_back({"Hues", "Four hues", "The hues join until four are left; lightness and chroma stay.",
                     "hues", "hues", "--count 4", [](Image& image) {
                         return std::to_string(ReduceToHues({}, image).colors.size()) + " hues";
                     }});
    steps.push_back({"Hues", "Greys by hue",
                     "Each group of hues, and what has little colour, gets three greys of its own.",
                     "posterize", "posterize", "--hues 4 --greys 3", [](Image& image) {
                         return std::to_string(Posterize({}, image).tones.size()) + " greys in all";
                     }});
    steps.push_back(BalanceStep("Grey world", "The mean colour of the picture is taken for the light.",
                                "grey-world", Method::GreyWorld));
    steps.push_back(BalanceStep("Brightest", "The brightest red, green and blue are taken for the light.",
                                "max-gray", Method::MaxGray));
    steps.push_back(BalanceStep("Local surfaces", "The light by which the parts of the picture agree (LSRS).",
                                "lsrs", Method::LSRS));
}

}   // namespace QZ::Tool
