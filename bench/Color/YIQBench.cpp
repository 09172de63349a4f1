// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kYIQ[] = {
    PerColour("RGBToYIQ", [](const Colour& c) { return Out(Color::RGBToYIQ, c); }),
    PerColour("YIQToRGB", [](const Colour& c) { return Out(Color::YIQToRGB, c); }),
    PerColour("SRGBToYCbCr", [](const Colour& c) { return Out(Color::SRGBToYCbCr, c); }),
    PerColour("YCbCrToSRGB", [](const Colour& c) { return Out(Color::YCbCrToSRGB, c); }),
};

}   // namespace QZ::Bench
