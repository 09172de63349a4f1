// SPDX-License-Identifier: MIT
#include "tools/qz/color/MeanLight.h"

#include "tools/qz/color/ColorValue.h"

namespace QZ::Tool {

double LightOfByte(unsigned char byte)
{
    static const std::array<double, 256> table = [] {
        std::array<double, 256> light{};
        for (std::size_t i = 0; i < light.size(); ++i) {
            float linear = 0.0f;
            CColor::NonlinearToLinearToneCurve(false, static_cast<float>(i) / 255.0f, linear);
            light[i] = static_cast<double>(linear);
        }
        return light;
    }();
    return table[byte];
}

void MeanLight::Add(const unsigned char* rgb, double weight)
{
    for (std::size_t i = 0; i < 3; ++i)
        m_sum[i] += weight * LightOfByte(rgb[i]);
    m_weight += weight;
}

std::array<unsigned char, 3> MeanLight::Bytes() const
{
    return SRGBBytes({static_cast<float>(m_sum[0] / m_weight), static_cast<float>(m_sum[1] / m_weight),
                      static_cast<float>(m_sum[2] / m_weight)});
}

}   // namespace QZ::Tool
