// SPDX-License-Identifier: MIT
#pragma once

namespace QZ::Platform::Movie {

/// While one lives, the codec libraries print nothing on its thread: what goes wrong is told by results, and
/// a library's host owns its standard error. Containers have no switch for that of their own.
class Quiet {
public:
    Quiet();
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
};

}   // namespace QZ::Platform::Movie
