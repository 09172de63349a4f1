// SPDX-License-Identifier: MIT
#include "QZ/Foundation/Media/QZImageOrientation.h"

namespace {

struct Rotation {
    double a, b, c, d;
    std::int64_t orientation;
};

constexpr Rotation kRotations[] = {
    {0, 1, -1, 0, 3},
    {0, -1, 1, 0, 2},
    {-1, 0, 0, -1, 1},
    {1, 0, 0, 1, 0},
};

}   // namespace

bool QZImageOrientation::fromTransform(const QZ::Platform::AffineTransform* transform,
                                       std::int64_t* imageOrientation)
{
    for (const Rotation& r : kRotations)
        if (transform->a == r.a && transform->b == r.b && transform->c == r.c && transform->d == r.d) {
            *imageOrientation = r.orientation;
            return true;
        }
    *imageOrientation = 0;
    return false;
}
