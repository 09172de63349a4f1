// SPDX-License-Identifier: MIT

/// \file
/// No 8-bit colour leaves the bins, with any flag and either illuminant, even without the clamp that would
/// hold it back. Every one of the 2^24 colours is converted.

#include <gtest/gtest.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "QZ/Foundation/Color/CColor.h"

using QZ::Foundation::CColor;
using Vector = QZ::Math::CVector3<float>;

namespace {

// The sanitizers slow this down tenfold and look for other things: they see every 61st colour, a step that is
// prime and so still meets every value of every byte.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr unsigned kStep = 61;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr unsigned kStep = 61;
#else
constexpr unsigned kStep = 1;
#endif
#else
constexpr unsigned kStep = 1;
#endif

/// The least and the greatest of some values; NaN is remembered.
class Range {
public:
    void Take(float value)
    {
        if (!(value == value))
            m_hasNaN = true;
        m_least = std::min(m_least, value);
        m_greatest = std::max(m_greatest, value);
    }

    void ExpectWithin(float least, float greatest) const
    {
        EXPECT_FALSE(m_hasNaN);
        EXPECT_GE(m_least, least);
        EXPECT_LE(m_greatest, greatest);
    }

    [[nodiscard]] float Least() const { return m_least; }
    [[nodiscard]] float Greatest() const { return m_greatest; }

private:
    float m_least = std::numeric_limits<float>::infinity();
    float m_greatest = -std::numeric_limits<float>::infinity();
    bool m_hasNaN = false;
};

/// Calls f with the linear light of every colour, the bytes being encoded sRGB or linear.
template <class Function>
void ForEachColor(bool isSRGB, Function&& f)
{
    std::array<float, 256> linear{};
    for (std::size_t byte = 0; byte < 256; ++byte) {
        linear[byte] = static_cast<float>(byte) * 0.003921569f;
        if (isSRGB)
            CColor::NonlinearToLinearToneCurve(false, linear[byte], linear[byte]);
    }
    for (unsigned color = 0; color < 1u << 24; color += kStep)
        f(Vector(linear[color >> 16], linear[(color >> 8) & 255], linear[color & 255]));
}

/// A grey level is floor(grey * 255 + 0.5), which grows with the grey.
template <class Grey>
void ExpectLevels(bool isSRGB, Grey&& greyOf)
{
    Range greys;
    ForEachColor(isSRGB, [&](const Vector& rgb) {
        float grey = 0.0f;
        greyOf(rgb, grey);
        greys.Take(grey);
    });
    greys.ExpectWithin(0.0f, 2.0f);
    EXPECT_EQ(std::floor(greys.Least() * 255.0f + 0.5f), 0.0f);
    if (kStep == 1)
        EXPECT_EQ(std::floor(greys.Greatest() * 255.0f + 0.5f), 255.0f);
    else
        EXPECT_LE(std::floor(greys.Greatest() * 255.0f + 0.5f), 255.0f);
}

/// A hue bin is trunc((angle + pi) * (numBins - 1) / (2 pi) + 0.5), which grows with the angle.
template <class Convert>
void ExpectHues(Convert&& convert)
{
    constexpr float pi = 3.14159274f;
    for (const bool isSRGB : {false, true}) {
        Range lightnesses;
        Range angles;
        ForEachColor(isSRGB, [&](const Vector& rgb) {
            Vector color;
            angles.Take(convert(rgb, color));
            lightnesses.Take(color.x);
        });
        angles.ExpectWithin(-pi, pi);
        lightnesses.ExpectWithin(0.0f, 1.000001f);   // I of white rounds to a little more than 1
        for (int numBins = 1; numBins <= 1 << 16; ++numBins) {
            const float scale = static_cast<float>(numBins - 1) / 6.28318531f;
            EXPECT_GE((angles.Least() + pi) * scale + 0.5f, 0.0f);
            EXPECT_LT((angles.Greatest() + pi) * scale + 0.5f, static_cast<float>(numBins));
        }
    }
}

using Illuminant = CColor::EIlluminant;

class AllColors : public testing::TestWithParam<Illuminant> {};

}   // namespace

INSTANTIATE_TEST_SUITE_P(UnderEachIlluminant, AllColors, testing::Values(CColor::eD50, CColor::eD65),
                         [](const auto& test) { return test.param == CColor::eD50 ? "D50" : "D65"; });

TEST_P(AllColors, HaveALevelOfEncodedLuminance)
{
    for (const bool isSRGB : {false, true})
        ExpectLevels(isSRGB, [](const Vector& rgb, float& grey) {
            CColor::LinearRGBToNonlinearY(false, false, GetParam(), rgb, grey);
        });
}

TEST(AllColorsUnderD65, HaveALevelOfLightness)
{
    for (const bool isSRGB : {false, true})
        ExpectLevels(isSRGB, [](const Vector& rgb, float& grey) { CColor::LinearRGBToLXX(rgb, grey); });
}

TEST_P(AllColors, HaveAHueInLab)
{
    ExpectHues([](const Vector& rgb, Vector& lab) {
        CColor::LinearRGBToLab(GetParam(), rgb, lab);
        Vector lch;
        CColor::LabToLCh(lab, lch);
        return lch.z;
    });
}

TEST_P(AllColors, HaveAHueInLuv)
{
    ExpectHues([](const Vector& rgb, Vector& luv) {
        CColor::LinearRGBToLuv(GetParam(), rgb, luv);
        Vector lch;
        CColor::LuvToLChuv(luv, lch);
        return lch.z;
    });
}

TEST_P(AllColors, HaveAHueInIPT)
{
    ExpectHues([](const Vector& rgb, Vector& ipt) {
        CColor::LinearRGBToIPT(GetParam(), rgb, ipt);
        float hue = 0.0f;
        CColor::IPTToXXH(ipt, hue);
        return hue;
    });
}
