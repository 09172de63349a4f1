// SPDX-License-Identifier: MIT
#pragma once

namespace QZ::Platform {

/// An affine map of the plane, acting on rows: (x, y) goes to (a x + c y + tx, b x + d y + ty).
/// With y pointing down, {0, 1, -1, 0, 0, 0} turns a picture clockwise by 90 degrees.
struct AffineTransform {
    double a, b, c, d, tx, ty;
};

/// Width and height in pixels; zero-initialised, it is the size that says "not set".
struct Size {
    double width, height;
};

}   // namespace QZ::Platform
