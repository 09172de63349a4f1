// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "QZ/Foundation/Color/CColor.h"
#include "QZ/Foundation/Color/CColorRows.h"

/// \file
/// Every colour-to-colour conversion of the library by name, one colour at a time and as a row.

namespace QZ::Tool::Selftest {

using Foundation::CColor;
using Foundation::CColorRows;
using Color = Math::CVector3<float>;
using White = CColor::EIlluminant;

/// A conversion's leading arguments: its flags in order, and its illuminant.
struct Settings {
    bool flags[2];
    White white;
};

inline std::vector<Settings> AllSettings()
{
    std::vector<Settings> all;
    for (const bool first : {false, true})
        for (const bool second : {false, true})
            for (const White white : {CColor::eD50, CColor::eD65})
                all.push_back({{first, second}, white});
    return all;
}

/// A conversion of one colour and its row, with the leading arguments taken from Settings.
template <class In, class Out>
struct Conversion {
    std::string name;
    int numFlags;
    bool hasWhite;
    std::function<Color(const Settings&, const Color&)> single;
    std::function<void(const Settings&, In, Out)> row;
};

template <class... Arguments>
auto Bound([[maybe_unused]] const Settings& settings)
{
    [[maybe_unused]] int flag = 0;
    [[maybe_unused]] const auto value = [&](auto type) {
        if constexpr (std::is_same_v<decltype(type), bool>)
            return settings.flags[flag++];
        else
            return settings.white;
    };
    return std::tuple<Arguments...>{value(Arguments())...};
}

/// The pair of functions of one name, out of all overloads those with these leading arguments.
template <class In, class Out, class... Arguments>
struct Pair {
    static Conversion<In, Out> Named(const char* name, void (*single)(Arguments..., const Color&, Color&),
                                     void (*row)(Arguments..., In, Out))
    {
        return {name, (0 + ... + int(std::is_same_v<Arguments, bool>)),
                (... || std::is_same_v<Arguments, White>),
                [single](const Settings& s, const Color& in) {
                    Color out;
                    std::apply([&](auto... a) { single(a..., in, out); }, Bound<Arguments...>(s));
                    return out;
                },
                [row](const Settings& s, In in, Out out) {
                    std::apply([&](auto... a) { row(a..., in, out); }, Bound<Arguments...>(s));
                }};
    }
};

#define QZ_ROW(name, ...) \
    Pair<In, Out __VA_OPT__(, ) __VA_ARGS__>::Named(#name, &CColor::name, &CColorRows::name)

/// Those from colours to colours.
inline auto ColorConversions()
{
    using In = CColorRows::Colors;
    using Out = CColorRows::ColorsOut;
    return std::vector<Conversion<In, Out>>{
        QZ_ROW(NonlinearToLinearToneCurve, bool, bool),
        QZ_ROW(LinearToNonlinearToneCurve, bool, bool),
        QZ_ROW(NonlinearToLinear709ToneCurve),
        QZ_ROW(LinearToNonlinear709ToneCurve),
        QZ_ROW(NonlinearToLinearApple709ToneCurve),
        QZ_ROW(LinearToNonlinearApple709ToneCurve),
        QZ_ROW(SRGBToRGB709),
        QZ_ROW(LinearRGBToXYZ, White),
        QZ_ROW(XYZToLinearRGB, bool, White),
        QZ_ROW(SRGBToXYZ, bool, bool, White),
        QZ_ROW(XYZToSRGB, bool, bool, White),
        QZ_ROW(SRGBToYCbCr),
        QZ_ROW(YCbCrToSRGB),
        QZ_ROW(RGBToYIQ),
        QZ_ROW(YIQToRGB),
        QZ_ROW(XYZtoLab, White),
        QZ_ROW(LabToXYZ, White),
        QZ_ROW(LinearRGBToLab, White),
        QZ_ROW(LabToLinearRGB, bool, White),
        QZ_ROW(SRGBToLab, bool, bool, White),
        QZ_ROW(LabToSRGB, bool, bool, White),
        QZ_ROW(ExtendedRangeSRGBToLab, bool, White),
        QZ_ROW(LabToExtendedRangeSRGB, bool, White),
        QZ_ROW(LabToLCh),
        QZ_ROW(XYZtoLuv, White),
        QZ_ROW(LuvToXYZ, White),
        QZ_ROW(LinearRGBToLuv, White),
        QZ_ROW(LuvToLinearRGB, bool, White),
        QZ_ROW(SRGBToLuv, bool, bool, White),
        QZ_ROW(LuvToSRGB, bool, bool, White),
        QZ_ROW(LuvToLChuv),
        QZ_ROW(XYZToYxy),
        QZ_ROW(YxyToXYZ),
        QZ_ROW(LinearRGBToYxy, White),
        QZ_ROW(YxyToLinearRGB, bool, White),
        QZ_ROW(RGBToHSV),
        QZ_ROW(HSVToRGB),
        QZ_ROW(XYZToIPT, White),
        QZ_ROW(IPTToXYZ, White),
        QZ_ROW(LinearRGBToIPT, White),
        QZ_ROW(IPTToLinearRGB, bool, White),
        QZ_ROW(SRGBToIPT, bool, bool, White),
        QZ_ROW(IPTToSRGB, bool, bool, White),
        QZ_ROW(IPTToICH),
        QZ_ROW(ICHToIPT),
        QZ_ROW(LinearRGBToICH, White),
        QZ_ROW(ICHToLinearRGB, bool, White),
        QZ_ROW(SRGBToLMS, bool, bool, White),
        QZ_ROW(LinearDisplayP3ToXYZ, White),
        QZ_ROW(XYZToLinearDisplayP3, White),
        QZ_ROW(DisplayP3ToXYZ, bool, White),
        QZ_ROW(XYZToDisplayP3, bool, White),
        QZ_ROW(LinearDisplayP3ToDisplayP3, bool),
        QZ_ROW(DisplayP3ToSRGB, bool, bool, White),
        QZ_ROW(SRGBToDisplayP3, bool, bool, White),
        QZ_ROW(DisplayP3ToLab, bool, White),
        QZ_ROW(LabToDisplayP3, bool, White),
        QZ_ROW(DisplayP3ToIPT, bool, White),
        QZ_ROW(IPTToDisplayP3, bool, White),
        QZ_ROW(LinearDisplayP3ToIPT, White),
        QZ_ROW(IPTToLinearDisplayP3, White),
    };
}

/// Those from 8-bit pixels to colours.
inline auto FromPixelConversions()
{
    using In = CColorRows::Pixels;
    using Out = CColorRows::ColorsOut;
    return std::vector<Conversion<In, Out>>{
        QZ_ROW(NonlinearToLinearToneCurve, bool, bool),
        QZ_ROW(SRGBToRGB709),
        QZ_ROW(SRGBToXYZ, bool, bool, White),
        QZ_ROW(SRGBToLab, bool, bool, White),
        QZ_ROW(ExtendedRangeSRGBToLab, bool, White),
        QZ_ROW(SRGBToLuv, bool, bool, White),
        QZ_ROW(SRGBToIPT, bool, bool, White),
        QZ_ROW(SRGBToLMS, bool, bool, White),
        QZ_ROW(DisplayP3ToXYZ, bool, White),
        QZ_ROW(DisplayP3ToSRGB, bool, bool, White),
        QZ_ROW(SRGBToDisplayP3, bool, bool, White),
        QZ_ROW(DisplayP3ToLab, bool, White),
        QZ_ROW(DisplayP3ToIPT, bool, White),
    };
}

/// Those from colours to 8-bit pixels.
inline auto ToPixelConversions()
{
    using In = CColorRows::Colors;
    using Out = CColorRows::PixelsOut;
    return std::vector<Conversion<In, Out>>{
        QZ_ROW(LinearToNonlinearToneCurve, bool, bool),
        QZ_ROW(XYZToSRGB, bool, bool, White),
        QZ_ROW(LabToSRGB, bool, bool, White),
        QZ_ROW(LabToExtendedRangeSRGB, bool, White),
        QZ_ROW(LuvToSRGB, bool, bool, White),
        QZ_ROW(IPTToSRGB, bool, bool, White),
        QZ_ROW(XYZToDisplayP3, bool, White),
        QZ_ROW(LinearDisplayP3ToDisplayP3, bool),
        QZ_ROW(DisplayP3ToSRGB, bool, bool, White),
        QZ_ROW(SRGBToDisplayP3, bool, bool, White),
        QZ_ROW(LabToDisplayP3, bool, White),
        QZ_ROW(IPTToDisplayP3, bool, White),
    };
}

#undef QZ_ROW

}   // namespace QZ::Tool::Selftest
