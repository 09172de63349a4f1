// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/GreyLevels.h"

#include <cstddef>

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Color/Formulas/LXX.h"

namespace QZ::Foundation {

namespace formula = QZ_TARGET;

namespace {

unsigned char LevelOfUnit(float unit)
{
    return static_cast<unsigned char>(TruncateToRange(unit * 255.0f + 0.5f, 0, 255));
}

template <class Grey>
void Levels(const ByteTable& linear, const unsigned char* rgba, int count, unsigned char* levels, Grey&& grey)
{
    for (int i = 0; i < count; ++i)
        levels[i] = LevelOfUnit(grey(formula::Vec3(ColorOfPixel(linear, rgba + 4 * i))));
}

}   // namespace

GreyLevels::GreyLevels(CGrayscaleWeightedHistogram::EGrayscaleFrom from, bool isSRGB,
                       CColor::EIlluminant illuminant)
    : m_from(from), m_illuminant(illuminant), m_linear(LinearOfByte(isSRGB))
{}

void GreyLevels::operator()(const unsigned char* rgba, int count, unsigned char* levels) const
{
    if (m_from == CGrayscaleWeightedHistogram::eLXX)
        Levels(m_linear, rgba, count, levels,
               [](const formula::Vec3<float>& rgb) { return formula::LinearRGBToLXX(rgb); });
    else
        Levels(m_linear, rgba, count, levels, [this](const formula::Vec3<float>& rgb) {
            return formula::LinearRGBToNonlinearY(false, false, m_illuminant, rgb);
        });
}

}   // namespace QZ::Foundation
