// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tools/qz/draw/Path.h"

namespace QZ::Tool {

/// The letters of qz, built in: ASCII and a few signs (° · × – − → …; in the regular face also ± ² ³ — ′ ″ ≤
/// ≥ π σ μ Δ α). Any other character is drawn as a question mark.
enum class Face { Regular, Bold };

/// The outlines of a line of UTF-8 text.
/// \param origin  the left end of the base line.
/// \param size    pixels an em; capitals are 0.73 of it high.
[[nodiscard]] Path TextOutline(Face face, std::string_view text, Point origin, float size);

/// The advance of the text in pixels.
[[nodiscard]] float TextWidth(Face face, std::string_view text, float size);

/// The height of a capital letter for an em of 1.
inline constexpr float kCapitalHeight = 0.729f;

}   // namespace QZ::Tool
