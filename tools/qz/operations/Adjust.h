// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>

#include "QZ/Foundation/Color/CColor.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

/// What `qz adjust` does, in the order of the fields; the defaults do nothing.
struct Adjustments {
    enum class HueRotation { YIQ, Luminance, Axis };

    /// \name Tone curves, on linear light
    /// \{
    std::optional<std::array<float, 4>> hable;   ///< A to D of CColor::ToneCurveModifiedHable().
    std::optional<Foundation::CColor::sInsomniacGamesToneCurve> insomniac;
    bool inverse = false;   ///< The Insomniac Games curve from output to input.
    /// \}

    /// \name Matrices, on encoded values or on linear light
    /// \{
    bool linear = false;
    Foundation::CColor::EIlluminant illuminant = Foundation::CColor::eD65;   ///< Of the luminance kept.
    float hueDegrees = 0.0f;
    HueRotation rotation = HueRotation::YIQ;
    float saturation = 1.0f;   ///< 0 is grey.
    /// \}

    bool complementary = false;      ///< The opposite hue.
    bool equalize = false;           ///< The histogram of the luma; the colour differences stay.
    bool equalizeChannels = false;   ///< The histograms of red, green and blue, each of its own.
};

/// Adjusts the colours of a picture in place; alpha stays.
void Adjust(const Adjustments& adjustments, Image& image);

}   // namespace QZ::Tool
