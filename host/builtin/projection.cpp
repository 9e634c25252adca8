#include "host/builtin/projection.h"

namespace ombrix {

namespace {

// A distance from an axis up to here has no direction. Quotients of floats by it stay finite.
constexpr float kOnAxis = 1e-18f;

// The image's plane across two directions of space.
ProjectedPoint onPlane(const Vector& p, const Vector& right, const Vector& up)
{
    return {0.5f + 0.5f * dot(p, right), 0.5f + 0.5f * dot(p, up), right * 0.5f, up * 0.5f};
}

struct AngleOf {
    float angle = 0.0f;
    Vector gradient;
};

// About y, from +z towards +x.
AngleOf longitude(const Vector& p)
{
    const float fromAxis = std::hypot(p.x, p.z);
    if (!(fromAxis > kOnAxis)) return {};
    return {std::atan2(p.x, p.z), {p.z / fromAxis / fromAxis, 0.0f, -(p.x / fromAxis) / fromAxis}};
}

// Above the xz plane.
AngleOf latitude(const Vector& p)
{
    const float fromAxis = std::hypot(p.x, p.z);
    const float radius = std::hypot(fromAxis, p.y);
    if (!(radius > kOnAxis)) return {};
    const float angle = std::atan2(p.y, fromAxis);
    if (!(fromAxis > kOnAxis)) return {angle, {}};
    const float along = -(p.y / radius) / radius;
    return {angle, {p.x / fromAxis * along, fromAxis / radius / radius, p.z / fromAxis * along}};
}

int largestAxis(const Vector& v)
{
    const float x = std::fabs(v.x), y = std::fabs(v.y), z = std::fabs(v.z);
    if (x >= y && x >= z) return 0;
    return y >= z ? 1 : 2;
}

ProjectedPoint onAxisPlane(const Vector& p, int axis, bool fromBehind)
{
    const float side = fromBehind ? -1.0f : 1.0f;
    switch (axis) {
    case 0:
        return onPlane(p, {0.0f, 0.0f, -side}, {0.0f, 1.0f, 0.0f});
    case 1:
        return onPlane(p, {1.0f, 0.0f, 0.0f}, {0.0f, 0.0f, -side});
    default:
        return onPlane(p, {side, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f});
    }
}

} // namespace

ProjectedPoint projectPlanar(const Vector& p)
{
    return onAxisPlane(p, 2, false);
}

ProjectedPoint projectSpherical(const Vector& p, float angleU, float angleV)
{
    const AngleOf around = longitude(p), above = latitude(p);
    return {0.5f + around.angle / angleU, 0.5f + above.angle / angleV, around.gradient * (1.0f / angleU),
            above.gradient * (1.0f / angleV)};
}

ProjectedPoint projectCylindrical(const Vector& p, float angleU)
{
    const AngleOf around = longitude(p);
    ProjectedPoint result = projectPlanar(p);
    result.u = 0.5f + around.angle / angleU;
    result.gradientU = around.gradient * (1.0f / angleU);
    return result;
}

ProjectedPoint projectBall(const Vector& p)
{
    const float fromAxis = std::hypot(p.x, p.y);
    const float radius = std::hypot(fromAxis, p.z);
    if (!(radius > kOnAxis)) return {};
    if (!(fromAxis > kOnAxis)) {
        // In front the map is a plane; behind it the direction along the circle is lost.
        if (p.z < 0.0f) return {1.0f, 0.5f, {}, {}};
        const float scale = 0.5f / kPi / p.z;
        return {0.5f, 0.5f, {scale, 0.0f, 0.0f}, {0.0f, scale, 0.0f}};
    }
    // (u, v) - 0.5 = distance (cos, sin); the gradient of distance lies along the meridian, that of the
    // direction across it.
    const float c = p.x / fromAxis, s = p.y / fromAxis;
    const float distance = 0.5f / kPi * std::atan2(fromAxis, p.z);
    const float outwards = 0.5f / kPi * (p.z / radius) / radius;
    const float forwards = -(0.5f / kPi) * (fromAxis / radius) / radius;
    const float across = distance / fromAxis;
    return {0.5f + distance * c,
            0.5f + distance * s,
            {c * c * outwards + s * s * across, c * s * (outwards - across), c * forwards},
            {c * s * (outwards - across), s * s * outwards + c * c * across, s * forwards}};
}

ProjectedPoint projectCubic(const Vector& p)
{
    const int axis = largestAxis(p);
    const float depth = axis == 0 ? p.x : axis == 1 ? p.y : p.z;
    return onAxisPlane(p, axis, depth < 0.0f);
}

ProjectedPoint projectTriPlanar(const Vector& p, const Vector& normal)
{
    return onAxisPlane(p, largestAxis(normal), false);
}

} // namespace ombrix
