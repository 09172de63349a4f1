// SPDX-License-Identifier: MIT
// 8-bit sRGB to a perceptual space in floats, and back.
#include <babl/babl.h>

#include <opencv2/imgproc.hpp>

#include "QZ/Foundation/Color/CColorRows.h"
#include "bench/peers/Peers.h"

namespace QZ::Bench {

using Foundation::CColor;
using Foundation::CColorRows;

namespace {

cv::Mat Rgba()
{
    cv::setNumThreads(1);
    const Photograph& picture = Picture();
    return {picture.height, picture.width, CV_8UC4, const_cast<unsigned char*>(picture.rgba.data())};
}

cv::Mat Floats()
{
    return {Picture().height, Picture().width, CV_32FC3, Scratch().data()};
}

/// OpenCV converts floats only from floats: the 8-bit picture is scaled first, a band of rows at a time.
void OpenCVFromBytes(benchmark::State& state, int code)
{
    const cv::Mat rgba = Rgba();
    cv::Mat out = Floats();
    cv::Mat rgb, unit;
    for (auto _ : state) {
        for (int y = 0; y < rgba.rows; y += 16) {
            const cv::Range rows(y, std::min(y + 16, rgba.rows));
            cv::cvtColor(rgba.rowRange(rows), rgb, cv::COLOR_RGBA2RGB);
            rgb.convertTo(unit, CV_32F, 1.0 / 255.0);
            cv::cvtColor(unit, out.rowRange(rows), code);
        }
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

void QZ_LabFromBytes(benchmark::State& state)
{
    for (auto _ : state)
        CColorRows::SRGBToLab(false, false, CColor::eD65, CColorRows::Pixels(Picture().rgba), Scratch());
    CountPixels(state);
}
void OpenCV_LabFromBytes(benchmark::State& state)
{
    OpenCVFromBytes(state, cv::COLOR_RGB2Lab);
}

void QZ_LuvFromBytes(benchmark::State& state)
{
    for (auto _ : state)
        CColorRows::SRGBToLuv(false, false, CColor::eD65, CColorRows::Pixels(Picture().rgba), Scratch());
    CountPixels(state);
}
void OpenCV_LuvFromBytes(benchmark::State& state)
{
    OpenCVFromBytes(state, cv::COLOR_RGB2Luv);
}

void QZ_IPTFromBytes(benchmark::State& state)
{
    for (auto _ : state)
        CColorRows::SRGBToIPT(false, false, CColor::eD65, CColorRows::Pixels(Picture().rgba), Scratch());
    CountPixels(state);
}
void Babl_OklabFromBytes(benchmark::State& state)
{
    babl_init();
    const Babl* fish = babl_fish(babl_format("R'G'B'A u8"), babl_format("Oklab float"));
    for (auto _ : state)
        babl_process(fish, Picture().rgba.data(), Scratch().data(), Picture().Pixels());
    CountPixels(state);
}

const std::vector<Color>& LabPicture()
{
    static const std::vector<Color> lab = [] {
        std::vector<Color> colors(Scratch().size());
        CColorRows::SRGBToLab(false, false, CColor::eD65, CColorRows::Pixels(Picture().rgba), colors);
        return colors;
    }();
    return lab;
}

void QZ_BytesFromLab(benchmark::State& state)
{
    static std::vector<unsigned char> out(Picture().rgba.size());
    const auto& lab = LabPicture();
    for (auto _ : state)
        CColorRows::LabToSRGB(false, false, CColor::eD65, lab, CColorRows::PixelsOut(out));
    CountPixels(state);
}
void OpenCV_BytesFromLab(benchmark::State& state)
{
    static std::vector<Color> scaled = LabPicture();
    static bool once = [] {
        for (Color& color : scaled)
            color *= 100.0f;
        return true;
    }();
    benchmark::DoNotOptimize(once);
    cv::setNumThreads(1);
    const cv::Mat lab(Picture().height, Picture().width, CV_32FC3, scaled.data());
    cv::Mat rgba(lab.rows, lab.cols, CV_8UC4);
    cv::Mat unit, bytes;
    for (auto _ : state) {
        for (int y = 0; y < lab.rows; y += 16) {
            const cv::Range rows(y, std::min(y + 16, lab.rows));
            cv::cvtColor(lab.rowRange(rows), unit, cv::COLOR_Lab2RGB);
            unit.convertTo(bytes, CV_8U, 255.0);
            cv::cvtColor(bytes, rgba.rowRange(rows), cv::COLOR_RGB2RGBA);
        }
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

QZ_PEER(QZ_LabFromBytes);
QZ_PEER(OpenCV_LabFromBytes);
QZ_PEER(QZ_LuvFromBytes);
QZ_PEER(OpenCV_LuvFromBytes);
QZ_PEER(QZ_IPTFromBytes);
QZ_PEER(Babl_OklabFromBytes);
QZ_PEER(QZ_BytesFromLab);
QZ_PEER(OpenCV_BytesFromLab);

}   // namespace
}   // namespace QZ::Bench
