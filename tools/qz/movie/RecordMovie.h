// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "tools/qz/Context.h"
#include "tools/qz/movie/MovieOptions.h"
#include "tools/qz/movie/MovieSummary.h"

namespace QZ::Tool {

/// What `qz record` records.
struct RecordOptions {
    std::string out;
    MovieEncoding encoding;   ///< H.264 without a codec
    int width = 1280;
    int height = 720;
    int rate = 30;   ///< pictures a second
    double seconds = 5.0;
    int turn = 0;          ///< degrees clockwise by which it is turned when shown: 0, 90, 180 or 270
    bool isLive = false;   ///< a second takes a second; pictures that find no room are dropped
};

struct Recorded {
    MovieSummary summary;
    int dropped = 0;   ///< pictures
};

/// Records the moving test scene with a tone, through the library's real-time recorder. The output appears
/// whole or not at all; an interruption makes a shorter one. Throws Failure.
[[nodiscard]] Recorded RecordScene(const RecordOptions& options, const Context& context);

}   // namespace QZ::Tool
