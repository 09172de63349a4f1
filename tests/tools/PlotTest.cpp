// SPDX-License-Identifier: MIT
#include "tools/qz/plots/Plot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>

#include "tools/qz/plots/ChromaMap.h"
#include "tools/qz/plots/Histograms.h"

namespace {

using namespace QZ::Tool;
using testing::DoubleNear;
using testing::ElementsAre;

constexpr Area kArea = {100.0f, 100.0f, 512.0f, 200.0f};   // two pixels a level

using Pixel = std::array<int, 3>;

Pixel At(const Canvas& canvas, float x, float y)
{
    const unsigned char* p = canvas.Result().At(static_cast<int>(x), static_cast<int>(y));
    return {p[0], p[1], p[2]};
}

// A picture of one row with so many pixels of each grey.
Image Greys(std::initializer_list<std::pair<int, int>> levelsAndCounts)
{
    int width = 0;
    for (const auto& [level, count] : levelsAndCounts)
        width += count;
    Image image(width, 1);
    unsigned char* p = image.pixels.data();
    for (const auto& [level, count] : levelsAndCounts)
        for (int i = 0; i < count; ++i, p += 4)
            p[0] = p[1] = p[2] = static_cast<unsigned char>(level);
    return image;
}

TEST(RoundNumbers, StepByOneTwoOrFive)
{
    EXPECT_THAT(RoundNumbers({0.0, 10.0}, 6), ElementsAre(0.0, 2.0, 4.0, 6.0, 8.0, 10.0));
    EXPECT_THAT(RoundNumbers({0.0, 11000.0}, 6), ElementsAre(0.0, 5000.0, 10000.0));
    EXPECT_THAT(RoundNumbers({-1.0, 1.0}, 5),
                ElementsAre(-1.0, -0.5, DoubleNear(0.0, 1e-15), 0.5, 1.0));   // a sum of steps
    EXPECT_THAT(RoundNumbers({0.0, 0.0}, 5), ElementsAre(0.0)) << "a range of no width";
}

TEST(AxisLabel, IsShort)
{
    EXPECT_EQ(AxisLabel(0.0), "0");
    EXPECT_EQ(AxisLabel(-0.0), "0");
    EXPECT_EQ(AxisLabel(0.25), "0.25");
    EXPECT_EQ(AxisLabel(5000.0), "5000");
    EXPECT_EQ(AxisLabel(15000.0), "15k");
    EXPECT_EQ(AxisLabel(2500000.0), "2.5M");
    EXPECT_EQ(AxisLabel(-60.0),
              "\xE2\x88\x92"
              "60");
}

TEST(Axes, PlaceNumbersWithinTheArea)
{
    Canvas canvas(10, 10, inks::kPaper);
    const Axes axes(canvas, {10.0f, 20.0f, 100.0f, 50.0f}, {0.0, 200.0}, {-1.0, 1.0});
    EXPECT_EQ(axes.At(0.0, -1.0).x, 10.0f);
    EXPECT_EQ(axes.At(0.0, -1.0).y, 70.0f) << "low is at the bottom";
    EXPECT_EQ(axes.At(200.0, 1.0).x, 110.0f);
    EXPECT_EQ(axes.At(200.0, 1.0).y, 20.0f);
    EXPECT_EQ(axes.At(50.0, 0.0).x, 35.0f);
    EXPECT_EQ(axes.At(50.0, 0.0).y, 45.0f);
}

TEST(TopOfBars, IsJustAboveTheTallestUnlessAFewDwarfAllOthers)
{
    std::vector<double> bins(256, 100.0);
    EXPECT_NEAR(TopOfBars(bins), 108.0, 1e-9);   // 8 % of room
    bins[255] = 250.0;
    EXPECT_NEAR(TopOfBars(bins), 270.0, 1e-9);
    bins[255] = 100000.0;
    EXPECT_NEAR(TopOfBars(bins), 108.0, 1e-9);
    EXPECT_EQ(TopOfBars({}), 1.0);
    EXPECT_EQ(TopOfBars(std::vector<double>(256, 0.0)), 1.0);
    std::vector<double> single(256, 0.0);
    single[7] = 50.0;
    EXPECT_NEAR(TopOfBars(single), 54.0, 1e-9);
}

TEST(GreyPlot, PutsABarOfItsHeightAtItsLevel)
{
    const Image image = Greys({{64, 1000}, {192, 500}});
    Canvas canvas(700, 420, inks::kPaper);
    DrawGreyPlot(MeasureHistograms(image, {}), kArea, canvas);
    const Pixel bar = {inks::kBar.red, inks::kBar.green, inks::kBar.blue};
    const float bottom = kArea.y + kArea.height;
    const float tall = kArea.height / 1.08f;   // the taller bar ends 8 % below the top
    EXPECT_EQ(At(canvas, kArea.x + 2 * 64, bottom - 5), bar);
    EXPECT_EQ(At(canvas, kArea.x + 2 * 64, bottom - tall + 3), bar);
    EXPECT_NE(At(canvas, kArea.x + 2 * 64, bottom - tall - 3), bar);
    EXPECT_EQ(At(canvas, kArea.x + 2 * 192, bottom - tall / 2 + 3), bar);
    EXPECT_NE(At(canvas, kArea.x + 2 * 192, bottom - tall / 2 - 3), bar);
    for (const int empty : {0, 60, 68, 128, 188, 196, 255})
        EXPECT_NE(At(canvas, kArea.x + 2 * static_cast<float>(empty), bottom - 5), bar) << empty;
}

TEST(WeightedPlot, CountsWhatIsTransparentForNothing)
{
    Image image = Greys({{64, 100}, {192, 100}});
    for (std::size_t i = 3; i < 400; i += 4)
        image.pixels[i] = 0;
    const PictureHistograms histograms = MeasureHistograms(image, {});
    EXPECT_EQ(histograms.weighted.total, 100.0);
    EXPECT_EQ(histograms.grey.count, 200);
    Canvas canvas(700, 420, inks::kPaper);
    DrawWeightedPlot(histograms, kArea, canvas);
    const Pixel bar = {inks::kBlue.red, inks::kBlue.green, inks::kBlue.blue};
    EXPECT_NE(At(canvas, kArea.x + 2 * 64, kArea.y + kArea.height - 5), bar);
    EXPECT_EQ(At(canvas, kArea.x + 2 * 192, kArea.y + kArea.height - 5), bar);
}

TEST(HuePlot, PointsARayWhereItsHueLies)
{
    Image image(4, 1);
    for (std::size_t i = 0; i < 4; ++i)
        image.pixels[4 * i] = 255;   // red: 12 degrees in Luv (CIE 1976 of the primary)
    Canvas canvas(700, 700, inks::kPaper);
    DrawHuePlot(MeasureHistograms(image, {}), {50.0f, 80.0f, 600.0f, 600.0f}, canvas);
    const auto at = [&](float degrees, float radius) {
        const float angle = degrees * 3.14159265f / 180.0f;
        return At(canvas, 350.0f + radius * std::cos(angle), 390.0f - radius * std::sin(angle));
    };
    const Pixel ray = at(12.0f, 200.0f);   // between the inner circle at 102 and the outer one at 258
    EXPECT_GT(ray[0], ray[1] + 60) << "reddish";
    EXPECT_EQ(at(5.0f, 200.0f), (Pixel{255, 255, 255}));
    EXPECT_EQ(at(20.0f, 200.0f), (Pixel{255, 255, 255}));
    EXPECT_EQ(at(192.0f, 200.0f), (Pixel{255, 255, 255}));
}

TEST(HistogramSheet, IsDrawnForPicturesWithoutPixelsOrColour)
{
    for (const Image& image : {Image(0, 0), Greys({{128, 5}})}) {
        const Image sheet = HistogramSheet(MeasureHistograms(image, {}), "title");
        EXPECT_EQ(sheet.width, 1800);
        EXPECT_EQ(sheet.height, 1240);
    }
}

TEST(HistogramsAsJson, HoldsEveryBin)
{
    const auto document =
        nlohmann::json::parse(HistogramsAsJson(MeasureHistograms(Greys({{10, 3}}), {})).dump());
    EXPECT_EQ(document["pixels"], 3);
    EXPECT_EQ(document["grey"]["bins"].size(), 256u);
    EXPECT_EQ(document["grey"]["bins"][10], 3);
    EXPECT_EQ(document["weighted"]["bins"][10], 3.0);
    EXPECT_EQ(document["density"]["bins"][10], 3);
    EXPECT_EQ(document["hue"]["bins"].size(), 121u);
}

TEST(ScaleInk, RisesEvenlyInLightnessAndStaysInRange)
{
    const auto luma = [](Ink ink) { return 0.299 * ink.red + 0.587 * ink.green + 0.114 * ink.blue; };
    for (int i = 0; i < 20; ++i)
        EXPECT_LT(luma(ScaleInk(static_cast<float>(i) / 20.0f)),
                  luma(ScaleInk(static_cast<float>(i + 1) / 20.0f)));
    EXPECT_EQ(luma(ScaleInk(-5.0f)), luma(ScaleInk(0.0f)));
    EXPECT_EQ(luma(ScaleInk(5.0f)), luma(ScaleInk(1.0f)));
    EXPECT_EQ(luma(ScaleInk(std::nanf(""))), luma(ScaleInk(0.0f)));
}

TEST(ChromaMapSheet, ShowsSRGBRedWhereItsHueAndLightnessMeet)
{
    const Image sheet = ChromaMapSheet();
    // The panel of colours is 690 pixels square from (1060, 160); red is L* = 53.2 at 12.2 degrees.
    const auto x = static_cast<int>(1060 + 690 * (12.2 + 180.0) / 360.0);
    const auto y = static_cast<int>(160 + 690 * (1.0 - 0.532));
    const unsigned char* p = sheet.At(x, y);
    EXPECT_GT(p[0], 245);
    EXPECT_LT(p[1], 40);
    EXPECT_LT(p[2], 40);
}

}   // namespace
