// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kXYZ[] = {
    PerColour("LinearRGBToXYZ", [](const Colour& c) { return Out(Color::LinearRGBToXYZ, eD65, c); }),
    PerColour("XYZToLinearRGB", [](const Colour& c) { return Out(Color::XYZToLinearRGB, false, eD65, c); }),
    PerColour("SRGBToXYZ", [](const Colour& c) { return Out(Color::SRGBToXYZ, false, false, eD65, c); }),
    PerColour("XYZToSRGB", [](const Colour& c) { return Out(Color::XYZToSRGB, false, false, eD65, c); }),
    PerColour("YToXYZ", [](const Colour& c) { return Out(Color::YToXYZ, eD65, c.x); }),
    PerColour("XYZtoXYZWithModifiedY",
              [](const Colour& c) { return Out(Color::XYZtoXYZWithModifiedY, eD65, c, 0.5f); }),
    PerColour("SRGBToLinearY",
              [](const Colour& c) { return Number(Color::SRGBToLinearY, false, false, eD65, c); }),
    PerColour("LinearRGBToLinearY",
              [](const Colour& c) { return Number(Color::LinearRGBToLinearY, false, eD65, c); }),
    PerColour("SRGBToNonlinearY",
              [](const Colour& c) { return Number(Color::SRGBToNonlinearY, false, false, eD65, c); }),
    PerColour("LinearRGBToNonlinearY",
              [](const Colour& c) { return Number(Color::LinearRGBToNonlinearY, false, false, eD65, c); }),
    PerColour("Clamp", [](const Colour& c) { return Color::Clamp(c, 0.25f, 0.75f); }),
};

}   // namespace QZ::Bench
