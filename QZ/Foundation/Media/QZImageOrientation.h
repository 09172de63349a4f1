// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "QZ/Export.h"
#include "QZ/Platform/Geometry.h"

/// How a picture is turned, from the transform of the camera that took it.
class QZ_API QZImageOrientation {
public:
    /// Compares the linear part of the transform exactly with the four right-angled rotations; the
    /// translation makes no difference.
    /// \param imageOrientation  receives 0 (up), 1 (down), 2 (left) or 3 (right); 0 for every other transform.
    /// \return  whether the transform is one of the four.
    static bool fromTransform(const QZ::Platform::AffineTransform* transform, std::int64_t* imageOrientation);
};
