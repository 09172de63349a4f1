// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "tools/qz/Context.h"
#include "tools/qz/Failure.h"
#include "tools/qz/Image.h"
#include "tools/qz/movie/MovieOptions.h"
#include "tools/qz/movie/MovieSummary.h"

namespace QZ::Tool {

/// A movie that becomes another.
struct MovieToMovie {
    std::string in;
    std::string out;
    MovieEncoding encoding;   ///< without a codec, that of the input where it is one that can be written
};

/// Works on every picture of a movie and writes it as another: times, rotation and sound stay. The output
/// appears whole or not at all; an interruption makes a shorter one.
/// \param doing      what goes on, for the progress.
/// \param operation  called on several threads at a time, with a picture of its own each.
/// Throws Failure, and what the operation throws.
[[nodiscard]] MovieSummary MakeMovie(const MovieToMovie& files, const std::string& doing,
                                     const std::function<void(Image&)>& operation, const Context& context);

/// The same, and prints what was made. \return as Tell
Status WorkOnMovie(const MovieToMovie& files, const std::string& doing,
                   const std::function<void(Image&)>& operation, Context& context);

}   // namespace QZ::Tool
