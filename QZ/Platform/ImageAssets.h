// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "QZ/Export.h"
#include "QZ/Platform/ImageIO.h"

namespace QZ::Platform {

/// The application's own pictures, found by name: PNG files in a directory, none until the host sets it. From
/// any thread.
class QZ_API ImageAssets {
public:
    static void SetDirectory(std::optional<std::string> directory);
    [[nodiscard]] static std::optional<std::string> Directory();

    /// The picture in the file `name` of the directory or, where there is none, in `name`.png.
    /// \return none when neither is a picture, or no directory is set.
    [[nodiscard]] static std::optional<Image> Named(const std::string& name);
};

}   // namespace QZ::Platform
