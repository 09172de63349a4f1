// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Color/CColorRows.h"

#include <cstddef>

#include "QZ/Foundation/Color/RowKernels.h"

namespace QZ::Foundation {

namespace {

constexpr std::size_t kPixelSize = 4;

void Run(ColorRowFunction* row, const RowSettings& settings, CColorRows::Colors in, CColorRows::ColorsOut out)
{
    row(settings, in.data(), in.size(), out.data());
}
void Run(FromPixelsFunction* row, const RowSettings& settings, CColorRows::Pixels in,
         CColorRows::ColorsOut out)
{
    row(settings, in.data(), in.size() / kPixelSize, out.data());
}
void Run(ToPixelsFunction* row, const RowSettings& settings, CColorRows::Colors in, CColorRows::PixelsOut out)
{
    row(settings, in.data(), in.size(), out.data());
}

}   // namespace

void CColorRows::NonlinearToLinearToneCurve(bool useGamma22, bool extendedRange, Colors in, ColorsOut out)
{
    Run(Rows().colors.NonlinearToLinearToneCurve, {.useGamma22 = useGamma22, .extendedRange = extendedRange},
        in, out);
}

void CColorRows::NonlinearToLinearToneCurve(bool useGamma22, bool extendedRange, Pixels in, ColorsOut out)
{
    Run(Rows().fromPixels.NonlinearToLinearToneCurve,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange}, in, out);
}

void CColorRows::LinearToNonlinearToneCurve(bool useGamma22, bool extendedRange, Colors in, ColorsOut out)
{
    Run(Rows().colors.LinearToNonlinearToneCurve, {.useGamma22 = useGamma22, .extendedRange = extendedRange},
        in, out);
}

void CColorRows::LinearToNonlinearToneCurve(bool useGamma22, bool extendedRange, Colors in, PixelsOut out)
{
    Run(Rows().toPixels.LinearToNonlinearToneCurve,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange}, in, out);
}

void CColorRows::NonlinearToLinear709ToneCurve(Colors in, ColorsOut out)
{
    Run(Rows().colors.NonlinearToLinear709ToneCurve, {}, in, out);
}

void CColorRows::LinearToNonlinear709ToneCurve(Colors in, ColorsOut out)
{
    Run(Rows().colors.LinearToNonlinear709ToneCurve, {}, in, out);
}

void CColorRows::NonlinearToLinearApple709ToneCurve(Colors in, ColorsOut out)
{
    Run(Rows().colors.NonlinearToLinearApple709ToneCurve, {}, in, out);
}

void CColorRows::LinearToNonlinearApple709ToneCurve(Colors in, ColorsOut out)
{
    Run(Rows().colors.LinearToNonlinearApple709ToneCurve, {}, in, out);
}

void CColorRows::SRGBToRGB709(Colors srgb, ColorsOut out)
{
    Run(Rows().colors.SRGBToRGB709, {}, srgb, out);
}

void CColorRows::SRGBToRGB709(Pixels srgb, ColorsOut out)
{
    Run(Rows().fromPixels.SRGBToRGB709, {}, srgb, out);
}

void CColorRows::LinearRGBToXYZ(CColor::EIlluminant illuminant, Colors rgb, ColorsOut xyz)
{
    Run(Rows().colors.LinearRGBToXYZ, {.illuminant = illuminant}, rgb, xyz);
}

void CColorRows::XYZToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors xyz, ColorsOut rgb)
{
    Run(Rows().colors.XYZToLinearRGB, {.extendedRange = extendedRange, .illuminant = illuminant}, xyz, rgb);
}

void CColorRows::SRGBToXYZ(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                           ColorsOut xyz)
{
    Run(Rows().colors.SRGBToXYZ,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, xyz);
}

void CColorRows::SRGBToXYZ(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                           ColorsOut xyz)
{
    Run(Rows().fromPixels.SRGBToXYZ,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, xyz);
}

void CColorRows::XYZToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors xyz,
                           ColorsOut srgb)
{
    Run(Rows().colors.XYZToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, xyz, srgb);
}

void CColorRows::XYZToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors xyz,
                           PixelsOut srgb)
{
    Run(Rows().toPixels.XYZToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, xyz, srgb);
}

void CColorRows::SRGBToYCbCr(Colors srgb, ColorsOut ycbcr)
{
    Run(Rows().colors.SRGBToYCbCr, {}, srgb, ycbcr);
}

void CColorRows::YCbCrToSRGB(Colors ycbcr, ColorsOut srgb)
{
    Run(Rows().colors.YCbCrToSRGB, {}, ycbcr, srgb);
}

void CColorRows::RGBToYIQ(Colors rgb, ColorsOut yiq)
{
    Run(Rows().colors.RGBToYIQ, {}, rgb, yiq);
}

void CColorRows::YIQToRGB(Colors yiq, ColorsOut rgb)
{
    Run(Rows().colors.YIQToRGB, {}, yiq, rgb);
}

void CColorRows::XYZtoLab(CColor::EIlluminant illuminant, Colors xyz, ColorsOut lab)
{
    Run(Rows().colors.XYZtoLab, {.illuminant = illuminant}, xyz, lab);
}

void CColorRows::LabToXYZ(CColor::EIlluminant illuminant, Colors lab, ColorsOut xyz)
{
    Run(Rows().colors.LabToXYZ, {.illuminant = illuminant}, lab, xyz);
}

void CColorRows::LinearRGBToLab(CColor::EIlluminant illuminant, Colors rgb, ColorsOut lab)
{
    Run(Rows().colors.LinearRGBToLab, {.illuminant = illuminant}, rgb, lab);
}

void CColorRows::LabToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors lab, ColorsOut rgb)
{
    Run(Rows().colors.LabToLinearRGB, {.extendedRange = extendedRange, .illuminant = illuminant}, lab, rgb);
}

void CColorRows::SRGBToLab(bool extendedRange, bool useGamma22, CColor::EIlluminant illuminant, Colors srgb,
                           ColorsOut lab)
{
    Run(Rows().colors.SRGBToLab,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, lab);
}

void CColorRows::SRGBToLab(bool extendedRange, bool useGamma22, CColor::EIlluminant illuminant, Pixels srgb,
                           ColorsOut lab)
{
    Run(Rows().fromPixels.SRGBToLab,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, lab);
}

void CColorRows::LabToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors lab,
                           ColorsOut srgb)
{
    Run(Rows().colors.LabToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, lab, srgb);
}

void CColorRows::LabToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors lab,
                           PixelsOut srgb)
{
    Run(Rows().toPixels.LabToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, lab, srgb);
}

void CColorRows::ExtendedRangeSRGBToLab(bool useGamma22, CColor::EIlluminant illuminant, Colors srgb,
                                        ColorsOut lab)
{
    Run(Rows().colors.ExtendedRangeSRGBToLab, {.useGamma22 = useGamma22, .illuminant = illuminant}, srgb,
        lab);
}

void CColorRows::ExtendedRangeSRGBToLab(bool useGamma22, CColor::EIlluminant illuminant, Pixels srgb,
                                        ColorsOut lab)
{
    Run(Rows().fromPixels.ExtendedRangeSRGBToLab, {.useGamma22 = useGamma22, .illuminant = illuminant}, srgb,
        lab);
}

void CColorRows::LabToExtendedRangeSRGB(bool useGamma22, CColor::EIlluminant illuminant, Colors lab,
                                        ColorsOut srgb)
{
    Run(Rows().colors.LabToExtendedRangeSRGB, {.useGamma22 = useGamma22, .illuminant = illuminant}, lab,
        srgb);
}

void CColorRows::LabToExtendedRangeSRGB(bool useGamma22, CColor::EIlluminant illuminant, Colors lab,
                                        PixelsOut srgb)
{
    Run(Rows().toPixels.LabToExtendedRangeSRGB, {.useGamma22 = useGamma22, .illuminant = illuminant}, lab,
        srgb);
}

void CColorRows::LabToLCh(Colors lab, ColorsOut lch)
{
    Run(Rows().colors.LabToLCh, {}, lab, lch);
}

void CColorRows::XYZtoLuv(CColor::EIlluminant illuminant, Colors xyz, ColorsOut luv)
{
    Run(Rows().colors.XYZtoLuv, {.illuminant = illuminant}, xyz, luv);
}

void CColorRows::LuvToXYZ(CColor::EIlluminant illuminant, Colors luv, ColorsOut xyz)
{
    Run(Rows().colors.LuvToXYZ, {.illuminant = illuminant}, luv, xyz);
}

void CColorRows::LinearRGBToLuv(CColor::EIlluminant illuminant, Colors rgb, ColorsOut luv)
{
    Run(Rows().colors.LinearRGBToLuv, {.illuminant = illuminant}, rgb, luv);
}

void CColorRows::LuvToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors luv, ColorsOut rgb)
{
    Run(Rows().colors.LuvToLinearRGB, {.extendedRange = extendedRange, .illuminant = illuminant}, luv, rgb);
}

void CColorRows::SRGBToLuv(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                           ColorsOut luv)
{
    Run(Rows().colors.SRGBToLuv,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, luv);
}

void CColorRows::SRGBToLuv(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                           ColorsOut luv)
{
    Run(Rows().fromPixels.SRGBToLuv,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, luv);
}

void CColorRows::LuvToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors luv,
                           ColorsOut srgb)
{
    Run(Rows().colors.LuvToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, luv, srgb);
}

void CColorRows::LuvToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors luv,
                           PixelsOut srgb)
{
    Run(Rows().toPixels.LuvToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, luv, srgb);
}

void CColorRows::LuvToLChuv(Colors luv, ColorsOut lch)
{
    Run(Rows().colors.LuvToLChuv, {}, luv, lch);
}

void CColorRows::XYZToYxy(Colors xyz, ColorsOut Yxy)
{
    Run(Rows().colors.XYZToYxy, {}, xyz, Yxy);
}

void CColorRows::YxyToXYZ(Colors Yxy, ColorsOut xyz)
{
    Run(Rows().colors.YxyToXYZ, {}, Yxy, xyz);
}

void CColorRows::LinearRGBToYxy(CColor::EIlluminant illuminant, Colors rgb, ColorsOut Yxy)
{
    Run(Rows().colors.LinearRGBToYxy, {.illuminant = illuminant}, rgb, Yxy);
}

void CColorRows::YxyToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors Yxy, ColorsOut rgb)
{
    Run(Rows().colors.YxyToLinearRGB, {.extendedRange = extendedRange, .illuminant = illuminant}, Yxy, rgb);
}

void CColorRows::RGBToHSV(Colors rgb, ColorsOut hsv)
{
    Run(Rows().colors.RGBToHSV, {}, rgb, hsv);
}

void CColorRows::HSVToRGB(Colors hsv, ColorsOut rgb)
{
    Run(Rows().colors.HSVToRGB, {}, hsv, rgb);
}

void CColorRows::XYZToIPT(CColor::EIlluminant illuminant, Colors xyz, ColorsOut ipt)
{
    Run(Rows().colors.XYZToIPT, {.illuminant = illuminant}, xyz, ipt);
}

void CColorRows::IPTToXYZ(CColor::EIlluminant illuminant, Colors ipt, ColorsOut xyz)
{
    Run(Rows().colors.IPTToXYZ, {.illuminant = illuminant}, ipt, xyz);
}

void CColorRows::LinearRGBToIPT(CColor::EIlluminant illuminant, Colors rgb, ColorsOut ipt)
{
    Run(Rows().colors.LinearRGBToIPT, {.illuminant = illuminant}, rgb, ipt);
}

void CColorRows::IPTToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors ipt, ColorsOut rgb)
{
    Run(Rows().colors.IPTToLinearRGB, {.extendedRange = extendedRange, .illuminant = illuminant}, ipt, rgb);
}

void CColorRows::SRGBToIPT(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                           ColorsOut ipt)
{
    Run(Rows().colors.SRGBToIPT,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, ipt);
}

void CColorRows::SRGBToIPT(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                           ColorsOut ipt)
{
    Run(Rows().fromPixels.SRGBToIPT,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, ipt);
}

void CColorRows::IPTToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors ipt,
                           ColorsOut srgb)
{
    Run(Rows().colors.IPTToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, ipt, srgb);
}

void CColorRows::IPTToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors ipt,
                           PixelsOut srgb)
{
    Run(Rows().toPixels.IPTToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, ipt, srgb);
}

void CColorRows::IPTToICH(Colors ipt, ColorsOut ich)
{
    Run(Rows().colors.IPTToICH, {}, ipt, ich);
}

void CColorRows::ICHToIPT(Colors ich, ColorsOut ipt)
{
    Run(Rows().colors.ICHToIPT, {}, ich, ipt);
}

void CColorRows::LinearRGBToICH(CColor::EIlluminant illuminant, Colors rgb, ColorsOut ich)
{
    Run(Rows().colors.LinearRGBToICH, {.illuminant = illuminant}, rgb, ich);
}

void CColorRows::ICHToLinearRGB(bool extendedRange, CColor::EIlluminant illuminant, Colors ich, ColorsOut rgb)
{
    Run(Rows().colors.ICHToLinearRGB, {.extendedRange = extendedRange, .illuminant = illuminant}, ich, rgb);
}

void CColorRows::SRGBToLMS(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Colors srgb,
                           ColorsOut lms)
{
    Run(Rows().colors.SRGBToLMS,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, lms);
}

void CColorRows::SRGBToLMS(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant, Pixels srgb,
                           ColorsOut lms)
{
    Run(Rows().fromPixels.SRGBToLMS,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, lms);
}

void CColorRows::LinearDisplayP3ToXYZ(CColor::EIlluminant illuminant, Colors p3lin, ColorsOut xyz)
{
    Run(Rows().colors.LinearDisplayP3ToXYZ, {.illuminant = illuminant}, p3lin, xyz);
}

void CColorRows::XYZToLinearDisplayP3(CColor::EIlluminant illuminant, Colors xyz, ColorsOut p3lin)
{
    Run(Rows().colors.XYZToLinearDisplayP3, {.illuminant = illuminant}, xyz, p3lin);
}

void CColorRows::DisplayP3ToXYZ(bool useGamma22, CColor::EIlluminant illuminant, Colors p3, ColorsOut xyz)
{
    Run(Rows().colors.DisplayP3ToXYZ, {.useGamma22 = useGamma22, .illuminant = illuminant}, p3, xyz);
}

void CColorRows::DisplayP3ToXYZ(bool useGamma22, CColor::EIlluminant illuminant, Pixels p3, ColorsOut xyz)
{
    Run(Rows().fromPixels.DisplayP3ToXYZ, {.useGamma22 = useGamma22, .illuminant = illuminant}, p3, xyz);
}

void CColorRows::XYZToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors xyz, ColorsOut p3)
{
    Run(Rows().colors.XYZToDisplayP3, {.useGamma22 = useGamma22, .illuminant = illuminant}, xyz, p3);
}

void CColorRows::XYZToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors xyz, PixelsOut p3)
{
    Run(Rows().toPixels.XYZToDisplayP3, {.useGamma22 = useGamma22, .illuminant = illuminant}, xyz, p3);
}

void CColorRows::LinearDisplayP3ToDisplayP3(bool useGamma22, Colors p3lin, ColorsOut p3)
{
    Run(Rows().colors.LinearDisplayP3ToDisplayP3, {.useGamma22 = useGamma22}, p3lin, p3);
}

void CColorRows::LinearDisplayP3ToDisplayP3(bool useGamma22, Colors p3lin, PixelsOut p3)
{
    Run(Rows().toPixels.LinearDisplayP3ToDisplayP3, {.useGamma22 = useGamma22}, p3lin, p3);
}

void CColorRows::DisplayP3ToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                 Colors p3, ColorsOut srgb)
{
    Run(Rows().colors.DisplayP3ToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, p3, srgb);
}

void CColorRows::DisplayP3ToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                 Pixels p3, ColorsOut srgb)
{
    Run(Rows().fromPixels.DisplayP3ToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, p3, srgb);
}

void CColorRows::DisplayP3ToSRGB(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                 Colors p3, PixelsOut srgb)
{
    Run(Rows().toPixels.DisplayP3ToSRGB,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, p3, srgb);
}

void CColorRows::SRGBToDisplayP3(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                 Colors srgb, ColorsOut p3)
{
    Run(Rows().colors.SRGBToDisplayP3,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, p3);
}

void CColorRows::SRGBToDisplayP3(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                 Pixels srgb, ColorsOut p3)
{
    Run(Rows().fromPixels.SRGBToDisplayP3,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, p3);
}

void CColorRows::SRGBToDisplayP3(bool useGamma22, bool extendedRange, CColor::EIlluminant illuminant,
                                 Colors srgb, PixelsOut p3)
{
    Run(Rows().toPixels.SRGBToDisplayP3,
        {.useGamma22 = useGamma22, .extendedRange = extendedRange, .illuminant = illuminant}, srgb, p3);
}

void CColorRows::DisplayP3ToLab(bool useGamma22, CColor::EIlluminant illuminant, Colors p3, ColorsOut lab)
{
    Run(Rows().colors.DisplayP3ToLab, {.useGamma22 = useGamma22, .illuminant = illuminant}, p3, lab);
}

void CColorRows::DisplayP3ToLab(bool useGamma22, CColor::EIlluminant illuminant, Pixels p3, ColorsOut lab)
{
    Run(Rows().fromPixels.DisplayP3ToLab, {.useGamma22 = useGamma22, .illuminant = illuminant}, p3, lab);
}

void CColorRows::LabToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors lab, ColorsOut p3)
{
    Run(Rows().colors.LabToDisplayP3, {.useGamma22 = useGamma22, .illuminant = illuminant}, lab, p3);
}

void CColorRows::LabToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors lab, PixelsOut p3)
{
    Run(Rows().toPixels.LabToDisplayP3, {.useGamma22 = useGamma22, .illuminant = illuminant}, lab, p3);
}

void CColorRows::DisplayP3ToIPT(bool useGamma22, CColor::EIlluminant illuminant, Colors p3, ColorsOut ipt)
{
    Run(Rows().colors.DisplayP3ToIPT, {.useGamma22 = useGamma22, .illuminant = illuminant}, p3, ipt);
}

void CColorRows::DisplayP3ToIPT(bool useGamma22, CColor::EIlluminant illuminant, Pixels p3, ColorsOut ipt)
{
    Run(Rows().fromPixels.DisplayP3ToIPT, {.useGamma22 = useGamma22, .illuminant = illuminant}, p3, ipt);
}

void CColorRows::IPTToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors ipt, ColorsOut p3)
{
    Run(Rows().colors.IPTToDisplayP3, {.useGamma22 = useGamma22, .illuminant = illuminant}, ipt, p3);
}

void CColorRows::IPTToDisplayP3(bool useGamma22, CColor::EIlluminant illuminant, Colors ipt, PixelsOut p3)
{
    Run(Rows().toPixels.IPTToDisplayP3, {.useGamma22 = useGamma22, .illuminant = illuminant}, ipt, p3);
}

void CColorRows::LinearDisplayP3ToIPT(CColor::EIlluminant illuminant, Colors p3lin, ColorsOut ipt)
{
    Run(Rows().colors.LinearDisplayP3ToIPT, {.illuminant = illuminant}, p3lin, ipt);
}

void CColorRows::IPTToLinearDisplayP3(CColor::EIlluminant illuminant, Colors ipt, ColorsOut p3lin)
{
    Run(Rows().colors.IPTToLinearDisplayP3, {.illuminant = illuminant}, ipt, p3lin);
}

}   // namespace QZ::Foundation
