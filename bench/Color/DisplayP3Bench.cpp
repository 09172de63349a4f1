// SPDX-License-Identifier: MIT
#include "bench/Support/PerColour.h"

namespace QZ::Bench {

[[maybe_unused]] static const bool kDisplayP3[] = {
    PerColour("LinearDisplayP3ToXYZ",
              [](const Colour& c) { return Out(Color::LinearDisplayP3ToXYZ, eD65, c); }),
    PerColour("XYZToLinearDisplayP3",
              [](const Colour& c) { return Out(Color::XYZToLinearDisplayP3, eD65, c); }),
    PerColour("DisplayP3ToXYZ", [](const Colour& c) { return Out(Color::DisplayP3ToXYZ, false, eD65, c); }),
    PerColour("XYZToDisplayP3", [](const Colour& c) { return Out(Color::XYZToDisplayP3, false, eD65, c); }),
    PerColour("LinearDisplayP3ToDisplayP3",
              [](const Colour& c) { return Out(Color::LinearDisplayP3ToDisplayP3, false, c); }),
    PerColour("DisplayP3ToSRGB",
              [](const Colour& c) { return Out(Color::DisplayP3ToSRGB, false, false, eD65, c); }),
    PerColour("SRGBToDisplayP3",
              [](const Colour& c) { return Out(Color::SRGBToDisplayP3, false, false, eD65, c); }),
    PerColour("DisplayP3ToLab", [](const Colour& c) { return Out(Color::DisplayP3ToLab, false, eD65, c); }),
    PerColour("LabToDisplayP3", [](const Colour& c) { return Out(Color::LabToDisplayP3, false, eD65, c); }),
    PerColour("DisplayP3ToIPT", [](const Colour& c) { return Out(Color::DisplayP3ToIPT, false, eD65, c); }),
    PerColour("IPTToDisplayP3", [](const Colour& c) { return Out(Color::IPTToDisplayP3, false, eD65, c); }),
    PerColour("LinearDisplayP3ToIPT",
              [](const Colour& c) { return Out(Color::LinearDisplayP3ToIPT, eD65, c); }),
    PerColour("IPTToLinearDisplayP3",
              [](const Colour& c) { return Out(Color::IPTToLinearDisplayP3, eD65, c); }),
    PerColour("LinearDisplayP3ToLinearY",
              [](const Colour& c) { return Number(Color::LinearDisplayP3ToLinearY, eD65, c); }),
    PerColour("DisplayP3ToLinearY",
              [](const Colour& c) { return Number(Color::DisplayP3ToLinearY, false, eD65, c); }),
    PerColour("DisplayP3ToDisplayP3Y",
              [](const Colour& c) { return Number(Color::DisplayP3ToDisplayP3Y, false, false, eD65, c); }),
};

}   // namespace QZ::Bench
