// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string_view>

#include "tests/proof/Exact.h"
#include "tools/qz/selftest/ConversionList.h"

namespace QZ::Proof {

using Foundation::QZ_TARGET::Exact;
using ExactColor = Foundation::QZ_TARGET::Vec3<Exact>;
using Tool::Selftest::Color;
using Tool::Selftest::Settings;

enum class Space {
    eSRGB,   ///< encoded, or a code of 8 bits of another encoding
    eRec709,
    eApple709,
    eLinear,
    eXYZ,
    eYxy,
    eLab,
    eLCh,
    eLuv,
    eLChuv,
    eLMS,
    eIPT,
    eICH,
    eHSV,
    eYIQ,
    eYCbCr,
    eDisplayP3,
    eLinearDisplayP3,
};

/// A conversion of CColorRows over numbers of 100 bits.
struct ExactConversion {
    Space from;
    Space to;
    ExactColor (*convert)(const Settings& settings, const ExactColor& color);
};

/// By the names of ColorConversions(), all of them.
const std::map<std::string_view, ExactConversion>& ExactConversions();

/// L, a and b on the hundredth scale of a colour that a conversion with these settings gave.
ExactColor ToLab(Space space, const Settings& settings, const ExactColor& color);

}   // namespace QZ::Proof
