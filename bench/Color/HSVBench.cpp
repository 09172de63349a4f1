// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kHSV[] = {
    PerColour("RGBToHSV", [](const Colour& c) { return Out(Color::RGBToHSV, c); }),
    PerColour("HSVToRGB", [](const Colour& c) { return Out(Color::HSVToRGB, c); }),
};

}   // namespace QZ::Bench
