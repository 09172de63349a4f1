// SPDX-License-Identifier: MIT
#include "tools/qz/io/ImageWriter.h"

#include <gmock/gmock.h>
#include <lcms2.h>

#include <string_view>

#include "tests/tools/SampleFiles.h"
#include "tools/qz/io/ImageReader.h"
#include "tools/qz/io/Profile.h"

namespace {

using namespace QZ::Test;
using namespace QZ::Tool;
using testing::HasSubstr;
using testing::Not;

Image Picture(int channels)
{
    return DecodeImage(MakePNG(MakeSamples(31, 17, channels, 8)), Limits{});
}

std::string AsText(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

// IHDR is the first chunk: its colour type lies at byte 25 of the file (ISO/IEC 15948:2004, 11.2.2).
int ColorType(const Bytes& png)
{
    return png.at(25);
}

TEST(EncodePNG, KeepsEveryPixel)
{
    for (const int channels : {1, 2, 3, 4}) {
        const Image image = Picture(channels);
        EXPECT_EQ(DecodeImage(EncodePNG(image), Limits{}).pixels, image.pixels);
    }
}

TEST(EncodePNG, WritesNoMoreChannelsThanThePictureNeeds)
{
    EXPECT_EQ(ColorType(EncodePNG(Picture(1))), 0);
    EXPECT_EQ(ColorType(EncodePNG(Picture(2))), 4);
    EXPECT_EQ(ColorType(EncodePNG(Picture(3))), 2);
    EXPECT_EQ(ColorType(EncodePNG(Picture(4))), 6);
}

TEST(EncodePNG, TagsSRGB)
{
    const std::string file = AsText(EncodePNG(Picture(3)));
    EXPECT_THAT(file, HasSubstr("sRGB"));
    EXPECT_THAT(file, HasSubstr("gAMA"));
    EXPECT_THAT(file, HasSubstr("cHRM"));
    EXPECT_THAT(file, Not(HasSubstr("iCCP")));
}

TEST(EncodePNG, TagsDisplayP3ByItsProfile)
{
    for (const int channels : {1, 3}) {
        Image image = Picture(channels);
        image.colorSpace = ColorSpace::DisplayP3;
        const Bytes file = EncodePNG(image);
        EXPECT_THAT(AsText(file), HasSubstr("iCCP"));
        EXPECT_THAT(AsText(file), Not(HasSubstr("sRGB")));
        EXPECT_EQ(ColorType(file), 2);
        EXPECT_EQ(DecodeImage(file, Limits{}).source.profile, "Display P3");
    }
}

TEST(EncodeJPEG, CarriesTheProfileOfItsColourSpace)
{
    Image image = Picture(3);
    EXPECT_EQ(DecodeImage(EncodeJPEG(image, 90), Limits{}).source.profile, "sRGB");
    image.colorSpace = ColorSpace::DisplayP3;
    EXPECT_EQ(DecodeImage(EncodeJPEG(image, 90), Limits{}).source.profile, "Display P3");
}

TEST(EncodeJPEG, PutsTransparentPartsOnWhite)
{
    Image image(16, 16);
    for (std::size_t i = 0; i < image.pixels.size(); i += 4)
        image.pixels[i + 3] = 64;
    const Image flat = DecodeImage(EncodeJPEG(image, 100), Limits{});
    EXPECT_NEAR(flat.pixels[0], 255 - 64, 1);   // black, a quarter opaque; a JPEG's rounding
}

TEST(EncodeJPEG, IsSmallerAtALowerQuality)
{
    EXPECT_LT(EncodeJPEG(Picture(3), 30).size(), EncodeJPEG(Picture(3), 95).size());
}

TEST(Encoders, GiveTheSameBytesEachTime)
{
    EXPECT_EQ(EncodePNG(Picture(3)), EncodePNG(Picture(3)));
    EXPECT_EQ(EncodeJPEG(Picture(3), 92), EncodeJPEG(Picture(3), 92));
}

struct ProfileCloser {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};

// The D50 colorants of each space by the Bradford adaptation of its primaries, worked in 30 digits from
// IEC 61966-2-1 and SMPTE RP 431-2.
TEST(MakeProfile, HoldsTheColorantsAndTheCurveOfItsSpace)
{
    const struct {
        ColorSpace space;
        double red[3];
        double blue[3];
    } kCases[] = {{ColorSpace::SRGB, {0.43604, 0.22248, 0.01392}, {0.14305, 0.06061, 0.71391}},
                  {ColorSpace::DisplayP3, {0.51512, 0.24119, -0.00105}, {0.15710, 0.06657, 0.78407}}};
    for (const auto& expected : kCases) {
        const Bytes bytes = MakeProfile(expected.space);
        const std::unique_ptr<void, ProfileCloser> profile(
            cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
        ASSERT_NE(profile, nullptr);
        const auto* red = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile.get(), cmsSigRedColorantTag));
        const auto* blue = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile.get(), cmsSigBlueColorantTag));
        auto* curve = static_cast<cmsToneCurve*>(cmsReadTag(profile.get(), cmsSigGreenTRCTag));
        ASSERT_TRUE(red != nullptr && blue != nullptr && curve != nullptr);
        constexpr double kRounding =
            2.5e-4;   // the library's matrices are themselves rounded to a few digits
        EXPECT_NEAR(red->X, expected.red[0], kRounding);
        EXPECT_NEAR(red->Y, expected.red[1], kRounding);
        EXPECT_NEAR(red->Z, expected.red[2], kRounding);
        EXPECT_NEAR(blue->X, expected.blue[0], kRounding);
        EXPECT_NEAR(blue->Y, expected.blue[1], kRounding);
        EXPECT_NEAR(blue->Z, expected.blue[2], kRounding);
        EXPECT_NEAR(cmsEvalToneCurveFloat(curve, 0.5f), 0.2140411, 2e-5);   // 16 bits of fraction
        EXPECT_NEAR(cmsEvalToneCurveFloat(curve, 0.02f), 0.02 / 12.92, 2e-5);
    }
}

}   // namespace
