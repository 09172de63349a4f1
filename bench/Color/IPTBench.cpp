// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kIPT[] = {
    PerColour("XYZToIPT", [](const Colour& c) { return Out(Color::XYZToIPT, eD65, c); }),
    PerColour("IPTToXYZ", [](const Colour& c) { return Out(Color::IPTToXYZ, eD65, c); }),
    PerColour("LinearRGBToIPT", [](const Colour& c) { return Out(Color::LinearRGBToIPT, eD65, c); }),
    PerColour("IPTToLinearRGB", [](const Colour& c) { return Out(Color::IPTToLinearRGB, false, eD65, c); }),
    PerColour("SRGBToIPT", [](const Colour& c) { return Out(Color::SRGBToIPT, false, false, eD65, c); }),
    PerColour("IPTToSRGB", [](const Colour& c) { return Out(Color::IPTToSRGB, false, false, eD65, c); }),
    PerColour("LinearYToIXX", [](const Colour& c) { return Number(Color::LinearYToIXX, c.x); }),
    PerColour("IPTSaturation", [](const Colour& c) { return Color::IPTSaturation(c); }),
    PerColour("IPTToICH", [](const Colour& c) { return Out(Color::IPTToICH, c); }),
    PerColour("ICHToIPT", [](const Colour& c) { return Out(Color::ICHToIPT, c); }),
    PerColour("IPTToXXH", [](const Colour& c) { return Number(Color::IPTToXXH, c); }),
    PerColour("LinearRGBToICH", [](const Colour& c) { return Out(Color::LinearRGBToICH, eD65, c); }),
    PerColour("ICHToLinearRGB", [](const Colour& c) { return Out(Color::ICHToLinearRGB, false, eD65, c); }),
    PerColour("ICHSaturation", [](const Colour& c) { return Color::ICHSaturation(c); }),
    PerColour("SRGBToLMS", [](const Colour& c) { return Out(Color::SRGBToLMS, false, false, eD65, c); }),
};

}   // namespace QZ::Bench
