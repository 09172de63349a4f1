// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"

namespace QZ::Foundation {

/// The grey levels of RGBA pixels by lightness or by encoded luminance.
class GreyLevels {
public:
    /// \param from  eLXX or eNonlinearY.
    GreyLevels(CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB, CColor::EIlluminant illuminant);

    /// The levels of `count` pixels.
    void operator()(const unsigned char* rgba, int count, unsigned char* levels) const;

private:
    GreyArguments m_arguments;
};

}   // namespace QZ::Foundation
