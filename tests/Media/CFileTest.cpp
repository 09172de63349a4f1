// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/CFile.h"

#include <gtest/gtest.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <limits>
#include <numeric>

#include "QZ/Platform/ImageAssets.h"
#include "QZ/Platform/ImageIO.h"
#include "QZ/Platform/PhotoAlbum.h"
#include "tests/Support/Scratch.h"

using QZ::Foundation::CFile;
using QZ::Platform::ImageColorSpace;
using QZ::Test::FileBytes;
using QZ::Test::Scratch;

namespace {

using Bytes = std::vector<unsigned char>;

/// A picture as libpng's other interface reads it, in the file's own layout and without colour conversion.
struct Picture {
    int width = 0, height = 0, colorType = -1, bitDepth = 0;
    Bytes pixels;
    Bytes profile;   ///< of the iCCP chunk
    std::string profileName;
    std::string chunks;   ///< their names, in order, each one once
};

std::string ChunkNames(const Bytes& file)
{
    std::string names;
    for (std::size_t at = 8; at + 8 <= file.size();) {
        const std::size_t size = std::size_t{file[at]} << 24 | std::size_t{file[at + 1]} << 16 |
                                 std::size_t{file[at + 2]} << 8 | file[at + 3];
        const std::string name(file.begin() + static_cast<std::ptrdiff_t>(at) + 4,
                               file.begin() + static_cast<std::ptrdiff_t>(at) + 8);
        if (!names.ends_with(name))
            names += (names.empty() ? "" : " ") + name;
        at += 12 + size;
    }
    return names;
}

Picture Read(const std::string& path)
{
    Picture picture;
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file)
        return picture;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    picture.width = static_cast<int>(png_get_image_width(png, info));
    picture.height = static_cast<int>(png_get_image_height(png, info));
    picture.colorType = png_get_color_type(png, info);
    picture.bitDepth = png_get_bit_depth(png, info);
    const std::size_t rowBytes = png_get_rowbytes(png, info);
    for (int y = 0; y < picture.height; ++y) {
        const png_bytep row = png_get_rows(png, info)[y];
        picture.pixels.insert(picture.pixels.end(), row, row + rowBytes);
    }
    png_charp name = nullptr;
    png_bytep profile = nullptr;
    png_uint_32 size = 0;
    int compression = 0;
    if (png_get_iCCP(png, info, &name, &compression, &profile, &size)) {
        picture.profileName = name;
        picture.profile.assign(profile, profile + size);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(file);
    picture.chunks = ChunkNames(FileBytes(path));
    return picture;
}

Bytes ProfileOf(ImageColorSpace space)
{
    const auto profile = QZ::Platform::ICCProfileOf(space);
    return {profile.begin(), profile.end()};
}

std::vector<_Float16> Halves(std::initializer_list<float> values)
{
    std::vector<_Float16> halves;
    for (const float value : values)
        halves.push_back(static_cast<_Float16>(value));
    return halves;
}

class CFileTest : public testing::Test {
protected:
    CFileTest()
    {
        std::filesystem::create_directory(album);
        QZ::Platform::PhotoAlbum::SetDirectory(album);
        QZ::Platform::ImageAssets::SetDirectory(scratch.Path());
    }
    ~CFileTest() override
    {
        QZ::Platform::PhotoAlbum::SetDirectory(std::nullopt);
        QZ::Platform::ImageAssets::SetDirectory(std::nullopt);
    }

    const Scratch scratch;
    const std::string album = scratch / "album";
    const std::string path = scratch / "picture.png";
};

const Bytes kTwoPixels = {10, 20, 30, 40, 255, 0, 128, 0};

}   // namespace

TEST_F(CFileTest, SavesRGBAAsItIs)
{
    CFile::SaveRGBAToFile(path, 2, 1, false, false, false, kTwoPixels.data());
    const Picture picture = Read(path);
    EXPECT_EQ(picture.width, 2);
    EXPECT_EQ(picture.height, 1);
    EXPECT_EQ(picture.colorType, PNG_COLOR_TYPE_RGB_ALPHA);
    EXPECT_EQ(picture.bitDepth, 8);
    EXPECT_EQ(picture.pixels, kTwoPixels);
}

TEST_F(CFileTest, TagsColoursWithARealProfileAndNothingElse)
{
    CFile::SaveRGBAToFile(path, 2, 1, false, false, false, kTwoPixels.data());
    const Picture srgb = Read(path);
    EXPECT_EQ(srgb.chunks, "IHDR iCCP IDAT IEND");
    EXPECT_EQ(srgb.profileName, "sRGB");
    EXPECT_EQ(srgb.profile, ProfileOf(ImageColorSpace::SRGB));
    CFile::SaveRGBAToFile(path, 2, 1, false, false, true, kTwoPixels.data());
    const Picture p3 = Read(path);
    EXPECT_EQ(p3.chunks, "IHDR iCCP IDAT IEND");
    EXPECT_EQ(p3.profileName, "Display P3");
    EXPECT_EQ(p3.profile, ProfileOf(ImageColorSpace::DisplayP3));
    EXPECT_EQ(p3.pixels, kTwoPixels);
}

TEST_F(CFileTest, OpaqueSavesEveryAlphaAs255)
{
    CFile::SaveRGBAToFile(path, 2, 1, true, false, false, Bytes(8, 0).data());
    EXPECT_EQ(Read(path).pixels, (Bytes{0, 0, 0, 255, 0, 0, 0, 255}));
}

TEST_F(CFileTest, SwapRBExchangesRedAndBlue)
{
    CFile::SaveRGBAToFile(path, 2, 1, false, true, false, kTwoPixels.data());
    EXPECT_EQ(Read(path).pixels, (Bytes{30, 20, 10, 40, 128, 0, 255, 0}));
    CFile::SaveRGBAToFile(path, 2, 1, true, true, false, kTwoPixels.data());
    EXPECT_EQ(Read(path).pixels, (Bytes{30, 20, 10, 255, 128, 0, 255, 255}));
}

TEST_F(CFileTest, NeverChangesTheCallersBuffer)
{
    Bytes pixels = kTwoPixels;
    CFile::SaveRGBAToFile(path, 2, 1, true, true, false, pixels.data());
    CFile::SaveRGBAToAlbum(2, 1, true, true, false, pixels.data());
    EXPECT_EQ(pixels, kTwoPixels);
}

TEST_F(CFileTest, RoundsAndClampsHalfFloats)
{
    // 0.5 * 255 + 0.5 = 128; NaN has no number and is saved as 0.
    const auto halves =
        Halves({-0.5f, 0.0f, 0.5f, 1.0f, 2.0f, std::numeric_limits<float>::infinity(),
                -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()});
    CFile::SaveRGBAToFile(path, 2, 1, false, false, false, halves.data());
    EXPECT_EQ(Read(path).pixels, (Bytes{0, 0, 128, 255, 255, 255, 0, 0}));
}

TEST_F(CFileTest, SavesHalfFloatsWithTheSameOptions)
{
    const auto halves = Halves({0.0f, 0.5f, 1.0f, 0.0f});
    CFile::SaveRGBAToFile(path, 1, 1, true, true, true, halves.data());
    const Picture picture = Read(path);
    EXPECT_EQ(picture.pixels, (Bytes{255, 128, 0, 255}));
    EXPECT_EQ(picture.profile, ProfileOf(ImageColorSpace::DisplayP3));
}

TEST_F(CFileTest, SavesAPlaneAsUntaggedGrey)
{
    for (const bool ignored : {false, true}) {
        CFile::SaveRToFile(path, 3, 2, ignored, Bytes{0, 1, 2, 128, 254, 255}.data());
        const Picture picture = Read(path);
        EXPECT_EQ(picture.colorType, PNG_COLOR_TYPE_GRAY);
        EXPECT_EQ(picture.bitDepth, 8);
        EXPECT_EQ(picture.width, 3);
        EXPECT_EQ(picture.height, 2);
        EXPECT_EQ(picture.pixels, (Bytes{0, 1, 2, 128, 254, 255}));
        EXPECT_EQ(picture.chunks, "IHDR IDAT IEND");
    }
}

TEST_F(CFileTest, SavesTheFirstQuarterOfHalfFloatsAsGrey)
{
    const auto halves = Halves({0.0f, 0.5f, 1.0f, -1.0f, 0.25f, 0.25f, 0.25f, 0.25f,   //
                                0.75f, 0.75f, 0.75f, 0.75f, 0.75f, 0.75f, 0.75f, 0.75f});
    CFile::SaveRToFile(path, 2, 2, false, halves.data());
    const Picture picture = Read(path);
    EXPECT_EQ(picture.colorType, PNG_COLOR_TYPE_GRAY);
    EXPECT_EQ(picture.pixels, (Bytes{0, 128, 255, 0}));
}

TEST_F(CFileTest, SavesAPlaneAsOpaqueGreyWithoutScaling)
{
    CFile::SaveRAsRRR255ToFile(path, 3, 1, true, Bytes{0, 1, 200}.data());
    const Picture picture = Read(path);
    EXPECT_EQ(picture.colorType, PNG_COLOR_TYPE_RGB_ALPHA);
    EXPECT_EQ(picture.pixels, (Bytes{0, 0, 0, 255, 1, 1, 1, 255, 200, 200, 200, 255}));
    EXPECT_EQ(picture.profile, ProfileOf(ImageColorSpace::DisplayP3));
}

TEST_F(CFileTest, SavesAMaskAsBlackAndWhiteIntoTheAlbum)
{
    const Bytes rgba = {0, 9, 9, 9, 1, 9, 9, 9, 200, 9, 9, 9};
    CFile::SaveRAsRRR255ToAlbum(3, 1, false, rgba.data());
    const Picture picture = Read(album + "/IMG_0001.png");
    EXPECT_EQ(picture.pixels, (Bytes{0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255, 255}));
    EXPECT_EQ(picture.profile, ProfileOf(ImageColorSpace::SRGB));
    CFile::SaveRAsRRR255ToAlbum(3, 1, true, rgba.data());
    EXPECT_EQ(Read(album + "/IMG_0002.png").profile, ProfileOf(ImageColorSpace::DisplayP3));
}

TEST_F(CFileTest, SavesTheRedOfRGBAAsGrey)
{
    CFile::SaveRGBAAsRToFile(path, 2, 1, true, kTwoPixels.data());
    const Picture picture = Read(path);
    EXPECT_EQ(picture.colorType, PNG_COLOR_TYPE_GRAY);
    EXPECT_EQ(picture.pixels, (Bytes{10, 255}));
}

TEST_F(CFileTest, AddsPicturesToTheAlbumWithoutOverwriting)
{
    CFile::SaveRGBAToAlbum(2, 1, false, false, false, kTwoPixels.data());
    CFile::SaveRGBAToAlbum(1, 1, true, true, true, Halves({1.0f, 0.0f, 0.0f, 0.0f}).data());
    EXPECT_EQ(Read(album + "/IMG_0001.png").pixels, kTwoPixels);
    EXPECT_EQ(Read(album + "/IMG_0002.png").pixels, (Bytes{0, 0, 255, 255}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(album), {}), 2);
}

TEST_F(CFileTest, IsSilentlyRefusedByNoAlbum)
{
    QZ::Platform::PhotoAlbum::SetDirectory(std::nullopt);
    CFile::SaveRGBAToAlbum(2, 1, false, false, false, kTwoPixels.data());
    QZ::Platform::PhotoAlbum::SetDirectory(scratch / "no such album");
    CFile::SaveRGBAToAlbum(2, 1, false, false, false, kTwoPixels.data());
    EXPECT_EQ(scratch.Count(), 1u);   // the album's folder
}

TEST_F(CFileTest, WritesTheSameBytesEveryTime)
{
    CFile::SaveRGBAToFile(path, 2, 1, false, false, true, kTwoPixels.data());
    const Bytes first = FileBytes(path);
    CFile::SaveRGBAToFile(path, 2, 1, false, false, true, kTwoPixels.data());
    EXPECT_EQ(FileBytes(path), first);
}

TEST_F(CFileTest, LeavesNothingWhereNothingCanBeWritten)
{
    CFile::SaveRGBAToFile(scratch / "no such folder/picture.png", 2, 1, false, false, false,
                          kTwoPixels.data());
    std::filesystem::create_directory(path);
    scratch.Touch("picture.png/inside");   // a folder that a rename cannot replace
    CFile::SaveRGBAToFile(path, 2, 1, false, false, false, kTwoPixels.data());
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_EQ(scratch.Count(), 2u);   // the folder, and the album's
}

TEST_F(CFileTest, SavesNoImpossibleSizes)
{
    CFile::SaveRGBAToFile(path, 0, 1, false, false, false, kTwoPixels.data());
    CFile::SaveRGBAToFile(path, 2, -1, false, false, false, kTwoPixels.data());
    CFile::SaveRGBAToFile(path, 65536, 65536, false, false, false, kTwoPixels.data());   // 2^34 bytes
    CFile::SaveRGBAToFile(path, -2, -1, false, false, false, Halves({0, 0, 0, 0}).data());
    CFile::SaveRToFile(path, 0, 0, false, kTwoPixels.data());
    CFile::SaveRToFile(path, 65536, 65536, false, kTwoPixels.data());
    CFile::SaveRToFile(path, -1, 1, false, Halves({0, 0, 0, 0}).data());
    CFile::SaveRAsRRR255ToFile(path, 0, 1, false, kTwoPixels.data());
    CFile::SaveRGBAAsRToFile(path, 1, 0, false, kTwoPixels.data());
    CFile::SaveRAsRRR255ToAlbum(0, 5, false, kTwoPixels.data());
    EXPECT_EQ(scratch.Count(), 1u);
    EXPECT_TRUE(std::filesystem::is_empty(album));
}

TEST_F(CFileTest, CompareOfAPictureWithItselfIsZero)
{
    CFile::SaveRGBAToFile(scratch / "a.png", 2, 1, false, false, false, kTwoPixels.data());
    EXPECT_EQ(CFile::Compare("a", "a"), 0u);
    EXPECT_EQ(CFile::Compare("a.png", "a"), 0u);
}

TEST_F(CFileTest, CompareCountsPixelsAndNotBytes)
{
    CFile::SaveRGBAToFile(scratch / "a.png", 2, 1, false, false, false, kTwoPixels.data());
    CFile::SaveRGBAToFile(scratch / "b.png", 2, 1, false, true, false, kTwoPixels.data());
    Bytes alpha = kTwoPixels;
    alpha[7] = 1;
    CFile::SaveRGBAToFile(scratch / "c.png", 2, 1, false, false, true, alpha.data());
    EXPECT_EQ(CFile::Compare("a", "b"), 2u);
    EXPECT_EQ(CFile::Compare("a", "c"), 1u);   // the alpha counts, the profile does not
}

TEST_F(CFileTest, CompareTakesTheSizeOfTheFirst)
{
    Bytes grey(6);
    std::iota(grey.begin(), grey.end(), static_cast<unsigned char>(1));
    CFile::SaveRToFile(scratch / "wide.png", 3, 2, false, grey.data());
    CFile::SaveRToFile(scratch / "narrow.png", 2, 2, false, Bytes{1, 2, 4, 5}.data());
    EXPECT_EQ(CFile::Compare("narrow", "wide"), 0u);
    // The third of wide's first row meets the first of narrow's second, and its last lies beyond narrow's
    // end.
    EXPECT_EQ(CFile::Compare("wide", "narrow"), 2u);
}

TEST_F(CFileTest, CompareReadsEachPictureByItsOwnLayout)
{
    CFile::SaveRToFile(scratch / "grey.png", 2, 1, false, Bytes{10, 255}.data());
    CFile::SaveRGBAToFile(scratch / "rgba.png", 2, 1, false, false, false, kTwoPixels.data());
    EXPECT_EQ(CFile::Compare("grey", "rgba"), 0u);   // one byte each: 10 and 255 at b's pixels
    EXPECT_EQ(CFile::Compare("rgba", "grey"), 2u);
}

TEST_F(CFileTest, CompareTakesAMissingPictureForAllDifferent)
{
    CFile::SaveRGBAToFile(scratch / "a.png", 2, 1, false, false, false, kTwoPixels.data());
    EXPECT_EQ(CFile::Compare("a", "none"), 2u);
    EXPECT_EQ(CFile::Compare("none", "a"), 2u);
    EXPECT_EQ(CFile::Compare("none", "none"), 0u);
}
