// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// \file
/// Whether this machine computes what every other does: digests of the results of every function, on each
/// instruction set that the machine has, against a list that came with the program.

namespace QZ::Tool::Selftest {

/// A function and the digest of its results.
struct Line {
    std::string name;
    std::string digest;
};

/// What one instruction set gave.
struct Outcome {
    std::string target;        ///< The name of the instruction set.
    std::vector<Line> lines;   ///< All functions, in a fixed order.
    std::vector<std::string>
        different;   ///< Names whose line is not on the list, and names on the list without a line.
};

/// Told the instruction set and the function about to run.
using Progress = std::function<void(const std::string& target, const std::string& name)>;

/// Runs what works on one colour once, and rows and analyses once for each instruction set.
/// \param words  unless empty, only functions whose names have one of these in them
[[nodiscard]] std::vector<Outcome> Run(const Progress& progress, const std::vector<std::string>& words = {});

/// "digest  name", a line each: the form of the list.
[[nodiscard]] std::string AsText(const std::vector<Line>& lines);

/// The list that came with the program.
extern const std::string_view expectedText;

}   // namespace QZ::Tool::Selftest
