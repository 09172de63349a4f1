// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "tools/qz/scene/Still.h"

namespace QZ::Tool {

namespace {

// A wave from 0 to 1 and back, of period 1.
float Wave(float x)
{
    const float f = x - std::floor(x);
    return Smoothstep(0.0f, 1.0f, f < 0.5f ? 2.0f * f : 2.0f - 2.0f * f);
}

// The normal tilted by the slope of a noise: pores, plaster, weave.
Vec3 Relief(const Hit& hit, const Vec3& normal, float scale, float depth)
{
    const Vec3 p = hit.point * scale;
    const float here = ValueNoise(p);
    const Vec3 slope(ValueNoise(p + Vec3(0.3f, 0, 0)) - here, ValueNoise(p + Vec3(0, 0.3f, 0)) - here,
                     ValueNoise(p + Vec3(0, 0, 0.3f)) - here);
    return Unit(normal + slope * -depth);
}

// Boards along x: a grain much longer than wide, a tone for each board, a dark joint.
Surface Wood(const Hit& hit)
{
    const Vec3 p = hit.point;
    const float board = std::floor(p.z / 0.82f + 0.35f);
    const float across = p.z / 0.82f + 0.35f - board;
    const float tone = ValueNoise({board * 7.3f, 0.5f, 0.5f});
    const float bend = 0.5f * Turbulence({p.x * 0.35f + board * 5.0f, 0.0f, p.z * 1.4f});
    const float rings = Wave(6.0f * (across + bend) + tone * 3.0f);
    const float fibre = Turbulence({p.x * 3.0f, board, p.z * 85.0f});
    Surface surface;
    surface.albedo =
        Mix({0.105f, 0.047f, 0.022f}, {0.30f, 0.155f, 0.072f},
            std::clamp(0.15f + 0.35f * rings + 0.7f * (fibre - 0.4f) + 0.35f * tone, 0.0f, 1.0f));
    const float joint = std::min(across, 1.0f - across);
    surface.albedo *= 0.25f + 0.75f * Smoothstep(0.004f, 0.016f, joint);
    surface.normal = Unit(hit.normal + Vec3(0, 0, 0.12f * (fibre - 0.5f)));
    surface.gloss = 0.04f;
    surface.blur = 0.14f;
    return surface;
}

// A linen cloth under the bowl, turned a little, with blue stripes along two sides.
bool Cloth(const Hit& hit, Surface& surface)
{
    const float x = (hit.point.x + 0.12f) * 0.985f - (hit.point.z + 0.1f) * 0.174f;
    const float z = (hit.point.x + 0.12f) * 0.174f + (hit.point.z + 0.1f) * 0.985f;
    const float fray = 0.012f * ValueNoise({hit.point.x * 60.0f, 0, hit.point.z * 60.0f});
    const float edge = std::min(1.62f - std::abs(x), 1.52f - std::abs(z)) - fray;
    if (edge < 0.0f)
        return false;
    const float weave = 0.72f + 0.28f * Wave(x * 62.0f) * Wave(z * 62.0f + 0.5f) +
                        0.12f * (Turbulence(hit.point * 9.0f) - 0.5f);
    const float fromSide = 1.62f - std::abs(x);
    const bool stripe = (fromSide > 0.12f && fromSide < 0.26f) || (fromSide > 0.31f && fromSide < 0.34f) ||
                        (fromSide > 0.40f && fromSide < 0.43f);
    surface.albedo = (stripe ? Vec3(0.045f, 0.115f, 0.30f) : Vec3(0.66f, 0.62f, 0.53f)) * weave;
    surface.albedo *= 0.7f + 0.3f * Smoothstep(0.0f, 0.03f, edge);
    surface.normal = hit.normal;
    surface.reliefScale = 3.0f;
    surface.reliefDepth = 0.10f;
    return true;
}

Surface Wall(const Hit& hit)
{
    Surface surface;
    const float stain = Turbulence(hit.point * 0.9f);
    surface.albedo = Mix({0.135f, 0.185f, 0.180f}, {0.225f, 0.28f, 0.26f}, Smoothstep(0.25f, 0.75f, stain));
    surface.albedo *= 0.94f + 0.12f * Turbulence(hit.point * 14.0f);
    surface.normal = hit.normal;
    surface.reliefScale = 7.0f;
    surface.reliefDepth = 0.22f;
    return surface;
}

Surface Citrus(const Hit& hit, const Vec3& low, const Vec3& high, float pores)
{
    Surface surface;
    surface.albedo = Mix(low, high, Turbulence(hit.local * 2.2f));
    surface.normal = hit.normal;
    surface.reliefScale = pores;
    surface.reliefDepth = 0.30f;
    surface.gloss = 0.04f;
    surface.blur = 0.16f;
    return surface;
}

// Red over yellow, in streaks from the stem down; freckles; a hollow about the stem.
Surface Apple(const Hit& hit)
{
    const Vec3 p = hit.local;
    const float radius = std::sqrt(p.x * p.x + p.z * p.z);
    const Vec3 around = Vec3(p.x, 0.0f, p.z) * (1.0f / std::max(radius, 0.05f));
    const float streaks = Turbulence({around.x * 3.2f, p.y * 0.8f, around.z * 3.2f});
    const float sun = 0.5f + 0.35f * p.z - 0.30f * p.x;
    const float red = Smoothstep(0.18f, 0.66f, streaks + 0.55f * (sun - 0.42f));
    Surface surface;
    surface.albedo = Mix({0.62f, 0.42f, 0.075f}, {0.42f, 0.018f, 0.026f}, red);
    const float freckle = Smoothstep(0.84f, 0.90f, ValueNoise(p * 30.0f));
    surface.albedo = Mix(surface.albedo, {0.66f, 0.46f, 0.24f}, 0.45f * freckle);
    surface.albedo = Mix(surface.albedo, {0.22f, 0.17f, 0.05f},
                         (1.0f - Smoothstep(0.05f, 0.30f, radius)) * (p.y > 0.0f ? 0.8f : 0.0f));
    surface.normal =
        Unit(hit.normal +
             Vec3(-p.x, 0.0f, -p.z) * (p.y > 0.0f ? 2.2f * (1.0f - Smoothstep(0.10f, 0.42f, radius)) : 0.0f));
    surface.gloss = 0.045f;
    surface.blur = 0.02f;
    return surface;
}

Surface Plum(const Hit& hit)
{
    Surface surface;
    const float bloom = Smoothstep(0.35f, 0.75f, Turbulence(hit.local * 2.6f));
    surface.albedo = Mix({0.075f, 0.012f, 0.060f}, {0.165f, 0.135f, 0.255f}, 0.75f * bloom);
    surface.normal = hit.normal;
    surface.gloss = 0.04f;
    surface.blur = 0.10f + 0.25f * bloom;
    return surface;
}

Surface Plain(const Hit& hit, const Vec3& albedo, float gloss, float blur)
{
    Surface surface;
    surface.albedo = albedo;
    surface.normal = hit.normal;
    surface.gloss = gloss;
    surface.blur = blur;
    return surface;
}

Surface Glaze(const Hit& hit)
{
    const float run = Turbulence({hit.local.x * 3.0f, hit.local.y * 1.3f, hit.local.z * 3.0f});
    const float speck = Smoothstep(0.80f, 0.86f, ValueNoise(hit.point * 34.0f));
    const Vec3 teal = Mix({0.010f, 0.085f, 0.120f}, {0.035f, 0.245f, 0.265f}, Smoothstep(0.3f, 0.7f, run));
    return Plain(hit, Mix(teal, {0.03f, 0.03f, 0.03f}, 0.7f * speck), 0.05f, 0.012f);
}

Surface MatterAt(const Hit& hit)
{
    Surface surface;
    switch (hit.material) {
        case Material::Wall:
            return Wall(hit);
        case Material::Table:
            return Cloth(hit, surface) ? surface : Wood(hit);
        case Material::Bowl:
            return Glaze(hit);
        case Material::BowlInside:
            return Plain(hit, {0.60f, 0.55f, 0.43f}, 0.05f, 0.02f);
        case Material::BowlRim:
            return Plain(hit, {0.16f, 0.085f, 0.045f}, 0.05f, 0.03f);
        case Material::Orange:
            return Citrus(hit, {0.78f, 0.215f, 0.012f}, {0.86f, 0.32f, 0.022f}, 34.0f);
        case Material::Lemon:
            return Citrus(hit, {0.80f, 0.52f, 0.028f}, {0.86f, 0.66f, 0.065f}, 30.0f);
        case Material::Lime:
            return Citrus(hit, {0.085f, 0.20f, 0.012f}, {0.22f, 0.34f, 0.030f}, 38.0f);
        case Material::Apple:
            return Apple(hit);
        case Material::Plum:
            return Plum(hit);
        case Material::Stem:
            return Plain(hit, {0.09f, 0.055f, 0.025f}, 0.0f, 0.0f);
        case Material::Brass:
            return Plain(hit, {0.80f, 0.56f, 0.24f}, 1.0f, 0.025f);
    }
    return surface;
}

}   // namespace

Surface SurfaceAt(const Hit& hit, bool fine)
{
    Surface surface = MatterAt(hit);
    if (fine && surface.reliefDepth > 0.0f)
        surface.normal = Relief(hit, surface.normal, surface.reliefScale, surface.reliefDepth);
    return surface;
}

}   // namespace QZ::Tool
