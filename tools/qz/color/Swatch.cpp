// SPDX-License-Identifier: MIT
#include "tools/qz/color/Swatch.h"

#include <cstdlib>
#include <string_view>

namespace QZ::Tool {

namespace {

bool ShowsTrueColor()
{
    const char* value = std::getenv("COLORTERM");
    const std::string_view kind = value != nullptr ? value : "";
    return kind == "truecolor" || kind == "24bit";
}

}   // namespace

std::string Swatch(const Context& context, const unsigned char* rgb, int columns)
{
    if (!context.ColorOnStdout() || !ShowsTrueColor())
        return {};
    return "\033[48;2;" + std::to_string(rgb[0]) + ";" + std::to_string(rgb[1]) + ";" +
           std::to_string(rgb[2]) + "m" + std::string(static_cast<std::size_t>(columns), ' ') + "\033[0m";
}

}   // namespace QZ::Tool
