// SPDX-License-Identifier: MIT
// Damaged picture files through `qz tones`: in this process, where the sanitizers see every byte, and through
// the built program, whose exit status and folder are checked. Ends with 1 at the first finding and keeps the
// file.
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <string>

#include "fuzz/Mutator.h"
#include "tests/tools/RunQz.h"
#include "tests/tools/SampleFiles.h"
#include "tests/tools/TemporaryFolder.h"
#include "tools/qz/Failure.h"
#include "tools/qz/io/ImageReader.h"
#include "tools/qz/io/ImageWriter.h"
#include "tools/qz/io/Profile.h"
#include "tools/qz/io/Raster.h"
#include "tools/qz/operations/Tones.h"

namespace {

using namespace QZ::Test;
using namespace QZ::Tool;
using QZ::Fuzz::Mutator;
using File = QZ::Fuzz::Bytes;

constexpr unsigned kSecondsForOne = 20;   // a hang; the slowest takes well under a second
constexpr const char* kKept = "fuzz-finding.bin";

std::vector<File> Seeds()
{
    const Bytes profile = MakeProfile(ColorSpace::DisplayP3);
    const Bytes exif = MakeExif(6, true);
    std::vector<File> seeds;
    for (const int channels : {1, 2, 3, 4})
        for (const int bits : {8, 16}) {
            const Samples samples = MakeSamples(33, 21, channels, bits);
            seeds.push_back(MakePNG(samples, {.interlaced = bits == 16, .exif = exif}));
            seeds.push_back(MakePNM(samples));
            seeds.push_back(
                MakeTIFF(samples, {.tiled = bits == 8, .separate = channels > 2, .orientation = 5}));
            seeds.push_back(MakeTIFF(samples, {.bigEndian = true, .compression = 5}));
        }
    const Samples color = MakeSamples(33, 21, 3, 8);
    seeds.push_back(MakePNG(color, {.profile = profile}));
    seeds.push_back(MakePNG(MakeSamples(33, 21, 1, 2)));
    seeds.push_back(MakePalettePNG(MakeSamples(33, 21, 1, 2), Bytes(16, 99)));
    seeds.push_back(MakeTIFF(MakeSamples(33, 21, 1, 1), {.whiteIsZero = true}));
    seeds.push_back(MakeTIFF(color, {.compression = 7, .profile = profile}));   // JPEG in TIFF
    for (const int channels : {1, 3, 4})
        for (const bool progressive : {false, true})
            seeds.push_back(
                MakeJPEG(MakeSamples(33, 21, channels, 8), {.interlaced = progressive, .exif = exif}));
    seeds.push_back(MakeJPEG(color, {.profile = profile}));
    seeds.push_back(MakeWebP(color, {.exif = exif, .profile = profile}));
    seeds.push_back(MakeWebP(MakeSamples(33, 21, 4, 8)));
    for (const char* text : {"P1\n3 2\n101010\n", "P2\n3 1\n9\n1 5 9\n", "P3\n1 2\n255\n1 2 3\n4 5 6\n"})
        seeds.emplace_back(text, text + std::strlen(text));
    return seeds;
}

void Keep(const File& file)
{
    std::ofstream(kKept, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
}

// The work of `qz tones` in memory. Only the two ways in which it may end well or say no are let through.
const char* TonesInMemory(const File& file)
{
    Limits limits;
    limits.pixels = 4'000'000;   // keeps the run fast: the mutator loves sizes
    try {
        Image image = DecodeImage(file, limits);
        ReduceToTones({}, image);
        (void)EncodePNG(image);
        return "read";
    } catch (const Defect&) {
        return "refused";
    } catch (const Failure&) {
        return "refused";
    }
}

int RunInMemory(int runs, std::uint32_t seed)
{
    const std::vector<File> seeds = Seeds();
    Mutator mutator(seed);
    std::map<std::string, int> outcomes;
    signal(SIGALRM, [](int) {
        constexpr char kMessage[] = "a hang: the file is in fuzz-finding.bin\n";
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage, sizeof kMessage - 1);
        _exit(1);
    });
    for (int run = 0; run < runs; ++run) {
        const File file = mutator.Next(seeds);
        Keep(file);   // a sanitizer ends the process where it stands
        alarm(kSecondsForOne);
        ++outcomes[TonesInMemory(file)];
        alarm(0);
    }
    std::remove(kKept);
    std::printf("in memory: %d files, %d read, %d refused\n", runs, outcomes["read"], outcomes["refused"]);
    return 0;
}

// What a run of the program may not do; empty for nothing.
std::string Misbehaviour(const Outcome& outcome, const std::vector<std::string>& names)
{
    const bool done = outcome.status == 0;
    const bool refused = outcome.status == static_cast<int>(Status::Malformed);
    if (!done && !refused)
        return "exit status " + std::to_string(outcome.status) + ": " + outcome.err;
    if (refused && (std::count(outcome.err.begin(), outcome.err.end(), '\n') != 1 || !outcome.out.empty()))
        return "more than its one line: " + outcome.err;
    const auto expected = done ? std::vector<std::string>{"in", "out.png"} : std::vector<std::string>{"in"};
    return names == expected ? "" : "a partial or missing file";
}

int RunPrograms(int programs, std::uint32_t seed)
{
    const std::vector<File> seeds = Seeds();
    Mutator mutator(seed);
    int done = 0;
    for (int run = 0; run < programs; ++run) {
        const File file = mutator.Next(seeds);
        const TemporaryFolder folder;
        folder.Write("in", std::string(file.begin(), file.end()));
        const Outcome outcome =
            RunQz({"tones", "in", "out.png", "--max-pixels", "4000000", "--quiet"},
                  {.folder = folder / ".", .timeoutSeconds = static_cast<int>(kSecondsForOne)});
        const std::string wrong = Misbehaviour(outcome, folder.Names());
        if (!wrong.empty()) {
            Keep(file);
            std::printf("run %d of seed %u: %s\nthe file is in %s\n", run, seed, wrong.c_str(), kKept);
            return 1;
        }
        done += outcome.status == 0 ? 1 : 0;
    }
    std::printf("programs: %d files, %d done, %d refused\n", programs, done, programs - done);
    return 0;
}

int Number(const char* text)
{
    int value = 0;
    const char* end = text + std::strlen(text);
    if (std::from_chars(text, end, value).ptr != end || value < 0) {
        std::fprintf(stderr, "not a number: %s\n", text);
        std::exit(2);
    }
    return value;
}

}   // namespace

int main(int argc, char** argv)
{
    int runs = 1000;
    int programs = 100;
    std::uint32_t seed = 1;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string_view option = argv[i];
        if (option == "--runs")
            runs = Number(argv[i + 1]);
        else if (option == "--programs")
            programs = Number(argv[i + 1]);
        else if (option == "--seed")
            seed = static_cast<std::uint32_t>(Number(argv[i + 1]));
    }
    const int result = RunInMemory(runs, seed);
    return result != 0 ? result : RunPrograms(programs, seed);
}
