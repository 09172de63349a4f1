// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace QZ::Tool {

/// What a picture may cost before it is refused unread.
struct Limits {
    /// Pixels a picture may have: by default 256 megapixels.
    std::uint64_t pixels = 256'000'000;

    /// Bytes that a file or a decoded picture may take: 1 GiB, or what `pixels` raises it to.
    [[nodiscard]] std::uint64_t Bytes() const
    {
        return pixels > (1u << 28) ? 4 * pixels : std::uint64_t{1} << 30;
    }
};

/// What every command knows: the common options and where words go.
///
/// Results go to standard output, all talk to standard error. When the picture itself goes to standard
/// output, results join the talk.
class Context {
public:
    Context();

    bool quiet = false;             ///< No talk: neither remarks nor progress.
    bool force = false;             ///< Existing files may be replaced.
    bool json = false;              ///< Results as JSON.
    bool pictureOnStdout = false;   ///< A picture is written to standard output.
    Limits limits;

    /// Whether standard output shows colour: it is a terminal and NO_COLOR is not set.
    [[nodiscard]] bool ColorOnStdout() const { return m_colorOnStdout; }

    /// A result: lines of text, each ended by a newline.
    void Print(std::string_view text) const;
    /// A result as JSON, one document.
    void PrintJson(const nlohmann::ordered_json& document) const;
    /// A remark on standard error, unless quiet.
    void Say(std::string_view line) const;
    /// What goes on just now: a line on the terminal that the next one replaces. An empty text clears it.
    void Progress(std::string_view text) const;

private:
    bool m_colorOnStdout;
    bool m_progressOnStderr;
};

/// A text fit for one line of a terminal: control characters become '?'.
[[nodiscard]] std::string OneLine(std::string_view text);

}   // namespace QZ::Tool
