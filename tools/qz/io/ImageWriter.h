// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/qz/Context.h"
#include "tools/qz/Image.h"

namespace QZ::Tool {

enum class FileFormat { PNG, JPEG };

/// How and where a picture is written.
struct Output {
    std::string path;                   ///< A file, or "-" for standard output.
    std::optional<FileFormat> format;   ///< As told; otherwise by the name's ending, PNG for standard output.
    int quality = 92;                   ///< Of a JPEG, 1 to 100.
};

/// Says before any work whether the picture can be written there: a known format, and nothing in the way.
/// Throws Failure: Status::Usage or Status::Output.
void CheckOutput(const Output& output, const Context& context);

/// Writes the picture, whole or not at all, in the colour space it says it is in. Transparent parts of a
/// picture that becomes a JPEG come to lie on white. Throws Failure: Status::Output or Status::Encoder.
void WriteImage(const Image& image, const Output& output, const Context& context);

/// A PNG file: grey when every pixel is, without alpha when every pixel is opaque. Throws Failure
/// (Status::Encoder).
[[nodiscard]] std::vector<unsigned char> EncodePNG(const Image& image);

/// A JPEG file with the profile of its colour space; transparent parts lie on white. Throws Failure
/// (Status::Encoder).
/// \param quality  1 to 100.
[[nodiscard]] std::vector<unsigned char> EncodeJPEG(const Image& image, int quality);

}   // namespace QZ::Tool
