// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kLuv[] = {
    PerColour("XYZtoLuv", [](const Colour& c) { return Out(Color::XYZtoLuv, eD65, c); }),
    PerColour("LuvToXYZ", [](const Colour& c) { return Out(Color::LuvToXYZ, eD65, c); }),
    PerColour("LinearRGBToLuv", [](const Colour& c) { return Out(Color::LinearRGBToLuv, eD65, c); }),
    PerColour("LuvToLinearRGB", [](const Colour& c) { return Out(Color::LuvToLinearRGB, false, eD65, c); }),
    PerColour("SRGBToLuv", [](const Colour& c) { return Out(Color::SRGBToLuv, false, false, eD65, c); }),
    PerColour("LuvToSRGB", [](const Colour& c) { return Out(Color::LuvToSRGB, false, false, eD65, c); }),
    PerColour("LuvToLChuv", [](const Colour& c) { return Out(Color::LuvToLChuv, c); }),
    PerColour("LChuvSaturation", [](const Colour& c) { return Color::LChuvSaturation(c); }),
};

}   // namespace QZ::Bench
