// SPDX-License-Identifier: MIT
#include "tools/qz/draw/Canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace QZ::Tool {
namespace {

constexpr Ink kWhite = {255, 255, 255};
constexpr Ink kBlack = {0, 0, 0};

int Red(const Canvas& canvas, int x, int y)
{
    return canvas.Result().At(x, y)[0];
}

// The ink on a canvas in pixels, black on white.
double InkArea(const Canvas& canvas)
{
    double area = 0.0;
    for (int y = 0; y < canvas.Height(); ++y)
        for (int x = 0; x < canvas.Width(); ++x)
            area += 1.0 - Red(canvas, x, y) / 255.0;
    return area;
}

TEST(Canvas, FillsARectangleOnWholePixelsWithoutABlurredEdge)
{
    Canvas canvas(6, 5, kWhite);
    canvas.Rectangle({1.0f, 1.0f}, 3.0f, 2.0f, kBlack);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(Red(canvas, x, y), x >= 1 && x < 4 && y >= 1 && y < 3 ? 0 : 255) << x << ", " << y;
}

TEST(Canvas, ShadesAPixelByTheShareThatIsCovered)
{
    Canvas canvas(4, 4, kWhite);
    canvas.Rectangle({0.5f, 0.25f}, 2.0f, 1.0f, kBlack);   // covers 1/2 x 3/4 of the first pixel
    EXPECT_EQ(Red(canvas, 0, 0), 159);                     // 255 (1 - 0.375) = 159.4
    EXPECT_EQ(Red(canvas, 1, 0), 64);                      // 255 (1 - 0.75) = 63.75
    EXPECT_EQ(Red(canvas, 1, 1), 191);                     // 255 (1 - 0.25) = 191.25
    EXPECT_EQ(Red(canvas, 3, 3), 255);
}

TEST(Canvas, CoversTheExactAreaOfATriangleOfAnySlope)
{
    Canvas canvas(40, 40, kWhite);
    canvas.Fill(Path::Polygon({{2.3f, 3.1f}, {37.9f, 8.7f}, {11.2f, 35.4f}}), kBlack);
    const double area = 0.5 * ((37.9 - 2.3) * (35.4 - 3.1) - (11.2 - 2.3) * (8.7 - 3.1));
    // Each of some 110 edge pixels is rounded to 1/255; the roundings partly cancel.
    EXPECT_NEAR(InkArea(canvas), area, 0.1);
}

TEST(Canvas, CoversTheAreaOfADiscAndOfARing)
{
    Canvas canvas(60, 60, kWhite);
    canvas.Disc({30.2f, 29.7f}, 20.0f, kBlack);
    EXPECT_NEAR(InkArea(canvas), M_PI * 400.0, 1.0);   // chords lie inside by up to a hundredth of a pixel
    Canvas ring(60, 60, kWhite);
    ring.Fill(Path::Sector({30.0f, 30.0f}, 10.0f, 20.0f, 0.0f, static_cast<float>(M_PI) / 2.0f), kBlack);
    EXPECT_NEAR(InkArea(ring), M_PI * (400.0 - 100.0) / 4.0, 1.0);   // chords, as above
    EXPECT_EQ(Red(ring, 40, 40), 0) << "angles grow clockwise, y downwards";
    EXPECT_EQ(Red(ring, 20, 20), 255);
}

TEST(Canvas, CutsAHoleWhereAnOutlineRunsTheOtherWay)
{
    Canvas canvas(8, 8, kWhite);
    Path frame = Path::Rectangle({1.0f, 1.0f}, 6.0f, 6.0f);
    frame.Append(Path::Polygon({{3.0f, 3.0f}, {3.0f, 5.0f}, {5.0f, 5.0f}, {5.0f, 3.0f}}));
    canvas.Fill(frame, kBlack);
    EXPECT_EQ(Red(canvas, 2, 2), 0);
    EXPECT_EQ(Red(canvas, 4, 4), 255);
    EXPECT_EQ(InkArea(canvas), 32.0);
}

TEST(Canvas, DrawsOverlappingPartsOfAStrokeOnce)
{
    Canvas canvas(30, 30, kWhite);
    canvas.Polyline({{5.0f, 5.0f}, {15.0f, 5.0f}, {15.0f, 15.0f}, {5.0f, 5.0f}}, 3.0f, Faded(kBlack, 0.5f));
    EXPECT_EQ(Red(canvas, 15, 5), 128);   // 255 / 2, rounded, and not darker at the join
    EXPECT_EQ(Red(canvas, 10, 4), 128);
}

TEST(Canvas, CutsOffWhatLiesOutsideAndPassesOverPointsThatAreNoNumbers)
{
    Canvas canvas(5, 5, kWhite);
    canvas.Rectangle({-100.0f, -1e30f}, 102.0f, 2e30f, kBlack);
    EXPECT_EQ(Red(canvas, 1, 2), 0);
    EXPECT_EQ(Red(canvas, 2, 2), 255);
    canvas.Rectangle({1e30f, 0.0f}, 1.0f, 1.0f, kBlack);
    canvas.Disc({std::numeric_limits<float>::quiet_NaN(), 2.0f}, 2.0f, kBlack);
    canvas.Disc({2.0f, 2.0f}, std::numeric_limits<float>::infinity(), kBlack);
    EXPECT_EQ(InkArea(canvas), 10.0);
}

TEST(Canvas, DrawsALetterWithinItsAdvanceAndCapitalHeight)
{
    Canvas canvas(100, 100, kWhite);
    canvas.Text("H", {20.0f, 80.0f}, {.size = 60.0f, .ink = kBlack});
    const auto width = TextWidth(Face::Regular, "H", 60.0f);
    EXPECT_NEAR(width, 60.0f * 1540.0f / 2048.0f, 1e-4f);   // the advance of H in DejaVu Sans, in floats
    int left = 100, right = -1, top = 100, bottom = -1;
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x)
            if (Red(canvas, x, y) < 128) {
                left = std::min(left, x), right = std::max(right, x);
                top = std::min(top, y), bottom = std::max(bottom, y);
            }
    EXPECT_GT(left, 20);
    EXPECT_LT(static_cast<float>(right), 20.0f + width);
    EXPECT_EQ(top, 36);      // 80 - 60 * 1493 / 2048 = 36.26
    EXPECT_EQ(bottom, 79);   // the base line
    EXPECT_EQ(Red(canvas, (left + right) / 2, top + 2), 255) << "open above the bar";
    EXPECT_EQ(Red(canvas, (left + right) / 2, (top + bottom) / 2), 0) << "the bar";
}

TEST(Canvas, AlignsTextByItsWidthAndCapitals)
{
    for (const Align align : {Align::Left, Align::Centre, Align::Right}) {
        Canvas canvas(200, 60, kWhite);
        canvas.Text("HH", {100.0f, 30.0f},
                    {.size = 40.0f, .ink = kBlack, .align = align, .rest = Rest::Middle});
        double x = 0.0, y = 0.0;
        for (int row = 0; row < 60; ++row)
            for (int column = 0; column < 200; ++column) {
                const double ink = 1.0 - Red(canvas, column, row) / 255.0;
                x += ink * (column + 0.5);
                y += ink * (row + 0.5);
            }
        const double half = TextWidth(Face::Regular, "HH", 40.0f) / 2.0;
        const double middle = align == Align::Left    ? 100.0 + half
                              : align == Align::Right ? 100.0 - half
                                                      : 100.0;
        EXPECT_NEAR(x / InkArea(canvas), middle, 0.1);   // anti-aliasing rounds to 1/255
        EXPECT_NEAR(y / InkArea(canvas), 30.0, 1.0);     // the bar of H lies above its middle
    }
}

TEST(Text, TakesEachCharacterOfUtf8OnceAndAnyOtherByteAsAQuestionMark)
{
    const float mark = TextWidth(Face::Regular, "?", 10.0f);
    EXPECT_EQ(TextWidth(Face::Regular, "\xC2\xB0", 10.0f), 10.0f * 1024.0f / 2048.0f) << "degree";
    EXPECT_EQ(TextWidth(Face::Regular, "\xE6\xBC\xA2", 10.0f), mark) << "a letter not built in";
    EXPECT_EQ(TextWidth(Face::Regular, "\xFF", 10.0f), mark);
    EXPECT_EQ(TextWidth(Face::Regular, "\xE6\xBC", 10.0f), 2.0f * mark) << "cut short";
    EXPECT_EQ(TextWidth(Face::Regular, "", 10.0f), 0.0f);
}

}   // namespace
}   // namespace QZ::Tool
