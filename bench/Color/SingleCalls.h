// SPDX-License-Identifier: MIT
#pragma once

#include "QZ/Export.h"
#include "QZ/Foundation/Color/CColor.h"

/// \file
/// The conversions of one colour: members of CColor, and the same formulas over the C library's functions.

namespace QZ::Bench {

using Color = Math::CVector3<float>;

/// Leading arguments, which the compiler does not know.
struct Settings {
    bool first = false;
    bool second = false;
    Foundation::CColor::EIlluminant white = Foundation::CColor::eD65;
};

// COLOR or NUMBER (member of CColor, its formula, space of the input, leading arguments), by what it writes;
// CURVE (member, its formula for a component c, space).
// clang-format off
#define QZ_SINGLE_CALLS(COLOR, NUMBER, CURVE) \
    COLOR(NonlinearToLinearToneCurve, NonlinearToLinear, SRGB, s.first, s.second)                            \
    COLOR(LinearToNonlinearToneCurve, LinearToNonlinear, LinearRGB, s.first, s.second)                       \
    CURVE(NonlinearToLinear709ToneCurve, formula::Rec709ToLinear(c), SRGB)                                   \
    CURVE(LinearToNonlinear709ToneCurve, formula::LinearToRec709(c), LinearRGB)                              \
    CURVE(NonlinearToLinearApple709ToneCurve, Pow<Exponent::k1_961>(c), SRGB)                                \
    CURVE(LinearToNonlinearApple709ToneCurve, Pow<Exponent::k0_5099439>(c), LinearRGB)                       \
    CURVE(SRGBToRGB709, formula::SRGBToRec709(c), SRGB)                                                      \
    COLOR(LinearRGBToXYZ, LinearRGBToXYZ, LinearRGB, s.white)                                                \
    COLOR(XYZToLinearRGB, XYZToLinearRGB, XYZ, s.first, s.white)                                             \
    COLOR(SRGBToXYZ, SRGBToXYZ, SRGB, s.first, s.second, s.white)                                            \
    COLOR(XYZToSRGB, XYZToSRGB, XYZ, s.first, s.second, s.white)                                             \
    COLOR(SRGBToYCbCr, SRGBToYCbCr, SRGB)                                                                    \
    COLOR(YCbCrToSRGB, YCbCrToSRGB, YCbCr)                                                                   \
    COLOR(RGBToYIQ, RGBToYIQ, SRGB)                                                                          \
    COLOR(YIQToRGB, YIQToRGB, YIQ)                                                                           \
    COLOR(XYZtoLab, XYZToLab, XYZ, s.white)                                                                  \
    COLOR(LabToXYZ, LabToXYZ, Lab, s.white)                                                                  \
    COLOR(LinearRGBToLab, LinearRGBToLab, LinearRGB, s.white)                                                \
    COLOR(LabToLinearRGB, LabToLinearRGB, Lab, s.first, s.white)                                             \
    COLOR(SRGBToLab, SRGBToLab, SRGB, s.first, s.second, s.white)                                            \
    COLOR(LabToSRGB, LabToSRGB, Lab, s.first, s.second, s.white)                                             \
    COLOR(ExtendedRangeSRGBToLab, ExtendedRangeSRGBToLab, SRGB, s.first, s.white)                            \
    COLOR(LabToExtendedRangeSRGB, LabToExtendedRangeSRGB, Lab, s.first, s.white)                             \
    COLOR(LabToLCh, ToPolar, Lab)                                                                            \
    COLOR(XYZtoLuv, XYZToLuv, XYZ, s.white)                                                                  \
    COLOR(LuvToXYZ, LuvToXYZ, Luv, s.white)                                                                  \
    COLOR(LinearRGBToLuv, LinearRGBToLuv, LinearRGB, s.white)                                                \
    COLOR(LuvToLinearRGB, LuvToLinearRGB, Luv, s.first, s.white)                                             \
    COLOR(SRGBToLuv, SRGBToLuv, SRGB, s.first, s.second, s.white)                                            \
    COLOR(LuvToSRGB, LuvToSRGB, Luv, s.first, s.second, s.white)                                             \
    COLOR(LuvToLChuv, ToPolar, Luv)                                                                          \
    COLOR(XYZToYxy, XYZToYxy, XYZ)                                                                           \
    COLOR(YxyToXYZ, YxyToXYZ, Yxy)                                                                           \
    COLOR(LinearRGBToYxy, LinearRGBToYxy, LinearRGB, s.white)                                                \
    COLOR(YxyToLinearRGB, YxyToLinearRGB, Yxy, s.first, s.white)                                             \
    COLOR(RGBToHSV, RGBToHSV, SRGB)                                                                          \
    COLOR(HSVToRGB, HSVToRGB, HSV)                                                                           \
    COLOR(XYZToIPT, XYZToIPT, XYZ, s.white)                                                                  \
    COLOR(IPTToXYZ, IPTToXYZ, IPT, s.white)                                                                  \
    COLOR(LinearRGBToIPT, LinearRGBToIPT, LinearRGB, s.white)                                                \
    COLOR(IPTToLinearRGB, IPTToLinearRGB, IPT, s.first, s.white)                                             \
    COLOR(SRGBToIPT, SRGBToIPT, SRGB, s.first, s.second, s.white)                                            \
    COLOR(IPTToSRGB, IPTToSRGB, IPT, s.first, s.second, s.white)                                             \
    COLOR(IPTToICH, IPTToICH, IPT)                                                                           \
    COLOR(ICHToIPT, ICHToIPT, ICH)                                                                           \
    COLOR(LinearRGBToICH, LinearRGBToICH, LinearRGB, s.white)                                                \
    COLOR(ICHToLinearRGB, ICHToLinearRGB, ICH, s.first, s.white)                                             \
    COLOR(SRGBToLMS, SRGBToLMS, SRGB, s.first, s.second, s.white)                                            \
    COLOR(LinearDisplayP3ToXYZ, LinearDisplayP3ToXYZ, LinearRGB, s.white)                                    \
    COLOR(XYZToLinearDisplayP3, XYZToLinearDisplayP3, XYZ, s.white)                                          \
    COLOR(DisplayP3ToXYZ, DisplayP3ToXYZ, SRGB, s.first, s.white)                                            \
    COLOR(XYZToDisplayP3, XYZToDisplayP3, XYZ, s.first, s.white)                                             \
    COLOR(LinearDisplayP3ToDisplayP3, LinearDisplayP3ToDisplayP3, LinearRGB, s.first)                        \
    COLOR(DisplayP3ToSRGB, DisplayP3ToSRGB, SRGB, s.first, s.second, s.white)                                \
    COLOR(SRGBToDisplayP3, SRGBToDisplayP3, SRGB, s.first, s.second, s.white)                                \
    COLOR(DisplayP3ToLab, DisplayP3ToLab, SRGB, s.first, s.white)                                            \
    COLOR(LabToDisplayP3, LabToDisplayP3, Lab, s.first, s.white)                                             \
    COLOR(DisplayP3ToIPT, DisplayP3ToIPT, SRGB, s.first, s.white)                                            \
    COLOR(IPTToDisplayP3, IPTToDisplayP3, IPT, s.first, s.white)                                             \
    COLOR(LinearDisplayP3ToIPT, LinearDisplayP3ToIPT, LinearRGB, s.white)                                    \
    COLOR(IPTToLinearDisplayP3, IPTToLinearDisplayP3, IPT, s.white)                                          \
    NUMBER(SRGBToLinearY, SRGBToLinearY, SRGB, s.first, s.second, s.white)                                   \
    NUMBER(LinearRGBToLinearY, LinearRGBToLinearY, LinearRGB, s.first, s.white)                              \
    NUMBER(SRGBToNonlinearY, SRGBToNonlinearY, SRGB, s.first, s.second, s.white)                             \
    NUMBER(LinearRGBToNonlinearY, LinearRGBToNonlinearY, LinearRGB, s.first, s.second, s.white)              \
    NUMBER(LinearDisplayP3ToLinearY, LinearDisplayP3ToLinearY, LinearRGB, s.white)                           \
    NUMBER(DisplayP3ToLinearY, DisplayP3ToLinearY, SRGB, s.first, s.white)                                   \
    NUMBER(SRGBToLXX, SRGBToLXX, SRGB, s.first, s.second)                                                    \
    NUMBER(LinearRGBToLXX, LinearRGBToLXX, LinearRGB)                                                        \
    NUMBER(IPTToXXH, IPTHue, IPT)
// clang-format on

/// The formulas over Plain, in a shared library of their own, so that a call of one costs what a call of
/// CColor does.
namespace PlainCalls {

#define QZ_DECLARE(member, ...) QZ_API void member(const Settings& s, const Color& in, Color& out);
QZ_SINGLE_CALLS(QZ_DECLARE, QZ_DECLARE, QZ_DECLARE)
#undef QZ_DECLARE

}   // namespace PlainCalls

}   // namespace QZ::Bench
