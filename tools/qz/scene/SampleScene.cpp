// SPDX-License-Identifier: MIT
// A small path tracer: light from a window at the left, one shadow ray at every point, one bounce.
#include "tools/qz/scene/SampleScene.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>
#include <vector>

#include "QZ/Foundation/Color/CColor.h"
#include "tools/qz/scene/Still.h"

namespace QZ::Tool {

namespace {

using Foundation::CColor;

constexpr int kSamplesAcross = 4;   // a pixel is the mean of the square of it
constexpr int kBounces = 1;

// The window: four panes, upright, at the left and a little in front.
constexpr Vec3 kWindowMiddle = {-4.6f, 3.3f, 1.7f};
constexpr Vec3 kWindowAcross = {0.30f, 0.0f, -1.25f};   // half of its width
constexpr Vec3 kWindowUp = {0.0f, 1.35f, 0.0f};         // half of its height
constexpr Vec3 kWindowLight = {46.0f, 35.0f, 21.5f};    // evening sun on a curtain
constexpr Vec3 kRoomLight = {0.13f, 0.155f, 0.205f};    // what comes from the rest of the room

bool OnAPane(float across, float up)
{
    return std::abs(across) > 0.05f && std::abs(up) > 0.04f;
}

Vec3 WindowNormal()
{
    return Unit(Cross(kWindowUp, kWindowAcross)) * -1.0f;
}

// The light of the window along a ray, if it gets there within a distance.
Vec3 WindowSeen(const Ray& ray, float distance)
{
    const Vec3 normal = WindowNormal();
    const float t = (kWindowMiddle - ray.origin).Dot(normal) / ray.direction.Dot(normal);
    if (!(t > 0.0f && t < distance))
        return {};
    const Vec3 p = ray.origin + ray.direction * t - kWindowMiddle;
    const float across = p.Dot(kWindowAcross) / kWindowAcross.MagnitudeSquared();
    const float up = p.Dot(kWindowUp) / kWindowUp.MagnitudeSquared();
    return std::abs(across) < 1.0f && std::abs(up) < 1.0f && OnAPane(across, up) ? kWindowLight : Vec3();
}

// The light of the window on a matt surface, from one point of the window.
Vec3 WindowOn(const Vec3& point, const Vec3& normal, Random& random)
{
    const float across = 2.0f * random() - 1.0f;
    const float up = 2.0f * random() - 1.0f;
    if (!OnAPane(across, up))
        return {};
    const Vec3 way = kWindowMiddle + kWindowAcross * across + kWindowUp * up - point;
    const float distance = way.Magnitude();
    const Vec3 direction = way * (1.0f / distance);
    const float cosine = normal.Dot(direction);
    const float cosineThere = std::abs(WindowNormal().Dot(direction));
    if (cosine <= 0.0f || Blocked({point, direction}, distance))
        return {};
    constexpr float kPi = 3.14159265f;
    const float area = 4.0f * kWindowAcross.Magnitude() * kWindowUp.Magnitude();
    return kWindowLight * (cosine * cosineThere * area / (kPi * distance * distance));
}

Vec3 Light(const Ray& ray, int bounce, bool reflected, Random& random);

// The window is seen only by way of reflections alone: after a matt bounce WindowOn() has counted it.
Vec3 Reflection(const Ray& ray, const Hit& hit, const Surface& surface, int bounce, bool seesWindow,
                Random& random)
{
    const Vec3 mirror = ray.direction - surface.normal * (2.0f * ray.direction.Dot(surface.normal));
    const Vec3 direction = Unit(mirror + random.AboutNormal(hit.normal) * surface.blur);
    return Light({hit.point, direction}, bounce + 1, seesWindow, random);
}

Vec3 Light(const Ray& ray, int bounce, bool reflected, Random& random)
{
    Hit hit;
    const bool met = Nearest(ray, hit);
    if (reflected)
        if (const Vec3 window = WindowSeen(ray, hit.distance); window.x > 0.0f)
            return window;
    if (!met)
        return kRoomLight * (0.6f + 0.8f * std::max(ray.direction.y, 0.0f));
    const Surface surface = SurfaceAt(hit, bounce == 0);
    if (surface.gloss >= 1.0f)
        return bounce > kBounces
                   ? kRoomLight * surface.albedo
                   : surface.albedo * Reflection(ray, hit, surface, bounce, bounce == 0 || reflected, random);

    Vec3 arriving = WindowOn(hit.point, surface.normal, random);
    arriving += bounce < kBounces
                    ? Light({hit.point, random.AboutNormal(surface.normal)}, bounce + 1, false, random)
                    : kRoomLight;
    Vec3 light = surface.albedo * arriving;
    if (bounce == 0 && surface.gloss > 0.0f) {
        // C. Schlick, "An Inexpensive BRDF Model for Physically-based Rendering", Eurographics 1994.
        const float grazing = 1.0f - std::min(1.0f, -surface.normal.Dot(ray.direction));
        const float square = std::max(grazing, 0.0f) * std::max(grazing, 0.0f);
        const float share = surface.gloss + (1.0f - surface.gloss) * square * square * grazing;
        const Vec3 seen = Reflection(ray, hit, surface, bounce, true, random);
        light = Mix(light, seen, std::clamp(share, 0.0f, 1.0f));
    }
    return light;
}

class Camera {
public:
    Camera(int width, int height) : m_width(width), m_height(height)
    {
        const Vec3 eye(0.35f, 2.35f, 6.2f);
        const Vec3 target(0.17f, 0.62f, -0.1f);
        m_eye = eye;
        m_forward = Unit(target - eye);
        m_right = Unit(Cross(m_forward, {0, 1, 0}));
        m_up = Cross(m_right, m_forward);
    }

    [[nodiscard]] Ray Through(float x, float y) const
    {
        constexpr float kHalfWidth = 0.37f;   // of the picture, at a distance of 1
        const auto scale = 2.0f * kHalfWidth / static_cast<float>(std::max(m_width, 1));
        const float right = (x - 0.5f * static_cast<float>(m_width)) * scale;
        const float down = (y - 0.5f * static_cast<float>(m_height)) * scale;
        return {m_eye, Unit(m_forward + m_right * right + m_up * -down)};
    }

    /// Lenses pass less light to the corners.
    [[nodiscard]] float Vignette(float x, float y) const
    {
        const float dx = 2.0f * x / static_cast<float>(m_width) - 1.0f;
        const float dy = 2.0f * y / static_cast<float>(m_height) - 1.0f;
        return 1.0f - 0.16f * (dx * dx + dy * dy);
    }

private:
    int m_width, m_height;
    Vec3 m_eye, m_forward, m_right, m_up;
};

// Light on the sensor to encoded sRGB: noise that grows with the root of the signal, and a soft shoulder.
void Develop(Vec3 light, Random& random, unsigned char* pixel)
{
    const CColor::sInsomniacGamesToneCurve film = {0.0f, 0.15f, 0.28f, 0.75f, 3.0f};
    Vec3 developed;
    for (int i = 0; i < 3; ++i) {
        const float spread = random() + random() + random() + random() - 2.0f;   // deviation 0.58
        const float noise = spread * (0.0016f + 0.011f * std::sqrt(std::max(light[i], 0.0f)));
        const float exposed = std::clamp(light[i] + noise, 0.0f, film.whitePoint);
        developed[i] = CColor::ToneCurveInsomniacGames(film, false, exposed);
    }
    Vec3 srgb;
    CColor::LinearToNonlinearToneCurve(false, false, developed, srgb);
    const Vec3 bytes = CColor::Clamp(srgb, 0.0f, 1.0f) * 255.0f + 0.5f;
    for (int i = 0; i < 3; ++i)
        pixel[i] = static_cast<unsigned char>(bytes[i]);
}

void RenderRow(const Camera& camera, int y, Image& image)
{
    for (int x = 0; x < image.width; ++x) {
        Random random(static_cast<std::uint32_t>(y) * 65537u + static_cast<std::uint32_t>(x));
        Vec3 light;
        for (int sample = 0; sample < kSamplesAcross * kSamplesAcross; ++sample) {
            const auto column = static_cast<float>(sample % kSamplesAcross);
            const auto row = static_cast<float>(sample / kSamplesAcross);
            const float px = static_cast<float>(x) + (column + random()) / kSamplesAcross;
            const float py = static_cast<float>(y) + (row + random()) / kSamplesAcross;
            light += Light(camera.Through(px, py), 0, false, random);
        }
        light *= camera.Vignette(static_cast<float>(x), static_cast<float>(y)) /
                 static_cast<float>(kSamplesAcross * kSamplesAcross);
        Develop(light, random, image.At(x, y));
    }
}

}   // namespace

Image RenderSampleScene(int width, int height)
{
    Image image(width, height);
    const Camera camera(width, height);
    std::atomic<int> next = 0;
    const auto work = [&] {
        for (int y = next++; y < height; y = next++)
            RenderRow(camera, y, image);
    };
    // Rows do not depend on each other, so that the number of threads does not show.
    std::vector<std::jthread> helpers;
    for (unsigned i = 1; i < std::clamp(std::thread::hardware_concurrency(), 1u, 16u); ++i)
        helpers.emplace_back(work);
    work();
    helpers.clear();
    return image;
}

}   // namespace QZ::Tool
