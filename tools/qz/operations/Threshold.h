// SPDX-License-Identifier: MIT
#pragma once

#include "tools/qz/operations/GreyPlane.h"

namespace QZ::Tool {

/// What `qz threshold` is asked for.
struct ThresholdOptions {
    GreyChoice grey;
    bool invert = false;   ///< Dark becomes white.
};

struct Threshold {
    int level = 0;            ///< The last level of the dark class.
    double darkShare = 0.0;   ///< Its share of the pixels' weight, 0 to 1.
};

/// Makes a picture black and white by Otsu's threshold.
Threshold ApplyThreshold(const ThresholdOptions& options, Image& image);

}   // namespace QZ::Tool
