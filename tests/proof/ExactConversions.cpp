// SPDX-License-Identifier: MIT
#include "tests/proof/ExactConversions.h"

#include "QZ/Foundation/Color/Formulas/DisplayP3.h"
#include "QZ/Foundation/Color/Formulas/HSV.h"
#include "QZ/Foundation/Color/Formulas/Luv.h"
#include "QZ/Foundation/Color/Formulas/YIQ.h"
#include "QZ/Foundation/Color/Formulas/Yxy.h"

namespace QZ::Proof {

namespace formula = Foundation::QZ_TARGET;
using Foundation::Exponent;

// Of the flags, a is the first and b the second; w is the illuminant, v the colour.
#define QZ_EXACT(name, from, to, ...)                                            \
    {                                                                            \
#name,                                                                   \
        {                                                                        \
            Space::from, Space::to, [](const Settings& s, const ExactColor& v) { \
                [[maybe_unused]] const bool a = s.flags[0];                      \
                [[maybe_unused]] const bool b = s.flags[1];                      \
                [[maybe_unused]] const auto w = s.white;                         \
                return ExactColor(__VA_ARGS__);                                  \
            }                                                                    \
        }                                                                        \
    }

const std::map<std::string_view, ExactConversion>& ExactConversions()
{
    using namespace formula;
    static const std::map<std::string_view, ExactConversion> conversions = {
        QZ_EXACT(NonlinearToLinearToneCurve, eSRGB, eLinear, NonlinearToLinear(a, b, v)),
        QZ_EXACT(LinearToNonlinearToneCurve, eLinear, eSRGB, LinearToNonlinear(a, b, v)),
        QZ_EXACT(NonlinearToLinear709ToneCurve, eRec709, eLinear, Map(v, Rec709ToLinear<Exact>)),
        QZ_EXACT(LinearToNonlinear709ToneCurve, eLinear, eRec709, Map(v, LinearToRec709<Exact>)),
        QZ_EXACT(NonlinearToLinearApple709ToneCurve, eApple709, eLinear,
                 Map(v, [](Exact c) { return formula::Pow<Exponent::k1_961>(c); })),
        QZ_EXACT(LinearToNonlinearApple709ToneCurve, eLinear, eApple709,
                 Map(v, [](Exact c) { return formula::Pow<Exponent::k0_5099439>(c); })),
        QZ_EXACT(SRGBToRGB709, eSRGB, eRec709, Map(v, SRGBToRec709<Exact>)),
        QZ_EXACT(LinearRGBToXYZ, eLinear, eXYZ, LinearRGBToXYZ(w, v)),
        QZ_EXACT(XYZToLinearRGB, eXYZ, eLinear, XYZToLinearRGB(a, w, v)),
        QZ_EXACT(SRGBToXYZ, eSRGB, eXYZ, SRGBToXYZ(a, b, w, v)),
        QZ_EXACT(XYZToSRGB, eXYZ, eSRGB, XYZToSRGB(a, b, w, v)),
        QZ_EXACT(SRGBToYCbCr, eSRGB, eYCbCr, SRGBToYCbCr(v)),
        QZ_EXACT(YCbCrToSRGB, eYCbCr, eSRGB, YCbCrToSRGB(v)),
        QZ_EXACT(RGBToYIQ, eSRGB, eYIQ, RGBToYIQ(v)),
        QZ_EXACT(YIQToRGB, eYIQ, eSRGB, YIQToRGB(v)),
        QZ_EXACT(XYZtoLab, eXYZ, eLab, XYZToLab(w, v)),
        QZ_EXACT(LabToXYZ, eLab, eXYZ, LabToXYZ(w, v)),
        QZ_EXACT(LinearRGBToLab, eLinear, eLab, LinearRGBToLab(w, v)),
        QZ_EXACT(LabToLinearRGB, eLab, eLinear, LabToLinearRGB(a, w, v)),
        QZ_EXACT(SRGBToLab, eSRGB, eLab, SRGBToLab(b, a, w, v)),   // the extended range comes first here
        QZ_EXACT(LabToSRGB, eLab, eSRGB, LabToSRGB(a, b, w, v)),
        QZ_EXACT(ExtendedRangeSRGBToLab, eSRGB, eLab, ExtendedRangeSRGBToLab(a, w, v)),
        QZ_EXACT(LabToExtendedRangeSRGB, eLab, eSRGB, LabToExtendedRangeSRGB(a, w, v)),
        QZ_EXACT(LabToLCh, eLab, eLCh, ToPolar(v)),
        QZ_EXACT(XYZtoLuv, eXYZ, eLuv, XYZToLuv(w, v)),
        QZ_EXACT(LuvToXYZ, eLuv, eXYZ, LuvToXYZ(w, v)),
        QZ_EXACT(LinearRGBToLuv, eLinear, eLuv, LinearRGBToLuv(w, v)),
        QZ_EXACT(LuvToLinearRGB, eLuv, eLinear, LuvToLinearRGB(a, w, v)),
        QZ_EXACT(SRGBToLuv, eSRGB, eLuv, SRGBToLuv(a, b, w, v)),
        QZ_EXACT(LuvToSRGB, eLuv, eSRGB, LuvToSRGB(a, b, w, v)),
        QZ_EXACT(LuvToLChuv, eLuv, eLChuv, ToPolar(v)),
        QZ_EXACT(XYZToYxy, eXYZ, eYxy, XYZToYxy(v)),
        QZ_EXACT(YxyToXYZ, eYxy, eXYZ, YxyToXYZ(v)),
        QZ_EXACT(LinearRGBToYxy, eLinear, eYxy, LinearRGBToYxy(w, v)),
        QZ_EXACT(YxyToLinearRGB, eYxy, eLinear, YxyToLinearRGB(a, w, v)),
        QZ_EXACT(RGBToHSV, eSRGB, eHSV, RGBToHSV(v)),
        QZ_EXACT(HSVToRGB, eHSV, eSRGB, HSVToRGB(v)),
        QZ_EXACT(XYZToIPT, eXYZ, eIPT, XYZToIPT(w, v)),
        QZ_EXACT(IPTToXYZ, eIPT, eXYZ, IPTToXYZ(w, v)),
        QZ_EXACT(LinearRGBToIPT, eLinear, eIPT, LinearRGBToIPT(w, v)),
        QZ_EXACT(IPTToLinearRGB, eIPT, eLinear, IPTToLinearRGB(a, w, v)),
        QZ_EXACT(SRGBToIPT, eSRGB, eIPT, SRGBToIPT(a, b, w, v)),
        QZ_EXACT(IPTToSRGB, eIPT, eSRGB, IPTToSRGB(a, b, w, v)),
        QZ_EXACT(IPTToICH, eIPT, eICH, IPTToICH(v)),
        QZ_EXACT(ICHToIPT, eICH, eIPT, ICHToIPT(v)),
        QZ_EXACT(LinearRGBToICH, eLinear, eICH, LinearRGBToICH(w, v)),
        QZ_EXACT(ICHToLinearRGB, eICH, eLinear, ICHToLinearRGB(a, w, v)),
        QZ_EXACT(SRGBToLMS, eSRGB, eLMS, SRGBToLMS(a, b, w, v)),
        QZ_EXACT(LinearDisplayP3ToXYZ, eLinearDisplayP3, eXYZ, LinearDisplayP3ToXYZ(w, v)),
        QZ_EXACT(XYZToLinearDisplayP3, eXYZ, eLinearDisplayP3, XYZToLinearDisplayP3(w, v)),
        QZ_EXACT(DisplayP3ToXYZ, eDisplayP3, eXYZ, DisplayP3ToXYZ(a, w, v)),
        QZ_EXACT(XYZToDisplayP3, eXYZ, eDisplayP3, XYZToDisplayP3(a, w, v)),
        QZ_EXACT(LinearDisplayP3ToDisplayP3, eLinearDisplayP3, eDisplayP3, LinearDisplayP3ToDisplayP3(a, v)),
        QZ_EXACT(DisplayP3ToSRGB, eDisplayP3, eSRGB, DisplayP3ToSRGB(a, b, w, v)),
        QZ_EXACT(SRGBToDisplayP3, eSRGB, eDisplayP3, SRGBToDisplayP3(a, b, w, v)),
        QZ_EXACT(DisplayP3ToLab, eDisplayP3, eLab, DisplayP3ToLab(a, w, v)),
        QZ_EXACT(LabToDisplayP3, eLab, eDisplayP3, LabToDisplayP3(a, w, v)),
        QZ_EXACT(DisplayP3ToIPT, eDisplayP3, eIPT, DisplayP3ToIPT(a, w, v)),
        QZ_EXACT(IPTToDisplayP3, eIPT, eDisplayP3, IPTToDisplayP3(a, w, v)),
        QZ_EXACT(LinearDisplayP3ToIPT, eLinearDisplayP3, eIPT, LinearDisplayP3ToIPT(w, v)),
        QZ_EXACT(IPTToLinearDisplayP3, eIPT, eLinearDisplayP3, IPTToLinearDisplayP3(w, v)),
    };
    return conversions;
}

#undef QZ_EXACT

ExactColor ToLab(Space space, const Settings& s, const ExactColor& v)
{
    using namespace formula;
    const auto fromLinear = [&](const ExactColor& rgb) { return LinearRGBToLab(s.white, rgb); };
    const auto fromXYZ = [&](const ExactColor& xyz) { return XYZToLab(s.white, xyz); };
    const auto fromPolar = [](const ExactColor& lch) {
        const auto [sine, cosine] = SinCos(lch.z);
        return ExactColor(lch.x, lch.y * cosine, lch.y * sine);
    };
    switch (space) {
        case Space::eSRGB:
            return fromLinear(NonlinearToLinear(s.flags[0], true, v));
        case Space::eRec709:
            return fromLinear(Map(v, Rec709ToLinear<Exact>));
        case Space::eApple709:
            return fromLinear(Map(v, [](Exact c) { return formula::Pow<Exponent::k1_961>(c); }));
        case Space::eLinear:
            return fromLinear(v);
        case Space::eXYZ:
            return fromXYZ(v);
        case Space::eYxy:
            return fromXYZ(YxyToXYZ(v));
        case Space::eLab:
            return v;
        case Space::eLCh:
            return fromPolar(v);
        case Space::eLuv:
            return fromXYZ(LuvToXYZ(s.white, v));
        case Space::eLChuv:
            return fromXYZ(LuvToXYZ(s.white, fromPolar(v)));
        case Space::eLMS:
            return fromXYZ(Foundation::Constants::LMSToXYZ(s.white) * v);
        case Space::eIPT:
            return fromXYZ(IPTToXYZ(s.white, v));
        case Space::eICH:
            return fromXYZ(IPTToXYZ(s.white, ICHToIPT(v)));
        case Space::eHSV:
            return fromLinear(NonlinearToLinear(false, true, HSVToRGB(v)));
        case Space::eYIQ:
            return fromLinear(NonlinearToLinear(false, true, YIQToRGB(v)));
        case Space::eYCbCr:
            return fromLinear(NonlinearToLinear(false, true, YCbCrToSRGB(v)));
        case Space::eDisplayP3:
            return DisplayP3ToLab(s.flags[0], s.white, v);
        case Space::eLinearDisplayP3:
            return fromXYZ(LinearDisplayP3ToXYZ(s.white, v));
    }
    return v;
}

}   // namespace QZ::Proof
