// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kYxy[] = {
    PerColour("XYZToYxy", [](const Colour& c) { return Out(Color::XYZToYxy, c); }),
    PerColour("YxyToXYZ", [](const Colour& c) { return Out(Color::YxyToXYZ, c); }),
    PerColour("LinearRGBToYxy", [](const Colour& c) { return Out(Color::LinearRGBToYxy, eD65, c); }),
    PerColour("YxyToLinearRGB", [](const Colour& c) { return Out(Color::YxyToLinearRGB, false, eD65, c); }),
};

}   // namespace QZ::Bench
