// SPDX-License-Identifier: MIT
#include "tools/qz/operations/Compare.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/tools/RunQz.h"
#include "tests/tools/TemporaryFolder.h"
#include "tools/qz/io/ImageReader.h"
#include "tools/qz/io/ImageWriter.h"

namespace {

using namespace QZ::Test;
using namespace QZ::Tool;
using testing::HasSubstr;

TEST(Compare, FindsEqualPicturesEqual)
{
    const Comparison result = Compare(Image(7, 5), Image(7, 5), 0, nullptr);
    EXPECT_EQ(result.different, 0u);
    EXPECT_EQ(result.pixels, 35u);
    EXPECT_EQ(result.largest, 0);
}

TEST(Compare, CountsAPixelOnceWhateverChannelDiffers)
{
    const Image a(4, 3);
    Image b = a;
    b.At(0, 0)[0] = 1;
    b.At(1, 2)[1] = b.At(1, 2)[2] = 9;
    b.At(3, 1)[3] = 250;   // alpha, from 255
    const Comparison result = Compare(a, b, 0, nullptr);
    EXPECT_EQ(result.different, 3u);
    EXPECT_EQ(result.largest, 9);
}

TEST(Compare, ToleratesDifferencesUpToTheToleranceItself)
{
    const Image a(2, 1);
    Image b = a;
    b.At(0, 0)[0] = 8;
    b.At(1, 0)[0] = 9;
    EXPECT_EQ(Compare(a, b, 7, nullptr).different, 2u);
    EXPECT_EQ(Compare(a, b, 8, nullptr).different, 1u);
    EXPECT_EQ(Compare(a, b, 9, nullptr).different, 0u);
}

// 4 x 2 and 3 x 5 have 3 x 2 in common; the corner that neither has counts for nothing.
TEST(Compare, TakesPixelsOfOnePictureAloneAsDifferentWhateverTheTolerance)
{
    const Comparison result = Compare(Image(4, 2), Image(3, 5), 255, nullptr);
    EXPECT_EQ(result.pixels, 4u * 2 + 3 * 5 - 3 * 2);
    EXPECT_EQ(result.different, 2u + 9);
    EXPECT_EQ(result.largest, 0);
}

TEST(Compare, DrawsWhereThePicturesDiffer)
{
    const Image a(3, 1);
    Image b(4, 1), drawing;
    b.At(1, 0)[1] = 1;
    (void)Compare(a, b, 0, &drawing);
    ASSERT_EQ(drawing.width, 4);
    ASSERT_EQ(drawing.height, 1);
    EXPECT_EQ(drawing.At(0, 0)[0], drawing.At(0, 0)[2]) << "grey";
    EXPECT_GT(drawing.At(1, 0)[0], drawing.At(1, 0)[1] + 100) << "red";
    EXPECT_GT(drawing.At(3, 0)[2], drawing.At(3, 0)[0] + 100) << "blue";
}

class CompareProgram : public testing::Test {
protected:
    CompareProgram()
    {
        Image image(20, 10);
        Save("a.png", image);
        image.At(3, 3)[0] = 40;
        Save("b.png", image);
    }
    void Save(const std::string& name, const Image& image) const
    {
        const std::vector<unsigned char> bytes = EncodePNG(image);
        m_folder.Write(name, {bytes.begin(), bytes.end()});
    }
    [[nodiscard]] Outcome Run(const std::vector<std::string>& arguments) const
    {
        return RunQz(arguments, {.folder = m_folder / "."});
    }

    TemporaryFolder m_folder;
};

TEST_F(CompareProgram, TellsByItsStatusWhetherPicturesDiffer)
{
    const Outcome same = Run({"compare", "a.png", "a.png"});
    EXPECT_EQ(same.status, 0);
    EXPECT_EQ(same.out, "0 of 200 pixels differ\n");
    const Outcome different = Run({"compare", "a.png", "b.png"});
    EXPECT_EQ(different.status, 1);
    EXPECT_EQ(different.out, "1 of 200 pixels differs, by at most 40 of 255\n");
    EXPECT_EQ(different.err, "");
    EXPECT_EQ(Run({"compare", "a.png", "b.png", "--tolerance", "40"}).status, 0);
    EXPECT_EQ(Run({"compare", "a.png", "none.png"}).status, 3);
    EXPECT_EQ(Run({"compare", "a.png"}).status, 2);
    EXPECT_EQ(Run({"compare", "-", "-"}).status, 2);
}

TEST_F(CompareProgram, TellsTheSizesWhereTheyDiffer)
{
    Save("c.png", Image(21, 10));
    const Outcome outcome = Run({"compare", "a.png", "c.png", "--out", "d.png"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "10 of 210 pixels differ; the sizes are 20 x 10 and 21 x 10\n");
    const std::string bytes = m_folder.Read("d.png");
    EXPECT_EQ(DecodeImage({bytes.begin(), bytes.end()}, Limits()).width, 21);
    EXPECT_EQ(Run({"compare", "a.png", "c.png", "--out", "d.png"}).status, 5) << "it exists";
}

TEST_F(CompareProgram, PrintsJSON)
{
    const auto document = nlohmann::json::parse(Run({"compare", "a.png", "b.png", "--json"}).out);
    EXPECT_EQ(document.at("different"), 1);
    EXPECT_EQ(document.at("pixels"), 200);
    EXPECT_EQ(document.at("largest"), 40);
    EXPECT_EQ(document.at("sizes").at(1).at(0), 20);
}

}   // namespace
