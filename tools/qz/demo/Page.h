// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace QZ::Tool {

/// One thing that the page shows.
struct PageEntry {
    std::string group;   ///< The heading it stands under; entries of a group follow each other.
    std::string title;
    std::string text;             ///< What it does, a sentence.
    std::string result;           ///< What was measured; may be empty.
    std::string command;          ///< The line to type; may be empty.
    std::string picture;          ///< File name of the result, a picture or a movie.
    bool besides = true;          ///< Whether the picture before stands beside it.
    double milliseconds = -1.0;   ///< Negative: not measured.
    std::string before = {};      ///< What stands beside it; empty for the picture that all work on.
};

struct Page {
    std::string title;
    std::string summary;
    std::string before;   ///< File name of the picture that all work on.
    double megapixels = 0.0;
    std::vector<PageEntry> entries;
};

/// The page as HTML of one file that needs nothing but the pictures beside it: no script, no font, no
/// network.
[[nodiscard]] std::string PageAsHtml(const Page& page);

/// Text made safe for HTML.
[[nodiscard]] std::string Escaped(const std::string& text);

}   // namespace QZ::Tool
