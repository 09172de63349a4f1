// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

Math::CMatrix3<float> CColor::ChromaticAdaptationMatrix(const Math::CVector3<float>& sourceWhite,
                                                        const Math::CVector3<float>& destinationWhite)
{
    const Math::CMatrix3<float> bradford(0.8951f, 0.2664f, -0.1614f,   //
                                         -0.7502f, 1.7135f, 0.0367f,   //
                                         0.0389f, -0.0685f, 1.0296f);
    const Math::CMatrix3<float> inverse(0.9869929f, -0.1470543f, 0.1599627f,   //
                                        0.4323053f, 0.5183603f, 0.0492912f,    //
                                        -0.0085287f, 0.0400428f, 0.9684867f);
    Math::CMatrix3<float> gain;
    gain.Scale((bradford * destinationWhite) / (bradford * sourceWhite));
    return (inverse * gain) * bradford;
}

}   // namespace QZ::Foundation
