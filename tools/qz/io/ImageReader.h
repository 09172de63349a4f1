// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "tools/qz/Context.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

/// Reads a picture: PNG, JPEG, WebP, TIFF or PNM by its content, whatever its name; 8 or 16 bits, grey,
/// palette, colour, CMYK, alpha. It comes upright, in sRGB, with 8 bits a channel. Remarks on the file go to
/// context.Say(). \param path  a file, or "-" for standard input. Throws Failure: Status::Input or
/// Status::Malformed.
[[nodiscard]] Image ReadImage(const std::string& path, const Context& context);

/// The same from memory. Throws Defect.
[[nodiscard]] Image DecodeImage(const std::vector<unsigned char>& file, const Limits& limits);

}   // namespace QZ::Tool
