// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tools/qz/operations/GreyPlane.h"

namespace QZ::Tool {

/// The arguments of CGrayscaleToneCurve::Compute(); the defaults change nothing.
struct ToneCurve {
    float black = 0.0f;
    float white = 1.0f;
    float gamma = 1.0f;
    float toe = 0.0f;
    float shoulder = 1.0f;
};

/// What `qz tones` is asked for.
struct TonesOptions {
    enum class Method { Hierarchical, MedianCut };

    GreyChoice grey;
    Method method = Method::Hierarchical;
    int count = 4;
    double minGap = 0.0;   ///< Tones that differ by at most this are merged.
    ToneCurve curve;
    float highlights = 1.0f;        ///< Strength as in CColor::Highlights(); 1 for none.
    float highlightsBand = 0.85f;   ///< Its band.
};

/// A tone of a picture.
struct Tone {
    unsigned char grey;
    double share;   ///< Of the pixels' weight, 0 to 1.
    int first;      ///< Least level of the picture that has it.
    int last;       ///< Greatest such level.
};

struct Tones {
    std::vector<unsigned char> table;   ///< The tone of each level.
    std::vector<Tone> tones;            ///< Those that occur, from dark to light levels.
    int levels = 0;                     ///< Levels that the picture has.
};

/// Reduces a picture to a few tones. Asked for more than the picture has levels, it gives its levels.
/// Throws Failure when nothing counts, or when median cut is asked for a mask.
Tones ReduceToTones(const TonesOptions& options, Image& image);

}   // namespace QZ::Tool
