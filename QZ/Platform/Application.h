// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "QZ/Export.h"

namespace QZ::Platform {

/// What the library wants to know of the program that it is part of. From any thread.
class QZ_API Application {
public:
    /// The program's name, which begins the names of its temporary files: what the host has set or, before
    /// that, the name of the executable file.
    [[nodiscard]] static std::string BundleName();
    static void SetBundleName(std::string name);

    /// The folder for temporary files, ending with '/': what the host has set or, before that, the
    /// environment variable TMPDIR or, where that is missing or empty, "/tmp/".
    [[nodiscard]] static std::string TemporaryDirectory();
    /// None goes back to the default.
    static void SetTemporaryDirectory(std::optional<std::string> folder);
};

}   // namespace QZ::Platform
