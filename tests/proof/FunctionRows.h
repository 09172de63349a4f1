// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace QZ::Foundation {

/// The functions on trial, on one instruction set.
struct FunctionRows {
    /// out[i] = f(x[i]); n is a multiple of 16.
    using Row = void (*)(const float* x, std::size_t n, float* out);

    std::int64_t target;   ///< as Highway counts them, 0 for one float at a time
    std::map<std::string_view, Row> rows;
};

/// One for single floats, and one for each instruction set, of this machine or not.
std::vector<FunctionRows>& AllFunctionRows();

}   // namespace QZ::Foundation
