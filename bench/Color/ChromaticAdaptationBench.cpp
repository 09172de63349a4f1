// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kChromaticAdaptation[] = {
    PerColour("ChromaticAdaptationMatrix",
              [](const Colour& c) { return Color::ChromaticAdaptationMatrix(c, Color::XYZReference(eD65)); }),
};

}   // namespace QZ::Bench
