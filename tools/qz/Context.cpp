// SPDX-License-Identifier: MIT
#include "tools/qz/Context.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace QZ::Tool {

namespace {

// https://no-color.org: set, and not empty, whatever the value.
bool NoColor()
{
    const char* value = std::getenv("NO_COLOR");
    return value != nullptr && *value != '\0';
}

bool DumbTerminal()
{
    const char* value = std::getenv("TERM");
    return value != nullptr && std::string_view(value) == "dumb";
}

void Write(std::FILE* stream, std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stream);
}

}   // namespace

Context::Context()
    : m_colorOnStdout(isatty(STDOUT_FILENO) == 1 && !NoColor() && !DumbTerminal()),
      m_progressOnStderr(isatty(STDERR_FILENO) == 1 && !DumbTerminal())
{}

void Context::Print(std::string_view text) const
{
    if (pictureOnStdout && quiet)
        return;
    Progress({});
    Write(pictureOnStdout ? stderr : stdout, text);
}

void Context::PrintJson(const nlohmann::ordered_json& document) const
{
    using nlohmann::ordered_json;
    // A file name need not be UTF-8; its odd bytes become U+FFFD rather than an error.
    Print(document.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n");
}

void Context::Say(std::string_view line) const
{
    if (quiet)
        return;
    Progress({});
    Write(stderr, "qz: " + OneLine(line) + "\n");
}

void Context::Progress(std::string_view text) const
{
    if (quiet || !m_progressOnStderr)
        return;
    Write(stderr, "\r\033[K" + OneLine(text));
    std::fflush(stderr);
}

std::string OneLine(std::string_view text)
{
    std::string line(text);
    for (char& c : line)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    return line;
}

}   // namespace QZ::Tool
