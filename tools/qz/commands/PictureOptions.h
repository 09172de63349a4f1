// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "QZ/Foundation/Color/CColor.h"
#include "tools/qz/CommandLine.h"
#include "tools/qz/io/ImageReader.h"
#include "tools/qz/io/ImageWriter.h"

namespace QZ::Tool {

/// The operand IN and the options of reading: --max-pixels.
void AddInput(CLI::App& command, std::string& path, Limits& limits);

/// The operand OUT and the options of writing: --format, --quality.
void AddOutput(CLI::App& command, Output& output);

/// --illuminant d50|d65.
void AddIlluminant(CLI::App& command, Foundation::CColor::EIlluminant& illuminant);

/// What most commands are: one picture in, one picture out.
struct PictureToPicture {
    std::string in;
    Output out;
    Limits limits;

    void AddTo(CLI::App& command);
    /// Checks the output, then reads the input.
    [[nodiscard]] Image Read(Context& context) const;
    void Write(const Image& image, const Context& context) const { WriteImage(image, out, context); }
};

}   // namespace QZ::Tool
