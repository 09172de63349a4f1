// SPDX-License-Identifier: MIT
#include "tools/qz/movie/MovieSummary.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace QZ::Tool {

namespace {

std::string Describe(const MovieSummary& summary)
{
    char text[160];
    std::snprintf(text, sizeof text, "%llu picture%s of %d x %d, %.2f s; %.1f pictures a second\n",
                  static_cast<unsigned long long>(summary.pictures), summary.pictures == 1 ? "" : "s",
                  summary.width, summary.height, summary.seconds,
                  static_cast<double>(summary.pictures) / (summary.took > 1e-3 ? summary.took : 1e-3));
    return text;
}

nlohmann::ordered_json Json(const MovieSummary& summary)
{
    return {{"width", summary.width},     {"height", summary.height}, {"pictures", summary.pictures},
            {"seconds", summary.seconds}, {"took", summary.took},     {"interrupted", summary.interrupted}};
}

}   // namespace

Status Tell(const MovieSummary& summary, const std::string& path, Context& context)
{
    if (context.json)
        context.PrintJson(Json(summary));
    else
        context.Print(Describe(summary));
    if (!summary.interrupted)
        return Status::Done;
    char text[64];
    std::snprintf(text, sizeof text, " is complete as far as %.2f s", summary.seconds);
    context.Say("interrupted: " + path + text);
    return Status::Interrupted;
}

}   // namespace QZ::Tool
