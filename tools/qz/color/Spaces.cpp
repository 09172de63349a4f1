// SPDX-License-Identifier: MIT
#include "tools/qz/color/Spaces.h"

#include <algorithm>

#include "QZ/Foundation/Color/HSLuv.h"

namespace QZ::Tool {

namespace {

using White = CColor::EIlluminant;

// Adapts the library's form, a result through a reference, to one that returns it.
template <auto Convert, class... Arguments>
Triple Call(const Arguments&... arguments)
{
    Triple result;
    Convert(arguments..., result);
    return result;
}

Triple Encoded(const Triple& linear)
{
    Triple srgb;
    CColor::LinearToNonlinearToneCurve(false, true, linear, srgb);
    return srgb;
}

Triple Decoded(const Triple& srgb)
{
    Triple linear;
    CColor::NonlinearToLinearToneCurve(false, true, srgb, linear);
    return linear;
}

Triple ToXYZ(White white, const Triple& linear)
{
    return Call<CColor::LinearRGBToXYZ>(white, linear);
}

Triple FromXYZ(White white, const Triple& xyz)
{
    return Call<CColor::XYZToLinearRGB>(true, white, xyz);
}

// (L, C, h) as (L, a, b). ICH measures its hue from the third axis, Lab and Luv from the second.
Triple FromPolar(const Triple& lch)
{
    const auto turned = Call<CColor::ICHToIPT>(lch);
    return {turned.x, turned.z, turned.y};
}

// The HSLuv functions take and give doubles.
template <auto Convert>
Triple CallHSLuv(const Triple& in)
{
    double a = 0.0, b = 0.0, c = 0.0;
    Convert(static_cast<double>(in.x), static_cast<double>(in.y), static_cast<double>(in.z), &a, &b, &c);
    return {static_cast<float>(a), static_cast<float>(b), static_cast<float>(c)};
}

Triple Greys(float grey)
{
    return {grey, grey, grey};
}

constexpr Space kSpaces[] = {
    {"srgb", "R G B", Whites::None, [](White, const Triple& linear) { return Encoded(linear); },
     [](White, const Triple& srgb) { return Decoded(srgb); }},
    {"linear-rgb", "R G B", Whites::None, [](White, const Triple& linear) { return linear; },
     [](White, const Triple& linear) { return linear; }},
    {"rgb709", "R G B", Whites::None,
     [](White, const Triple& linear) { return Call<CColor::LinearToNonlinear709ToneCurve>(linear); },
     [](White, const Triple& rgb) { return Call<CColor::NonlinearToLinear709ToneCurve>(rgb); }},
    {"hsv", "H S V", Whites::None,
     [](White, const Triple& linear) { return Call<CColor::RGBToHSV>(Encoded(linear)); },
     [](White, const Triple& hsv) { return Decoded(Call<CColor::HSVToRGB>(hsv)); }},
    {"yiq", "Y I Q", Whites::None,
     [](White, const Triple& linear) { return Call<CColor::RGBToYIQ>(Encoded(linear)); },
     [](White, const Triple& yiq) { return Decoded(Call<CColor::YIQToRGB>(yiq)); }},
    {"ycbcr", "Y Cb Cr", Whites::None,
     [](White, const Triple& linear) { return Call<CColor::SRGBToYCbCr>(Encoded(linear)); },
     [](White, const Triple& ycbcr) { return Decoded(Call<CColor::YCbCrToSRGB>(ycbcr)); }},
    {"hsluv", "H S L", Whites::None,
     [](White, const Triple& linear) { return CallHSLuv<rgbToHusl>(Encoded(linear)); },
     [](White, const Triple& hsl) { return Decoded(CallHSLuv<huslToRgb>(hsl)); }},
    {"hpluv", "H S L", Whites::None,
     [](White, const Triple& linear) { return CallHSLuv<rgbToHuslp>(Encoded(linear)); },
     [](White, const Triple& hsl) { return Decoded(CallHSLuv<huslpToRgb>(hsl)); }},
    {"lxx", "L", Whites::None,
     [](White, const Triple& linear) {
         float lightness = 0.0f;
         CColor::LinearRGBToLXX(linear, lightness);
         return Triple(lightness, 0.0f, 0.0f);
     },
     [](White, const Triple& lxx) {
         float luminance = 0.0f;
         CColor::LXXToLinearY(lxx.x, luminance);
         return Greys(luminance);
     }},
    {"xyz", "X Y Z", Whites::Both, ToXYZ, FromXYZ},
    {"yxy", "Y x y", Whites::Both,
     [](White white, const Triple& linear) { return Call<CColor::LinearRGBToYxy>(white, linear); },
     [](White white, const Triple& yxy) { return Call<CColor::YxyToLinearRGB>(true, white, yxy); }},
    {"lab", "L a b", Whites::Both,
     [](White white, const Triple& linear) { return Call<CColor::LinearRGBToLab>(white, linear); },
     [](White white, const Triple& lab) { return Call<CColor::LabToLinearRGB>(true, white, lab); }},
    {"lch", "L C h", Whites::Both,
     [](White white, const Triple& linear) {
         return Call<CColor::LabToLCh>(Call<CColor::LinearRGBToLab>(white, linear));
     },
     [](White white, const Triple& lch) {
         return Call<CColor::LabToLinearRGB>(true, white, FromPolar(lch));
     }},
    {"luv", "L u v", Whites::Both,
     [](White white, const Triple& linear) { return Call<CColor::LinearRGBToLuv>(white, linear); },
     [](White white, const Triple& luv) { return Call<CColor::LuvToLinearRGB>(true, white, luv); }},
    {"lchuv", "L C h", Whites::Both,
     [](White white, const Triple& linear) {
         return Call<CColor::LuvToLChuv>(Call<CColor::LinearRGBToLuv>(white, linear));
     },
     [](White white, const Triple& lch) {
         return Call<CColor::LuvToLinearRGB>(true, white, FromPolar(lch));
     }},
    {"ipt", "I P T", Whites::Both,
     [](White white, const Triple& linear) { return Call<CColor::LinearRGBToIPT>(white, linear); },
     [](White white, const Triple& ipt) { return Call<CColor::IPTToLinearRGB>(true, white, ipt); }},
    {"ich", "I C H", Whites::Both,
     [](White white, const Triple& linear) { return Call<CColor::LinearRGBToICH>(white, linear); },
     [](White white, const Triple& ich) { return Call<CColor::ICHToLinearRGB>(true, white, ich); }},
    {"lms", "L M S", Whites::Both,
     [](White white, const Triple& linear) { return CColor::XYZToLMSMatrix(white) * ToXYZ(white, linear); },
     [](White white, const Triple& lms) { return FromXYZ(white, CColor::LMSToXYZMatrix(white) * lms); }},
    {"display-p3", "R G B", Whites::Both,
     [](White white, const Triple& linear) {
         return Call<CColor::XYZToDisplayP3>(false, white, ToXYZ(white, linear));
     },
     [](White white, const Triple& p3) {
         return FromXYZ(white, Call<CColor::DisplayP3ToXYZ>(false, white, p3));
     }},
    {"linear-display-p3", "R G B", Whites::Both,
     [](White white, const Triple& linear) {
         return Call<CColor::XYZToLinearDisplayP3>(white, ToXYZ(white, linear));
     },
     [](White white, const Triple& p3) {
         return FromXYZ(white, Call<CColor::LinearDisplayP3ToXYZ>(white, p3));
     }},
};

std::string Plain(std::string_view name)
{
    std::string plain;
    for (const char c : name)
        if (c != '-' && c != '_')
            plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return plain;
}

}   // namespace

std::span<const Space> Spaces()
{
    return kSpaces;
}

const Space* FindSpace(std::string_view name)
{
    const std::string plain = Plain(name);
    const auto found = std::ranges::find_if(kSpaces, [&](const Space& s) { return Plain(s.name) == plain; });
    return found == std::end(kSpaces) ? nullptr : found;
}

}   // namespace QZ::Tool
