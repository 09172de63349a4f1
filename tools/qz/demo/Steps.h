// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/qz/Image.h"

namespace QZ::Tool {

/// One operation that the demo shows.
struct Step {
    std::string group;
    std::string title;
    std::string text;      ///< What it does, a sentence.
    std::string name;      ///< Of its file, without ending.
    std::string command;   ///< The command that does the same; empty for none.
    std::string options;
    /// Changes the picture; returns what was measured, or nothing.
    std::function<std::string(Image&)> run;
};

/// All that change a picture, in the order in which the page shows them.
[[nodiscard]] std::vector<Step> DemoSteps();

/// Adds those on hues and on the white balance.
void AddColorSteps(std::vector<Step>& steps);

}   // namespace QZ::Tool
