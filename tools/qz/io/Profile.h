// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tools/qz/Image.h"

namespace QZ::Tool {

/// An ICC profile (ICC.1:2022, version 4) of the colour space: the same bytes each time, so that files are
/// reproducible.
[[nodiscard]] std::vector<unsigned char> MakeProfile(ColorSpace colorSpace);

}   // namespace QZ::Tool
