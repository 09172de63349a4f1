// SPDX-License-Identifier: MIT
// The table at y = 0, the wall behind it, and what lies on the table. Lengths are decimetres.
#include <algorithm>
#include <cmath>

#include "tools/qz/scene/Still.h"

namespace QZ::Tool {

namespace {

constexpr float kFar = std::numeric_limits<float>::infinity();
constexpr float kNear = 1e-3f;   // so that a ray does not meet the thing it starts on
constexpr float kWallZ = -2.4f;

// An ellipsoid turned about the vertical, of which only what lies below `top` is there.
struct Round {
    constexpr Round(Material itsMaterial, Vec3 itsCentre, Vec3 itsRadii, float cosine = 1.0f,
                    float sine = 0.0f, float itsTop = kFar)
        : material(itsMaterial),
          centre(itsCentre),
          radii(itsRadii),
          scale(1.0f / itsRadii.x, 1.0f / itsRadii.y, 1.0f / itsRadii.z),
          reach(std::max({itsRadii.x, itsRadii.y, itsRadii.z})),
          turnCosine(cosine),
          turnSine(sine),
          top(itsTop)
    {}

    Material material;
    Vec3 centre;
    Vec3 radii;
    Vec3 scale;    // one over the radii
    float reach;   // the largest of them
    float turnCosine;
    float turnSine;
    float top;
};

constexpr float kRimY = 0.78f;
constexpr Vec3 kBowl = {0.18f, 0.86f, -0.55f};

// The bowl and what lies in it come first; kBowlful holds them all.
constexpr Round kRounds[] = {
    {Material::Bowl, kBowl, {1.08f, 1.0f, 1.08f}, 1, 0, kRimY},
    {Material::BowlInside, kBowl, {1.02f, 0.95f, 1.02f}, 1, 0, kRimY},
    {Material::Orange, {-0.36f, 0.86f, -0.32f}, {0.42f, 0.41f, 0.42f}},
    {Material::Apple, {0.40f, 0.90f, -0.22f}, {0.42f, 0.40f, 0.42f}},
    {Material::Stem, {0.41f, 1.33f, -0.22f}, {0.022f, 0.10f, 0.022f}},
    {Material::Lime, {0.86f, 0.84f, -0.62f}, {0.34f, 0.31f, 0.31f}},
    {Material::Lemon, {0.03f, 1.16f, -0.72f}, {0.48f, 0.33f, 0.33f}, 0.88f, 0.475f},
    {Material::Lemon, {0.43f, 1.16f, -0.94f}, {0.13f, 0.10f, 0.10f}, 0.88f, 0.475f},
    {Material::Orange, {0.60f, 1.0f, -0.92f}, {0.40f, 0.40f, 0.40f}},
    {Material::Plum, {-0.42f, 0.75f, -1.0f}, {0.34f, 0.36f, 0.34f}},
    {Material::Plum, {-1.20f, 0.28f, 0.74f}, {0.27f, 0.28f, 0.27f}},
    {Material::Plum, {-0.76f, 0.25f, 1.10f}, {0.25f, 0.25f, 0.25f}},
    {Material::Apple, {1.12f, 0.40f, 0.66f}, {0.44f, 0.41f, 0.44f}},
    {Material::Stem, {1.14f, 0.84f, 0.67f}, {0.024f, 0.11f, 0.024f}},
    {Material::Lime, {0.42f, 0.26f, 1.06f}, {0.31f, 0.265f, 0.27f}, 0.8f, -0.6f},
    {Material::Lime, {0.215f, 0.26f, 1.215f}, {0.09f, 0.075f, 0.075f}, 0.8f, -0.6f},
    {Material::Brass, {-1.66f, 0.36f, -0.36f}, {0.36f, 0.36f, 0.36f}},
    {Material::Lemon, {1.86f, 0.29f, -0.20f}, {0.40f, 0.29f, 0.29f}, 0.6f, 0.8f},
};

constexpr std::size_t kInBowl = 10;
constexpr Vec3 kBowlfulCentre = {0.18f, 0.70f, -0.55f};
constexpr float kBowlfulRadius = 1.2f;

bool MissesSphere(const Ray& ray, const Vec3& centre, float radius)
{
    const Vec3 from = ray.origin - centre;
    const float along = from.Dot(ray.direction);
    const float outside = from.MagnitudeSquared() - radius * radius;
    return outside > 0.0f && (along > 0.0f || along * along < outside);
}

// The things that a ray may meet.
std::span<const Round> Candidates(const Ray& ray)
{
    const std::span<const Round> all = kRounds;
    return MissesSphere(ray, kBowlfulCentre, kBowlfulRadius) ? all.subspan(kInBowl) : all;
}

Vec3 Turn(const Vec3& v, float cosine, float sine)
{
    return {v.x * cosine - v.z * sine, v.y, v.x * sine + v.z * cosine};
}

// The distance along a ray, or kFar.
float Distance(const Round& round, const Ray& ray)
{
    if (MissesSphere(ray, round.centre, round.reach))
        return kFar;
    const Vec3 o = Turn(ray.origin - round.centre, round.turnCosine, round.turnSine) * round.scale;
    const Vec3 d = Turn(ray.direction, round.turnCosine, round.turnSine) * round.scale;
    const float a = d.MagnitudeSquared();
    const float b = o.Dot(d);
    const float discriminant = b * b - a * (o.MagnitudeSquared() - 1.0f);
    if (discriminant < 0.0f)
        return kFar;
    const float root = std::sqrt(discriminant);
    for (const float t : {(-b - root) / a, (-b + root) / a})
        if (t > kNear && ray.origin.y + t * ray.direction.y <= round.top)
            return t;
    return kFar;
}

// The flat edge between the bowl's outer and inner side.
float RimDistance(const Ray& ray)
{
    const float t = (kRimY - ray.origin.y) / ray.direction.y;
    if (!(t > kNear))
        return kFar;
    const Vec3 p = ray.origin + ray.direction * t - kBowl;
    const float square = p.x * p.x + p.z * p.z;
    const auto radius = [](const Vec3& radii) {
        const float height = (kRimY - kBowl.y) / radii.y;
        return radii.x * std::sqrt(1.0f - height * height);
    };
    const float outer = radius(kRounds[0].radii);
    const float inner = radius(kRounds[1].radii);
    return square < outer * outer && square > inner * inner ? t : kFar;
}

void Take(float distance, Material material, const Vec3& normal, Hit& hit)
{
    if (!(distance > kNear && distance < hit.distance))
        return;
    hit.distance = distance;
    hit.material = material;
    hit.normal = normal;
}

}   // namespace

bool Nearest(const Ray& ray, Hit& hit)
{
    hit.distance = kFar;
    Take(-ray.origin.y / ray.direction.y, Material::Table, {0, 1, 0}, hit);
    Take((kWallZ - ray.origin.z) / ray.direction.z, Material::Wall, {0, 0, 1}, hit);
    Take(RimDistance(ray), Material::BowlRim, {0, 1, 0}, hit);
    const Round* nearest = nullptr;
    for (const Round& round : Candidates(ray)) {
        const float distance = Distance(round, ray);
        if (distance < hit.distance) {
            hit.distance = distance;
            nearest = &round;
        }
    }
    if (!(hit.distance < kFar))
        return false;
    hit.point = ray.origin + ray.direction * hit.distance;
    hit.local = hit.point;
    if (nearest != nullptr) {
        hit.material = nearest->material;
        hit.local =
            Turn(hit.point - nearest->centre, nearest->turnCosine, nearest->turnSine) * nearest->scale;
        hit.normal = Unit(Turn(hit.local * nearest->scale, nearest->turnCosine, -nearest->turnSine));
    }
    if (hit.normal.Dot(ray.direction) > 0.0f)
        hit.normal = hit.normal * -1.0f;
    return true;
}

bool Blocked(const Ray& ray, float distance)
{
    return RimDistance(ray) < distance || std::ranges::any_of(Candidates(ray), [&](const Round& round) {
               return Distance(round, ray) < distance;
           });
}

}   // namespace QZ::Tool
