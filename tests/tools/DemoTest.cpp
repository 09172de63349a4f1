// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Demo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/tools/TemporaryFolder.h"
#include "tools/qz/Failure.h"
#include "tools/qz/demo/Page.h"
#include "tools/qz/demo/Reduce.h"
#include "tools/qz/io/ImageReader.h"
#include "tools/qz/palette/Palette.h"
#include "tools/qz/scene/SampleScene.h"

namespace {

using namespace QZ::Tool;
using QZ::Test::TemporaryFolder;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<unsigned char> Bytes(std::string_view text)
{
    return {text.begin(), text.end()};
}

void Put(const std::string& path, const std::string& text)
{
    std::ofstream(path) << text;
}

std::string Get(const std::string& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

Status StatusOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const Failure& failure) {
        return failure.status;
    }
    return Status::Done;
}

TEST(WriteFolder, LeavesTheWholeFolderAndNothingElse)
{
    const TemporaryFolder place;
    WriteFolder(place / "shown", false, {{"a.png", Bytes("a")}, {"index.html", Bytes("page")}});
    EXPECT_EQ(Get(place / "shown/a.png"), "a");
    EXPECT_EQ(Get(place / "shown/index.html"), "page");
    EXPECT_THAT(place.Names(), ElementsAre("shown"));
}

TEST(WriteFolder, TakesAnEmptyFolderAndASlashAtTheEnd)
{
    const TemporaryFolder place;
    std::filesystem::create_directory(place / "shown");
    WriteFolder((place / "shown") + "/", false, {{"index.html", Bytes("page")}});
    EXPECT_EQ(Get(place / "shown/index.html"), "page");
    EXPECT_THAT(place.Names(), ElementsAre("shown"));
}

TEST(WriteFolder, RefusesAFolderThatHoldsFiles)
{
    const TemporaryFolder place;
    std::filesystem::create_directory(place / "shown");
    Put(place / "shown/letter.txt", "dear");
    EXPECT_EQ(StatusOf([&] {
                  WriteFolder(place / "shown", false, {{"index.html", Bytes("x")}});
              }),
              Status::Output);
    EXPECT_EQ(StatusOf([&] { CheckFolder(place / "shown", false); }), Status::Output);
    EXPECT_EQ(Get(place / "shown/letter.txt"), "dear");
    EXPECT_FALSE(std::filesystem::exists(place / "shown/index.html"));
}

TEST(WriteFolder, WithForceReplacesItsOwnFilesAndKeepsAllOthers)
{
    const TemporaryFolder place;
    std::filesystem::create_directory(place / "shown");
    Put(place / "shown/letter.txt", "dear");
    Put(place / "shown/index.html", "old");
    WriteFolder(place / "shown", true, {{"a.png", Bytes("a")}, {"index.html", Bytes("new")}});
    EXPECT_EQ(Get(place / "shown/letter.txt"), "dear");
    EXPECT_EQ(Get(place / "shown/index.html"), "new");
    EXPECT_THAT(place.Names(), ElementsAre("shown"));
}

TEST(WriteFolder, LeavesNothingWhenAFileCannotBeWritten)
{
    const TemporaryFolder place;
    const auto write = [&] {
        WriteFolder(place / "shown", false, {{"a.png", Bytes("a")}, {"missing/b.png", Bytes("b")}});
    };
    EXPECT_EQ(StatusOf(write), Status::Output);
    EXPECT_TRUE(place.Names().empty());
}

TEST(CheckFolder, RefusesAFileAndAPlaceThatIsNotThere)
{
    const TemporaryFolder place;
    Put(place / "file", "text");
    EXPECT_EQ(StatusOf([&] { CheckFolder(place / "file", true); }), Status::Output);
    EXPECT_EQ(StatusOf([&] { CheckFolder(place / "no/shown", true); }), Status::Output);
    EXPECT_EQ(StatusOf([&] { CheckFolder("", true); }), Status::Output);
}

TEST(Demo, ShowsPicturesThatAreAllThere)
{
    const auto files = MakeDemo(RenderSampleScene(60, 40), "<odd> name's.png", Context());
    ASSERT_FALSE(files.empty());
    EXPECT_EQ(files.back().name, "index.html") << "the page comes last";
    const std::string page(files.back().bytes.begin(), files.back().bytes.end());
    EXPECT_THAT(page, HasSubstr("&lt;odd&gt; name&#39;s.png"));
    EXPECT_THAT(page, testing::Not(HasSubstr("<odd>")));
    EXPECT_THAT(page, testing::Not(HasSubstr("http"))) << "nothing from the network";
    for (std::size_t i = 0; i + 1 < files.size(); ++i) {
        EXPECT_THAT(page, HasSubstr("src=\"" + files[i].name + "\""));
        if (files[i].name.ends_with(".mov")) {
            EXPECT_EQ(std::string(files[i].bytes.begin() + 4, files[i].bytes.begin() + 8), "ftyp");
            continue;
        }
        const Image picture = DecodeImage(files[i].bytes, Limits());
        EXPECT_GT(picture.Count(), 0u) << files[i].name;
    }
    EXPECT_GE(files.size(), 12u);
}

TEST(Escaped, MakesTextSafeForHtml)
{
    EXPECT_EQ(Escaped("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c&#39;");
}

TEST(Reduced, AveragesLightAndKeepsSmallPicturesAsTheyAre)
{
    Image image(4, 2);
    for (const int x : {0, 2})
        for (int y = 0; y < 2; ++y)
            std::fill_n(image.At(x, y), 3, static_cast<unsigned char>(255));
    EXPECT_EQ(Reduced(image, 4).pixels, image.pixels);
    const Image half = Reduced(image, 2);
    ASSERT_EQ(half.width, 2);
    ASSERT_EQ(half.height, 1);
    EXPECT_EQ(half.At(0, 0)[0], 188) << "half the light is sRGB 187.5";
    EXPECT_EQ(half.At(0, 0)[3], 255);
    const Image thin = Reduced(Image(1000, 1), 10);
    EXPECT_EQ(thin.width, 10);
    EXPECT_EQ(thin.height, 1);
}

TEST(Reduced, LetsTransparentPixelsCountForNothing)
{
    Image image(2, 2);
    std::fill_n(image.At(0, 0), 4, static_cast<unsigned char>(200));
    image.At(0, 0)[3] = 255;
    for (const auto& [x, y] : {std::pair(1, 0), std::pair(0, 1), std::pair(1, 1)})
        image.At(x, y)[3] = 0;
    const Image one = Reduced(image, 1);
    EXPECT_EQ(one.At(0, 0)[0], 200);
    EXPECT_EQ(one.At(0, 0)[3], 64);   // a quarter of 255
}

// So many pixels of each colour, in a row.
Image Stripes(std::initializer_list<std::pair<std::array<unsigned char, 3>, int>> colours)
{
    int width = 0;
    for (const auto& [colour, count] : colours)
        width += count;
    Image image(width, 1);
    unsigned char* p = image.pixels.data();
    for (const auto& [colour, count] : colours)
        for (int i = 0; i < count; ++i, p += 4)
            std::copy(colour.begin(), colour.end(), p);
    return image;
}

TEST(Palette, FindsTheColoursOfAPictureOfFewColoursWithTheirShares)
{
    const auto palette = PaletteOf(Stripes({{{200, 30, 30}, 50}, {{30, 60, 200}, 30}, {{128, 128, 128}, 20}}),
                                   PaletteOptions());
    ASSERT_EQ(palette.size(), 3u);
    EXPECT_THAT(palette[0].rgb, ElementsAre(200, 30, 30));
    EXPECT_THAT(palette[1].rgb, ElementsAre(30, 60, 200));
    EXPECT_THAT(palette[2].rgb, ElementsAre(128, 128, 128));
    EXPECT_EQ(palette[0].share, 0.5);
    EXPECT_EQ(palette[1].share, 0.3);
    EXPECT_EQ(palette[2].share, 0.2);
}

TEST(Palette, IsSortedCoversThePictureAndKeepsToItsCount)
{
    const Image image = RenderSampleScene(60, 40);
    PaletteOptions options;
    options.count = 64;
    const auto all = PaletteOf(image, options);
    double total = 0.0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        total += all[i].share;
        EXPECT_LE(all[i].share, all[i > 0 ? i - 1 : 0].share);
    }
    EXPECT_NEAR(total, 1.0, 1e-9);   // a sum of shares
    options.count = 3;
    EXPECT_EQ(PaletteOf(image, options).size(), 3u);
    EXPECT_TRUE(PaletteOf(Image(), options).empty());
}

TEST(Palette, IsPrintedAsLinesAsJsonAndAsASheet)
{
    const std::vector<PaletteColor> palette = {{{200, 30, 30}, 0.625}, {{0, 0, 0}, 0.375}};
    EXPECT_EQ(PaletteText(palette, Context()), "#c81e1e  62.50 %\n#000000  37.50 %\n");
    const auto document = nlohmann::json::parse(PaletteAsJson(palette).dump());
    EXPECT_EQ(document["colors"][0]["hex"], "#c81e1e");
    EXPECT_EQ(document["colors"][0]["rgb"], (std::array{200, 30, 30}));
    EXPECT_EQ(document["colors"][1]["share"], 0.375);
    const Image sheet = PaletteSheet(palette, "title");
    EXPECT_THAT((std::array<int, 3>{sheet.At(200, 340)[0], sheet.At(200, 340)[1], sheet.At(200, 340)[2]}),
                ElementsAre(200, 30, 30))
        << "the first swatch";
    EXPECT_EQ(sheet.At(80 + 1440 / 2, 150)[0], 200) << "the strip: five eighths are red";
    EXPECT_EQ(sheet.At(80 + 1440 * 3 / 4, 150)[0], 0);
    EXPECT_GT(PaletteSheet({}, "title").height, 0);
}

}   // namespace
