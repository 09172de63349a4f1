// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kLXX[] = {
    PerColour("LinearRGBToLXX", [](const Colour& c) { return Number(Color::LinearRGBToLXX, c); }),
    PerColour("LinearYToLXX", [](const Colour& c) { return Number(Color::LinearYToLXX, c.x); }),
    PerColour("LXXToLinearY", [](const Colour& c) { return Number(Color::LXXToLinearY, c.x); }),
    PerColour("SRGBToLXX", [](const Colour& c) { return Number(Color::SRGBToLXX, false, false, c); }),
    PerColour("SRGBYToLXX", [](const Colour& c) { return Number(Color::SRGBYToLXX, false, c.x); }),
    PerColour("LXXToSRGBY", [](const Colour& c) { return Number(Color::LXXToSRGBY, false, c.x); }),
};

}   // namespace QZ::Bench
