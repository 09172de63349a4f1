// SPDX-License-Identifier: MIT
// A host as small as they come: white is (1, 0, 0) in Lab.
#include <cmath>

#include "QZ/Foundation/QZFoundation.h"

int main()
{
    using QZ::Foundation::CColor;
    QZ::Math::CVector3<float> lab;
    CColor::SRGBToLab(false, false, CColor::eD65, {1.0f, 1.0f, 1.0f}, lab);
    return std::abs(lab.x - 1.0f) < 1e-4f && QZFoundationVersionNumber == 1.0 ? 0 : 1;
}
