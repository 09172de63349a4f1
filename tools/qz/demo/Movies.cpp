// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Movies.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tools/qz/movie/MovieToMovie.h"
#include "tools/qz/movie/RecordMovie.h"
#include "tools/qz/operations/Hues.h"

namespace QZ::Tool {

namespace {

namespace fs = std::filesystem;

constexpr char kScene[] = "scene.mov";
constexpr char kHues[] = "scene-hues.mov";

/// A folder for a while, away from the demo's own, which comes into being in one step.
class Workshop {
public:
    Workshop()
    {
        std::string pattern = (fs::temp_directory_path() / "qz-demo-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw Failure(Status::Output, pattern, "cannot be created", "");
        m_path = pattern;
    }
    ~Workshop()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    [[nodiscard]] std::string operator/(const char* name) const { return (m_path / name).string(); }

private:
    fs::path m_path;
};

std::vector<unsigned char> BytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string Describe(const MovieSummary& summary)
{
    if (summary.interrupted)
        throw Failure(Status::Interrupted, "", "interrupted", "");
    char text[96];
    std::snprintf(text, sizeof text, "%llu pictures in %.1f s, %.0f a second",
                  static_cast<unsigned long long>(summary.pictures), summary.took,
                  static_cast<double>(summary.pictures) / std::max(summary.took, 1e-3));
    return text;
}

DemoMovie Record(const Workshop& workshop, const Context& context)
{
    RecordOptions options;
    options.out = workshop / kScene;
    options.encoding.bitRate = 0.7;
    options.width = 480;
    options.height = 270;
    options.seconds = 4.0;
    const std::string result = Describe(RecordScene(options, context).summary);
    const PageEntry entry = {"Movies",
                             "A movie with sound",
                             "The moving test scene: all hues, eleven greys, a ball, and a bell each second.",
                             result,
                             "qz record scene.mov --size 480x270 --seconds 4 --bit-rate 0.7",
                             kScene,
                             false};
    return {entry, BytesOf(options.out)};
}

DemoMovie Repaint(const Workshop& workshop, const Context& context)
{
    const MovieToMovie files = {workshop / kScene, workshop / kHues, {}};
    const MovieSummary summary = MakeMovie(
        files, "demo: hues", [](Image& image) { ReduceToHues({}, image); }, context);
    const PageEntry entry = {"Movies",
                             "Four hues, picture by picture",
                             "Every picture is decoded, repainted and encoded; the sound passes through.",
                             Describe(summary),
                             "qz hues scene.mov scene-hues.mov",
                             kHues,
                             true,
                             -1.0,
                             kScene};
    return {entry, BytesOf(files.out)};
}

}   // namespace

std::vector<DemoMovie> MakeDemoMovies(const Context& context)
{
    std::vector<DemoMovie> movies;
    try {
        const Workshop workshop;
        movies.push_back(Record(workshop, context));
        movies.push_back(Repaint(workshop, context));
    } catch (const Failure& failure) {
        if (failure.status == Status::Interrupted)
            throw;
        context.Say(std::string("the page shows no movie: ") + failure.what());
        movies.clear();
    }
    return movies;
}

}   // namespace QZ::Tool
