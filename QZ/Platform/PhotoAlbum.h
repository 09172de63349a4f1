// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>

#include "QZ/Export.h"

namespace QZ::Platform {

/// The user's photo album: a directory, none until the host sets it. From any thread.
class QZ_API PhotoAlbum {
public:
    /// None again refuses what is saved.
    static void SetDirectory(std::optional<std::string> directory);
    [[nodiscard]] static std::optional<std::string> Directory();

    /// Adds a PNG picture under the first free name of IMG_0001.png, IMG_0002.png, ...; nothing is
    /// overwritten.
    /// \return the path of the new file; none when there is no album or it refuses the file.
    static std::optional<std::string> SavePNG(std::span<const unsigned char> file);
};

}   // namespace QZ::Platform
