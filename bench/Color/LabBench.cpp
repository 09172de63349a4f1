// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kLab[] = {
    PerColour("XYZtoLab", [](const Colour& c) { return Out(Color::XYZtoLab, eD65, c); }),
    PerColour("LabToXYZ", [](const Colour& c) { return Out(Color::LabToXYZ, eD65, c); }),
    PerColour("LinearRGBToLab", [](const Colour& c) { return Out(Color::LinearRGBToLab, eD65, c); }),
    PerColour("LabToLinearRGB", [](const Colour& c) { return Out(Color::LabToLinearRGB, false, eD65, c); }),
    PerColour("SRGBToLab", [](const Colour& c) { return Out(Color::SRGBToLab, false, false, eD65, c); }),
    PerColour("LabToSRGB", [](const Colour& c) { return Out(Color::LabToSRGB, false, false, eD65, c); }),
    PerColour("ExtendedRangeSRGBToLab",
              [](const Colour& c) { return Out(Color::ExtendedRangeSRGBToLab, false, eD65, c); }),
    PerColour("LabToExtendedRangeSRGB",
              [](const Colour& c) { return Out(Color::LabToExtendedRangeSRGB, false, eD65, c); }),
    PerColour("LabToLCh", [](const Colour& c) { return Out(Color::LabToLCh, c); }),
    PerColour("LChSaturation", [](const Colour& c) { return Color::LChSaturation(c); }),
    PerColour("DeltaESquaredLinearRGBLinearRGB",
              [](const Colour& c) {
                  return Color::DeltaESquaredLinearRGBLinearRGB(eD65, c, Colour(0.5f, 0.5f, 0.5f));
              }),
    PerColour(
        "DeltaESquaredLinearRGBLab",
        [](const Colour& c) { return Color::DeltaESquaredLinearRGBLab(eD65, c, Colour(0.5f, 0.0f, 0.0f)); }),
};

}   // namespace QZ::Bench
