// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <vector>

#include "QZ/Foundation/Analysis/PixelKernels.h"
#include "QZ/Foundation/Color/ByteCurve.h"
#include "tests/Support/Targets.h"

namespace QZ::Foundation {
namespace {

using Color = Math::CVector3<float>;

/// The bytes of a curve as rows of pixels find them: by an estimate that leaves open what is near a step.
class CurveBytes : public QZ::Test::TargetTest {
protected:
    static void ExpectSame(const ByteCurve& curve, std::vector<float> floats)
    {
        floats.resize((floats.size() + 2) / 3 * 3);
        std::vector<Color> colors;
        for (std::size_t i = 0; i < floats.size(); i += 3)
            colors.emplace_back(floats[i], floats[i + 1], floats[i + 2]);
        std::vector<unsigned char> rgba(4 * colors.size());
        const Math::CMatrix3<float> same(1.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f);
        BalanceRow({same, same, same, curve, false}, colors.data(), colors.size(), rgba.data());
        for (std::size_t i = 0; i < floats.size(); ++i)
            ASSERT_EQ(rgba[4 * (i / 3) + i % 3], curve(floats[i])) << floats[i];
    }
};
QZ_INSTANTIATE_TARGETS(CurveBytes);

std::vector<const ByteCurve*> Curves()
{
    return {&EncodedByte(false), &EncodedByte(true), &TruncatedSRGBByte(),
            &LightnessByte(),    &UnitByte(),        &TruncatedUnitByte()};
}

/// The bits of the least float of a byte.
std::uint32_t FirstOf(const ByteCurve& curve, unsigned byte)
{
    std::uint32_t below = 0;
    std::uint32_t notBelow = 0x40000000;
    while (notBelow - below > 1) {
        const std::uint32_t middle = below + (notBelow - below) / 2;
        if (curve(std::bit_cast<float>(middle)) < byte)
            below = middle;
        else
            notBelow = middle;
    }
    return notBelow;
}

TEST_P(CurveBytes, AreThoseOfTheThresholdsOnEveryFloatAboutAStep)
{
    constexpr std::uint32_t kAbout = 1500;   // what is left open is fewer than 400 floats to either side
    for (const ByteCurve* curve : Curves()) {
        std::vector<float> floats;
        for (unsigned byte = 1; byte <= curve->operator()(1.0f); ++byte)
            for (std::uint32_t first = FirstOf(*curve, byte), i = 0; i < 2 * kAbout; ++i)
                floats.push_back(std::bit_cast<float>(first - kAbout + i));
        ExpectSame(*curve, floats);
    }
}

TEST_P(CurveBytes, AreThoseOfTheThresholdsBetweenTheStepsToo)
{
    for (const ByteCurve* curve : Curves()) {
        std::vector<float> floats;
        for (std::uint32_t bits = 0x30000000; bits < 0x40000000; bits += 257)
            floats.push_back(std::bit_cast<float>(bits));
        ExpectSame(*curve, floats);
    }
}

TEST_P(CurveBytes, AreThoseOfTheNearerEndOutsideTheRange)
{
    for (const ByteCurve* curve : Curves())
        ExpectSame(*curve, {-1.0f, -0.0f, 0.0f, 1e-45f, 1e-30f, 1.5f, 2.0f, 3e38f});
}

}   // namespace
}   // namespace QZ::Foundation
