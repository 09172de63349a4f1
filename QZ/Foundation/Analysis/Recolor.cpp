// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Analysis/Recolor.h"

#include "QZ/Foundation/Analysis/Int32.h"
#include "QZ/Foundation/Analysis/PixelKernels.h"

namespace QZ::Foundation {

void RecolorPicture(const std::vector<Math::CVector2<float>>& binColours, int width, int height,
                    CColor::EIlluminant illuminant, bool isEncoded, unsigned char* rgba)
{
    const int size = WrappingMultiply(WrappingMultiply(width, height), 4);
    if (binColours.empty() || size < 1)
        return;
    const RecolorArguments arguments{illuminant, isEncoded ? LinearOfGamma22Byte() : UnitOfByte(),
                                     isEncoded ? EncodedByte(true) : UnitByte(),
                                     HueBins(static_cast<int>(binColours.size())), binColours.data()};
    ForEachRow(static_cast<std::size_t>(size) / 4,
               [&](std::size_t first, std::size_t n) { RecolorRow(arguments, rgba + 4 * first, n); });
}

}   // namespace QZ::Foundation
