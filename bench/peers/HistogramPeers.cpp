// SPDX-License-Identifier: MIT
// Histograms of bytes, of lightness and of hue, and Otsu's threshold.
#include <vips/vips.h>

#include <opencv2/imgproc.hpp>

#include "QZ/Foundation/Analysis/COtsuMethod.h"
#include "QZ/Foundation/Analysis/Histograms.h"
#include "bench/peers/Peers.h"

namespace QZ::Bench {

using namespace Foundation;

namespace {

const std::vector<unsigned char>& Plane()
{
    static const std::vector<unsigned char> plane = [] {
        std::vector<unsigned char> green(static_cast<std::size_t>(Picture().Pixels()));
        for (std::size_t i = 0; i < green.size(); ++i)
            green[i] = Picture().rgba[4 * i + 1];
        return green;
    }();
    return plane;
}

cv::Mat PlaneMat()
{
    cv::setNumThreads(1);
    return {Picture().height, Picture().width, CV_8UC1, const_cast<unsigned char*>(Plane().data())};
}

cv::Mat RgbaMat()
{
    cv::setNumThreads(1);
    return {Picture().height, Picture().width, CV_8UC4, const_cast<unsigned char*>(Picture().rgba.data())};
}

void OpenCVHistogram(const cv::Mat& image, int channel, int bins, float end, cv::Mat& histogram)
{
    const float range[] = {0.0f, end};
    const float* ranges[] = {range};
    cv::calcHist(&image, 1, &channel, cv::Mat(), histogram, 1, &bins, ranges);
}

void QZ_ByteHistogram(benchmark::State& state)
{
    for (auto _ : state) {
        CGrayscaleHistogram histogram;
        histogram.Compute(Picture().width, Picture().height, 1, 0, Plane().data());
        benchmark::DoNotOptimize(histogram.bins.data());
    }
    CountPixels(state);
}
void OpenCV_ByteHistogram(benchmark::State& state)
{
    const cv::Mat image = PlaneMat();
    cv::Mat histogram;
    for (auto _ : state)
        OpenCVHistogram(image, 0, 256, 256.0f, histogram);
    CountPixels(state);
}

void QZ_ByteHistogramOfRGBA(benchmark::State& state)
{
    for (auto _ : state) {
        CGrayscaleHistogram histogram;
        histogram.Compute(Picture().width, Picture().height, 4, 1, Picture().rgba.data());
        benchmark::DoNotOptimize(histogram.bins.data());
    }
    CountPixels(state);
}
void OpenCV_ByteHistogramOfRGBA(benchmark::State& state)
{
    const cv::Mat image = RgbaMat();
    cv::Mat histogram;
    for (auto _ : state)
        OpenCVHistogram(image, 1, 256, 256.0f, histogram);
    CountPixels(state);
}

void QZ_Otsu(benchmark::State& state)
{
    cv::Mat out(Picture().height, Picture().width, CV_8UC1);
    for (auto _ : state) {
        CGrayscaleHistogram histogram;
        histogram.Compute(Picture().width, Picture().height, 1, 0, Plane().data());
        const int threshold = COtsuMethod<double, int>::Solution(histogram.count, histogram.bins);
        cv::threshold(PlaneMat(), out, threshold, 255, cv::THRESH_BINARY);
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}
/// OpenCV always writes the thresholded picture; it does so for the library's threshold too.
void OpenCV_Otsu(benchmark::State& state)
{
    const cv::Mat image = PlaneMat();
    cv::Mat out;
    for (auto _ : state)
        benchmark::DoNotOptimize(cv::threshold(image, out, 0, 255, cv::THRESH_OTSU | cv::THRESH_BINARY));
    CountPixels(state);
}

void GreyHistogram(benchmark::State& state, CGrayscaleWeightedHistogram::EGrayscaleFrom from)
{
    for (auto _ : state) {
        CGrayscaleWeightedHistogram histogram;
        histogram.Compute(from, true, CColor::eD65, Picture().width, Picture().height, Picture().rgba.data(),
                          0, 0, nullptr);
        benchmark::DoNotOptimize(histogram.bins.data());
    }
    CountPixels(state);
}
void QZ_LightnessHistogram(benchmark::State& state)
{
    GreyHistogram(state, CGrayscaleWeightedHistogram::eLXX);
}
void QZ_LuminanceHistogram(benchmark::State& state)
{
    GreyHistogram(state, CGrayscaleWeightedHistogram::eNonlinearY);
}
void OpenCV_LightnessHistogram(benchmark::State& state)
{
    const cv::Mat rgba = RgbaMat();
    cv::Mat rgb, lab, histogram, part;
    for (auto _ : state) {
        histogram = cv::Mat::zeros(256, 1, CV_32F);
        for (int y = 0; y < rgba.rows; y += 16) {
            cv::cvtColor(rgba.rowRange(y, std::min(y + 16, rgba.rows)), rgb, cv::COLOR_RGBA2RGB);
            cv::cvtColor(rgb, lab, cv::COLOR_RGB2Lab);
            OpenCVHistogram(lab, 0, 256, 256.0f, part);
            histogram += part;
        }
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}
void Vips_LightnessHistogram(benchmark::State& state)
{
    VIPS_INIT("peers");
    vips_concurrency_set(1);
    for (auto _ : state) {
        VipsImage* image =
            vips_image_new_from_memory(Picture().rgba.data(), Picture().rgba.size(), Picture().width,
                                       Picture().height, 4, VIPS_FORMAT_UCHAR);
        VipsImage *rgb = nullptr, *lab = nullptr, *L = nullptr, *bytes = nullptr, *histogram = nullptr;
        VipsImage* tagged = nullptr;
        vips_extract_band(image, &rgb, 0, "n", 3, nullptr);
        vips_copy(rgb, &tagged, "interpretation", VIPS_INTERPRETATION_sRGB, nullptr);
        vips_colourspace(tagged, &lab, VIPS_INTERPRETATION_LABS, nullptr);
        vips_extract_band(lab, &L, 0, nullptr);
        vips_linear1(L, &bytes, 255.0 / 32767.0, 0.5, "uchar", TRUE, nullptr);
        vips_hist_find(bytes, &histogram, nullptr);
        std::size_t size = 0;
        void* memory = vips_image_write_to_memory(histogram, &size);
        benchmark::DoNotOptimize(memory);
        g_free(memory);
        for (VipsImage* i : {image, rgb, tagged, lab, L, bytes, histogram})
            g_object_unref(i);
    }
    CountPixels(state);
}

void HueHistogram(benchmark::State& state, CHueWeightedHistogram::EHueColorSpace space)
{
    for (auto _ : state) {
        CHueWeightedHistogram histogram;
        histogram.Compute(256, space, true, CColor::eD65, Picture().Pixels(), Picture().rgba.data());
        benchmark::DoNotOptimize(histogram.weights.data());
    }
    CountPixels(state);
}
void QZ_HueHistogramLuv(benchmark::State& state)
{
    HueHistogram(state, CHueWeightedHistogram::eLuv);
}
void QZ_HueHistogramIPT(benchmark::State& state)
{
    HueHistogram(state, CHueWeightedHistogram::eIPT);
}
/// Luv, its angle and a plain count: without the saturation and lightness weights and without the sums.
void OpenCV_HueHistogramUnweighted(benchmark::State& state)
{
    const cv::Mat rgba = RgbaMat();
    cv::Mat rgb, unit, luv, angle, histogram, part;
    cv::Mat planes[3];
    for (auto _ : state) {
        histogram = cv::Mat::zeros(256, 1, CV_32F);
        for (int y = 0; y < rgba.rows; y += 16) {
            cv::cvtColor(rgba.rowRange(y, std::min(y + 16, rgba.rows)), rgb, cv::COLOR_RGBA2RGB);
            rgb.convertTo(unit, CV_32F, 1.0 / 255.0);
            cv::cvtColor(unit, luv, cv::COLOR_RGB2Luv);
            cv::split(luv, planes);
            cv::phase(planes[1], planes[2], angle);
            OpenCVHistogram(angle, 0, 256, 6.2831855f, part);
            histogram += part;
        }
        benchmark::ClobberMemory();
    }
    CountPixels(state);
}

QZ_PEER(QZ_LightnessHistogram);
QZ_PEER(QZ_LuminanceHistogram);
QZ_PEER(OpenCV_LightnessHistogram);
QZ_PEER(Vips_LightnessHistogram);
QZ_PEER(QZ_ByteHistogram);
QZ_PEER(OpenCV_ByteHistogram);
QZ_PEER(QZ_ByteHistogramOfRGBA);
QZ_PEER(OpenCV_ByteHistogramOfRGBA);
QZ_PEER(QZ_Otsu);
QZ_PEER(OpenCV_Otsu);
QZ_PEER(QZ_HueHistogramLuv);
QZ_PEER(QZ_HueHistogramIPT);
QZ_PEER(OpenCV_HueHistogramUnweighted);

}   // namespace
}   // namespace QZ::Bench
