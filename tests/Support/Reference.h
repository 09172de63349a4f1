// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/Support/Colours.h"

/// \file
/// The tables of tests/data: what each function gives for chosen inputs, worked in high precision by
/// tests/reference/generate.py, with a bound on the rounding of the function's float steps.

namespace QZ::Test {

/// One row of a table.
struct ReferenceRow {
    std::string text;   ///< As it stands in the file, for messages.
    std::string function;
    std::vector<int> flags;   ///< The flags in the function's order, then the illuminant, where it has one.
    std::vector<float> in;
    std::vector<double> expected;
    std::vector<double> bound;

    [[nodiscard]] bool Flag(std::size_t i) const { return flags.at(i) != 0; }
    /// The last of the flags.
    [[nodiscard]] Color::EIlluminant Illuminant() const
    {
        return static_cast<Color::EIlluminant>(flags.back());
    }
    /// The colour that starts at input 3 i.
    [[nodiscard]] Colour ColourAt(std::size_t i = 0) const
    {
        return {in.at(3 * i), in.at(3 * i + 1), in.at(3 * i + 2)};
    }
};

using Numbers = std::vector<float>;

/// What the library gives for a row.
using Evaluation = std::function<Numbers(const ReferenceRow&)>;

[[nodiscard]] inline Numbers List(const Colour& v)
{
    return {v.x, v.y, v.z};
}
[[nodiscard]] inline Numbers List(const Matrix& m)
{
    Numbers numbers;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            numbers.push_back(m(row, column));
    return numbers;
}

/// The rows of tests/data/<family>.txt.
[[nodiscard]] std::vector<ReferenceRow> ReadReference(const std::string& family);

/// Expects each row of the family's table within its bound. Each function of the table must have its
/// evaluation and each evaluation at least one row.
void ExpectReference(const std::string& family, const std::map<std::string, Evaluation>& evaluations);

}   // namespace QZ::Test
