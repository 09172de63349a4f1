// SPDX-License-Identifier: MIT
// A picture in 8 greys, in 8 hues, and balanced to white.
#include <libimagequant.h>

#include <algorithm>
#include <opencv2/xphoto.hpp>

#include "QZ/Foundation/Analysis/CWhiteBalance.h"
#include "QZ/Foundation/Analysis/ColorQuantization.h"
#include "QZ/Foundation/Analysis/GrayscaleQuantization.h"
#include "QZ/Foundation/Analysis/GreyLevels.h"
#include "bench/peers/Peers.h"

namespace QZ::Bench {

using namespace Foundation;

namespace {

using Bytes = std::vector<unsigned char>;

void QZ_EightGreys(benchmark::State& state)
{
    const GreyLevels levelsOf(CGrayscaleWeightedHistogram::eLXX, true, CColor::eD65);
    Bytes out(static_cast<std::size_t>(Picture().Pixels()));
    for (auto _ : state) {
        levelsOf(Picture().rgba.data(), Picture().Pixels(), out.data());
        CGrayscaleWeightedHistogram histogram;
        histogram.ComputeFromComponent(Picture().width, Picture().height, 1, 0, out.data(), 0, 0, nullptr);
        CGrayscaleHistogramHierarchicalClusterQuantization quantizer;
        quantizer.Compute(0.0f, 1.0f, 1.0f, 0.0f, 1.0f, 1.0f, 0.85f, 8, 0.0, histogram);
        for (unsigned char& grey : out)
            grey = quantizer.table[grey];
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

/// A picture's palette and the index of each pixel, without dithering, at the highest speed.
void Quantize(benchmark::State& state, const Bytes& rgba)
{
    Bytes indices(static_cast<std::size_t>(Picture().Pixels()));
    for (auto _ : state) {
        liq_attr* attributes = liq_attr_create();
        liq_set_max_colors(attributes, 8);
        liq_set_speed(attributes, 10);
        liq_image* image =
            liq_image_create_rgba(attributes, rgba.data(), Picture().width, Picture().height, 0.0);
        liq_result* result = nullptr;
        if (liq_image_quantize(image, attributes, &result) != LIQ_OK)
            state.SkipWithError("libimagequant failed");
        liq_set_dithering_level(result, 0.0f);
        liq_write_remapped_image(result, image, indices.data(), indices.size());
        benchmark::DoNotOptimize(liq_get_palette(result));
        liq_result_destroy(result);
        liq_image_destroy(image);
        liq_attr_destroy(attributes);
    }
    CountPixels(state);
}

/// Luma in all channels.
Bytes GreyPicture()
{
    Bytes grey = Picture().rgba;
    for (std::size_t i = 0; i < grey.size(); i += 4) {
        const int luma = (77 * grey[i] + 150 * grey[i + 1] + 29 * grey[i + 2]) / 256;
        std::fill_n(&grey[i], 3, static_cast<unsigned char>(luma));
    }
    return grey;
}

void Liq_EightGreys(benchmark::State& state)
{
    static const Bytes grey = GreyPicture();
    Quantize(state, grey);
}

void QZ_EightHues(benchmark::State& state)
{
    using Quantizer = CHueWeightedHistogramHierarchicalClusterQuantization;
    Bytes picture = Picture().rgba;
    for (auto _ : state) {
        Quantizer quantizer;
        quantizer.Compute(256, 8, 0.0, CHueWeightedHistogram::eIPT, true, CColor::eD65, Quantizer::eDirection,
                          Picture().width, Picture().height, Picture().rgba.data());
        std::copy(Picture().rgba.begin(), Picture().rgba.end(), picture.begin());
        quantizer.Recolor(Picture().width, Picture().height, CColor::eD65, picture.data());
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}
void Liq_EightColours(benchmark::State& state)
{
    Quantize(state, Picture().rgba);
}

void QZ_WhiteBalance(benchmark::State& state)
{
    Bytes out(Picture().rgba.size());
    std::vector<Color> linear(static_cast<std::size_t>(Picture().Pixels()));
    for (auto _ : state) {
        CWhiteBalance::UCharToCVector3fBuffer(true, Picture().width, Picture().height, Picture().rgba.data(),
                                              linear);
        Color white;
        CWhiteBalance::SourceIlluminant(Color(1.0f, 0.9f, 0.8f), CColor::eD50, false, white);
        CWhiteBalance::Balance(CColor::eD50, true, false, white, Picture().width, Picture().height, linear,
                               out.data());
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}
void OpenCV_WhiteBalance(benchmark::State& state)
{
    cv::setNumThreads(1);
    const cv::Mat rgba(Picture().height, Picture().width, CV_8UC4,
                       const_cast<unsigned char*>(Picture().rgba.data()));
    const auto balance = cv::xphoto::createLearningBasedWB();
    cv::Mat bgr, balanced, out;
    for (auto _ : state) {
        cv::cvtColor(rgba, bgr, cv::COLOR_RGBA2BGR);
        balance->balanceWhite(bgr, balanced);
        cv::cvtColor(balanced, out, cv::COLOR_BGR2RGBA);
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

QZ_PEER(QZ_EightGreys);
QZ_PEER(Liq_EightGreys);
QZ_PEER(QZ_EightHues);
QZ_PEER(Liq_EightColours);
QZ_PEER(QZ_WhiteBalance);
QZ_PEER(OpenCV_WhiteBalance);

}   // namespace
}   // namespace QZ::Bench
