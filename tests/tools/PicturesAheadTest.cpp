// SPDX-License-Identifier: MIT
#include "tools/qz/movie/PicturesAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

#include "tools/qz/Failure.h"

namespace {

using namespace QZ::Platform;
using namespace QZ::Tool;

/// Pictures of one pixel that tell their number, and perhaps an error in place of the rest.
class NumberedMovie final : public MovieReader {
public:
    explicit NumberedMovie(int count, bool isDamaged = false) : m_count(count), m_isDamaged(isDamaged) {}

    const MovieDescription& Description() const override { return m_description; }
    std::optional<MoviePicture> NextPicture(MovieReadError& error) override
    {
        error = {};
        if (given == m_count) {
            if (m_isDamaged)
                error = {MovieReadError::Kind::Damaged, "breaks off"};
            return std::nullopt;
        }
        MoviePicture picture = {PixelBuffer::Create({.width = 1, .height = 1}), MakeTime(given, 30)};
        picture.pixels->BaseAddress()[2] = static_cast<unsigned char>(given++);   // red, of BGRA
        return picture;
    }
    std::shared_ptr<SampleBuffer> NextSound(MovieReadError&) override { return nullptr; }

    std::atomic<int> given = 0;

private:
    MovieDescription m_description;
    const int m_count;
    const bool m_isDamaged;
};

// The longer for some pictures than for others, so that they overtake each other.
void Linger(Image& image)
{
    std::this_thread::sleep_for(std::chrono::microseconds(image.pixels[0] * 7919 % 1500));
    image.pixels[1] = image.pixels[0];
}

TEST(PicturesAhead, GivesWorkedPicturesInTheirOrder)
{
    NumberedMovie movie(200);
    PicturesAhead pictures(movie, "a.mov", Linger);
    for (int i = 0; i < 200; ++i) {
        const std::optional<WorkedPicture> picture = pictures.Next();
        ASSERT_TRUE(picture.has_value()) << i;
        EXPECT_EQ(picture->image.pixels[0], i);
        EXPECT_EQ(picture->image.pixels[1], i);
        EXPECT_EQ(picture->time.value, i);
    }
    EXPECT_FALSE(pictures.Next().has_value());
    EXPECT_FALSE(pictures.Next().has_value()) << "and stays at the end";
}

TEST(PicturesAhead, ThrowsInItsTurnWhatAnOperationThrows)
{
    NumberedMovie movie(20);
    PicturesAhead pictures(movie, "a.mov", [](Image& image) {
        Linger(image);
        if (image.pixels[0] == 7)
            throw Failure(Status::Malformed, "", "the seventh", "");
    });
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(pictures.Next()->image.pixels[0], i);
    EXPECT_THROW((void)pictures.Next(), Failure);
}

TEST(PicturesAhead, TellsBehindTheLastPictureThatTheMovieBreaksOff)
{
    NumberedMovie movie(5, true);
    PicturesAhead pictures(movie, "a.mov", Linger);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(pictures.Next()->image.pixels[0], i);
    try {
        (void)pictures.Next();
        ADD_FAILURE() << "no failure";
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "a.mov: breaks off");
        EXPECT_EQ(failure.status, Status::Malformed);
    }
}

TEST(PicturesAhead, ReadsAFewPicturesAheadAndStopsWhenItIsGivenUp)
{
    NumberedMovie movie(100000);
    {
        PicturesAhead pictures(movie, "a.mov", Linger);
        (void)pictures.Next();
    }
    EXPECT_LE(movie.given, 1 + 2 * 16);
}

}   // namespace
