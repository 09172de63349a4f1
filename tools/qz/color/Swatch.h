// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tools/qz/Context.h"

namespace QZ::Tool {

/// A patch of a colour for a terminal that says (COLORTERM) it shows 24-bit colour; otherwise, and where
/// colour is not wanted, nothing.
/// \param columns  its width in characters.
[[nodiscard]] std::string Swatch(const Context& context, const unsigned char* rgb, int columns);

}   // namespace QZ::Tool
