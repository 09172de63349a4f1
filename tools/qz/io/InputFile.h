// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "tools/qz/Context.h"

namespace QZ::Tool {

/// Looks at the first bytes of an input, up to kHeadBytes; throws to refuse it before the rest is read.
using HeadCheck = std::function<void(std::span<const unsigned char>)>;
inline constexpr std::size_t kHeadBytes = 64;

/// All bytes of a file, or of standard input for "-".
/// Throws Failure: Status::Input when it cannot be read, Status::Malformed when it is larger than the limit.
[[nodiscard]] std::vector<unsigned char> ReadInput(const std::string& path, const Limits& limits,
                                                   const HeadCheck& check);

/// The name of an input in a message.
[[nodiscard]] std::string InputName(const std::string& path);

}   // namespace QZ::Tool
