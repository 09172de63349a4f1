// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Math/CConstants.h"

namespace QZ::Foundation {

/// The one rule by which a hue angle becomes a bin.
///
/// Bin b is centred on the angle -pi + b * 2 pi / (numBins - 1). The first and the last bin are of half width
/// and meet at the seam, +-pi: callers that join hues across the seam rely on this layout.
class HueBins {
public:
    /// \param numBins  1 or more.
    explicit HueBins(int numBins)
        : m_scale(static_cast<float>(numBins - 1) / static_cast<float>(Math::CConstants::TwoPI)),
          m_last(numBins - 1)
    {}

    /// \param angle  in [-pi, pi].
    /// \return       a bin, 0 to numBins - 1 whatever the angle; NaN gives 0.
    [[nodiscard]] int operator()(float angle) const
    {
        return TruncateToRange((angle + static_cast<float>(Math::CConstants::PI)) * m_scale + 0.5f, 0,
                               m_last);
    }

    [[nodiscard]] float Scale() const { return m_scale; }
    [[nodiscard]] int Last() const { return m_last; }

private:
    float m_scale;
    int m_last;
};

}   // namespace QZ::Foundation
