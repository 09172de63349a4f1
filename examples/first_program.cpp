// SPDX-License-Identifier: MIT
// One colour in three spaces, and a row of pixels at once.
#include <cstdio>
#include <vector>

#include "QZ/Foundation/QZFoundation.h"

using QZ::Foundation::CColor;
using QZ::Foundation::CColorRows;
using Color = QZ::Math::CVector3<float>;

int main()
{
    const Color coral(1.0f, 0.498f, 0.314f);   // encoded sRGB, 0 to 1
    Color lab, lch, p3;
    CColor::SRGBToLab(false, false, CColor::eD65, coral, lab);
    CColor::LabToLCh(lab, lch);
    CColor::SRGBToDisplayP3(false, false, CColor::eD65, coral, p3);
    std::printf("L* %.2f  a* %.2f  b* %.2f\n", 100.0 * lab.x, 100.0 * lab.y, 100.0 * lab.z);
    std::printf("chroma %.2f  hue %.3f rad\n", 100.0 * lch.y, lch.z);
    std::printf("Display P3 %.3f %.3f %.3f\n", p3.x, p3.y, p3.z);

    const std::vector<unsigned char> rgba = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255};
    std::vector<Color> row(rgba.size() / 4);
    CColorRows::SRGBToLab(false, false, CColor::eD65, CColorRows::Pixels(rgba), row);
    for (const Color& color : row)
        std::printf("L* %.1f\n", 100.0 * color.x);
}
