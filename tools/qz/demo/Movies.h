// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tools/qz/Context.h"
#include "tools/qz/demo/Page.h"

namespace QZ::Tool {

/// A movie of the page with what is said of it.
struct DemoMovie {
    PageEntry entry;
    std::vector<unsigned char> bytes;
};

/// Records the moving test scene, and repaints it in a few hues. None, with a remark, where movies cannot be
/// written. Throws Failure when it is interrupted.
[[nodiscard]] std::vector<DemoMovie> MakeDemoMovies(const Context& context);

}   // namespace QZ::Tool
