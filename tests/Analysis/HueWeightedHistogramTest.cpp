// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <cmath>
#include <numeric>

#include "QZ/Foundation/Analysis/Histograms.h"
#include "tests/Support/Pictures.h"

using QZ::Foundation::CColor;
using QZ::Test::Picture;
using Histogram = QZ::Foundation::CHueWeightedHistogram;

namespace {

Histogram Of(int numBins, Histogram::EHueColorSpace space, bool isSRGB, const Picture& picture,
             CColor::EIlluminant illuminant = CColor::eD65)
{
    Histogram histogram;
    histogram.Compute(numBins, space, isSRGB, illuminant, picture.Pixels(), picture.rgba.data());
    return histogram;
}

struct Worked {
    std::vector<int> pixel;
    bool isSRGB;
    Histogram::EHueColorSpace space;
    std::size_t bin;
    double weight, second, third, grey;
};

}   // namespace

// Worked with 40 digits from the same matrices, 36 bins. The weights are logistic functions of ten times the
// saturation and the lightness, so the few float roundings in those come out tenfold.
TEST(HueWeightedHistogram, WeighsAPixelByItsSaturationAndLightness)
{
    const Worked cases[] = {
        {{200, 60, 40}, true, Histogram::eLab, 21, 0.938688181, 0.509493537, 0.405569407, 0.147075732},
        {{200, 60, 40}, true, Histogram::eLuv, 19, 0.959766987, 1.05721741, 0.292433734, 0.150378406},
        {{200, 60, 40}, true, Histogram::eIPT, 23, 0.844896304, 0.338929973, 0.242875765, 0.132380214},
        {{200, 60, 40}, false, Histogram::eLab, 21, 0.497680777, 0.171419691, 0.140613419, 0.172394108},
        {{200, 60, 40}, false, Histogram::eLuv, 20, 0.712672609, 0.503514021, 0.204957065, 0.246866192},
        {{200, 60, 40}, false, Histogram::eIPT, 23, 0.41016156, 0.110913959, 0.0861320001, 0.142077893},
        {{30, 90, 180}, true, Histogram::eLab, 10, 0.83278974, 0.125416685, -0.441930158, 0.0906250165},
        {{30, 90, 180}, true, Histogram::eLuv, 7, 0.85298024, -0.162620539, -0.663339458, 0.092822167},
        {{30, 90, 180}, true, Histogram::eIPT, 2, 0.773317556, -0.0933179102, -0.278118717, 0.0841531937},
        {{60, 140, 70}, true, Histogram::eLab, 31, 0.86222634, -0.344430836, 0.259002753, 0.173807111},
        {{60, 140, 70}, true, Histogram::eLuv, 30, 0.897690133, -0.323909407, 0.378911789, 0.180955883},
        {{60, 140, 70}, true, Histogram::eIPT, 13, 0.42855996, -0.0791397168, 0.0742738436, 0.086388881},
        {{60, 140, 70}, false, Histogram::eLuv, 30, 0.301442561, -0.0925556033, 0.100533455, 0.139412967},
    };
    for (const Worked& c : cases) {
        const Histogram histogram = Of(36, c.space, c.isSRGB, QZ::Test::RowOf({c.pixel}));
        EXPECT_NEAR(histogram.weights[c.bin], c.weight, 5e-6);
        EXPECT_NEAR(histogram.sums[c.bin].x, c.second, 5e-6);
        EXPECT_NEAR(histogram.sums[c.bin].y, c.third, 5e-6);
        EXPECT_NEAR(histogram.greySums[c.bin], c.grey, 5e-6);
        EXPECT_EQ(histogram.total, histogram.weights[c.bin]);
    }
}

// The factors that rescale the logistics are rounded to seven digits.
TEST(HueWeightedHistogram, WeighsBlackAndWhiteNothing)
{
    for (const auto space : {Histogram::eLab, Histogram::eLuv, Histogram::eIPT})
        for (const bool isSRGB : {false, true})
            for (const auto& pixel : {std::vector<int>{0, 0, 0}, std::vector<int>{255, 255, 255}})
                EXPECT_NEAR(Of(36, space, isSRGB, QZ::Test::RowOf({pixel})).total, 0.0, 1e-6);
}

TEST(HueWeightedHistogram, AddsPicturesAndSumsAllBinsAnew)
{
    const Picture picture = QZ::Test::RowOf({{200, 60, 40}});
    Histogram histogram = Of(36, Histogram::eLab, true, picture);
    const double once = histogram.total;
    histogram.Compute(36, Histogram::eLab, true, CColor::eD65, 1, picture.rgba.data());
    EXPECT_EQ(histogram.total, once + once);
    histogram.Compute(36, static_cast<Histogram::EHueColorSpace>(3), true, CColor::eD65, 1,
                      picture.rgba.data());
    EXPECT_EQ(histogram.total, once + once);
    histogram.Compute(36, Histogram::eLab, true, CColor::eD65, 0, nullptr);
    EXPECT_EQ(histogram.total, once + once);
}

TEST(HueWeightedHistogram, IsEmptyWithoutBins)
{
    for (const int numBins : {0, -5}) {
        const Histogram histogram = Of(numBins, Histogram::eLuv, true, QZ::Test::RowOf({{1, 2, 3}}));
        EXPECT_TRUE(histogram.weights.empty());
        EXPECT_TRUE(histogram.sums.empty());
        EXPECT_TRUE(histogram.greySums.empty());
        EXPECT_EQ(histogram.total, 0.0);
    }
}

// More pixels than fit one row of the kernel; the weights of a picture are those of its pixels, in their
// order.
TEST(HueWeightedHistogram, SumsThePixelsOfAPhotograph)
{
    const Picture picture = QZ::Test::Photograph(37, 29);
    for (const auto space : {Histogram::eLab, Histogram::eLuv, Histogram::eIPT})
        for (const auto illuminant : {CColor::eD50, CColor::eD65}) {
            Histogram expected;
            for (std::size_t k = 0; k < static_cast<std::size_t>(picture.Pixels()); ++k)
                expected.Compute(360, space, true, illuminant, 1, picture.rgba.data() + 4 * k);
            const Histogram histogram = Of(360, space, true, picture, illuminant);
            EXPECT_EQ(histogram.weights, expected.weights);
            EXPECT_EQ(histogram.greySums, expected.greySums);
            EXPECT_EQ(histogram.total, expected.total);
            for (std::size_t bin = 0; bin < 360; ++bin) {
                EXPECT_EQ(histogram.sums[bin].x, expected.sums[bin].x);
                EXPECT_EQ(histogram.sums[bin].y, expected.sums[bin].y);
            }
        }
}
