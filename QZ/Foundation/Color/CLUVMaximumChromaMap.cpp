// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/CLUVMaximumChromaMap.h"

#include "QZ/Foundation/Color/Elementary.h"
#include "QZ/Foundation/Color/Formulas/HSLuv.h"
#include "QZ/Foundation/Color/Formulas/MaximumChroma.h"
#include "QZ/Math/CConstants.h"

namespace QZ::Foundation {

float CLUVMaximumChromaMap::MaxChromaForLH(const Math::CVector3<float>& luv)
{
    const float hue = QZ_TARGET::Atan2(luv.z, luv.y) * static_cast<float>(Math::CConstants::RadiansToDegrees);
    const double turned = hue < 0.0f ? double{hue} + 360.0 : double{hue};
    const double chroma = HSLuv::MaxChromaForLH(double{luv.x * 100.0f}, turned);
    return static_cast<float>(chroma * double{0.01f});
}

std::vector<float> CLUVMaximumChromaMap::Compute(int hueCount, int lightnessCount)
{
    return MaximumChroma::Table(hueCount, lightnessCount);
}

const unsigned int* CLUVMaximumChromaMap::PreComputedHalfFloatsAsUnsignedInts()
{
    return MaximumChroma::precomputed;
}

}   // namespace QZ::Foundation
