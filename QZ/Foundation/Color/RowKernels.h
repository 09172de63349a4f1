// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "QZ/Foundation/Color/CColor.h"

/// \file
/// The rows of CColorRows as tables of functions, one table for each instruction set.

namespace QZ::Foundation {

/// The flags and the illuminant of a conversion; what it does not take it does not read.
struct RowSettings {
    bool useGamma22 = false;
    bool extendedRange = false;
    CColor::EIlluminant illuminant = CColor::eD50;
};

using ColorRowFunction = void(const RowSettings&, const Math::CVector3<float>* in, std::size_t count,
                              Math::CVector3<float>* out);
using FromPixelsFunction = void(const RowSettings&, const unsigned char* rgba, std::size_t count,
                                Math::CVector3<float>* out);
using ToPixelsFunction = void(const RowSettings&, const Math::CVector3<float>* in, std::size_t count,
                              unsigned char* rgba);

/// From colours to colours. Each is named after the member of CColor.
struct ColorRows {
    ColorRowFunction *NonlinearToLinearToneCurve, *LinearToNonlinearToneCurve, *NonlinearToLinear709ToneCurve,
        *LinearToNonlinear709ToneCurve, *NonlinearToLinearApple709ToneCurve,
        *LinearToNonlinearApple709ToneCurve, *SRGBToRGB709, *LinearRGBToXYZ, *XYZToLinearRGB, *SRGBToXYZ,
        *XYZToSRGB, *SRGBToYCbCr, *YCbCrToSRGB, *RGBToYIQ, *YIQToRGB, *XYZtoLab, *LabToXYZ, *LinearRGBToLab,
        *LabToLinearRGB, *SRGBToLab, *LabToSRGB, *ExtendedRangeSRGBToLab, *LabToExtendedRangeSRGB, *LabToLCh,
        *XYZtoLuv, *LuvToXYZ, *LinearRGBToLuv, *LuvToLinearRGB, *SRGBToLuv, *LuvToSRGB, *LuvToLChuv,
        *XYZToYxy, *YxyToXYZ, *LinearRGBToYxy, *YxyToLinearRGB, *RGBToHSV, *HSVToRGB, *XYZToIPT, *IPTToXYZ,
        *LinearRGBToIPT, *IPTToLinearRGB, *SRGBToIPT, *IPTToSRGB, *IPTToICH, *ICHToIPT, *LinearRGBToICH,
        *ICHToLinearRGB, *SRGBToLMS, *LinearDisplayP3ToXYZ, *XYZToLinearDisplayP3, *DisplayP3ToXYZ,
        *XYZToDisplayP3, *LinearDisplayP3ToDisplayP3, *DisplayP3ToSRGB, *SRGBToDisplayP3, *DisplayP3ToLab,
        *LabToDisplayP3, *DisplayP3ToIPT, *IPTToDisplayP3, *LinearDisplayP3ToIPT, *IPTToLinearDisplayP3;
};

/// From 8-bit pixels to colours.
struct FromPixelsRows {
    FromPixelsFunction *NonlinearToLinearToneCurve, *SRGBToRGB709, *SRGBToXYZ, *SRGBToLab,
        *ExtendedRangeSRGBToLab, *SRGBToLuv, *SRGBToIPT, *SRGBToLMS, *DisplayP3ToXYZ, *DisplayP3ToSRGB,
        *SRGBToDisplayP3, *DisplayP3ToLab, *DisplayP3ToIPT;
};

/// From colours to 8-bit pixels.
struct ToPixelsRows {
    ToPixelsFunction *LinearToNonlinearToneCurve, *XYZToSRGB, *LabToSRGB, *LabToExtendedRangeSRGB, *LuvToSRGB,
        *IPTToSRGB, *XYZToDisplayP3, *LinearDisplayP3ToDisplayP3, *DisplayP3ToSRGB, *SRGBToDisplayP3,
        *LabToDisplayP3, *IPTToDisplayP3;
};

struct RowKernels {
    ColorRows colors;
    FromPixelsRows fromPixels;
    ToPixelsRows toPixels;
};

/// The rows for the best instruction set of this machine.
const RowKernels& Rows();

}   // namespace QZ::Foundation
