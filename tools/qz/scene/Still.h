// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <span>

#include "tools/qz/scene/Random.h"

namespace QZ::Tool {

enum class Material { Wall, Table, Bowl, BowlInside, BowlRim, Orange, Apple, Lime, Plum, Lemon, Stem, Brass };

struct Ray {
    Vec3 origin;
    Vec3 direction;   ///< Of unit length.
};

/// Where a ray meets the things of the picture.
struct Hit {
    float distance = std::numeric_limits<float>::infinity();
    Vec3 point;
    Vec3 normal;   ///< Of unit length, towards the ray.
    Vec3 local;    ///< The point as its thing sees it: a fruit has the radius 1.
    Material material = Material::Wall;
};

/// The nearest thing along a ray; false when it leaves the room.
[[nodiscard]] bool Nearest(const Ray& ray, Hit& hit);

/// Whether anything lies within a distance.
[[nodiscard]] bool Blocked(const Ray& ray, float distance);

/// How the matter at a point treats light.
struct Surface {
    Vec3 albedo;
    Vec3 normal;
    float gloss = 0.0f;         ///< Share of light that is reflected at right angles; 1 for a metal.
    float blur = 0.0f;          ///< Of the reflection: 0 is a mirror.
    float reliefScale = 1.0f;   ///< Bumps a decimetre.
    float reliefDepth = 0.0f;
};

/// \param fine  with the relief, which only shows where one looks at it directly.
[[nodiscard]] Surface SurfaceAt(const Hit& hit, bool fine);

}   // namespace QZ::Tool
