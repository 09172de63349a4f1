// SPDX-License-Identifier: MIT
// Runs every benchmark several times, all in turn, and prints the table of docs/performance.md.
#include <cstdio>

#include "bench/Support/BestOfRuns.h"

namespace {

struct Row {
    const char* work;
    const char* library;   ///< the benchmarks' names
    const char* peer;
    const char* peerName;
};

constexpr Row kRows[] = {
    {"8-bit sRGB to Lab, float", "QZ_LabFromBytes", "OpenCV_LabFromBytes", "OpenCV"},
    {"8-bit sRGB to Luv, float", "QZ_LuvFromBytes", "OpenCV_LuvFromBytes", "OpenCV"},
    {"8-bit sRGB to IPT, float", "QZ_IPTFromBytes", "Babl_OklabFromBytes", "babl (Oklab)"},
    {"Lab, float, to 8-bit RGBA", "QZ_BytesFromLab", "OpenCV_BytesFromLab", "OpenCV"},
    {"grey histogram by lightness", "QZ_LightnessHistogram", "OpenCV_LightnessHistogram", "OpenCV (Lab)"},
    {"", "QZ_LightnessHistogram", "Vips_LightnessHistogram", "libvips"},
    {"grey histogram by luminance", "QZ_LuminanceHistogram", "OpenCV_LightnessHistogram", "OpenCV (Lab)"},
    {"byte histogram", "QZ_ByteHistogram", "OpenCV_ByteHistogram", "OpenCV"},
    {"byte histogram of RGBA", "QZ_ByteHistogramOfRGBA", "OpenCV_ByteHistogramOfRGBA", "OpenCV"},
    {"byte histogram and Otsu's threshold", "QZ_Otsu", "OpenCV_Otsu", "OpenCV"},
    {"weighted hue histogram, Luv", "QZ_HueHistogramLuv", "OpenCV_HueHistogramUnweighted",
     "OpenCV (not weighted)"},
    {"weighted hue histogram, IPT", "QZ_HueHistogramIPT", "OpenCV_HueHistogramUnweighted",
     "OpenCV (not weighted)"},
    {"8 greys, picture to picture", "QZ_EightGreys", "Liq_EightGreys", "libimagequant, speed 10"},
    {"8 hues, picture to picture", "QZ_EightHues", "Liq_EightColours", "libimagequant, speed 10"},
    {"white balance, picture to picture", "QZ_WhiteBalance", "OpenCV_WhiteBalance", "OpenCV (learned)"},
    {"power 2.2 of floats", "QZ_Power", "Sleef_Power", "SLEEF"},
    {"", "QZ_Power", "C_Power", "C library"},
};

void PrintTable(const QZ::Bench::BestOfRuns& best)
{
    std::puts("\n| work | here, ns | peer | peer, ns | ratio |\n|---|---:|---|---:|---:|");
    for (const Row& row : kRows) {
        const auto library = best.Of(row.library);
        const auto peer = best.Of(row.peer);
        if (library && peer)
            std::printf("| %s | %.2f | %s | %.2f | %.1f |\n", row.work, *library, row.peerName, *peer,
                        *peer / *library);
    }
}

}   // namespace

int main(int argc, char** argv)
{
    QZ::Bench::BestOfRuns best;
    if (!QZ::Bench::RunInTurn(argc, argv, best))
        return 1;
    PrintTable(best);
}
