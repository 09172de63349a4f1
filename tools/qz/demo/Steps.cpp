// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Steps.h"

#include <cstdio>

#include "tools/qz/operations/Adjust.h"
#include "tools/qz/operations/ThreeTone.h"
#include "tools/qz/operations/Threshold.h"
#include "tools/qz/operations/Tones.h"

namespace QZ::Tool {

namespace {

std::string ListOf(const Tones& tones)
{
    std::string list;
    for (const Tone& tone : tones.tones) {
        char text[48];
        std::snprintf(text, sizeof text, "%s%d (%.1f %%)", list.empty() ? "" : ", ", tone.grey,
                      tone.share * 100.0);
        list += text;
    }
    return "Greys and their shares: " + list;
}

Step TonesStep(TonesOptions::Method method, int count, const std::string& text, const std::string& name,
               const std::string& options)
{
    TonesOptions tones;
    tones.method = method;
    tones.count = count;
    return {"Grey",
            std::to_string(count) + " tones, " + name,
            text,
            "tones-" + name.substr(0, name.find(' ')),
            "tones",
            options,
            [tones](Image& image) { return ListOf(ReduceToTones(tones, image)); }};
}

Step ThresholdStep()
{
    return {"Grey",
            "Black and white",
            "Otsu's threshold parts light from dark.",
            "threshold",
            "threshold",
            "",
            [](Image& image) {
                const Threshold result = ApplyThreshold({}, image);
                return "Black up to level " + std::to_string(result.level);
            }};
}

Step ThreeToneStep()
{
    return {"Grey",
            "Three tones",
            "Shadow, one grey and highlight, as for a linocut of two plates.",
            "three-tone",
            "three-tone",
            "",
            [](Image& image) {
                const ThreeTone result = ReduceToThreeTones({}, image);
                return "Shadow below level " + std::to_string(result.low) + ", highlight from level " +
                       std::to_string(result.high) + ", grey " + std::to_string(result.mid) + " between";
            }};
}

Step AdjustStep(const std::string& title, const std::string& text, const std::string& name,
                const std::string& options, const Adjustments& adjustments)
{
    return {"Colour adjustments", title, text, name, "adjust", options, [adjustments](Image& image) {
                Adjust(adjustments, image);
                return std::string();
            }};
}

void AddAdjustments(std::vector<Step>& steps)
{
    Adjustments hue;
    hue.hueDegrees = 120.0f;
    hue.rotation = Adjustments::HueRotation::Luminance;
    steps.push_back(AdjustStep("Hue rotation", "All hues turn by 120 degrees; the luminance stays.", "hue",
                               "--hue 120 --rotation luminance", hue));
    Adjustments saturation;
    saturation.saturation = 1.6f;
    steps.push_back(AdjustStep("Saturation", "Colours move away from the grey of their luminance.",
                               "saturation", "--saturation 1.6", saturation));
    Adjustments complementary;
    complementary.complementary = true;
    steps.push_back(AdjustStep("Complementary colours", "Each hue becomes its opposite in HSV.",
                               "complementary", "--complementary", complementary));
    Adjustments equalize;
    equalize.equalize = true;
    steps.push_back(AdjustStep("Equalised", "Every luma is as frequent as the next.", "equalize",
                               "--equalize", equalize));
    Adjustments film;
    film.insomniac = Foundation::CColor::sInsomniacGamesToneCurve{0.0f, 0.3f, 0.2f, 0.5f, 1.0f};
    steps.push_back(AdjustStep("Filmic curve", "A toe and a shoulder of two rational segments.", "film",
                               "--insomniac 0,0.3,0.2,0.5,1", film));
}

}   // namespace

std::vector<Step> DemoSteps()
{
    using Method = TonesOptions::Method;
    std::vector<Step> steps;
    steps.push_back(TonesStep(Method::Hierarchical, 4,
                              "Neighbouring grey levels join until four tones are left.", "clustered",
                              "--count 4"));
    steps.push_back(TonesStep(Method::MedianCut, 6, "The grey levels are cut where the pixels are halved.",
                              "median cut", "--count 6 --method median-cut"));
    steps.push_back(ThreeToneStep());
    steps.push_back(ThresholdStep());
    AddColorSteps(steps);
    AddAdjustments(steps);
    return steps;
}

}   // namespace QZ::Tool
