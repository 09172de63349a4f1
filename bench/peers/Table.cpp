// SPDX-License-Identifier: MIT
// Runs every benchmark several times, all in turn, and prints the table of docs/performance.md.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <vector>

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

/// Prints as usual and keeps the best processor time for an item, in nanoseconds, of each benchmark.
class BestOfRuns : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto items = run.counters.find("items_per_second");
            if (run.run_type != Run::RT_Iteration || items == run.counters.end())
                continue;
            double& best = m_best.try_emplace(run.run_name.function_name, std::numeric_limits<double>::max())
                               .first->second;
            best = std::min(best, 1e9 / items->second);
        }
    }

    void PrintTable() const
    {
        std::puts("\n| work | here, ns | peer | peer, ns | ratio |\n|---|---:|---|---:|---:|");
        for (const Row& row : kRows) {
            const auto library = m_best.find(row.library);
            const auto peer = m_best.find(row.peer);
            if (library != m_best.end() && peer != m_best.end())
                std::printf("| %s | %.2f | %s | %.2f | %.1f |\n", row.work, library->second, row.peerName,
                            peer->second, peer->second / library->second);
        }
    }

private:
    std::map<std::string, double> m_best;
};

}   // namespace

int main(int argc, char** argv)
{
    // Later arguments win over these.
    std::vector<char*> arguments = {argv[0]};
    std::string defaults[] = {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=7",
                              "--benchmark_min_time=0.1"};
    for (std::string& argument : defaults)
        arguments.push_back(argument.data());
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    BestOfRuns reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintTable();
}
