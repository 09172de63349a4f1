// SPDX-License-Identifier: MIT
#include "tools/qz/io/ImageReader.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <string_view>

#include "tests/tools/SampleFiles.h"
#include "tools/qz/io/ImageWriter.h"
#include "tools/qz/io/Profile.h"
#include "tools/qz/io/Raster.h"

namespace {

using namespace QZ::Test;
using QZ::Tool::ColorSpace;
using QZ::Tool::DecodeImage;
using QZ::Tool::Defect;
using QZ::Tool::Image;
using QZ::Tool::Limits;
using testing::HasSubstr;

constexpr int kWidth = 37;   // no multiple of a byte, a tile or a block
constexpr int kHeight = 23;

// What a picture of grey (with alpha) or RGB (with alpha) is in 8 bits, each sample rounded to the nearest.
Bytes ExpectedRGBA(const Samples& samples)
{
    const double most = std::pow(2.0, samples.bits) - 1.0;
    const bool grey = samples.channels <= 2;
    const bool alpha = samples.channels % 2 == 0;
    Bytes rgba;
    for (int y = 0; y < samples.height; ++y)
        for (int x = 0; x < samples.width; ++x) {
            const auto level = [&](int c) {
                return static_cast<unsigned char>(std::lround(samples.At(x, y, c) * 255.0 / most));
            };
            for (int c = 0; c < 3; ++c)
                rgba.push_back(level(grey ? 0 : c));
            rgba.push_back(alpha ? level(samples.channels - 1) : 255);
        }
    return rgba;
}

Image Decode(const Bytes& file)
{
    return DecodeImage(file, Limits{});
}

void ExpectPicture(const Bytes& file, const Samples& samples, const char* format)
{
    const Image image = Decode(file);
    EXPECT_EQ(image.width, samples.width);
    EXPECT_EQ(image.height, samples.height);
    EXPECT_EQ(image.pixels, ExpectedRGBA(samples));
    EXPECT_EQ(image.source.format, format);
    EXPECT_EQ(image.source.bitDepth, samples.bits);
    EXPECT_EQ(image.source.hasAlpha, samples.channels % 2 == 0);
}

std::string DefectOf(const Bytes& file, const Limits& limits = {})
{
    try {
        (void)DecodeImage(file, limits);
    } catch (const Defect& defect) {
        return defect.what();
    }
    return "none";
}

int GreatestDifference(const Bytes& a, const Bytes& b)
{
    int greatest = a.size() == b.size() ? 0 : 256;
    for (std::size_t i = 0; i < a.size() && greatest < 256; ++i)
        greatest = std::max(greatest, std::abs(a[i] - b[i]));
    return greatest;
}

TEST(ReadPNG, TakesEveryDepthOfGrey)
{
    for (const int bits : {1, 2, 4, 8, 16})
        ExpectPicture(MakePNG(MakeSamples(kWidth, kHeight, 1, bits)), MakeSamples(kWidth, kHeight, 1, bits),
                      "PNG");
}

TEST(ReadPNG, TakesAlphaAndColourInEightAndSixteenBits)
{
    for (const int channels : {2, 3, 4})
        for (const int bits : {8, 16}) {
            const Samples samples = MakeSamples(kWidth, kHeight, channels, bits);
            ExpectPicture(MakePNG(samples), samples, "PNG");
        }
}

TEST(ReadPNG, TakesInterlacedPictures)
{
    for (const int channels : {1, 4})
        for (const int bits : {8, 16}) {
            const Samples samples = MakeSamples(kWidth, kHeight, channels, bits);
            ExpectPicture(MakePNG(samples, {.interlaced = true}), samples, "PNG");
        }
}

TEST(ReadPNG, TakesPalettesWithTransparentColours)
{
    const Bytes colors = {1, 2, 3, 255, 40, 50, 60, 128, 255, 0, 9, 0, 7, 8, 9, 255};
    for (const int bits : {2, 4, 8}) {
        Samples indices = MakeSamples(kWidth, kHeight, 1, 2);
        indices.bits = bits;
        const Image image = Decode(MakePalettePNG(indices, colors));
        for (std::size_t i = 0; i < image.Count(); ++i)
            for (std::size_t c = 0; c < 4; ++c)
                ASSERT_EQ(image.pixels[4 * i + c], colors[4u * indices.values[i] + c])
                    << bits << " bits, pixel " << i;
    }
}

TEST(ReadTIFF, TakesEveryDepthOfGrey)
{
    for (const int bits : {1, 2, 4, 8, 16}) {
        const Samples samples = MakeSamples(kWidth, kHeight, 1, bits);
        ExpectPicture(MakeTIFF(samples), samples, "TIFF");
    }
}

TEST(ReadTIFF, TakesStripsAndTilesInOnePlaneAndInSeveral)
{
    for (const int channels : {1, 2, 3, 4})
        for (const int bits : {8, 16})
            for (const bool tiled : {false, true})
                for (const bool separate : {false, true}) {
                    const Samples samples = MakeSamples(kWidth, kHeight, channels, bits);
                    SCOPED_TRACE(std::to_string(channels) + " channels, " + std::to_string(bits) +
                                 " bits, tiled " + std::to_string(tiled) + ", separate " +
                                 std::to_string(separate));
                    ExpectPicture(MakeTIFF(samples, {.tiled = tiled, .separate = separate}), samples, "TIFF");
                }
}

TEST(ReadTIFF, TakesPackedSamplesInTilesAndPlanes)
{
    for (const bool tiled : {false, true})
        for (const bool separate : {false, true}) {
            const Samples samples = MakeSamples(kWidth, kHeight, 3, 4);
            ExpectPicture(MakeTIFF(samples, {.tiled = tiled, .separate = separate}), samples, "TIFF");
        }
}

TEST(ReadTIFF, TakesTheUsualCompressionsAndByteOrders)
{
    constexpr int kLZW = 5;
    constexpr int kDeflate = 8;
    constexpr int kPackBits = 32773;
    const Samples samples = MakeSamples(kWidth, kHeight, 3, 16);
    for (const int compression : {kLZW, kDeflate, kPackBits})
        for (const bool bigEndian : {false, true})
            ExpectPicture(MakeTIFF(samples, {.bigEndian = bigEndian, .compression = compression}), samples,
                          "TIFF");
}

TEST(ReadTIFF, TakesWhiteForZero)
{
    Samples samples = MakeSamples(kWidth, kHeight, 1, 4);
    const Bytes file = MakeTIFF(samples, {.whiteIsZero = true});
    for (std::uint16_t& value : samples.values)
        value = static_cast<std::uint16_t>(15 - value);
    ExpectPicture(file, samples, "TIFF");
}

TEST(ReadTIFF, DividesAssociatedAlphaOut)
{
    const Samples samples = {3, 1, 4, 8, {100, 50, 0, 200, 30, 20, 10, 0, 9, 8, 7, 255}};
    const Image image = Decode(MakeTIFF(samples, {.premultiplied = true}));
    // 100 * 255 / 200 = 127.5 and 50 * 255 / 200 = 63.75, halves rounded up.
    EXPECT_EQ(image.pixels, (Bytes{128, 64, 0, 200, 0, 0, 0, 0, 9, 8, 7, 255}));
}

TEST(ReadWebP, TakesColourAndAlpha)
{
    for (const int channels : {3, 4}) {
        Samples samples = MakeSamples(kWidth, kHeight, channels, 8);
        // A lossless encoder may forget the colour under an alpha of 0.
        for (std::size_t i = 3; channels == 4 && i < samples.values.size(); i += 4)
            samples.values[i] = std::max<std::uint16_t>(samples.values[i], 1);
        ExpectPicture(MakeWebP(samples), samples, "WebP");
    }
}

TEST(ReadPNM, TakesBytesOfGreyColourAndAlphaInAnyDepth)
{
    for (const int channels : {1, 2, 3, 4})
        for (const int bits : {1, 5, 8, 9, 16}) {
            const Samples samples = MakeSamples(kWidth, kHeight, channels, bits);
            SCOPED_TRACE(std::to_string(channels) + " channels, " + std::to_string(bits) + " bits");
            const Image image = Decode(MakePNM(samples));
            EXPECT_EQ(image.source.bitDepth, bits);
            // Below 16 bits a sample is first put on the scale of its bytes, which may round a half the other
            // way.
            EXPECT_LE(GreatestDifference(image.pixels, ExpectedRGBA(samples)), bits > 8 && bits < 16 ? 1 : 0);
        }
}

Bytes FromText(std::string_view text)
{
    return {text.begin(), text.end()};
}

TEST(ReadPNM, TakesTextAndComments)
{
    const Bytes black = {0, 0, 0, 255};
    const Bytes white = {255, 255, 255, 255};
    EXPECT_EQ(Decode(FromText("P1 # a bitmap\n1 1\n1\n")).pixels, black);
    EXPECT_EQ(Decode(FromText("P1\n2 1\n01")).pixels, (Bytes{255, 255, 255, 255, 0, 0, 0, 255}));
    EXPECT_EQ(Decode(FromText("P2\n1\n#\n1 7\n7\n")).pixels, white);
    EXPECT_EQ(Decode(FromText("P3 1 1 255 1 2 3")).pixels, (Bytes{1, 2, 3, 255}));
    EXPECT_EQ(Decode(FromText("P4 2 1\n\x40")).pixels, (Bytes{255, 255, 255, 255, 0, 0, 0, 255}));
}

TEST(ReadPNM, RefusesWhatIsNoPicture)
{
    EXPECT_THAT(DefectOf(FromText("P5\n2 2\n255\nabc")), HasSubstr("truncated"));
    EXPECT_THAT(DefectOf(FromText("P5\n2 2\n70000\nabcd")), HasSubstr("maximum"));
    EXPECT_THAT(DefectOf(FromText("P5\n2 x\n255\nabcd")), HasSubstr("no number"));
    EXPECT_THAT(DefectOf(FromText("P5\n0 4\n255\n")), HasSubstr("no pixels"));
    EXPECT_THAT(DefectOf(FromText("P2\n1 1\n7\n8 ")), HasSubstr("above its maximum"));
    EXPECT_THAT(DefectOf(FromText("P5\n99999999999999999999 1\n255\n")), HasSubstr("no number"));
}

// A smooth picture, which a JPEG of quality 100 keeps almost as it is.
Samples Smooth(int channels)
{
    Samples samples = {40, 24, channels, 8, {}};
    for (int y = 0; y < samples.height; ++y)
        for (int x = 0; x < samples.width; ++x)
            for (int c = 0; c < channels; ++c)
                samples.values.push_back(static_cast<std::uint16_t>(20 + 4 * x + (c + 1) * y));
    return samples;
}

TEST(ReadJPEG, TakesGreyAndColourInOneScanAndInMany)
{
    for (const int channels : {1, 3})
        for (const bool progressive : {false, true}) {
            const Image image = Decode(MakeJPEG(Smooth(channels), {.interlaced = progressive}));
            // The transform to YCbCr and its quantisation by 1 cost up to two levels.
            EXPECT_LE(GreatestDifference(image.pixels, ExpectedRGBA(Smooth(channels))), 3);
            EXPECT_EQ(image.source.format, "JPEG");
        }
}

TEST(ReadTIFF, TakesJPEGInside)
{
    constexpr int kJPEG = 7;
    const Image image = Decode(MakeTIFF(Smooth(3), {.compression = kJPEG}));
    // The colours are halved in size, and the quality is the library's 75.
    EXPECT_LE(GreatestDifference(image.pixels, ExpectedRGBA(Smooth(3))), 12);
}

TEST(ReadJPEG, TakesCMYKForIdealInksWithoutAProfile)
{
    Samples samples = {16, 16, 4, 8, {}};
    for (int i = 0; i < 256; ++i)   // inverted, as Adobe's programs write it: 255 is no ink
        samples.values.insert(samples.values.end(), {200, 100, 255, 128});
    const Image image = Decode(MakeJPEG(samples));
    EXPECT_NEAR(image.pixels[0], 200 * 128 / 255, 2);   // a JPEG's rounding
    EXPECT_NEAR(image.pixels[1], 100 * 128 / 255, 2);
    EXPECT_NEAR(image.pixels[2], 128, 2);
}

// The upright picture of each orientation, from where the first row and column of the file lie
// (CIPA DC-008-2019, 4.6.4, Orientation).
struct Corner {
    int x;
    int y;
};

Corner InFile(int orientation, int x, int y, int width, int height)
{
    const int right = width - 1;
    const int bottom = height - 1;
    switch (orientation) {
        case 2:   // first row at the top, first column at the right
            return {right - x, y};
        case 3:   // bottom, right
            return {right - x, bottom - y};
        case 4:   // bottom, left
            return {x, bottom - y};
        case 5:   // first row at the left, first column at the top
            return {y, x};
        case 6:   // right, top
            return {y, bottom - x};
        case 7:   // right, bottom
            return {right - y, bottom - x};
        case 8:   // left, bottom
            return {right - y, x};
        default:
            return {x, y};
    }
}

void ExpectUpright(const Bytes& file, const Samples& samples, int orientation)
{
    SCOPED_TRACE("orientation " + std::to_string(orientation));
    const Bytes lying = ExpectedRGBA(samples);
    const Image image = Decode(file);
    EXPECT_EQ(image.source.orientation, orientation);
    ASSERT_EQ(image.width, orientation >= 5 ? samples.height : samples.width);
    ASSERT_EQ(image.height, orientation >= 5 ? samples.width : samples.height);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const Corner from = InFile(orientation, x, y, samples.width, samples.height);
            for (int c = 0; c < 4; ++c)
                ASSERT_EQ(image.At(x, y)[c],
                          lying[static_cast<std::size_t>(4 * (from.y * samples.width + from.x) + c)])
                    << x << ", " << y;
        }
}

TEST(Orientation, IsHonouredInEveryFormatThatHasOne)
{
    const Samples samples = MakeSamples(5, 3, 3, 8);
    for (int orientation = 1; orientation <= 8; ++orientation)
        for (const bool bigEndian : {false, true}) {
            const Bytes exif = MakeExif(orientation, bigEndian);
            ExpectUpright(MakePNG(samples, {.exif = exif}), samples, orientation);
            ExpectUpright(MakeWebP(samples, {.exif = exif}), samples, orientation);
            ExpectUpright(MakeTIFF(samples, {.bigEndian = bigEndian, .orientation = orientation}), samples,
                          orientation);
        }
}

TEST(Orientation, IsHonouredInAJPEG)
{
    const Samples samples = Smooth(1);
    const Bytes upright = Decode(MakeJPEG(samples)).pixels;
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const Image image = Decode(MakeJPEG(samples, {.exif = MakeExif(orientation, orientation % 2 == 0)}));
        const Corner first = InFile(orientation, 0, 0, samples.width, samples.height);
        EXPECT_EQ(image.pixels[0],
                  upright[static_cast<std::size_t>(4 * (first.y * samples.width + first.x))]);
        EXPECT_EQ(image.width, orientation >= 5 ? samples.height : samples.width);
    }
}

TEST(Orientation, IsIgnoredWhenItsBlockIsDamaged)
{
    const Samples samples = MakeSamples(5, 3, 3, 8);
    const Bytes exif = MakeExif(6, false);
    for (std::size_t length = 1; length < 19; ++length)
        ExpectUpright(
            MakePNG(samples, {.exif = Bytes(exif.begin(), exif.begin() + static_cast<long>(length))}),
            samples, 1);
    ExpectUpright(MakePNG(samples, {.exif = MakeExif(9, false)}), samples, 1);
    ExpectUpright(MakePNG(samples, {.exif = MakeExif(0, false)}), samples, 1);
}

TEST(Profile, OfSRGBLeavesThePixelsAlone)
{
    const Samples samples = MakeSamples(kWidth, kHeight, 4, 8);
    const Bytes profile = QZ::Tool::MakeProfile(ColorSpace::SRGB);
    const Image image = Decode(MakePNG(samples, {.profile = profile}));
    EXPECT_EQ(image.pixels, ExpectedRGBA(samples));
    EXPECT_EQ(image.source.profile, "sRGB");
}

// Display P3 (128, 64, 191) is sRGB (137.68, 59.42, 197.88): the primaries of SMPTE RP 431-2, the D65 white
// and the curve of IEC 61966-2-1, worked in 30 digits.
TEST(Profile, OfDisplayP3IsConvertedInEveryFormatThatHasOne)
{
    Samples samples = {2, 2, 3, 8, {}};
    for (int i = 0; i < 4; ++i)
        samples.values.insert(samples.values.end(), {128, 64, 191});
    const Bytes profile = QZ::Tool::MakeProfile(ColorSpace::DisplayP3);
    const auto expectConverted = [](const Bytes& file, double tolerance) {
        const Image image = Decode(file);
        EXPECT_EQ(image.source.profile, "Display P3");
        EXPECT_NEAR(image.pixels[0], 137.68, tolerance);
        EXPECT_NEAR(image.pixels[1], 59.42, tolerance);
        EXPECT_NEAR(image.pixels[2], 197.88, tolerance);
        EXPECT_EQ(image.pixels[3], 255);
    };
    expectConverted(MakePNG(samples, {.profile = profile}), 0.5);   // rounding alone
    expectConverted(MakeWebP(samples, {.profile = profile}), 0.5);
    expectConverted(MakeTIFF(samples, {.profile = profile}), 0.5);
    expectConverted(MakeJPEG(samples, {.profile = profile}),
                    2.0);   // a JPEG is a level off before the conversion
    for (std::uint16_t& value : samples.values)
        value = static_cast<std::uint16_t>(value * 257);
    samples.bits = 16;
    expectConverted(MakePNG(samples, {.interlaced = true, .profile = profile}), 0.5);
}

TEST(Profile, ThatIsDamagedOrOfAnotherKindIsPassedOverWithARemark)
{
    const Samples grey = MakeSamples(4, 4, 1, 8);
    Bytes damaged = QZ::Tool::MakeProfile(ColorSpace::DisplayP3);
    damaged.resize(200);
    for (const Bytes& profile : {damaged, QZ::Tool::MakeProfile(ColorSpace::DisplayP3)}) {
        const Image image = Decode(MakeTIFF(grey, {.profile = profile}));
        EXPECT_EQ(image.pixels, ExpectedRGBA(grey));
        ASSERT_EQ(image.source.remarks.size(), 1u);
        EXPECT_THAT(image.source.remarks[0], HasSubstr("passed over"));
    }
}

TEST(DecodeImage, RefusesWhatIsNoPicture)
{
    EXPECT_THAT(DefectOf({}), HasSubstr("empty"));
    EXPECT_THAT(DefectOf(FromText("hello, world")), HasSubstr("not a picture"));
    using namespace std::string_view_literals;
    for (const std::string_view signature :
         {"\x89PNG\r\n\x1a\n"sv, "\xFF\xD8\xFF"sv, "RIFFxxxxWEBP"sv, "II*\0"sv, "MM\0+"sv, "P6\n"sv})
        EXPECT_NE(DefectOf(FromText(signature)), "none") << signature;
}

TEST(DecodeImage, RefusesATruncatedFileOfEveryFormat)
{
    const Samples samples = MakeSamples(kWidth, kHeight, 3, 8);
    for (const Bytes& file :
         {MakePNG(samples), MakeJPEG(samples), MakeJPEG(samples, {.interlaced = true}), MakeWebP(samples),
          MakeTIFF(samples), MakePNM(samples), MakePNG(samples, {.interlaced = true})})
        for (const std::size_t part : {1u, 5u, 9u})
            EXPECT_NE(
                DefectOf(Bytes(file.begin(), file.begin() + static_cast<long>(file.size() * part / 10))),
                "none")
                << part << " tenths of a file that begins with " << file[1];
}

TEST(DecodeImage, RefusesAPictureOverTheLimitOfPixels)
{
    const Samples samples = MakeSamples(kWidth, kHeight, 3, 8);
    Limits limits;
    for (const Bytes& file :
         {MakePNG(samples), MakeJPEG(samples), MakeWebP(samples), MakeTIFF(samples), MakePNM(samples)}) {
        limits.pixels = kWidth * kHeight - 1;
        EXPECT_THAT(DefectOf(file, limits), HasSubstr("over the limit"));
        limits.pixels = kWidth * kHeight;
        EXPECT_EQ(DefectOf(file, limits), "none");
    }
}

}   // namespace
