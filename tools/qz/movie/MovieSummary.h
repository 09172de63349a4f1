// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "tools/qz/Context.h"
#include "tools/qz/Failure.h"

namespace QZ::Tool {

/// What was written.
struct MovieSummary {
    int width = 0;
    int height = 0;
    std::uint64_t pictures = 0;
    double seconds = 0.0;       ///< of the movie
    double took = 0.0;          ///< seconds
    bool interrupted = false;   ///< it is shorter than it was to be
};

/// Prints it, as text or as JSON. \return Status::Done, or Status::Interrupted with a remark.
Status Tell(const MovieSummary& summary, const std::string& path, Context& context);

}   // namespace QZ::Tool
