// SPDX-License-Identifier: MIT
#include "QZ/Platform/ImageIO.h"

#include <gtest/gtest.h>
#include <lcms2.h>
#include <lcms2_plugin.h>
#include <png.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/Support/Scratch.h"

using namespace QZ::Platform;
using QZ::Test::FileBytes;
using QZ::Test::Scratch;

namespace {

using Bytes = std::vector<unsigned char>;

/// A PNG file as libpng's simplified interface writes it.
Bytes Written(png_uint_32 format, int width, int height, const void* pixels, const void* colormap = nullptr)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = format;
    image.colormap_entries = colormap ? 2 : 0;
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, pixels, 0, colormap);
    Bytes file(size);
    png_image_write_to_memory(&image, file.data(), &size, 0, pixels, 0, colormap);
    return file;
}

struct Profile {
    cmsHPROFILE handle;
    explicit Profile(ImageColorSpace space)
    {
        const auto bytes = ICCProfileOf(space);
        handle = cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size()));
    }
    ~Profile() { cmsCloseProfile(handle); }
    Profile(const Profile&) = delete;
    Profile& operator=(const Profile&) = delete;

    cmsCIEXYZ Tag(cmsTagSignature tag) const { return *static_cast<cmsCIEXYZ*>(cmsReadTag(handle, tag)); }
};

void ExpectNear(const cmsCIEXYZ& value, double x, double y, double z)
{
    constexpr double kTolerance = 2.5e-4;   // published to four places, from a white rounded to four
    EXPECT_NEAR(value.X, x, kTolerance);
    EXPECT_NEAR(value.Y, y, kTolerance);
    EXPECT_NEAR(value.Z, z, kTolerance);
}

}   // namespace

// The colorants of the sRGB profile that the ICC distributes (sRGB2014.icc).
TEST(ICCProfiles, SRGBHasThePublishedColorants)
{
    const Profile profile(ImageColorSpace::SRGB);
    ASSERT_NE(profile.handle, nullptr);
    ExpectNear(profile.Tag(cmsSigRedColorantTag), 0.4361, 0.2225, 0.0139);
    ExpectNear(profile.Tag(cmsSigGreenColorantTag), 0.3851, 0.7169, 0.0971);
    ExpectNear(profile.Tag(cmsSigBlueColorantTag), 0.1431, 0.0606, 0.7141);
}

// lindbloom.com's method for P3 primaries with a D65 white, adapted to D50: red is the best known of the
// three.
TEST(ICCProfiles, DisplayP3HasThePublishedColorants)
{
    const Profile profile(ImageColorSpace::DisplayP3);
    ASSERT_NE(profile.handle, nullptr);
    ExpectNear(profile.Tag(cmsSigRedColorantTag), 0.5151, 0.2412, -0.0011);
    ExpectNear(profile.Tag(cmsSigGreenColorantTag), 0.2920, 0.6922, 0.0419);
    ExpectNear(profile.Tag(cmsSigBlueColorantTag), 0.1571, 0.0666, 0.7841);
}

// White must stay white: the colorants add up to the D50 white of the connection space.
TEST(ICCProfiles, HaveColorantsThatAddUpToTheWhite)
{
    for (const ImageColorSpace space : {ImageColorSpace::SRGB, ImageColorSpace::DisplayP3}) {
        const Profile profile(space);
        const cmsCIEXYZ r = profile.Tag(cmsSigRedColorantTag), g = profile.Tag(cmsSigGreenColorantTag),
                        b = profile.Tag(cmsSigBlueColorantTag);
        constexpr double kTolerance = 3.0 / 65536;   // three roundings of 16 binary places
        EXPECT_NEAR(r.X + g.X + b.X, 0.9642, kTolerance);
        EXPECT_NEAR(r.Y + g.Y + b.Y, 1.0, kTolerance);
        EXPECT_NEAR(r.Z + g.Z + b.Z, 0.8249, kTolerance);
    }
}

// IEC 61966-2-1:1999, 5.2: 0.5 is 0.21404 in linear light, 0.02 lies on the line.
TEST(ICCProfiles, HaveTheToneCurveOfSRGB)
{
    for (const ImageColorSpace space : {ImageColorSpace::SRGB, ImageColorSpace::DisplayP3}) {
        const Profile profile(space);
        auto* curve = static_cast<cmsToneCurve*>(cmsReadTag(profile.handle, cmsSigGreenTRCTag));
        ASSERT_NE(curve, nullptr);
        constexpr float kTolerance = 5e-5f;   // parameters of 16 binary places
        EXPECT_NEAR(cmsEvalToneCurveFloat(curve, 0.5f), 0.214041f, kTolerance);
        EXPECT_NEAR(cmsEvalToneCurveFloat(curve, 0.02f), 0.02f / 12.92f, kTolerance);
        EXPECT_NEAR(cmsEvalToneCurveFloat(curve, 1.0f), 1.0f, kTolerance);
    }
}

// ICC.1:2010, 7.2.18: the MD5 of the profile with its flags, rendering intent and identifier taken for zero.
TEST(ICCProfiles, CarryTheirOwnFingerprint)
{
    for (const ImageColorSpace space : {ImageColorSpace::SRGB, ImageColorSpace::DisplayP3}) {
        const auto profile = ICCProfileOf(space);
        Bytes hashed(profile.begin(), profile.end());
        std::fill_n(hashed.begin() + 44, 4, 0);
        std::fill_n(hashed.begin() + 64, 4, 0);
        std::fill_n(hashed.begin() + 84, 16, 0);
        cmsHANDLE md5 = cmsMD5alloc(nullptr);
        cmsMD5add(md5, hashed.data(), static_cast<cmsUInt32Number>(hashed.size()));
        cmsProfileID computed;
        cmsMD5finish(&computed, md5);
        EXPECT_TRUE(std::equal(computed.ID8, computed.ID8 + 16, profile.begin() + 84));
    }
}

TEST(ICCProfiles, AreNoneForGrey)
{
    EXPECT_TRUE(ICCProfileOf(ImageColorSpace::DeviceGray).empty());
}

TEST(EncodePNG, ReadsPaddedRows)
{
    const Bytes padded = {1, 2, 99, 3, 4, 99};
    const Bytes file = EncodePNG({2, 2, ImageColorSpace::DeviceGray, ImageAlpha::None, 3}, padded.data());
    const std::optional<Image> image = DecodePNG(file);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels, (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(image->layout.bytesPerRow, 2u);
}

TEST(EncodePNG, RefusesSizesThatAreNone)
{
    const Bytes pixels(64);
    EXPECT_TRUE(EncodePNG({0, 2, ImageColorSpace::SRGB, ImageAlpha::None, 6}, pixels.data()).empty());
    EXPECT_TRUE(EncodePNG({2, -2, ImageColorSpace::SRGB, ImageAlpha::None, 6}, pixels.data()).empty());
    EXPECT_TRUE(EncodePNG({2, 2, ImageColorSpace::SRGB, ImageAlpha::None, 5}, pixels.data()).empty());
}

TEST(EncodePNG, KeepsEveryLayout)
{
    for (const ImageColorSpace space :
         {ImageColorSpace::SRGB, ImageColorSpace::DisplayP3, ImageColorSpace::DeviceGray})
        for (const ImageAlpha alpha : {ImageAlpha::None, ImageAlpha::Last}) {
            ImageLayout layout = {3, 2, space, alpha, 0};
            layout.bytesPerRow = 3 * layout.BytesPerPixel();
            Bytes pixels;
            for (std::size_t i = 0; i < layout.bytesPerRow * 2; ++i)
                pixels.push_back(static_cast<unsigned char>(i * 37));
            const std::optional<Image> image = DecodePNG(EncodePNG(layout, pixels.data()));
            ASSERT_TRUE(image);
            EXPECT_EQ(image->pixels, pixels);
            EXPECT_EQ(image->layout.colorSpace, space);
            EXPECT_EQ(image->layout.alpha, alpha);
            EXPECT_EQ(image->layout.bytesPerRow, layout.bytesPerRow);
        }
}

TEST(DecodePNG, ReadsWhatAnotherWriterMade)
{
    const Bytes rgb = {1, 2, 3, 4, 5, 6};
    const std::optional<Image> image = DecodePNG(Written(PNG_FORMAT_RGB, 2, 1, rgb.data()));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels, rgb);
    EXPECT_EQ(image->layout.colorSpace, ImageColorSpace::SRGB);
    EXPECT_EQ(image->layout.alpha, ImageAlpha::None);
}

TEST(DecodePNG, WidensPalettes)
{
    const Bytes indices = {1, 0, 1}, colours = {10, 20, 30, 40, 50, 60};
    const std::optional<Image> image =
        DecodePNG(Written(PNG_FORMAT_RGB_COLORMAP, 3, 1, indices.data(), colours.data()));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels, (Bytes{40, 50, 60, 10, 20, 30, 40, 50, 60}));
}

// 16 bits in linear light are written as they are; 65535 / 2 rounds to 127 or 128 of 255.
TEST(DecodePNG, RoundsSixteenBits)
{
    const std::uint16_t grey[] = {0, 65535, 32639, 32640};   // 32639.5 / 257 = 127.0019...
    const std::optional<Image> image = DecodePNG(Written(PNG_FORMAT_LINEAR_Y, 4, 1, grey));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels, (Bytes{0, 255, 127, 127}));
}

TEST(DecodePNG, RefusesWhatIsNoPNG)
{
    EXPECT_FALSE(DecodePNG({}));
    EXPECT_FALSE(DecodePNG(Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(DecodePNG, RefusesEveryFileThatEndsEarly)
{
    const Bytes pixels = {1, 2, 3, 4, 5, 6, 7, 8};
    const Bytes file = EncodePNG({2, 1, ImageColorSpace::SRGB, ImageAlpha::Last, 8}, pixels.data());
    ASSERT_TRUE(DecodePNG(file));
    for (std::size_t size = 0; size < file.size(); ++size)
        EXPECT_FALSE(DecodePNG(std::span(file).first(size))) << size;
}

TEST(DecodePNG, SurvivesDamagedBytes)
{
    const Bytes pixels = {1, 2, 3, 4, 5, 6, 7, 8};
    const Bytes file = EncodePNG({2, 1, ImageColorSpace::SRGB, ImageAlpha::Last, 8}, pixels.data());
    int refused = 0;
    for (std::size_t i = 0; i < file.size(); ++i) {
        Bytes damaged = file;
        damaged[i] ^= 0x55;
        refused += !DecodePNG(damaged);
    }
    EXPECT_GT(refused, 0);   // the checksums of the chunks that matter; a damaged profile is only ignored
}

TEST(WriteFileAtomically, ReplacesTheContentAndKeepsThePermissions)
{
    const Scratch scratch;
    const std::string path = scratch.Touch("file", "old");
    chmod(path.c_str(), 0640);
    EXPECT_TRUE(WriteFileAtomically(path, Bytes{'n', 'e', 'w'}));
    EXPECT_EQ(FileBytes(path), (Bytes{'n', 'e', 'w'}));
    struct stat status = {};
    stat(path.c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    EXPECT_EQ(scratch.Count(), 1u);
}

TEST(WriteFileAtomically, LeavesNothingBehindWhenItFails)
{
    const Scratch scratch;
    EXPECT_FALSE(WriteFileAtomically(scratch / "none/file", Bytes{1}));
    std::filesystem::create_directories(scratch / "folder/inside");
    EXPECT_FALSE(WriteFileAtomically(scratch / "folder", Bytes{1}));
    EXPECT_EQ(scratch.Count(), 1u);
}

TEST(WriteNewFileAtomically, OverwritesNothing)
{
    const Scratch scratch;
    EXPECT_TRUE(WriteNewFileAtomically(scratch / "file", Bytes{1}));
    EXPECT_FALSE(WriteNewFileAtomically(scratch / "file", Bytes{2}));
    EXPECT_EQ(FileBytes(scratch / "file"), Bytes{1});
    EXPECT_EQ(scratch.Count(), 1u);
}

TEST(ReadFile, GivesNoneForWhatIsNoFile)
{
    const Scratch scratch;
    EXPECT_FALSE(ReadFile(scratch / "none"));
    EXPECT_FALSE(ReadFile(scratch.Path()));
    EXPECT_EQ(ReadFile(scratch.Touch("file", "")), Bytes());
}
