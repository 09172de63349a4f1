// SPDX-License-Identifier: MIT
// Real movies, read back by ffprobe, by ffmpeg's decoders and by a strict reader of boxes.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <ostream>

#include "tests/Movie/BoxReader.h"
#include "tests/Movie/ReadBack.h"
#include "tests/Movie/Recorder.h"
#include "tests/Movie/Scratch.h"

namespace QZ::Test {
namespace {

using Status = AssetWriterStatus;

struct CodecCase {
    const char* name;
    VideoCodec codec;
    bool realTime;
    double leastPSNR;
};

// Tests are listed with their parameters.
void PrintTo(const CodecCase& codec, std::ostream* out)
{
    *out << codec.name;
}

class CodecTest : public ::testing::TestWithParam<CodecCase> {
protected:
    Scene TheScene() const
    {
        Scene scene;
        scene.video.codec = GetParam().codec;
        scene.realTime = GetParam().realTime;
        return scene;
    }
    /// The bit rate of a recorder at 30 frames a second, a key frame a second.
    static VideoCompression DefaultRate(int width, int height)
    {
        return {.averageBitRate = static_cast<int>(width * height * 30 * 0.61728395061728 + 0.5),
                .maxKeyFrameInterval = 30};
    }

    void ExpectPictures(const Scene& scene, int count)
    {
        ExpectScene(path, scene.sourceWidth, scene.sourceHeight, count, GetParam().leastPSNR);
    }

    ScratchFolder folder;
    std::string path = folder.File("movie.mov");
};

TEST_P(CodecTest, DecodesToWhatWasPaintedAtTheDefaultRate)
{
    Scene scene = TheScene();
    if (scene.video.codec != VideoCodec::ProRes422)
        scene.video.compression = DefaultRate(320, 240);
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    recorder.writer->StartSessionAtSourceTime(MakeTime(0, 600));
    for (int i = 0; i < 45; ++i)
        ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i * 20, 600)));
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();
    ExpectPictures(scene, 45);
}

TEST_P(CodecTest, DecodesToWhatWasPaintedWithoutARate)
{
    const Scene scene = TheScene();
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    recorder.writer->StartSessionAtSourceTime(MakeTime(0, 600));
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i * 20, 600)));
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();
    ExpectPictures(scene, 20);
}

TEST_P(CodecTest, KeepsUnevenTimesExactlyFromTheSessionsStart)
{
    Scene scene = TheScene();
    scene.hasAudio = scene.hasMetadata = true;
    scene.audio = kAAC;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    // A clock of nanoseconds that has run for a while.
    const std::int64_t start = 7234567890123;
    recorder.writer->StartSessionAtSourceTime(MakeTime(start, 1000000000));
    std::vector<std::int64_t> expected;
    std::int64_t time = 0;
    for (int i = 0; i < 40; ++i) {
        expected.push_back(time);
        ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(start + time, 1000000000)));
        if (i % 10 == 0) {
            ASSERT_TRUE(recorder.AppendNote("note", MakeTime(start + time, 1000000000), MakeTime(1, 10)));
        }
        time += 10000000 + (i * 7919 % 31) * 1000001;
    }
    auto tone = Recorder::Tone(44100, 1, 0, 44100);
    tone->presentationTime = MakeTime(start, 1000000000);
    ASSERT_TRUE(recorder.audio->AppendSampleBuffer(tone));
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();

    const MovieView movie = ReadMovie(path);
    const TrackView& video = movie.Track("vide");
    EXPECT_EQ(video.timescale, 1000000000);
    std::vector<std::int64_t> stored;
    for (const TrackSample& sample : video.samples)
        stored.push_back(sample.presentation - video.edits.at(0).mediaTime);
    std::sort(stored.begin(), stored.end());
    EXPECT_EQ(stored, expected);
    EXPECT_EQ(movie.Track("meta").samples.size(), 4u);
    // The priming packet lies before the session; the sound itself begins with it.
    EXPECT_EQ(movie.Track("soun").edits.at(0).mediaTime, 1024);
    EXPECT_EQ(Times(path, "v").at(0), 0);
    EXPECT_EQ(Times(path, "v").size(), 40u);
    EXPECT_EQ(Times(path, "d").size(), 4u);
}

TEST_P(CodecTest, TagsColoursAndKeepsTheProfileTransformAndTags)
{
    Scene scene = TheScene();
    scene.transform = AffineTransform{0, 1, -1, 0, 240, 0};
    scene.tags = {{"title", "Prüfung"}, {"com.apple.quicktime.software", "qz"}};
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    const auto profile = std::make_shared<const std::vector<unsigned char>>(300, 42);
    ASSERT_TRUE(recorder.AppendPicture(0, TimeZero, profile));
    ASSERT_TRUE(recorder.AppendPicture(1, MakeTime(1, 30), profile));
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();

    const std::string probed = Probe(path,
                                     "-show_entries stream=codec_name,codec_tag_string,pix_fmt,color_range,"
                                     "color_space,color_transfer,color_primaries:stream_side_data=rotation,"
                                     "side_data_type:format_tags");
    const std::map<VideoCodec, std::string> codecs = {
        {VideoCodec::H264, "codec_name=h264\ncodec_tag_string=avc1\n"},
        {VideoCodec::HEVC, "codec_name=hevc\ncodec_tag_string=hvc1\n"},
        {VideoCodec::ProRes422, "codec_name=prores\ncodec_tag_string=apcn\n"}};
    EXPECT_EQ(probed.find(codecs.at(GetParam().codec)), 0u) << probed;
    const bool isProRes = GetParam().codec == VideoCodec::ProRes422;
    for (const std::string entry :
         {isProRes ? "pix_fmt=yuv422p10le" : "pix_fmt=yuv420p", "color_range=tv", "color_space=bt709",
          "color_primaries=bt709", isProRes ? "" : "color_transfer=iec61966-2-1", "rotation=-90",
          "side_data_type=ICC Profile", "TAG:title=Prüfung", "TAG:com.apple.quicktime.software=qz"})
        EXPECT_NE(probed.find(entry), std::string::npos) << entry << " in " << probed;
    // The file's own colour parameters: BT.709, sRGB, BT.709.
    const std::vector<unsigned char> entry = ReadMovie(path).Track("vide").entry.body;
    const std::vector<unsigned char> colours = {'c', 'o', 'l', 'r', 'n', 'c', 'l', 'c', 0, 1, 0, 13, 0, 1};
    EXPECT_NE(std::search(entry.begin(), entry.end(), colours.begin(), colours.end()), entry.end());
}

TEST_P(CodecTest, FillsAnotherSizeAndKeepsAnOddOne)
{
    Scene scene = TheScene();
    scene.video.width = 161;
    scene.video.height = 91;
    Recorder recorder(path, scene);
    ASSERT_TRUE(recorder.writer->StartWriting()) << recorder.writer->Reason();
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(recorder.AppendPicture(i, MakeTime(i, 30)));
    ASSERT_EQ(recorder.Finish(), Status::Completed) << recorder.writer->Reason();
    const TrackView video = ReadMovie(path).Track("vide");
    EXPECT_EQ(video.width, 161);
    EXPECT_EQ(video.height, 91);
    EXPECT_EQ(video.entry.U(24, 2), 162u);
    EXPECT_EQ(video.entry.U(26, 2), 92u);
    EXPECT_EQ(Decode(path).size(), 5u * 162 * 92 * 4);
}

std::string CaseName(const ::testing::TestParamInfo<CodecCase>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Codecs, CodecTest,
                         ::testing::Values(CodecCase{"H264", VideoCodec::H264, false, 35},
                                           CodecCase{"HEVC", VideoCodec::HEVC, false, 35},
                                           CodecCase{"ProRes", VideoCodec::ProRes422, false, 45},
                                           CodecCase{"H264RealTime", VideoCodec::H264, true, 35},
                                           CodecCase{"HEVCRealTime", VideoCodec::HEVC, true, 35}),
                         CaseName);

}   // namespace
}   // namespace QZ::Test
