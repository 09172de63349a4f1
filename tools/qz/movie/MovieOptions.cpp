// SPDX-License-Identifier: MIT
#include "tools/qz/movie/MovieOptions.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/qz/Failure.h"
#include "tools/qz/io/OutputFile.h"

namespace QZ::Tool {

bool IsMovieName(const std::string& path)
{
    std::string ending = std::filesystem::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".mov";
}

void CheckMovieOutput(const std::string& path, bool force)
{
    if (!IsMovieName(path))
        throw Failure(Status::Usage, path, "a movie is written as QuickTime", "end the name in .mov");
    CheckOutput(path, force);
}

void AddMovieEncoding(Command& command, MovieEncoding& encoding, const std::string& defaultCodec)
{
    command.AddOption("--codec", encoding.codec, "Of a movie: h264, hevc or prores (" + defaultCodec + ")")
        .OneOf({"h264", "hevc", "prores"})
        .TypeName("NAME");
    command
        .AddOption("--bit-rate", encoding.bitRate,
                   "Of a movie, times 0.617 bits for each pixel; ProRes has its own (1)")
        .Between(0.01, 100)
        .TypeName("X");
}

}   // namespace QZ::Tool
