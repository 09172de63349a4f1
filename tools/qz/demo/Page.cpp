// SPDX-License-Identifier: MIT
#include "tools/qz/demo/Page.h"

#include <cstdio>

namespace QZ::Tool {

namespace {

constexpr char kStyle[] = R"(
:root { color-scheme: light dark; --paper: #fbfaf8; --card: #fff; --ink: #232227; --quiet: #6a6870;
        --line: #e4e1dc; --accent: #0072b2; }
@media (prefers-color-scheme: dark) {
  :root { --paper: #17171a; --card: #202024; --ink: #ececee; --quiet: #a2a0a8; --line: #34343a; --accent: #56b4e9; }
}
* { box-sizing: border-box; }
body { margin: 0; background: var(--paper); color: var(--ink);
       font: 16px/1.55 system-ui, -apple-system, "Segoe UI", Roboto, sans-serif; }
main, header { max-width: 1180px; margin: 0 auto; padding: 0 20px; }
header { padding-top: 44px; }
h1 { font-size: 34px; line-height: 1.2; margin: 0 0 6px; overflow-wrap: anywhere; }
h2 { font-size: 24px; margin: 56px 0 14px; padding-bottom: 6px; border-bottom: 1px solid var(--line); }
h3 { font-size: 18px; margin: 0; }
p { margin: 4px 0 0; }
.quiet { color: var(--quiet); }
nav { margin: 18px 0 0; display: flex; flex-wrap: wrap; gap: 6px 18px; }
a { color: var(--accent); }
article { background: var(--card); border: 1px solid var(--line); border-radius: 12px; padding: 18px 20px 20px;
          margin: 0 0 22px; }
.top { display: flex; justify-content: space-between; gap: 16px; align-items: baseline; }
.time { color: var(--quiet); white-space: nowrap; font-variant-numeric: tabular-nums; }
.pair { display: grid; grid-template-columns: 1fr 1fr; gap: 14px; margin-top: 14px; }
.one { margin-top: 14px; }
figure { margin: 0; }
figcaption { font-size: 13px; color: var(--quiet); margin-top: 4px; }
img, video { display: block; width: 100%; height: auto; border-radius: 6px; background: #fff; }
code { display: block; margin-top: 12px; padding: 8px 12px; border-radius: 6px; background: var(--paper);
       border: 1px solid var(--line); font: 14px/1.5 ui-monospace, "DejaVu Sans Mono", Menlo, monospace;
       overflow-x: auto; white-space: pre; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
th { text-align: left; font-weight: 600; }
td, th { padding: 6px 10px 6px 0; border-bottom: 1px solid var(--line); }
td.number, th.number { text-align: right; white-space: nowrap; }
td.bar { width: 38%; }
.bar span { display: block; height: 10px; border-radius: 5px; background: var(--accent); min-width: 2px; }
footer { color: var(--quiet); margin: 40px auto; }
@media (max-width: 720px) { .pair { grid-template-columns: 1fr; } h1 { font-size: 26px; } td.bar, th.bar { display: none; } }
)";

std::string Number(const char* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string Milliseconds(double value)
{
    return value < 0.0 ? "" : Number(value < 10.0 ? "%.1f ms" : "%.0f ms", value);
}

std::string AnchorOf(const std::string& group)
{
    std::string anchor;
    for (const char c : group)
        anchor += c == ' ' ? '-' : c;
    return anchor;
}

std::string Figure(const std::string& file, const std::string& caption, const std::string& alternative)
{
    if (file.ends_with(".mov"))
        return "<figure><video src=\"" + file + "\" title=\"" + Escaped(alternative) +
               "\" controls loop muted playsinline preload=\"auto\"></video><figcaption>" + Escaped(caption) +
               "</figcaption></figure>\n";
    return "<figure><a href=\"" + file + "\"><img src=\"" + file + "\" alt=\"" + Escaped(alternative) +
           "\" loading=\"lazy\"></a><figcaption>" + Escaped(caption) + "</figcaption></figure>\n";
}

std::string Article(const PageEntry& entry, const Page& page)
{
    std::string html = "<article>\n<div class=\"top\"><h3>" + Escaped(entry.title) +
                       "</h3><span class=\"time\">" + Milliseconds(entry.milliseconds) +
                       "</span></div>\n<p>" + Escaped(entry.text) + "</p>\n";
    if (!entry.result.empty())
        html += "<p class=\"quiet\">" + Escaped(entry.result) + "</p>\n";
    if (entry.besides)
        html += "<div class=\"pair\">" +
                Figure(entry.before.empty() ? page.before : entry.before, "before", "what it was made of") +
                Figure(entry.picture, "after", entry.title) + "</div>\n";
    else
        html += "<div class=\"one\">" + Figure(entry.picture, "", entry.title) + "</div>\n";
    if (!entry.command.empty())
        html += "<code>" + Escaped(entry.command) + "</code>\n";
    return html + "</article>\n";
}

std::string TimesTable(const Page& page)
{
    double longest = 0.0;
    for (const PageEntry& entry : page.entries)
        longest = entry.milliseconds > longest ? entry.milliseconds : longest;
    std::string html =
        "<h2 id=\"times\">Times</h2>\n<article><table>\n<tr><th>Operation</th><th class=\"number\">Time"
        "</th><th class=\"number\">Megapixels a second</th><th class=\"bar\"></th></tr>\n";
    for (const PageEntry& entry : page.entries) {
        if (entry.milliseconds < 0.0)
            continue;
        const double rate =
            page.megapixels / (entry.milliseconds > 0.001 ? entry.milliseconds : 0.001) * 1000.0;
        html += "<tr><td>" + Escaped(entry.title) + "</td><td class=\"number\">" +
                Milliseconds(entry.milliseconds) + "</td><td class=\"number\">" + Number("%.1f", rate) +
                "</td><td class=\"bar\"><span style=\"width:" +
                Number("%.1f", longest > 0.0 ? 100.0 * entry.milliseconds / longest : 0.0) +
                "%\"></span></td></tr>\n";
    }
    return html +
           "</table>\n<p class=\"quiet\">The operation alone, on the whole picture, in one run: without "
           "reading, writing and reducing it for this page.</p></article>\n";
}

}   // namespace

std::string Escaped(const std::string& text)
{
    std::string safe;
    for (const char c : text) {
        switch (c) {
            case '&':
                safe += "&amp;";
                break;
            case '<':
                safe += "&lt;";
                break;
            case '>':
                safe += "&gt;";
                break;
            case '"':
                safe += "&quot;";
                break;
            case '\'':
                safe += "&#39;";
                break;
            default:
                safe += c;
        }
    }
    return safe;
}

std::string PageAsHtml(const Page& page)
{
    std::string navigation;
    std::string body;
    std::string group;
    for (const PageEntry& entry : page.entries) {
        if (entry.group != group) {
            group = entry.group;
            navigation += "<a href=\"#" + AnchorOf(group) + "\">" + Escaped(group) + "</a>\n";
            body += "<h2 id=\"" + AnchorOf(group) + "\">" + Escaped(group) + "</h2>\n";
        }
        body += Article(entry, page);
    }
    navigation += "<a href=\"#times\">Times</a>\n";
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
           Escaped(page.title) + "</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n<header>\n<h1>" +
           Escaped(page.title) + "</h1>\n<p class=\"quiet\">" + Escaped(page.summary) + "</p>\n<nav>\n" +
           navigation + "</nav>\n</header>\n<main>\n" + body + TimesTable(page) +
           "<footer><p>Made by qz, the command-line host of "
           "QZFoundation.</p></footer>\n</main>\n</body>\n</html>\n";
}

}   // namespace QZ::Tool
