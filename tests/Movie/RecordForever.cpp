// SPDX-License-Identifier: MIT
// Records a movie in real time until it is killed, and tells the number of pictures after each one. With a
// number of pictures it takes no time between them, finishes the movie, and then waits to be killed. usage:
// RecordForever PATH h264|hevc|prores [PICTURES]
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/Movie/Recorder.h"

int main(int argc, char** argv)
{
    using namespace QZ::Test;
    if (argc != 3 && argc != 4)
        return 2;
    const int pictures = argc == 4 ? std::atoi(argv[3]) : -1;
    const std::string codec = argv[2];
    Scene scene;
    scene.video.codec = codec == "hevc"     ? VideoCodec::HEVC
                        : codec == "prores" ? VideoCodec::ProRes422
                                            : VideoCodec::H264;
    scene.realTime = scene.hasAudio = true;
    scene.audio = kAAC;
    Recorder recorder(argv[1], scene);
    if (!recorder.writer->StartWriting()) {
        std::fprintf(stderr, "%s\n", recorder.writer->Reason().c_str());
        return 1;
    }
    recorder.writer->StartSessionAtSourceTime(TimeZero);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i != pictures; ++i) {
        if (recorder.AppendPicture(i, MakeTime(i, 30)) && recorder.AppendTone(44100, 1, i * 1470, 1470)) {
            std::printf("%d\n", i + 1);
            std::fflush(stdout);
        }
        if (pictures < 0)
            std::this_thread::sleep_until(start + std::chrono::microseconds(33333) * (i + 1));
    }
    recorder.writer->FinishWriting([] {});
    for (;;)
        ::pause();
}
