// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "QZ/Export.h"

/// The temporary files of the process: hands out names that are free, and deletes files that were given up as
/// soon as nobody uses them any more.
///
/// A path is in use while it is marked so, and given up once it was marked for deletion. Only given-up paths
/// are ever deleted. Paths are compared as strings, and the disk is never asked: a file that nobody marked
/// does not keep its name from being handed out. From one thread, the main one: nothing here is locked.
/// \code
///     QZFileUtility::markUniqueFilename(recorder.filename(), true);    // while it is being shared
///     ...
///     QZFileUtility::markUniqueFilename(recorder.filename(), false);   // deleted now, if the recorder gave
///     it up
/// \endcode
class QZ_API QZFileUtility {
public:
    /// Makes the registry, unless it is there; the other members do so themselves.
    static void ensureInitialization();

    /// Deletes and forgets the files that were given up and are not in use; whether the deletion works makes
    /// no difference.
    static void checkAndValidateFileNames();

    /// A name that is neither in use nor given up, after checkAndValidateFileNames: the path itself or, where
    /// that is taken, the path with the first free number from 1 before its extension ("/x/AEdit1.mov").
    /// \return none for none.
    [[nodiscard]] static std::optional<std::string> uniqueFilename(const std::optional<std::string>& path);

    /// The same search from a number on, without checkAndValidateFileNames; 0 begins with the path itself.
    ///
    /// The extension is what follows the last point of the path's last component. A path without one gets the
    /// number and a point ("/x/A1."): hosts rely on it.
    [[nodiscard]] static std::optional<std::string> uniqueFilename(const std::optional<std::string>& path,
                                                                   int iteration);

    /// Marks a path as in use or not, and deletes it when it was given up and is not; none is ignored.
    static void markUniqueFilename(const std::optional<std::string>& path, bool inUse);

    /// Gives a path up: it is deleted at once, or when it is no longer in use; none is ignored.
    static void markUniqueFilenameForDelete(const std::optional<std::string>& path);
};
