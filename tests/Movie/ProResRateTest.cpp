// SPDX-License-Identifier: MIT
#include "QZ/Platform/MovieWriter/ProResRate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>

namespace QZ::Platform::Movie {
namespace {

constexpr std::size_t kLast = std::size(kProResQuantisers) - 1;

// Published target rates in Mbit/s and frames a second; bits of a macroblock are rounded to integers.
TEST(ProResTargetSize, IsThatOfThePublishedRates)
{
    EXPECT_NEAR(static_cast<double>(ProResTargetSize(1920, 1080)) * 8 * 29.97, 147e6, 0.001 * 147e6);
    EXPECT_NEAR(static_cast<double>(ProResTargetSize(1280, 720)) * 8 * 59.94, 147e6, 0.001 * 147e6);
    EXPECT_NEAR(static_cast<double>(ProResTargetSize(720, 486)) * 8 * 29.97, 42e6, 0.001 * 42e6);
    EXPECT_EQ(ProResTargetSize(1, 1), 1004u / 8);
}

TEST(NextProResQuantiser, StaysWhereThePictureFits)
{
    EXPECT_EQ(NextProResQuantiser(0, 1000, 1000), 0u);
    EXPECT_EQ(NextProResQuantiser(0, 1, 1000), 0u);
    EXPECT_EQ(NextProResQuantiser(3, 1000, 1000), 3u);
}

TEST(NextProResQuantiser, IsCoarserByAsMuchAsThePictureIsTooLarge)
{
    EXPECT_EQ(NextProResQuantiser(0, 1001, 1000), 1u);
    EXPECT_EQ(NextProResQuantiser(0, 1501, 1000), 2u);   // 2 to 3 divides by 1.5 at most, 2 to 4 by 2
    EXPECT_EQ(NextProResQuantiser(0, 1000000, 1000), kLast);
    EXPECT_EQ(NextProResQuantiser(kLast, 1000000, 1000), kLast);
}

TEST(NextProResQuantiser, IsFinerOnceThatFitsWithRoomToSpare)
{
    EXPECT_EQ(NextProResQuantiser(1, 600, 1000), 0u);   // 600 x 3 / 2 = 900
    EXPECT_EQ(NextProResQuantiser(1, 601, 1000), 1u);
    EXPECT_EQ(NextProResQuantiser(kLast, 0, 1000), kLast - 1);
}

// From a quantiser to a coarser one a picture shrinks at most by their ratio.
TEST(NextProResQuantiser, ComesToRestOnEqualPictures)
{
    for (const double detail : {500.0, 3000.0, 5000.0, 20000.0, 70000.0}) {
        for (const double power : {0.3, 0.6, 1.0}) {
            std::size_t index = 0, changes = 0;
            for (int picture = 0; picture < 50; ++picture) {
                const double size = detail / std::pow(kProResQuantisers[index], power);
                const std::size_t next = NextProResQuantiser(index, static_cast<std::size_t>(size), 1000);
                changes += next != index ? 1 : 0;
                index = next;
            }
            EXPECT_LE(changes, kLast) << detail << " " << power;
        }
    }
}

}   // namespace
}   // namespace QZ::Platform::Movie
