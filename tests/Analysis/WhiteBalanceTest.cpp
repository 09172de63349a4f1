// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "tests/Support/Colours.h"
#include "tests/Support/Floats.h"

namespace {

using QZ::Foundation::CColor;
using QZ::Foundation::CWhiteBalance;
using QZ::Test::Colour;
using QZ::Test::Converted;
using QZ::Test::kNaN;
using QZ::Test::Matrix;
using QZ::Test::SameBits;
using testing::ElementsAre;

/// The matrix that a light of linear RGB is corrected by.
Matrix MatrixOf(const Colour& light, bool displayP3 = false, CColor::EIlluminant illuminant = CColor::eD65)
{
    Matrix matrix;
    CWhiteBalance::ChromaticAdaptationMatrix(light, illuminant, displayP3, matrix);
    return matrix;
}

bool Same(const Matrix& a, const Matrix& b)
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            if (!SameBits(a(row, column), b(row, column)))
                return false;
    return true;
}

Matrix GrayWorld(int width, int height, const std::vector<Colour>& linear)
{
    Matrix matrix;
    CWhiteBalance::GrayWorld(CColor::eD65, true, false, width, height, linear, matrix);
    return matrix;
}
Matrix MaxGray(int width, int height, const std::vector<Colour>& linear)
{
    Matrix matrix;
    CWhiteBalance::MaxGray(CColor::eD65, true, false, width, height, linear, matrix);
    return matrix;
}
Matrix LSRS(bool largeTiles, int width, int height, const std::vector<Colour>& linear)
{
    Matrix matrix;
    CWhiteBalance::LSRS(CColor::eD65, true, false, largeTiles, width, height, linear, matrix);
    return matrix;
}

/// One pixel through Balance(), with a light that asks for no correction but rounding.
std::vector<int> Balanced(const Colour& linear, bool nonlinear, bool displayP3,
                          CColor::EIlluminant illuminant = CColor::eD65)
{
    std::vector<unsigned char> rgba(6, 77);
    CWhiteBalance::Balance(illuminant, nonlinear, displayP3, CColor::XYZReference(illuminant), 1, 1, {linear},
                           rgba.data());
    EXPECT_EQ(rgba[4], 77) << "four bytes a pixel";
    return {rgba[0], rgba[1], rgba[2], rgba[3]};
}

/// The byte that a value of 0 to 1 becomes, the fraction dropped.
int ByteOf(float unit)
{
    return static_cast<int>(std::clamp(unit * 255.0f, 0.0f, 255.0f));
}

}   // namespace

TEST(UCharToCVector3fBuffer, DecodesThreeBytesAndIgnoresTheFourth)
{
    const unsigned char rgba[] = {0, 128, 255, 9, 255, 1, 64, 200};
    std::vector<Colour> linear(7);
    CWhiteBalance::UCharToCVector3fBuffer(false, 2, 1, rgba, linear);
    ASSERT_EQ(linear.size(), 2u);
    EXPECT_EQ(linear[0].x, 0.0f);
    EXPECT_EQ(linear[0].y, 128.0f * 0.003921569f);
    EXPECT_EQ(linear[0].z, 1.0f);
    EXPECT_EQ(linear[1].z, 64.0f * 0.003921569f);

    CWhiteBalance::UCharToCVector3fBuffer(true, 1, 2, rgba, linear);
    const Colour encoded(255.0f * 0.003921569f, 1.0f * 0.003921569f, 64.0f * 0.003921569f);
    EXPECT_TRUE(SameBits(
        linear[1], Converted([](const Colour& in,
                                Colour& out) { CColor::NonlinearToLinearToneCurve(false, false, in, out); },
                             encoded)));
}

TEST(UCharToCVector3fBuffer, EmptiesTheBufferOfAPictureWithoutPixels)
{
    std::vector<Colour> linear(7);
    CWhiteBalance::UCharToCVector3fBuffer(true, 0, 5, nullptr, linear);
    EXPECT_TRUE(linear.empty());
}

TEST(SourceIlluminant, IsTheChromaticityOfTheLightAtLuminanceOne)
{
    // Twice the white is the white; the matrix rows sum to it within their seven digits.
    Colour white;
    CWhiteBalance::SourceIlluminant({2, 2, 2}, CColor::eD65, false, white);
    EXPECT_NEAR(white.x, 0.95047f, 2e-6f);
    EXPECT_EQ(white.y, 1.0f);
    EXPECT_NEAR(white.z, 1.08883f, 2e-6f);
    CWhiteBalance::SourceIlluminant({2, 2, 2}, CColor::eD50, true, white);
    EXPECT_NEAR(white.x, 0.96421f, 5e-5f);   // the columns of Display P3 have five digits
    EXPECT_NEAR(white.z, 0.82519f, 4e-4f);
}

TEST(SourceIlluminant, TakesThePrimariesThatItIsTold)
{
    Colour sRGB, displayP3;
    CWhiteBalance::SourceIlluminant({1, 0, 0}, CColor::eD65, false, sRGB);
    CWhiteBalance::SourceIlluminant({1, 0, 0}, CColor::eD65, true, displayP3);
    EXPECT_NEAR(sRGB.x, 0.4124564 / 0.2126729, 1e-6);
    EXPECT_NEAR(displayP3.x, 0.48661506 / 0.22900409, 1e-6);
}

TEST(SourceIlluminant, OfNoLightIsTheReferenceWhite)
{
    for (const auto illuminant : QZ::Test::kIlluminants) {
        Colour white;
        CWhiteBalance::SourceIlluminant({0, 0, 0}, illuminant, false, white);
        EXPECT_TRUE(SameBits(white, CColor::XYZReference(illuminant)));
    }
}

TEST(WhiteBalanceMatrix, CarriesTheLightToTheReferenceWhite)
{
    for (const auto illuminant : QZ::Test::kIlluminants) {
        for (const bool displayP3 : QZ::Test::kFlags) {
            const Colour light(0.9f, 0.6f, 0.3f);
            Colour white;
            CWhiteBalance::SourceIlluminant(light, illuminant, displayP3, white);
            const Colour carried = MatrixOf(light, displayP3, illuminant) * white;
            const Colour& reference = CColor::XYZReference(illuminant);
            EXPECT_NEAR(carried.x, reference.x, 2e-6f);   // Bradford's inverse has seven digits
            EXPECT_NEAR(carried.y, reference.y, 2e-6f);
            EXPECT_NEAR(carried.z, reference.z, 2e-6f);
        }
    }
}

TEST(GrayWorldEstimate, IsTheMean)
{
    const std::vector<Colour> linear = {{0.25f, 0.5f, 0.125f}, {0.75f, 0.25f, 0.375f}};
    EXPECT_TRUE(Same(GrayWorld(2, 1, linear), MatrixOf({0.5f, 0.375f, 0.25f})));
    EXPECT_TRUE(Same(GrayWorld(1, 1, linear), MatrixOf({0.25f, 0.5f, 0.125f})));
}

// 2^24 + 1 ones: a sum in single precision would stop at 2^24.
TEST(GrayWorldEstimate, SumsInDoublePrecision)
{
    std::vector<Colour> linear(5000, Colour(1.0f, 1.0f, 1.0f));
    linear.front() = Colour(1.0f, 1.0f, 16777216.0f);
    const auto mean = static_cast<float>((16777216.0 + 4999.0) / 5000.0);
    EXPECT_TRUE(Same(GrayWorld(50, 100, linear), MatrixOf({1.0f, 1.0f, mean})));
}

TEST(GrayWorldEstimate, OfNoPixelsIsNaN)
{
    EXPECT_TRUE(std::isnan(GrayWorld(0, 3, {})(0, 0)));
}

TEST(MaxGrayEstimate, IsTheGreatestValueOfEachChannel)
{
    const std::vector<Colour> linear = {{0.2f, 0.9f, kNaN}, {0.7f, kNaN, -2.0f}, {kNaN, 0.1f, 0.3f}};
    EXPECT_TRUE(Same(MaxGray(3, 1, linear), MatrixOf({0.7f, 0.9f, 0.3f})));
    EXPECT_TRUE(Same(MaxGray(2, 1, linear), MatrixOf({0.7f, 0.9f, 0.0f})));
    EXPECT_TRUE(Same(MaxGray(3, -1, linear), MatrixOf({0.0f, 0.0f, 0.0f})));
}

TEST(Estimates, TakeTheFlagsOfTheMatrixAndIgnoreTheCurve)
{
    const std::vector<Colour> linear(64, Colour(0.5f, 0.375f, 0.25f));
    for (const auto illuminant : QZ::Test::kIlluminants) {
        for (const bool displayP3 : QZ::Test::kFlags) {
            const Matrix expected = MatrixOf({0.5f, 0.375f, 0.25f}, displayP3, illuminant);
            for (const bool nonlinear : QZ::Test::kFlags) {
                Matrix matrix;
                CWhiteBalance::GrayWorld(illuminant, nonlinear, displayP3, 8, 8, linear, matrix);
                EXPECT_TRUE(Same(matrix, expected));
                CWhiteBalance::MaxGray(illuminant, nonlinear, displayP3, 8, 8, linear, matrix);
                EXPECT_TRUE(Same(matrix, expected));
                Matrix other;
                CWhiteBalance::LSRS(illuminant, false, displayP3, true, 8, 8, linear, matrix);
                CWhiteBalance::LSRS(illuminant, nonlinear, displayP3, true, 8, 8, linear, other);
                EXPECT_TRUE(Same(matrix, other));
            }
        }
    }
}

TEST(Estimates, OfAUniformGreyAskForNoCorrection)
{
    const std::vector<Colour> linear(400, Colour(0.5f, 0.5f, 0.5f));
    for (const Matrix& matrix : {GrayWorld(20, 20, linear), MaxGray(20, 20, linear),
                                 LSRS(false, 20, 20, linear), LSRS(true, 20, 20, linear)})
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column)
                EXPECT_NEAR(matrix(row, column), row == column ? 1.0f : 0.0f, 3e-6f);   // seven digits
}

TEST(Estimates, OfBlackAskForNoCorrection)
{
    const std::vector<Colour> black(400);
    EXPECT_TRUE(Same(MaxGray(20, 20, black), MatrixOf({0, 0, 0})));
    EXPECT_TRUE(Same(LSRS(false, 20, 20, black), MatrixOf({0, 0, 0})));
}

TEST(LSRSTileDimension, IsTheSideOfAboutSoManyTiles)
{
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(false, 640, 480), 117);
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(true, 640, 480), 334);
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(false, 20, 18), 4);
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(false, 5, 1), 0);   // sqrt(5 / 22.5) is 0.47
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(false, 6, 1), 1);   // sqrt(6 / 22.5) is 0.52
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(true, 1, 1), 1);    // sqrt(1 / 2.75) is 0.60
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(true, 0, 9), 0);
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(true, -4, 9), 0);
    EXPECT_EQ(CWhiteBalance::LSRSTileDimension(true, 46340, 46340), 27944);   // 46340 / sqrt(2.75) is 27943.9
}

// 20 x 18 with tiles of 4: bands of rows 14-17, 10-13, 6-9, 2-5 and 0-1, and five columns in each.
TEST(LSRSEstimate, WalksTheTilesFromTheBottomLeft)
{
    const std::vector<Colour> linear = QZ::Test::RandomColours(20 * 18);
    constexpr int bands[][2] = {{14, 17}, {10, 13}, {6, 9}, {2, 5}, {0, 1}};
    std::vector<Colour> maxima, sums;
    for (const auto& [top, bottom] : bands) {
        for (int left = 0; left < 20; left += 4) {
            Colour maximum, sum;
            for (int y = top; y <= bottom; ++y) {
                for (int x = left; x < left + 4; ++x) {
                    const Colour& pixel = linear[static_cast<std::size_t>(y * 20 + x)];
                    maximum.Set(std::max(maximum.x, pixel.x), std::max(maximum.y, pixel.y),
                                std::max(maximum.z, pixel.z));
                    sum += pixel;
                }
            }
            maxima.push_back(maximum);
            sums.push_back(sum);
        }
    }
    Matrix matrix;
    CWhiteBalance::LSRS(CColor::eD65, true, false, maxima, sums, matrix);
    EXPECT_TRUE(Same(LSRS(false, 20, 18, linear), matrix));
}

TEST(LSRSEstimate, CutsTheTilesAtTheRightShort)
{
    // 7 x 7 with large tiles: sqrt(49 / 2.75) = 4.2, so tiles of 4 and of 3.
    ASSERT_EQ(CWhiteBalance::LSRSTileDimension(true, 7, 7), 4);
    std::vector<Colour> linear(49, Colour(0.5f, 0.5f, 0.5f));
    linear[6] = Colour(1.0f, 0.5f, 0.25f);   // in the tile of rows 0-2 and columns 4-6
    Matrix matrix;
    CWhiteBalance::LSRS(CColor::eD65, true, false,
                        {{0.5f, 0.5f, 0.5f}, {0.5f, 0.5f, 0.5f}, {0.5f, 0.5f, 0.5f}, {1.0f, 0.5f, 0.5f}},
                        {{8, 8, 8}, {6, 6, 6}, {6, 6, 6}, {5.0f, 4.5f, 4.25f}}, matrix);
    EXPECT_TRUE(Same(LSRS(true, 7, 7, linear), matrix));
}

// Tiles {max 0.5, sum 2} and {max 0.25, sum 0.5}: (2 + 0.5) / (4 + 2) in each of the first two channels.
TEST(LSRSEstimate, LeavesOutWhatIsNotAboveZero)
{
    Matrix matrix;
    CWhiteBalance::LSRS(CColor::eD65, true, false,
                        {{0.5f, 0.5f, 0.5f}, {0.25f, 0.0f, -1.0f}, {kNaN, kNaN, kNaN}},
                        {{2, 2, -2}, {0.5f, 0.5f, 0.5f}, {0, 0, 0}, {9, 9, 9}}, matrix);
    EXPECT_TRUE(Same(matrix, MatrixOf({2.5f * (1.0f / 6.0f), 2.5f * (1.0f / 4.0f), 0.0f})));
}

TEST(LSRSEstimate, OfAPictureTooSmallForATileIsZero)
{
    const std::vector<Colour> linear(5, Colour(0.9f, 0.5f, 0.1f));
    EXPECT_TRUE(Same(LSRS(false, 5, 1, linear), MatrixOf({0, 0, 0})));
    EXPECT_TRUE(Same(LSRS(true, 0, 0, {}), MatrixOf({0, 0, 0})));
    EXPECT_TRUE(Same(LSRS(true, -2, -3, {}), MatrixOf({0, 0, 0})));
}

TEST(Balance, WritesTheFourKindsOfOutput)
{
    const Colour linear(0.6f, 0.3f, 0.1f);
    for (const auto illuminant : QZ::Test::kIlluminants) {
        const Colour& white = CColor::XYZReference(illuminant);
        const Colour adapted = CColor::ChromaticAdaptationMatrix(white, white) *
                               Converted(CColor::LinearRGBToXYZ, illuminant, linear);
        const Colour expected[] = {Converted(CColor::XYZToLinearRGB, false, illuminant, adapted),
                                   Converted(CColor::XYZToLinearDisplayP3, illuminant, adapted),
                                   Converted(CColor::XYZToSRGB, false, false, illuminant, adapted),
                                   Converted(CColor::XYZToDisplayP3, false, illuminant, adapted)};
        for (const bool nonlinear : QZ::Test::kFlags) {
            for (const bool displayP3 : QZ::Test::kFlags) {
                const Colour& e = expected[(nonlinear ? 2 : 0) + (displayP3 ? 1 : 0)];
                EXPECT_THAT(Balanced(linear, nonlinear, displayP3, illuminant),
                            ElementsAre(ByteOf(e.x), ByteOf(e.y), ByteOf(e.z), 255));
            }
        }
    }
}

// The output alone has the primaries of Display P3: the red of sRGB is not the red of Display P3.
TEST(Balance, ReadsSRGBPrimariesForDisplayP3Too)
{
    const std::vector<int> red = Balanced({1, 0, 0}, true, true);
    EXPECT_NEAR(red[0], 234, 1);   // sRGB red is (0.9175, 0.2003, 0.1386) in Display P3
    EXPECT_NEAR(red[1], 51, 1);
    EXPECT_NEAR(red[2], 35, 1);
}

TEST(Balance, ClampsAndDropsFractions)
{
    for (const bool nonlinear : QZ::Test::kFlags) {
        for (const bool displayP3 : QZ::Test::kFlags) {
            // Encoded sRGB is clamped before it is encoded, and 1.055f - 0.055f is the float below 1.
            const int top = nonlinear && !displayP3 ? 254 : 255;
            EXPECT_THAT(Balanced({9, 9, 9}, nonlinear, displayP3), ElementsAre(top, top, top, 255));
            EXPECT_THAT(Balanced({-9, -9, -9}, nonlinear, displayP3), ElementsAre(0, 0, 0, 255));
            EXPECT_THAT(Balanced({kNaN, kNaN, kNaN}, nonlinear, displayP3), ElementsAre(0, 0, 0, 255));
        }
    }
    constexpr float grey = 254.9f / 255.0f;
    EXPECT_THAT(Balanced({grey, grey, grey}, false, false), ElementsAre(254, 254, 254, 255));
}

TEST(Balance, WritesNothingForAPictureWithoutPixels)
{
    std::vector<unsigned char> rgba(4, 77);
    CWhiteBalance::Balance(CColor::eD65, true, false, {1, 1, 1}, 0, 4, {}, rgba.data());
    CWhiteBalance::Balance(CColor::eD65, true, false, {1, 1, 1}, -1, 4, {}, rgba.data());
    EXPECT_EQ(rgba, std::vector<unsigned char>(4, 77));
}
