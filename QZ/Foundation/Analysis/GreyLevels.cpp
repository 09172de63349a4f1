// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/GreyLevels.h"

#include "QZ/Foundation/Color/Constants.h"

namespace QZ::Foundation {

GreyLevels::GreyLevels(CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB,
                       CColor::EIlluminant illuminant)
    : m_arguments(from == CGrayscaleWeightedHistogram::eLXX
                      ? GreyArguments{LinearOfByte(isSRGB), Constants::linearRGBLuminanceD65, LightnessByte()}
                      : GreyArguments{LinearOfByte(isSRGB), Constants::LinearRGBLuminance(illuminant),
                                      EncodedByte(false)})
{}

void GreyLevels::operator()(const unsigned char* rgba, int count, unsigned char* levels) const
{
    ForEachRow(static_cast<std::size_t>(count), [&](std::size_t first, std::size_t n) {
        GreyRow(m_arguments, rgba + 4 * first, n, levels + first);
    });
}

}   // namespace QZ::Foundation
