// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "QZ/Export.h"
#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Foundation {

/// The conversions of CColor over rows of colours, by SIMD.
///
/// A member does to each element what the member of CColor of the same name does to one colour, to the bit,
/// whatever instruction set the machine has. Flags, illuminants, scales and the treatment of NaN are
/// CColor's.
///
/// **Shapes.** The two spans have the same number of colours: of CVector3<float>, or of pixels of four bytes
/// R, G, B, A. They may be the same memory when both hold CVector3<float>, and must not overlap otherwise.
/// Any length is allowed, 0 included, and any alignment.
///
/// **Pixels.** A pixel read is the encoded colour (R, G, B) * 0.003921569; its fourth byte is not read. A
/// pixel written has each encoded component clamped to 0 to 1 (NaN gives 0), times 255, rounded to the
/// nearest integer, halves up, and a fourth byte of 255.
///
/// \code
///     std::vector<QZ::Math::CVector3<float>> lab(rgba.size() / 4);
///     CColorRows::SRGBToLab(false, false, CColor::eD65, std::span<const unsigned char>(rgba), lab);
/// \endcode
class QZ_API CColorRows {
public:
    using Colors = std::span<const Math::CVector3<float>>;
    using ColorsOut = std::span<Math::CVector3<float>>;
    using Pixels = std::span<const unsigned char>;
    using PixelsOut = std::span<unsigned char>;

    /// \name Tone curves
    /// \{
    static void NonlinearToLinearToneCurve(bool useGamma22, bool extendedRange, Colors in, ColorsOut out);
    static void NonlinearToLinearToneCurve(bool useGamma22, bool extendedRange, Pixels in, ColorsOut out);
    static void LinearToNonlinearToneCurve(bool useGamma22, bool extendedRange, Colors in, ColorsOut out);
    static void LinearToNonlinearToneCurve(bool useGamma22, bool extendedRange, Colors in, PixelsOut out);
    static void NonlinearToLinear709ToneCurve(Colors in, ColorsOut out);
    static void LinearToNonlinear709ToneCurve(Colors in, ColorsOut out);
    static void NonlinearToLinearApple709ToneCurve(Colors in, ColorsOut out);
    static void LinearToNonlinearApple709ToneCurve(Colors in, ColorsOut out);
    static void SRGBToRGB709(Colors srgb, ColorsOut out);
    static void SRGBToRGB709(Pixels srgb, ColorsOut out);
    /// \}

    /// \name RGB and XYZ
    /// \{
    static void LinearRGBToXYZ(CColor::EIlluminant illuminant, Colors rgb, ColorsOut xyz);
    static void XYZToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors xyz, ColorsOut rgb);
    static void SRGBToXYZ(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                          ColorsOut xyz);
    static void SRGBToXYZ(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                          ColorsOut xyz);
    static void XYZToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors xyz,
                          ColorsOut srgb);
    static void XYZToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors xyz,
                          PixelsOut srgb);
    /// \}

    /// \name YCbCr and YIQ
    /// \{
    static void SRGBToYCbCr(Colors srgb, ColorsOut ycbcr);
    static void YCbCrToSRGB(Colors ycbcr, ColorsOut srgb);
    static void RGBToYIQ(Colors rgb, ColorsOut yiq);
    static void YIQToRGB(Colors yiq, ColorsOut rgb);
    /// \}

    /// \name Lab
    /// \{
    static void XYZtoLab(CColor::EIlluminant illuminant, Colors xyz, ColorsOut lab);
    static void LabToXYZ(CColor::EIlluminant illuminant, Colors lab, ColorsOut xyz);
    static void LinearRGBToLab(CColor::EIlluminant illuminant, Colors rgb, ColorsOut lab);
    static void LabToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors lab, ColorsOut rgb);
    static void SRGBToLab(bool extendedRange, bool useGamma22, CColor::EIlluminant illuminant, Colors srgb,
                          ColorsOut lab);
    static void SRGBToLab(bool extendedRange, bool useGamma22, CColor::EIlluminant illuminant, Pixels srgb,
                          ColorsOut lab);
    static void LabToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors lab,
                          ColorsOut srgb);
    static void LabToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors lab,
                          PixelsOut srgb);
    static void ExtendedRangeSRGBToLab(bool useGamma22, CColor::EIlluminant illuminant, Colors srgb,
                                       ColorsOut lab);
    static void ExtendedRangeSRGBToLab(bool useGamma22, CColor::EIlluminant illuminant, Pixels srgb,
                                       ColorsOut lab);
    static void LabToExtendedRangeSRGB(bool useGamma22, CColor::EIlluminant illuminant, Colors lab,
                                       ColorsOut srgb);
    static void LabToExtendedRangeSRGB(bool useGamma22, CColor::EIlluminant illuminant, Colors lab,
                                       PixelsOut srgb);
    static void LabToLCh(Colors lab, ColorsOut lch);
    /// \}

    /// \name Luv
    /// \{
    static void XYZtoLuv(CColor::EIlluminant illuminant, Colors xyz, ColorsOut luv);
    static void LuvToXYZ(CColor::EIlluminant illuminant, Colors luv, ColorsOut xyz);
    static void LinearRGBToLuv(CColor::EIlluminant illuminant, Colors rgb, ColorsOut luv);
    static void LuvToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors luv, ColorsOut rgb);
    static void SRGBToLuv(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                          ColorsOut luv);
    static void SRGBToLuv(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                          ColorsOut luv);
    static void LuvToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors luv,
                          ColorsOut srgb);
    static void LuvToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors luv,
                          PixelsOut srgb);
    static void LuvToLChuv(Colors luv, ColorsOut lch);
    /// \}

    /// \name Yxy and HSV
    /// \{
    static void XYZToYxy(Colors xyz, ColorsOut Yxy);
    static void YxyToXYZ(Colors Yxy, ColorsOut xyz);
    static void LinearRGBToYxy(CColor::EIlluminant illuminant, Colors rgb, ColorsOut Yxy);
    static void YxyToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors Yxy, ColorsOut rgb);
    static void RGBToHSV(Colors rgb, ColorsOut hsv);
    static void HSVToRGB(Colors hsv, ColorsOut rgb);
    /// \}

    /// \name IPT, ICH and LMS
    /// \{
    static void XYZToIPT(CColor::EIlluminant illuminant, Colors xyz, ColorsOut ipt);
    static void IPTToXYZ(CColor::EIlluminant illuminant, Colors ipt, ColorsOut xyz);
    static void LinearRGBToIPT(CColor::EIlluminant illuminant, Colors rgb, ColorsOut ipt);
    static void IPTToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors ipt, ColorsOut rgb);
    static void SRGBToIPT(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                          ColorsOut ipt);
    static void SRGBToIPT(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                          ColorsOut ipt);
    static void IPTToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors ipt,
                          ColorsOut srgb);
    static void IPTToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors ipt,
                          PixelsOut srgb);
    static void IPTToICH(Colors ipt, ColorsOut ich);
    static void ICHToIPT(Colors ich, ColorsOut ipt);
    static void LinearRGBToICH(CColor::EIlluminant illuminant, Colors rgb, ColorsOut ich);
    static void ICHToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors ich, ColorsOut rgb);
    static void SRGBToLMS(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                          ColorsOut lms);
    static void SRGBToLMS(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                          ColorsOut lms);
    /// \}

    /// \name Display P3
    /// \{
    static void LinearDisplayP3ToXYZ(CColor::EIlluminant illuminant, Colors p3lin, ColorsOut xyz);
    static void XYZToLinearDisplayP3(CColor::EIlluminant illuminant, Colors xyz, ColorsOut p3lin);
    static void DisplayP3ToXYZ(bool useGamma22, CColor::EIlluminant illuminant, Colors p3, ColorsOut xyz);
    static void DisplayP3ToXYZ(bool useGamma22, CColor::EIlluminant illuminant, Pixels p3, ColorsOut xyz);
    static void XYZToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors xyz, ColorsOut p3);
    static void XYZToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors xyz, PixelsOut p3);
    static void LinearDisplayP3ToDisplayP3(bool useGamma22, Colors p3lin, ColorsOut p3);
    static void LinearDisplayP3ToDisplayP3(bool useGamma22, Colors p3lin, PixelsOut p3);
    static void DisplayP3ToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                Colors p3, ColorsOut srgb);
    static void DisplayP3ToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                Pixels p3, ColorsOut srgb);
    static void DisplayP3ToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                Colors p3, PixelsOut srgb);
    static void SRGBToDisplayP3(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                Colors srgb, ColorsOut p3);
    static void SRGBToDisplayP3(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                Pixels srgb, ColorsOut p3);
    static void SRGBToDisplayP3(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                Colors srgb, PixelsOut p3);
    static void DisplayP3ToLab(bool useGamma22, CColor::EIlluminant illuminant, Colors p3, ColorsOut lab);
    static void DisplayP3ToLab(bool useGamma22, CColor::EIlluminant illuminant, Pixels p3, ColorsOut lab);
    static void LabToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors lab, ColorsOut p3);
    static void LabToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors lab, PixelsOut p3);
    static void DisplayP3ToIPT(bool useGamma22, CColor::EIlluminant illuminant, Colors p3, ColorsOut ipt);
    static void DisplayP3ToIPT(bool useGamma22, CColor::EIlluminant illuminant, Pixels p3, ColorsOut ipt);
    static void IPTToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors ipt, ColorsOut p3);
    static void IPTToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors ipt, PixelsOut p3);
    static void LinearDisplayP3ToIPT(CColor::EIlluminant illuminant, Colors p3lin, ColorsOut ipt);
    static void IPTToLinearDisplayP3(CColor::EIlluminant illuminant, Colors ipt, ColorsOut p3lin);
    /// \}
};

}   // namespace QZ::Foundation
