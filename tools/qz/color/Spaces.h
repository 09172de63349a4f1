// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "QZ/Foundation/Color/CColor.h"

namespace QZ::Tool {

using Foundation::CColor;
using Triple = Math::CVector3<float>;

/// Whether the values of a space depend on the illuminant.
enum class Whites { None, Both };

/// A space of the library under the name that qz knows it by, with its way to and from linear sRGB, which no
/// direction clamps. (Encoded Display P3 alone is clamped to 0 to 1, as the library always does.)
struct Space {
    std::string_view name;      ///< "lab", "linear-rgb", ...
    std::string_view letters;   ///< Its components: "L a b".
    Whites whites;
    Triple (*from)(CColor::EIlluminant, const Triple& linear);
    Triple (*to)(CColor::EIlluminant, const Triple& value);

    /// 3, or 1 for a space of greys, whose value is the first of a triple.
    [[nodiscard]] int Size() const { return letters.find(' ') == std::string_view::npos ? 1 : 3; }
    [[nodiscard]] bool HasWhite() const { return whites == Whites::Both; }
};

/// All of them, in the order in which `qz color` lists them.
[[nodiscard]] std::span<const Space> Spaces();

/// The space of a name; capitals, hyphens and underscores do not count. Null when there is none.
[[nodiscard]] const Space* FindSpace(std::string_view name);

}   // namespace QZ::Tool
