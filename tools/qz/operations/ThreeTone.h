// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qz/operations/GreyPlane.h"
#include "tools/qz/operations/Tones.h"

namespace QZ::Tool {

/// What `qz three-tone` is asked for.
struct ThreeToneOptions {
    GreyChoice grey;
    ToneCurve curve;
    int clusters = 4;   ///< 2 to 5; of 4 and 5 the middle ones are the mid tone.
    float thresholdExponent = 1.0f;
    float toneExponent = 1.0f;
};

/// Levels on the scale of 255, through the tone curve.
struct ThreeTone {
    int low = 0;    ///< Below it is shadow.
    int high = 0;   ///< From it on is highlight.
    int mid = 0;    ///< The tone in between.
};

/// Paints a picture black, one grey and white.
ThreeTone ReduceToThreeTones(const ThreeToneOptions& options, Image& image);

}   // namespace QZ::Tool
