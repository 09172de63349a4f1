// SPDX-License-Identifier: MIT
#include "tools/qz/selftest/Cases.h"
#include "tools/qz/selftest/ConversionList.h"
#include "tools/qz/selftest/Inputs.h"

namespace QZ::Tool::Selftest {

namespace {

constexpr std::size_t kInputs = std::size_t{1} << 20;

const std::vector<Color>& AllColors()
{
    static const std::vector<Color> colors = Colors(kInputs);
    return colors;
}

const std::vector<unsigned char>& AllPixels()
{
    static const std::vector<unsigned char> pixels = [] {
        Numbers numbers(3);
        std::vector<unsigned char> bytes(4 * kInputs);
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(numbers.Bits() >> 24);
        return bytes;
    }();
    return pixels;
}

/// The settings that differ in what the conversion takes.
template <class In, class Out>
std::vector<Settings> SettingsOf(const Conversion<In, Out>& conversion)
{
    std::vector<Settings> settings;
    for (int flags = 0; flags < 1 << conversion.numFlags; ++flags)
        for (const White white : {CColor::eD50, CColor::eD65})
            if (conversion.hasWhite || white == CColor::eD50)
                settings.push_back({{(flags & 1) != 0, (flags & 2) != 0}, white});
    return settings;
}

/// One case for each conversion; the inputs are dealt out to its settings in equal parts.
/// \param inSize   elements of the input span a colour
/// \param outSize  elements of the output span a colour
template <class OutElement, class In, class Out, class Elements>
void AddCases(const std::vector<Conversion<In, Out>>& conversions, const char* suffix, const Elements& inputs,
              std::size_t inSize, std::size_t outSize, std::vector<Case>& cases)
{
    for (const auto& conversion : conversions)
        cases.push_back({"CColorRows::" + conversion.name + suffix, [=, &inputs](Digest& digest) {
                             const auto settings = SettingsOf(conversion);
                             const std::size_t part = kInputs / settings.size();
                             std::vector<OutElement> out(part * outSize);
                             std::size_t first = 0;
                             for (const Settings& s : settings) {
                                 conversion.row(s, In(inputs).subspan(first * inSize, part * inSize), out);
                                 digest.Add(out);
                                 first += part;
                             }
                         }});
}

}   // namespace

std::vector<Case> RowCases()
{
    std::vector<Case> cases;
    AddCases<Color>(ColorConversions(), "", AllColors(), 1, 1, cases);
    AddCases<Color>(FromPixelConversions(), " from pixels", AllPixels(), 4, 1, cases);
    AddCases<unsigned char>(ToPixelConversions(), " to pixels", AllColors(), 1, 4, cases);
    return cases;
}

}   // namespace QZ::Tool::Selftest
