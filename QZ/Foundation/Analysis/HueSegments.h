// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "QZ/Foundation/Analysis/MedianCut.h"
#include "QZ/Math/CVector2.h"

namespace QZ::Foundation {

/// The mean direction of each segment of a P/T histogram, of unit length. If the pieces across the seam are
/// joined, the first and the last have one colour, each weighing its population.
std::vector<Math::CVector2<float>> SegmentColors(const CCircularMedianCut& cut,
                                                 const CPTHistogram& histogram);

}   // namespace QZ::Foundation
