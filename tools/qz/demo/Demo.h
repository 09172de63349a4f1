// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "tools/qz/Context.h"
#include "tools/qz/Image.h"
#include "tools/qz/demo/Folder.h"

namespace QZ::Tool {

/// Runs everything on a picture, and on a movie that it records.
/// \param name      what to call the picture on the page and in the command lines.
/// \param progress  told what goes on.
/// \return  the files of the folder, index.html last. Pictures are reduced to 1400 pixels.
[[nodiscard]] std::vector<FolderFile> MakeDemo(const Image& image, const std::string& name,
                                               const Context& progress);

}   // namespace QZ::Tool
